#!/bin/bash
# Programs that are too large for memory without their overlays: what they print, what happens when a file is missing or
# too short, on another drive, and when one program chains to another.
#   tests/overlays/suite.sh
# Needs no display.
# Last line: N passed, N failed. Exit code 0 when nothing failed.
set -u
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(cd "$here/../.." && pwd)
tp3=${TAVREL_TP3:-$root/out/bin/tp3}
msxrun=${TAVREL_MSXRUN:-$root/out/bin/msxrun}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
passed=0
failed=0

# expect NAME CONDITION...: counts one test.
expect() {
  local name=$1
  shift
  if "$@"; then
    passed=$((passed + 1))
  else
    failed=$((failed + 1))
    echo "FAIL $name"
    head -5 "$work/out" 2> /dev/null | sed 's/^/     /'
  fi
}

# run PROGRAM [WORDS...]: its output in $work/out; gives its exit code.
run() {
  "$msxrun" --disk "$work" --limit 2G "$work/$1" "${@:2}" < /dev/null > "$work/raw" 2> "$work/messages"
  local code=$?
  sed 's/\r$//' "$work/raw" > "$work/out"
  return "$code"
}

fails_with() { # TEXT PROGRAM: ends with a report that holds the text
  ! run "$2" && grep -q "$1" "$work/out"
}

# The large program: 170 kB of source, 50 overlay routines in groups of ten, nested routines and recursion in them, calls
# from one overlay to another, strings and reals. It prints one line a routine, then all again backwards.
"$here/large.sh" > "$work/LARGE.PAS"
"$here/large.sh" expected > "$work/expected"
size=$(stat -c %s "$work/LARGE.PAS")
expect "the large program has 170 kB of source" test "$size" -ge 170000
expect "it is compiled" "$tp3" "$work/LARGE.PAS" > "$work/out"
expect "it has overlay files" test -s "$work/LARGE.000" -a -s "$work/LARGE.004"
total=$(cat "$work"/LARGE.[0-9]* | wc -c)
expect "which would not fit in memory ($total bytes)" test "$total" -gt 45000
expect "it runs" run LARGE.COM
expect "it prints what it must" cmp "$work/expected" "$work/out"
rm -f "$work/LARGE.CHN"
expect "it is compiled to CHN" "$tp3" --chn "$work/LARGE.PAS" > "$work/out"
expect "which is smaller than what it overlays" test "$(stat -c %s "$work/LARGE.CHN")" -lt 41000

# The same with all routines in memory stays as it was: no file.
head -c 0 /dev/null > "$work/out"
cat > "$work/SMALL.PAS" << 'EOF'
overlay procedure A; begin WriteLn('a') end;
overlay procedure B; begin WriteLn('b') end;
begin A; B end.
EOF
expect "a small program is compiled" "$tp3" "$work/SMALL.PAS" > "$work/out"
expect "and has no overlay file" test ! -e "$work/SMALL.000"

# From another program, through Chain.
cat > "$work/FIRST.PAS" << 'EOF'
var f: file;
begin WriteLn('first'); Assign(f, 'LARGE.CHN'); Chain(f) end.
EOF
"$tp3" "$work/FIRST.PAS" > "$work/out"
expect "a chained program runs" run FIRST.COM
expect "and loads its overlays" cmp <(echo first; cat "$work/expected") "$work/out"

# OvrDrive: drive A is the disk, drive P does not exist here.
sed 's/^{ start }$/  OvrDrive(1);/' "$work/LARGE.PAS" > "$work/DRIVE.PAS"
"$tp3" "$work/DRIVE.PAS" > "$work/out"
expect "OvrDrive names the drive" run DRIVE.COM
expect "where the files are" cmp "$work/expected" "$work/out"
sed 's/^{ start }$/  OvrDrive(8);/' "$work/LARGE.PAS" > "$work/DRIVE.PAS"
"$tp3" "$work/DRIVE.PAS" > "$work/out"
expect "and where they are not" fails_with 'Run-time error F0, PC=' DRIVE.COM

# A file that is too short, and one that is missing.
cp "$work/LARGE.002" "$work/whole"
head -c 100 "$work/whole" > "$work/LARGE.002"
expect "a file that is too short is error F1" fails_with 'Run-time error F1, PC=' LARGE.COM
expect "after what ran before" test "$(grep -c '^R' "$work/out")" -ge 20
rm "$work/LARGE.002"
expect "a missing file is error F0" fails_with 'Run-time error F0, PC=' LARGE.COM
address=$(sed -n 's/.*, PC=\([0-9A-F]\{4\}\)$/\1/p' "$work/out")
expect "at the call" grep -q 'R21(' <(sed -n "$("$tp3" --find "$address" "$work/LARGE.PAS" 2>&1 | sed -n 's/.*(\([0-9]*\))$/\1/p')p" "$work/LARGE.PAS")
cp "$work/whole" "$work/LARGE.002"
expect "and all is well again" run LARGE.COM

echo "$passed passed, $failed failed"
((passed > 0 && failed == 0))
