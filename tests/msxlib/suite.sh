#!/bin/bash
# The MSX library and the templates on an MSX2 that we did not write: openMSX with C-BIOS. Each program is compiled by
# out/bin/tp3 and run; what it left in the video memory, the palette, the sound generator and on the console is compared
# with what expect.pl works out by itself. Pictures of all lie in out/msxlib afterwards.
# Needs out/bin/tp3 and msxrun, pasmo, Perl, openMSX, ImageMagick.   tests/msxlib/suite.sh [FILTER]
# Last line: N passed, N failed. Exit code 0 when nothing failed.
# Needs no display.
set -u
root=$(cd "$(dirname "$0")/../.." && pwd)
here=$root/tests/msxlib
share=$root/share/program
work=$root/out/msxlib${TAVREL_BOOT:+-$TAVREL_BOOT}
filter=${1:-}
export LC_ALL=C.UTF-8 MAGICK_THREAD_LIMIT=1
source "$here/msx.sh"
passed=0
failed=0
rm -rf "$work"
mkdir -p "$work"
prepare_msx "$work" || exit 1

# same NAME EXPECTED ACTUAL
same() {
  if [[ $3 == "$2" ]]; then
    passed=$((passed + 1))
  else
    printf 'FAIL %s\n     expected: %s\n     found:    %s\n' "$1" "$2" "$3"
    failed=$((failed + 1))
  fi
}

