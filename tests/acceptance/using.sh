# Sourced by suites that use the whole program: starts it, drives it, checks what it shows.
# shellcheck shell=bash
#
# Needs a display, Wine with WINEPREFIX set, an assembled program folder and drive.exe. Makes a folder of its own, $work,
# and goes there: DOSBox leaves its stdout.txt in the folder where the program was started.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
program=$root/out/Tavrel
drive_program=$root/out/bin/drive.exe
export LC_ALL=C.UTF-8 WINEDEBUG=${WINEDEBUG:--all}
work=$(mktemp -d)
cd "$work" || exit 1
passed=0
failed=0
tavrel_process=

cleanup() {
  [[ -n $tavrel_process ]] && kill "$tavrel_process" 2> /dev/null
  rm -rf "$work" "$work".*
}
trap cleanup EXIT

# Its answer goes through a file: Wine's desktop, should this be the program that starts it, would keep a pipe open.
drive() {
  local status=0 answer=$work.answer.$BASHPID
  wine "$drive_program" "$@" --timeout 60 > "$answer" 2> /dev/null < /dev/null || status=$?
  tr -d '\r' < "$answer"
  rm -f "$answer"
  return "$status"
}
windows_name() { printf 'Z:%s' "${1//\//\\}"; }
# start [PROJECT-FILE]
start() {
  if (($#)); then set -- "$(windows_name "$1")"; fi
  wine "$program/Tavrel.exe" "$@" > /dev/null 2>&1 &
  tavrel_process=$!
}
# Waits for the program to end; $ended says how that went. Not for a subshell: the program is this shell's child.
await_end() {
  wait "$tavrel_process"
  # shellcheck disable=SC2034 # for the suite
  ended="ended $?"
  tavrel_process=
}
# Closes the program; $ended as above.
stop() {
  drive close > /dev/null
  await_end
}

# control NAME: the number of a control, for drive.
control() { sed -n "s/^#define $1 //p" "$root/app/resource.h"; }

# await_file FILE: until it is there, a minute at most.
await_file() {
  local tries
  for ((tries = 0; tries < 600; ++tries)); do
    [[ -f $1 ]] && return
    sleep 0.1
  done
}

# write_settings PROGRAM-FOLDER EMULATOR ARGUMENTS DISK-FOLDER
text_record() { printf '%b' "$(printf '\\x%02x\\x%02x' $((${#1} % 256)) $((${#1} / 256)))"; printf '%s' "$1"; }
write_settings() {
  {
    text_record "$2"
    text_record "$3"
    for _ in 1 2 3 4 5; do text_record ''; done
    text_record "$4"
    printf '\0\0\0\0\0\0\0\0\x0b\0' # four switches off, 11 points
    text_record Terminal
  } > "$1/config.cfg"
}

# guide_block NUMBER FILE.md: what stands in the block of code of that number.
guide_block() {
  awk -v wanted="$1" '/^```/ { inside = !inside; number += inside; next } inside && number == wanted' "$2"
}

# check NAME EXPECTED-PART ACTUAL
check() {
  if [[ $3 == *"$2"* ]]; then
    echo "ok   $1"
    passed=$((passed + 1))
  else
    printf 'FAIL %s\n     expected: %s\n     found:    %s\n' "$1" "$2" "$3"
    failed=$((failed + 1))
  fi
}

# await NAME EXPECTED-PART COMMAND...: asks again until the answer holds the part, or ten seconds are over.
await() {
  local name=$1 expected=$2 answer tries
  shift 2
  for ((tries = 0; tries < 50; ++tries)); do
    answer=$("$@")
    [[ $answer == *"$expected"* ]] && break
    sleep 0.2
  done
  check "$name" "$expected" "$answer"
}

# same NAME EXPECTED ACTUAL
same() {
  if [[ $3 == "$2" ]]; then check "$1" '' ''; else check "$1 (all of it)" "<$2>" "<$3>"; fi
}

# summary: the last line of a suite, and its exit code.
summary() {
  echo "$passed passed, $failed failed"
  ((failed == 0 && passed > 0))
}
