#!/bin/bash
# A user's way with the whole program and the real DOSBox: a new project from a template, an include, save, close and
# reopen; then builds with errors in every place, builds inside builds, and folders of just the size of a disk.
set -u
source "$(dirname "$0")/../acceptance/using.sh"

# The program comes from a folder of its own: its recent list starts empty, and it offers the New Project dialog.
program=$work.program
cp -r "$root/out/Tavrel" "$program"
rm -f "$program/config.cfg"

new_project() {
  local game=$work/game before
  mkdir "$game"
  start
  drive template TextMode --autoexec > /dev/null
  same "the main file is asked for" "New File" "$(drive file "$(windows_name "$game/game")")"
  same "the new project's tree" $'game [2]\n  *GAME.PAS [2]\n    SCREEN.INC [3]' "$(drive tree)"
  same "AUTOEXEC.BAT starts the program" "53455420455850455254204f4e0d0d0a47414d450d0d0a" \
    "$(od -An -v -tx1 "$game/AUTOEXEC.BAT" | tr -d ' \n')"
  same "the project file names it" "game|2E9B|D200|$(windows_name "$game/game.pas")|" \
    "$(tr -d '\r' < "$game/game.tpj" | tr '\n' '|')"
  drive type '{ my own line }' > /dev/null
  drive go-to-line 11 > /dev/null
  drive menu mnuNewInc > /dev/null
  same "an include's name is asked for" "New Include file" "$(drive file "$(windows_name "$game/mine.inc")")"
  same "its directive is offered" 'Tavrel: Insert {$i mine.inc} at the current cursor position?' "$(drive answer Yes)"
  check "the include is shown" "Current View: MINE.INC" "$(drive status)"
  drive type 'procedure Mine; begin end;' > /dev/null
  drive menu mnuSaveFile > /dev/null
  drive click-node GAME.PAS > /dev/null
  check "the directive stands on its own line" $'\n{$i mine.inc }\n' "$(drive text)"
  check "the code stands where it was typed" '{ my own line }' "$(drive text)"
  check "the project builds" "No errors - Sucessfully compiled" "$(drive compile-and-report)"
  drive menu mnuSavePrj > /dev/null
  before=$(drive text)
  stop
  same "the program ends" "ended 0" "$ended"
  same "the project has been saved" "game|2E9B|D200|GAME.PAS|" "$(tr -d '\r' < "$game/game.tpj" | tr '\n' '|')"

  start
  check "the next start offers a new project" "New Project" "$(drive answer Cancel)"
  drive menu 'mnurecent(0)' > /dev/null
  same "the recent entry brings all back" $'game [2]\n  *GAME.PAS [2]\n    MINE.INC [3]\n    SCREEN.INC [3]' "$(drive tree)"
  same "the text is what it was" "$before" "$(drive text)"
  check "the view too" "Current View: GAME.PAS" "$(drive status)"
  drive click-node MINE.INC > /dev/null
  same "the include's text too" "procedure Mine; begin end;" "$(drive text)"
  stop
}

# write_nest NAME: MAIN.PAS includes A.INC, that B.INC, and that C.INC, which is one level too deep for the tree.
write_nest() {
  mkdir -p "$1"
  printf 'program Main;\r\n{$I A.INC}\r\nbegin\r\n  A\r\nend.\r\n' > "$1/MAIN.PAS"
  printf '{$I B.INC}\r\nprocedure A;\r\nbegin\r\n  B\r\nend;\r\n' > "$1/A.INC"
  printf '{$I C.INC}\r\nprocedure B;\r\nbegin\r\n  C\r\nend;\r\n' > "$1/B.INC"
  printf 'procedure C;\r\nbegin\r\nend;\r\n' > "$1/C.INC"
  printf 'Main\r\n2E9B\r\nD200\r\nMAIN.PAS\r\n' > "$1/MAIN.TPJ"
}

# failing_line NAME FILE LINE VIEW: breaks that line, builds, and looks where the editor goes. For a file that the tree does
# not have the compiler gives the place of its directive.
failing_line() {
  write_nest "$nest"
  sed -i "$3s/.*/] broken\r/" "$nest/$2"
  check "$1 is told" "file  : $4: line $3, column" "$(drive compile-and-report)"
  check "$1 is marked" "line $3 column 1 highlighted $3" "$(drive caret)"
  check "$1 is shown" "Current View: $4" "$(drive status)"
}

