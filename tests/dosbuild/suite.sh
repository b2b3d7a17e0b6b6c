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
cp "$programs/TP3.EXE" "$root"/tests/pascal/*.PAS "$root"/tests/pascal/*.INC "$work" || exit 1
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
# The limits: a body of 20,000 statements, 100,000 lines, 20,000 names. And a program with overlay files.
awk -v count=20000 'BEGIN {
  print "program Body; var k, j: Integer; a: array[0..9] of Integer;\nbegin k := 0; j := 1;"
  for (i = 3; i < count; i++)
    if (i % 40 == 0) printf "  if k > %d then k := k - 1;\n", i
    else if (i % 40 == 1) printf "  a[%d] := k;\n", i % 10
    else print "  k := k + j;"
  print "  WriteLn(k)\nend."
}' > "$work/BODY.PAS"
# Of 100,000 lines one file may have 65,535.
for part in A B; do
  awk -v count=50000 -v part="$part" 'BEGIN {
    for (line = 0; line < count - 51; line += 51) {
      printf "procedure %s%d;\n{ a comment\n  of two lines }\nvar k: Integer;\nbegin\n", part, ++routine
      for (j = 0; j < 45; j++) printf "  k := g + %d;\n", j
      print "end;"
    }
    for (; line < count; line++) print "{ and one line more }"
  }' > "$work/LINES$part.INC"
done
printf 'program Lines;\nvar g: Integer;\n{$I LINESA.INC}\n{$I LINESB.INC}\nbegin\n  g := 1; A1; B1; WriteLn(g)\nend.\n' > "$work/LINES.PAS"
awk -v count=20000 'BEGIN {
  print "program Names;\nconst"
  for (i = 1; i <= count - 1001; i++) printf "  Constant%d = %d;\n", i, i
  print "var"
  for (i = 1; i <= 1000; i++) printf "  Variable%d: Byte;\n", i
  print "begin"
  for (i = 1; i <= 1000; i += 20) printf "  Variable%d := Lo(Constant%d); WriteLn(Variable%d);\n", i, i * 18, i
  print "end."
}' > "$work/NAMES.PAS"
"$root/tests/overlays/large.sh" > "$work/OVERLAY.PAS"
# Beyond them there is error 98, also in what no machine's memory could hold.
mkdir "$work/beyond"
awk 'BEGIN { print "var k, j: Integer;\nbegin\n  Exit;"; for (i = 0; i < 70000; i++) print "  k := (k + j) * j;"; print "end." }' > "$work/beyond/MANY.PAS"
{
  printf '@echo off\r\n'
  for source in "$work"/*.PAS; do
    name=$(basename "$source" .PAS)
    printf 'TP3 %s /H /S2E9B /ED200 /R%s.ERR > %s.TXT\r\n' "$name" "$name" "$name"
  done
  printf 'CONSOLE LONG /H /S2E9B /ED200 /RLONG.ERR > LONG.TXT\r\n'
} > "$work/GO.BAT"
in_dos() { # SECONDS SCRIPT: runs it as the product does
  SDL_VIDEODRIVER=dummy SDL_AUDIODRIVER=dummy timeout "$1" dosbox \
    -conf "$root/share/program/compiler/temp.conf" "$2" -noconsole -exit > /dev/null 2>&1
}
in_dos 900 "$work/GO.BAT"

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

for native in "$work"/native/*.[0-9][0-9][0-9]; do
  if cmp "$native" "$work/$(basename "$native")"; then
    passed=$((passed + 1))
  else
    echo "FAIL $(basename "$native"): TP3.EXE makes another overlay file"
    failed=$((failed + 1))
  fi
done

# in_memory MEGABYTES XMS NAME: compiles it on such a machine; the number of the error, or of bytes of the sizes.
in_memory() {
  rm -f "$work/beyond/$3."{ERR,TXT,CHN}
  sed -E "s/^memsize=.*/memsize=$1/; s/^xms=.*/xms=$2/" "$root/share/program/compiler/temp.conf" > "$work/machine.conf"
  printf 'TP3 %s /H /S2E9B /ED200 /R%s.ERR > %s.TXT\r\n' "$3" "$3" "$3" > "$work/beyond/GO.BAT"
  SDL_VIDEODRIVER=dummy SDL_AUDIODRIVER=dummy timeout 300 dosbox -conf "$work/machine.conf" "$work/beyond/GO.BAT" \
    -noconsole -exit > /dev/null 2>&1
  if [[ -f $work/beyond/$3.CHN ]]; then echo compiled; else cut -d, -f4 "$work/beyond/$3.ERR"; fi
}
cp "$programs/TP3.EXE" "$work/BODY.PAS" "$work/beyond"

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

# Sources that are wrong in ways which hung the compiler or led the IDE astray. The record must be the native compiler's.
wrong=$work/wrong
mkdir "$wrong"
cp "$programs/TP3.EXE" "$wrong" || exit 1
for device in CON NUL AUX PRN COM1 LPT1 'CLOCK$'; do
  printf 'begin\r\n{$I %s.INC}\r\nend.\r\n' "$device" > "$wrong/D_${device%?}.PAS"
