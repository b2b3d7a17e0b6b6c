#!/bin/bash
# The templates as a user has them: a new project of each from the New Project dialog, built by F6 with the real DOSBox, and
# run: those for the console by msxrun, the others on an emulated MSX2. Pictures of the program with each project, and of
# the MSX, lie in out/templates afterwards. Needs what the acceptance suite needs, openMSX and pasmo.
set -u
source "$(dirname "$0")/../acceptance/using.sh"
source "$root/tests/msxlib/msx.sh"
pictures=$root/out/templates
rm -rf "$pictures"
mkdir -p "$pictures" "$work.msx"
prepare_msx "$work.msx"

# The program comes from a folder of its own: without settings it offers the New Project dialog.
program=$work.program
cp -r "$root/out/Tavrel" "$program"
rm -f "$program/config.cfg"

# build TEMPLATE NAME: a new project NAME of it, compiled; what the tree shows goes to $tree, the folder to $folder.
build() {
  folder=$work/$1
  mkdir "$folder"
  start
  drive template "$1" > /dev/null
  drive file "$(windows_name "$folder/$2")" > /dev/null
  tree=$(drive tree)
  check "F6 builds the template $1" "No errors - Sucessfully compiled" "$(drive compile-and-report --key)"
  import -window root "$pictures/$1.png" 2> /dev/null
  stop
  made=$(find "$folder" -iname "$2.COM")
  same "$1: it is what the compiler makes elsewhere" "same" \
    "$(cd "$folder" && "$root/out/bin/tp3" "$2.pas" -o "$work.msx/elsewhere.com" > /dev/null 2>&1
      cmp "$made" "$work.msx/elsewhere.com" 2>&1 && echo same)"
}

# typed TEXT: what the program writes when that is typed.
typed() { (cd "$folder" && printf "$1" | "$root/out/bin/msxrun" --limit 2G "$made" 2>&1 | tr -d '\r'); }

# played SECONDS MOMENT [SCRIPT]: the program on the MSX, and what templates.pl wants to see then.
played() {
  local here=$work.msx/play
  rm -rf "$here"
  mkdir "$here"
  cp "$made" "$here/PLAY.COM"
  same "$2: it runs" stopped "$(on_the_msx "$here/PLAY.COM" "$1" "${3:-}")"
  same "$2: it shows what it must" "" "$(perl "$root/tests/msxlib/templates.pl" "$2" "$here/PLAY" 2>&1)"
  cp "$here/PLAY.png" "$pictures/$2.png"
}

build Empty nothing
same "the empty program does nothing" "" "$(typed '')"
build TextMode words
check "the program in text mode greets" "Hello, MSX!" "$(typed ' ')"
played 4 TEXTMODE
build Graphics drawing
check "the tree shows the libraries" "DRAW.LIB" "$tree"
played 8 GRAPHICS
build Game meteors
played 6.5 START '4 {keymatrixdown 8 1} 4.3 {keymatrixup 8 1} 4.5 {keymatrixdown 8 0x80}'
build Picture show
played 25 PATTERN
build Sound tune
played 10 MUSIC '6 {keymatrixdown 0 2} 6.1 {keymatrixup 0 2}'
build Files scores
check "the program with files keeps a table" "2. Ann              45" "$(typed 'Ann\r45\r')"
build Includes words
check "an include of an include is in the tree" "      WORDS.INC" "$tree"
check "the program in several files plays" "You have" "$(typed "$(printf '%s\\r' e t a o i n s r h l d c u m f p g w y b v k x j q z)")"

build Chain pair
start "$folder/pair.tpj"
drive menu mnuFileOpen > /dev/null
drive file "$(windows_name "$folder/SECOND.PAS")" > /dev/null
drive menu mnuCompileCHN --key > /dev/null
check "F7 makes the second part" "No errors - Sucessfully compiled" "$(drive outcome)"
stop
check "the pair goes over" "Their sum is 385." "$(typed '')"

summary