# compiled NAME MODE: the folder of a test program, with the library as it is delivered, for a screen mode.
compiled() {
  local folder=$work/$1$2
  mkdir -p "$folder"
  cp "$here/programs/$1.PAS" "$share"/library/*.LIB "$folder"
  echo "const Mode = $2;" > "$folder/MODE.INC"
  (cd "$folder" && "$root/out/bin/tp3" "$1.PAS" > compiler.txt 2>&1) || cat "$folder/compiler.txt" >&2
  echo "$folder"
}

# example NAME [MODE [SCRIPT [MOUSE]]]
example() {
  local mode=${2:-} folder
  [[ $1$mode == *"$filter"* ]] || return 0
  folder=$(compiled "$1" "$mode")
  if [[ $1 == LOADING ]]; then perl "$here/expect.pl" "FILES$mode" "$folder/$1"; fi
  same "$1 $mode runs to its end" ended "$(on_the_msx "$folder/$1.COM" '' "${3:-}" "${4:-}")"
  same "$1 $mode left what it must" "" "$(perl "$here/expect.pl" "$1$mode" "$folder/$1" 2>&1)"
}

# What help and autocomplete list is read from the library: a heading of one line, its comment just above.
if [[ headings == *"$filter"* ]]; then
  same "every routine has its comment" "" "$(perl -ne 's/\r?\n//; $bad = /^(procedure|function) (\w+)/ && ($last !~ /^\{ .*\}$/ || !/;$/);
    print "$2 " if $bad; $last = $_' "$share"/library/*.LIB)"
fi

example VRAM
example TIMING
example SPEED
example CLOCKS
for mode in 1 40 80; do example TEXTMODE "$mode"; done
for mode in 5 6 7 8; do example DRAW "$mode"; done
for mode in 2 5 8; do example SPRITES "$mode"; done
for mode in 5 8; do example LOADING "$mode"; done
example SOUNDS
# Rows 8, 4, 0, 2, 7 and 6 of the keyboard; the program looks every third or, with 50 frames, four tenths of a second.
example KEYS '' '0.1 {plug joyporta magic-key}
  0.5 {keymatrixdown 8 0x20} 0.9 {keymatrixdown 8 0x80} 1.3 {keymatrixup 8 0x20} 1.7 {keymatrixdown 8 0x41}
  2.1 {keymatrixup 8 0xFF; keymatrixdown 8 0x10; keymatrixdown 4 0x40}
  2.5 {keymatrixup 8 0xFF; keymatrixup 4 0x40; keymatrixdown 0 0x80; keymatrixdown 2 0x80}
  2.9 {keymatrixup 0 0x80; keymatrixup 2 0x80; keymatrixdown 7 0x80; keymatrixdown 6 0x03}' '-100 27'

# The templates, as a new project gets them: with the libraries that they include.
# sprout TEMPLATE: makes its folder and the program in it.
sprout() {
  local folder=$work/$1 library
  mkdir -p "$folder"
  cp "$share/projects/$1"/* "$folder"
  for library in $(grep -hoE '^\{\$I [A-Z0-9]+\.LIB\}' "$folder"/*.[pP][aA][sS] | sed 's/{\$I //; s/}//'); do
    cp "$share/library/$library" "$folder"
  done
  same "template $1 compiles" "" "$(cd "$folder" && "$root/out/bin/tp3" "$1.pas" -o "$1.COM" 2>&1 | grep -v -E '^(Code|Free|Data): ')"
}
# played TEMPLATE SECONDS HOW MOMENT [SCRIPT]
played() {
  same "template $1 runs ($4)" "$3" "$(on_the_msx "$work/$1/$1.COM" "$2" "${5:-}")"
  mv "$work/$1/$1.png" "$work/$1/$4.png"
  same "template $1 shows what it must ($4)" "" "$(perl "$here/templates.pl" "$4" "$work/$1/$1" 2>&1)"
}
# typed TEMPLATE TEXT: what it writes on the console when that is typed, in its folder.
typed() { (cd "$work/$1" && printf "$2" | "$root/out/bin/msxrun" --limit 2G "$1.COM" 2>&1 | tr -d '\r'); }

templates() {
  local name
  for name in $(ls "$share/projects"); do sprout "$name"; done
  same "Empty does nothing" "" "$(typed Empty '')"
  same "TextMode greets" 1 "$(typed TextMode ' ' | grep -c 'Hello, MSX!')"
  played TextMode 4 stopped TEXTMODE
  same "Files makes a table" "There is no table yet: a new one is made.
Your name: Ann
Your points: 45
Place 2.

1. Nobody           50
2. Ann              45
3. Nobody           40
4. Nobody           30
5. Nobody           20" "$(typed Files 'Ann\r45\r')"
  same "Files keeps it" "Your name: Bob
Your points: 99
Place 1.

1. Bob              99
2. Nobody           50
3. Ann              45
4. Nobody           40
5. Nobody           30" "$(typed Files 'Bob\r99\r')"
  same "Files refuses few points" "Not enough for the table." "$(typed Files 'Cy\r30\r' | sed -n 3p)"
  same "Files refuses what is no number" "That is no number." "$(typed Files 'Cy\rfew\r' | sed -n 3p)"
  same "Includes ends with the word" 1 \
    "$(typed Includes "$(printf '%s\\r' e t a o i n s r h l d c u m f p g w y b v k x j q z)" |
      grep -c -E 'You have (not found it. It was|found it:) [A-Z]{6,9}$')"
  same "Chain misses its second part" "SECOND.CHN is not there: open SECOND.PAS and press F7." "$(typed Chain '' | tail -n 1)"
  (cd "$work/Chain" && "$root/out/bin/tp3" SECOND.PAS --chn > second.txt 2>&1)
  same "Chain goes over to it" "This is the first part.
It has worked out 10 numbers.
This is the second part. Squares:
    1    4    9   16   25   36   49   64   81  100
Their sum is 385." "$(typed Chain '')"
  played Graphics 8 stopped GRAPHICS
  played Graphics 9 ended TEXT '7 {keymatrixdown 8 1}'
  played Game 5 stopped TITLE
  played Game 6.5 stopped START '4 {keymatrixdown 8 1} 4.3 {keymatrixup 8 1} 4.5 {keymatrixdown 8 0x80}'
  played Game 12 stopped FIRE '4 {keymatrixdown 8 1}'
  played Game 60 stopped OVER '4 {keymatrixdown 8 1} 4.3 {keymatrixup 8 1}'
  played Game 10 ended TEXT '4 {keymatrixdown 8 1} 6 {keymatrixdown 7 4}'
  played Picture 25 stopped PATTERN
  touch -d '2000-01-01' "$work/Picture/PICTURE.SC5"
  played Picture 6 stopped PATTERN
  same "Picture does not save it again" 2000 "$(date -r "$work/Picture/PICTURE.SC5" +%Y)"
  played Sound 10 stopped MUSIC '6 {keymatrixdown 0 2} 6.1 {keymatrixup 0 2}'
  played Sound 10 ended TEXT '6 {keymatrixdown 7 4}'
}
if [[ templates == *"$filter"* ]]; then templates; fi

echo "$passed passed, $failed failed"
((failed == 0 && passed > 0))
