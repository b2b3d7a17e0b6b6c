#!/bin/bash
# The compiler in DOS and the native one must make the same bytes: TP3.EXE compiles every program of tests/pascal in one
# run of DOSBox, as the product does it, and the chain images are compared with those of out/bin/tp3 --chn. And what it
# tells on the console meanwhile, which must not get into the file of its standard output.
#   tests/dosbuild/suite.sh [folder with TP3.EXE]
# Last line: N passed, N failed. Exit code 0 when nothing failed.
# Needs no display.
set -u
root=$(cd "$(dirname "$0")/../.." && pwd)
programs=${1:-$root/out/build/dos/kit/dos}
tp3=$root/out/bin/tp3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
passed=0
failed=0

if [[ ! -f $programs/TP3.EXE || ! -x $tp3 ]]; then
  echo "missing: $programs/TP3.EXE or $tp3"
  echo "0 passed, 1 failed"
  exit 1
fi
mkdir "$work/native"
cp "$programs/TP3.EXE" "$root"/tests/pascal/*.PAS "$work" || exit 1
nasm -f bin -o "$work/CONSOLE.COM" "$root/tests/dosbuild/console.asm" || exit 1
{
  echo 'begin'
  for ((line = 2; line < 400; ++line)); do echo "  WriteLn($line);"; done
  echo 'end.'
} > "$work/LONG.PAS"
# As much as a library of one's own grows to: 25,000 lines, 2,000 names. The symbols must leave room in DOS for the rest.
awk -v count=1000 'BEGIN {
  print "program Large;\nvar"
  for (i = 1; i <= count; i++) printf "  Global%d: Integer;\n", i
  for (i = 1; i <= count; i++) {
    printf "{ Work%d adds what it is given\n  to a variable of its own,\n  and gives the sum back. }\n", i
    printf "function Work%d(x: Integer): Integer;\nvar\n  k: Integer;\nbegin\n  k := x;\n", i
    for (j = 0; j < 3; j++)
      printf "  if k > 10 then\n    k := k - Global%d\n  else\n    k := k + %d;\n", i, j
    printf "  Global%d := Global%d + k;\n  Work%d := Global%d;\nend;\n\n", i, i, i, i
  }
  print "begin"
  for (i = 1; i <= count; i += 40) printf "  WriteLn(Work%d(%d));\n", i, i
  print "end."
}' > "$work/LARGE.PAS"
{
  printf '@echo off\r\n'
  for source in "$work"/*.PAS; do
    name=$(basename "$source" .PAS)
    printf 'TP3 %s /H /S2E9B /ED200 /R%s.ERR > %s.TXT\r\n' "$name" "$name" "$name"
  done
  printf 'CONSOLE LONG /H /S2E9B /ED200 /RLONG.ERR > LONG.TXT\r\n'
} > "$work/GO.BAT"
SDL_VIDEODRIVER=dummy SDL_AUDIODRIVER=dummy timeout 900 dosbox \
  -conf "$root/share/program/compiler/temp.conf" "$work/GO.BAT" -noconsole -exit > /dev/null 2>&1

for source in "$work"/*.PAS; do
  name=$(basename "$source" .PAS)
  native=$work/native/$name.CHN
  if ! "$tp3" "$source" --chn -o "$native" --start 2E9B --end D200 > "$work/messages" 2>&1; then
    echo "FAIL $name: $(head -1 "$work/messages")"
    failed=$((failed + 1))
  elif cmp "$native" "$work/$name.CHN"; then
    passed=$((passed + 1))
  else
    echo "FAIL $name: TP3.EXE makes other bytes; it says: $(head -2 "$work/$name.TXT")"
    failed=$((failed + 1))
  fi
done

same() { # NAME EXPECTED FOUND
  if [[ $2 == "$3" ]]; then
    passed=$((passed + 1))
  else
    printf 'FAIL %s: expected\n%s\nfound\n%s\n' "$1" "$2" "$3"
    failed=$((failed + 1))
  fi
}
console=$(tr '\r' '\n' < "$work/CONSOLE.TXT" | sed 's/ *$//' | grep -v '^$')
same "the console tells how far the compiler is" "$(printf '%s\n' 'Checking line '{128,256,384} 'Compiling line '{128,256,384})" "$console"
same "and ends on an empty line" "$(printf '\r%18s\r' '' | od -c)" "$(tail -c 20 "$work/CONSOLE.TXT" | od -c)"
same "which is not in the report of the sizes" "Code: Free: Data:" "$(cut -d' ' -f1 "$work/LONG.TXT" | tr -d '\r' | paste -sd' ')"
echo "$passed passed, $failed failed"
((passed > 0 && failed == 0))
