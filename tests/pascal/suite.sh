#!/bin/bash
# Compiles every program of this folder, runs it and compares what it prints with the text that stands at its end;
# README.md describes the format. Programs that Free Pascal can compile must print the same there.
#   tests/pascal/suite.sh [FILTER]         every program, or those whose name contains FILTER
#   tests/pascal/suite.sh --show FILE.PAS  what the program prints, as it would stand in its text
# Last line: N passed, N failed. Exit code 0 when nothing failed.
# Needs no display.
set -u
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(cd "$here/../.." && pwd)
tp3=${TAVREL_TP3:-$root/out/bin/tp3}   # with another build's programs only they are looked at
msxrun=${TAVREL_MSXRUN:-$root/out/bin/msxrun}
peer=${TAVREL_TP3:-$(command -v fpc)}
cache=$root/out/fpc-cache
limit=2G # T-states: some ten minutes of an MSX, a few seconds here
starts=(2E9B 4000)
source "$here/texts.sh"

# run_program COM SOURCE OUTPUT WORK: the exit code of msxrun, the visible text in OUTPUT.
run_program() {
  local arguments machine code
  read -ra arguments <<< "$(word arguments "$2")"
  read -ra machine <<< "$(word machine "$2")"
  "$msxrun" --disk "$4" --limit "$limit" "${machine[@]}" "$1" "${arguments[@]}" < "$4/input" > "$4/raw" 2> "$4/messages"
  code=$?
  visible < "$4/raw" > "$3"
  return "$code"
}

# free_pascal SOURCE OUTPUT WORK: the same by Free Pascal, whose programs are kept by the sum of their source.
free_pascal() {
  local arguments sum program code
  sum=$(sha256sum < "$1")
  program=$cache/${sum%% *}
  if [[ ! -x $program ]]; then
    mkdir -p "$cache" "$3/fpc"
    if ! (cd "$3/fpc" && fpc -Mtp -v0 -o"$3/fpc/program" "$1") > "$3/fpc/messages" 2>&1; then
      (cd "$3/fpc" && fpc -Mtp -ve -l- -o"$3/fpc/program" "$1") > "$2" 2>&1
      return 125
    fi
    mv "$3/fpc/program" "$program"
  fi
  read -ra arguments <<< "$(word arguments "$1")"
  mkdir -p "$3/fpc-files"
  (cd "$3/fpc-files" && timeout 20 "$program" "${arguments[@]}") < "$3/input" 2> "$3/messages" > "$3/raw"
  code=$?
  visible < "$3/raw" > "$2"
  return "$code"
}

# expected_from_free_pascal SOURCE: its text; the run-time error's report is Tavrel's own and comes last.
expected_from_free_pascal() {
  if has_section 'fpc output' "$1"; then
    section 'fpc output' "$1"
  elif [[ $(word exit "$1") == 4 ]]; then
    section output "$1" | awk '/^Run-time error/ { exit } NR > 1 { print held } { held = $0 } END { if (held != "") print held }'
  else
    section output "$1"
  fi
}

# verdict NAME CODE WANTED-CODE EXPECTED ACTUAL: one line of the protocol, the difference behind it.
verdict() {
  if [[ $2 == "$3" ]] && cmp -s "$4" "$5"; then
    echo "ok $1"
  else
    echo "FAIL $1: exit code $2, wanted $3"
    diff "$4" "$5" | head -20 | sed 's/^/     /'
  fi
}

# chained SOURCE WORK START: the chain files that the program calls lie beside it.
chained() {
  local name
  for name in $(word chained "$1"); do
    "$tp3" "$here/chained/$name.PAS" --chn -o "$2/$name.CHN" --start "$3" > "$2/messages" 2>&1 || cat "$2/messages"
  done
}

# reported_line SOURCE WORK START: FILE(line) of the address in the report that the last run has ended with.
reported_line() {
  local address
  address=$(sed -n 's/.*, PC=\([0-9A-F]\{4\}\)\r*$/\1/p' "$2/raw")
  "$tp3" --find "${address:-0}" "$1" --start "$3" 2>&1 | sed 's|.*/||'
}

# one SOURCE: all checks of one program.
one() {
  local source=$1 name wanted start code
  name=$(basename "$source")
  work=$(mktemp -d)
  trap 'rm -rf "$work"' EXIT
  if ! has_section output "$source"; then
    echo "FAIL $name: has no text to compare with"
    return
  fi
  section output "$source" > "$work/expected"
  section input "$source" > "$work/input"
  wanted=$(word exit "$source")
  for start in "${starts[@]}"; do
    chained "$source" "$work" "$start"
    if "$tp3" "$source" -o "$work/P.COM" --start "$start" > "$work/actual" 2>&1; then
      run_program "$work/P.COM" "$source" "$work/actual" "$work"
      code=$?
    else
      code=compiler
    fi
    verdict "$name at $start" "$code" "${wanted:-0}" "$work/expected" "$work/actual"
    if [[ -n $(word 'fails at' "$source") ]]; then
      echo "$name($(word 'fails at' "$source"))" > "$work/line"
      reported_line "$source" "$work" "$start" > "$work/found"
      verdict "$name at $start: the line of the report" 0 0 "$work/line" "$work/found"
    fi
  done
  if [[ -z ${TAVREL_TP3:-} && -z $(word 'differs from fpc:' "$source") ]]; then
    expected_from_free_pascal "$source" > "$work/expected"
    free_pascal "$source" "$work/actual" "$work"
    code=$?
    # Free Pascal numbers run-time errors in its own way.
    if [[ ${wanted:-0} == 4 && $code -ge 200 && $code -le 217 ]]; then code=4; fi
    verdict "$name by Free Pascal" "$code" "${wanted:-0}" "$work/expected" "$work/actual"
  fi
}

show() {
  local code
  work=$(mktemp -d)
  trap 'rm -rf "$work"' EXIT
  section input "$1" > "$work/input"
  chained "$1" "$work" "${starts[0]}"
  "$tp3" "$1" -o "$work/P.COM" > "$work/messages" 2>&1 || { cat "$work/messages"; return 1; }
  run_program "$work/P.COM" "$1" "$work/actual" "$work"
  code=$?
  cat "$work/actual"
  return "$code"
}

case ${1:-} in
--one)
  one "$2"
  exit
  ;;
--show)
  show "$2"
  exit
  ;;
esac

for program in "$tp3" "$msxrun" "$peer"; do
  if [[ ! -x $program ]]; then
    echo "missing: ${program:-fpc}"
    echo "0 passed, 1 failed"
    exit 1
  fi
done
report=$(mktemp)
trap 'rm -f "$report"' EXIT
find "$here" -maxdepth 1 -name "*${1:-}*.PAS" -print0 | sort -z | xargs -0 -P2 -n1 "$here/suite.sh" --one > "$report"
grep -v '^ok ' "$report"
passed=$(grep -c '^ok ' "$report")
failed=$(grep -c '^FAIL ' "$report")
echo "$passed passed, $failed failed"
((passed > 0 && failed == 0))
