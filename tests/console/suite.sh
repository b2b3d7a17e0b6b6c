#!/bin/bash
# The run-time library on an MSX2 that we did not write: openMSX with C-BIOS. Screen, keyboard and time, and some of the
# programs of tests/pascal, which must write the same there as in msxrun. Pictures lie in out/console afterwards.
# Needs out/bin/tp3, pasmo, openMSX.   tests/console/suite.sh [FILTER]
# Last line: N passed, N failed. Exit code 0 when nothing failed.
# Needs no display.
set -u
root=$(cd "$(dirname "$0")/../.." && pwd)
here=$root/tests/console
work=$root/out/console
filter=${1:-}
export LC_ALL=C.UTF-8
source "$root/tests/msxlib/msx.sh"
passed=0
failed=0
rm -rf "$work"
mkdir -p "$work"
prepare_msx "$work" || exit 1

wanted() { [[ $1 == *"$filter"* ]]; }

# same NAME EXPECTED ACTUAL
same() {
  if [[ $3 == "$2" ]]; then
    passed=$((passed + 1))
  else
    printf 'FAIL %s\n     expected: %s\n     found:    %s\n' "$1" "$2" "$3"
    failed=$((failed + 1))
  fi
}

# compiled SOURCE: its program in a folder of its own.
compiled() {
  local name
  name=$(basename "$1" .PAS)
  mkdir -p "$work/$name"
  "$root/out/bin/tp3" "$1" -o "$work/$name/$name.COM" > "$work/$name/compiler.txt" 2>&1 || cat "$work/$name/compiler.txt" >&2
  echo "$work/$name/$name.COM"
}

# rows RESULT: the lines of the text screen, 40 characters each from the beginning of the video memory, blanks cut off.
rows() { head -c 960 "$1.vram" | tr '\0' ' ' | fold -w 40 | sed 's/ *$//' | sed -e :a -e '/^\n*$/{$d;N;ba' -e '}'; }

if wanted SCREEN; then
  program=$(compiled "$here/programs/SCREEN.PAS")
  same "SCREEN runs" stopped "$(on_the_msx "$program" 3)"
  same "SCREEN shows what it must" "line 1
 line 2

   line 4

    line 5
     line 6
       line 8
        line 9
         line 10




ReXY




                             corner" "$(rows "${program%.COM}")"
fi

# pauses FILE FROM WANTED...: the times between the marks from FROM on, as wanted where they are right to two hundredths, and
# half a millisecond for what goes around them.
pauses() {
  awk -v from="$2" -v list="${*:3}" '{ time[$1] = $2 }
    END {
      count = split(list, wanted, " ")
      for (i = 1; i <= count; ++i) {
        took = (time[from + i] - time[from + i - 1]) * 1000
        right = took > wanted[i] * 0.98 && took < wanted[i] * 1.02 + 0.5
        printf("%s%s", (i > 1 ? " " : ""), (right ? wanted[i] : sprintf("%.2f", took)))
      }
    }' "$1"
}

# delays MACHINE HERTZ: a machine of 3.58 MHz, or one with a faster processor.
delays() {
  local program speed="0 {set z80_freq_locked off; set z80_freq $2}"
  export TAVREL_MACHINE=$1
  program=$(compiled "$here/programs/DELAY.PAS")
  same "DELAY ends ($1, $2 Hz)" ended "$(on_the_msx "$program" 5 "$speed")"
  same "DELAY waits as long as it says ($1, $2 Hz)" "1000 100 10" "$(pauses "${program%.COM}.times" 1 1000 100 10)"
  if [[ $1 == C-BIOS_MSX2 ]]; then
    same "DELAY waits with 50 frames ($2 Hz)" "1000 100 10" "$(pauses "${program%.COM}.times" 5 1000 100 10)"
  fi
  program=$(compiled "$here/programs/PACE.PAS")
  same "PACE ends ($1, $2 Hz)" ended "$(on_the_msx "$program" 5 "$speed")"
  same "PACE keeps it ($1, $2 Hz)" "200 1000 50" "$(pauses "${program%.COM}.times" 1 200 1000 50)"
  unset TAVREL_MACHINE
}

# 50 and 60 frames a second, and processors of 3.58, 7.16 and 28.6 MHz.
if wanted DELAY; then
  delays C-BIOS_MSX2 3579545
  delays C-BIOS_MSX2 7159090
  delays C-BIOS_MSX2 28636360
  delays C-BIOS_MSX1 7159090
  delays C-BIOS_MSX1_JP 3579545
fi

# The BIOS of C-BIOS looks at the keyboard only when its first count of 255 frames is over.
if wanted KEYS; then
  program=$(compiled "$here/programs/KEYS.PAS")
  same "KEYS ends" ended "$(on_the_msx "$program" 12 '3 {type "a"} 4 {type "bcx\b"} 5 {type "d\r"} 6 {type "-32\r"}')"
  same "KEYS reads them" "1 a
<bcd>
-64" "$(tr -d '\r' < "${program%.COM}.text" | grep -v '^b\|^-32')"
fi

# plain NAME: a program of tests/pascal without input.
plain() {
  local program source=$root/tests/pascal/$1.PAS
  wanted "$1" || return 0
  program=$(compiled "$source")
  same "$1 ends" ended "$(on_the_msx "$program" 40)"
  same "$1 writes what it does elsewhere" "$(sed -n '/^{ output$/,/^}$/p' "$source" | sed '1d;$d')" \
    "$(tr -d '\r' < "${program%.COM}.text")"
}
for name in DRVSTORE MBEASTER MBDIAMND MBPOKER HPGRAPH HPMARK LXSTRS2 REAL1 REALFMT RSTATS TEXT1 TYPED1 UNTYPD1; do
  plain "$name"
done

echo "$passed passed, $failed failed"
((failed == 0 && passed > 0))