kit_left() { ls "$nest" | grep -c -i -E 'tp3|runtime|dos2cash|turbopc|errors'; }
await_quiet() { # until the last build has taken its kit away
  local tries
  for ((tries = 0; tries < 300; ++tries)); do
    [[ $(kit_left) == 0 ]] && break
    sleep 0.1
  done
  sleep 0.5
}

errors_in_every_file() {
  nest=$work/nest
  write_nest "$nest"
  start "$nest/MAIN.TPJ"
  same "the tree ends at the second level" $'Main [2]\n  *MAIN.PAS [2]\n    A.INC [2]\n      B.INC [3]' "$(drive tree)"
  failing_line "an error in an include of an include" B.INC 3 B.INC
  failing_line "an error in the last line of an include" A.INC 5 A.INC
  failing_line "an error in the first line of the main file" MAIN.PAS 1 MAIN.PAS
  failing_line "an error in the last line of the main file" MAIN.PAS 5 MAIN.PAS
  failing_line "an error in a file that is not in the tree" C.INC 1 B.INC
  check "and its own place is in the text" "in C.INC, line 1, column 1" "$(drive outcome)"

  # Two builds at once are left to the tests with a stand-in for DOSBox: which of two DOSBoxes comes first in one folder
  # is anybody's guess.
  write_nest "$nest"
  drive escape > /dev/null
  drive menu mnuCompile > /dev/null
  drive escape > /dev/null
  check "after Esc the outcome opens the window again" "No errors - Sucessfully compiled" "$(drive outcome)"
  await_quiet

  # F7 makes the chain file alone.
  find "$nest" -iname 'MAIN.C*' -delete
  echo 'an older program' > "$nest/MAIN.COM"
  drive escape > /dev/null
  drive menu mnuCompileCHN > /dev/null
  check "F7 compiles" "No errors - Sucessfully compiled" "$(drive outcome)"
  await_quiet
  check "F7 makes a chain file" "MAIN.CHN" "$(ls "$nest" | tr a-z A-Z)"
  same "F7 leaves an older program alone" 'an older program' "$(cat "$nest/MAIN.COM")"

  # A folder that just fits on a disk, and one byte more.
  find "$nest" -iname 'MAIN.C*' -delete
  truncate -s $((737280 - $(cat "$nest"/* | wc -c))) "$nest/FILL.DAT"
  check "a folder of 737280 bytes builds" "No errors" "$(drive compile-and-report)"
  find "$nest" -iname 'MAIN.C*' -delete
  printf x >> "$nest/FILL.DAT"
  same "one byte more is refused" "The project directory 
$(windows_name "$nest")\\
cannot have more than 720kb of files" "$(drive compile-and-report)"
  stop
  same "the program ends after all that" "ended 0" "$ended"
}

# Names that DOS cannot hold.
long_names() {
  local names=$work/names
  mkdir "$names"
  printf 'begin\r\n{$I LongInclude.inc}\r\nend.\r\n' > "$names/SHORT.PAS"
  printf '\r\n' > "$names/LongInclude.inc"
  printf 'begin\r\nend.\r\n' | tee "$names/LongNameHere.pas" > "$names/My game.pas"
  printf 'S\r\n2E9B\r\nD200\r\nSHORT.PAS\r\n' > "$names/SHORT.TPJ"
  printf 'L\r\n2E9B\r\nD200\r\nLongNameHere.pas\r\n' > "$names/LONG.TPJ"
  printf 'B\r\n2E9B\r\nD200\r\nMy game.pas\r\n' > "$names/BLANK.TPJ"
  start "$names/SHORT.TPJ"
  check "an include with a long name is named" "Error : 90 - File not found: LONGINCLUDE.INC (DOS takes" \
    "$(drive compile-and-report)"
  check "and its directive marked" "line 2 column 1 highlighted 2" "$(drive caret)"
  stop
  start "$names/LONG.TPJ"
  check "a main file with a long name is named" "File not found: LONGNAMEHERE.PAS (DOS takes" "$(drive compile-and-report)"
  stop
  start "$names/BLANK.TPJ"
  check "a main file with a blank in its name is named" "File not found: MY GAME.PAS (DOS takes" \
    "$(drive compile-and-report)"
  stop
}

new_project
errors_in_every_file
long_names
summary