done
printf 'begin\r\n{$I con}\r\nend.\r\n' > "$wrong/D_NOEXT.PAS"
printf '\xef\xbb\xbfbegin\r\n  x := 1\r\nend.\r\n' > "$wrong/MARK.PAS"
printf 'begin\r\n{$I PART}\r\nend.\r\n' > "$wrong/NOEXT.PAS"
printf '\r\n  wrong\r\n' > "$wrong/PART.PAS"
{ for ((line = 0; line < 65540; ++line)); do printf '\n'; done; echo 'begin end;'; } > "$wrong/LONG.PAS"
{
  printf '@echo off\r\n'
  for source in "$wrong"/*.PAS; do
    name=$(basename "$source" .PAS)
    printf 'TP3 %s /S2E9B /ED200 /R%s.ERR > %s.TXT\r\n' "$name" "$name" "$name"
  done
  printf 'TP3 ..\\OTHER/PART /S2E9B /ED200 /RSLASH1.ERR > SLASH1.TXT\r\n'
  printf 'TP3 ../OTHER/PART /S2E9B /ED200 /RSLASH2.ERR > SLASH2.TXT\r\n'
  printf 'TP3 /PART /S2E9B /ED200 /RSLASH3.ERR > SLASH3.TXT\r\n'
  printf 'TP3 CON /S2E9B /ED200 /RDEVICE.ERR > DEVICE.TXT\r\n'
  printf 'TP3 MARK /H/S2E9B/ED200/RTIGHT.ERR > TIGHT.TXT\r\n'
} > "$wrong/GO.BAT"
in_dos 300 "$wrong/GO.BAT"
for source in "$wrong"/*.PAS; do
  name=$(basename "$source" .PAS)
  "$tp3" "$source" --errors "$wrong/native" > "$work/messages" 2>&1
  same "the record for $name" "$(cat "$wrong/native")" "$(cat "$wrong/$name.ERR" 2>&1)"
  rm -f "$wrong/native"
done
number() { cut -d, -f4 "$wrong/$1" 2>&1; }
for name in "$wrong"/D_*.PAS; do
  same "a device is no file: $(basename "$name")" 90 "$(number "$(basename "$name" .PAS).ERR")"
done
same "a byte order mark is skipped" '"MARK.PAS",2,3,41,' "$(grep -o '^.*,41,' "$wrong/MARK.ERR")"
same "a slash in a name" '"..\OTHER/PART",1,1,90,' "$(grep -o '^.*,90,' "$wrong/SLASH1.ERR")"
same "slashes in a name" '"../OTHER/PART",1,1,90,' "$(grep -o '^.*,90,' "$wrong/SLASH2.ERR")"
same "a slash before a name" 90 "$(number SLASH3.ERR)"
same "a device as the program" 90 "$(number DEVICE.ERR)"
same "switches without blanks between them" 41 "$(number TIGHT.ERR)"

# A full disk: no file can become longer than 8 kB, and what is longer is lost without a word.
full=$work/full
mkdir "$full"
cp "$programs/TP3.EXE" "$full" || exit 1
printf 'begin WriteLn(1) end.\r\n' > "$full/SMALL.PAS"
awk 'BEGIN {
  for (i = 0; i < 40; i++) {
    printf "procedure P%d;\nbegin\n", i
    for (j = 0; j < 50; j++) printf "  WriteLn(%d);\n", j
    print "end;"
  }
  print "begin"
  for (i = 0; i < 40; i++) printf "  P%d;\n", i
  print "end."
}' > "$full/BIG.PAS"
for name in SMALL BIG; do echo "the old one" > "$full/$name.CHN"; done
{
  printf '@echo off\r\n'
  printf 'TP3 BIG /H /S2E9B /ED200 /RBIG.ERR > BIG.TXT\r\n'
  printf 'TP3 SMALL /S2E9B /ED200 /RSMALL.ERR > SMALL.TXT\r\n'
} > "$full/GO.BAT"
(trap '' XFSZ; ulimit -f 8; in_dos 100 "$full/GO.BAT")
for name in SMALL BIG; do
  same "no room for $name is error 94" "\"$name.PAS\",1,1,94,\"Cannot write the output file: $name.CHN " \
    "$(grep -o '^.*CHN ' "$full/$name.ERR" 2>&1)"
  same "and its old image is whole" "the old one" "$(cat "$full/$name.CHN")"
done
same "nothing else is left" "" "$(cd "$full" && ls ./*'$$$' 2> /dev/null)"
sed -i 's/^TP3 SMALL /&\/H /' "$full/GO.BAT"
rm -f "$full"/*.ERR
(trap '' XFSZ; ulimit -f 8; in_dos 100 "$full/GO.BAT")
same "an image alone needs less room" "no" "$([[ -e $full/SMALL.ERR ]] && echo yes || echo no)"
same "more statements than numbers for their values are error 98" 98 "$(in_memory 16 true MANY)"
same "a long body takes more than 640 kB" 98 "$(in_memory 1 false BODY)"
same "which INT 15h gives as well" compiled "$(in_memory 16 false BODY)"
echo "$passed passed, $failed failed"
((passed > 0 && failed == 0))
