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
# Closes the program; $ended says how that went. Not for a subshell: the program is this shell's child.
stop() {
  drive close > /dev/null
  wait "$tavrel_process"
  # shellcheck disable=SC2034 # for the suite
  ended="ended $?"
  tavrel_process=
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

# same NAME EXPECTED ACTUAL
same() {
  if [[ $3 == "$2" ]]; then check "$1" '' ''; else check "$1 (all of it)" "<$2>" "<$3>"; fi
}

# summary: the last line of a suite, and its exit code.
summary() {
  echo "$passed passed, $failed failed"
  ((failed == 0 && passed > 0))
}
