#!/bin/bash
# What a user does with the whole program day by day, each journey with its name: editing, saving and switching, includes
# from elsewhere, preferences, the recent list, palettes, printing, finding, projects without a project file. Real keys,
# mouse and menu messages, real message boxes and file dialogs. Needs what the acceptance suite needs.
set -u
source "$(dirname "$0")/../acceptance/using.sh"
source "$root/tests/daily/printer.sh"
program=$work.program
cp -r "$root/out/Tavrel" "$program"
rm -f "$program/config.cfg"

journey() { # NAME: what follows belongs to it
  echo "journey: $1"
  game=$work/$((++journeys))
  mkdir "$game"
  printf 'program Main;\r\n{$I A.INC}\r\nbegin\r\n  A\r\nend.\r\n' > "$game/MAIN.PAS"
  printf 'procedure A;\r\nbegin\r\nend;\r\n' > "$game/A.INC"
  printf 'Main\r\n2E9B\r\nD200\r\nMAIN.PAS\r\n' > "$game/MAIN.TPJ"
}
journeys=0

# without_cr FILE: its text as a shell keeps it.
without_cr() { tr -d '\r' < "$1"; }
# type_at_start TEXT: at the very start of the text, by keys.
type_at_start() {
  drive go-to-line 1 > /dev/null
  drive keys "$1" > /dev/null
}
close_and_check() {
  stop
  same "the program ends" "ended 0" "$ended"
}

journey "the first start"
start
check "a new project is offered" "New Project" "$(drive answer Cancel)"
check "there is no file" "Current View: no file" "$(drive status)"
same "the tree is empty" "" "$(drive tree)"
check "what needs a project is off" "" "$(drive menu mnuCompile)"
close_and_check
same "no settings are written" "no" "$([[ -e $program/config.cfg ]] && echo written || echo no)"

journey "edit and save"
start "$game/MAIN.TPJ"
await "the project is there" "Current View: MAIN.PAS" drive status
type_at_start '{ typed }'
drive press Ctrl+S > /dev/null
await "Ctrl+S puts it into the file" "{ typed }program Main;" cat "$game/MAIN.PAS"
same "line ends stay" "5 5" "$(grep -c '' "$game/MAIN.PAS") $(grep -c $'\r$' "$game/MAIN.PAS")"
type_at_start '{ more }'
drive menu mnuSaveFile > /dev/null
await "the menu too" "{ more }{ typed }program Main;" cat "$game/MAIN.PAS"

journey_folder=$game
journey "switch and save"
game=$journey_folder
type_at_start '{ kept }'
drive click-node A.INC > /dev/null
check "the program asks" "This file has changed. Save it?" "$(drive answer Yes)"
await "and shows the other file" "Current View: A.INC" drive status
check "the text is in its file" "{ kept }" "$(cat "$game/MAIN.PAS")"
same "and not in the other" "procedure A;" "$(without_cr "$game/A.INC" | head -n 1)"

journey "switch and refuse to save"
game=$journey_folder
before=$(cat "$game/A.INC")
type_at_start '{ lost }'
drive click-node MAIN.PAS > /dev/null
check "the program asks" "Save it?" "$(drive answer No)"
await "and shows the other file" "Current View: MAIN.PAS" drive status
same "the file is as it was" "$before" "$(cat "$game/A.INC")"
drive click-node A.INC > /dev/null
await "back again" "Current View: A.INC" drive status
same "the text is the file's" "$(without_cr "$game/A.INC")" "$(drive text)"

journey "switch and cancel"
game=$journey_folder
type_at_start '{ undecided }'
drive click-node MAIN.PAS > /dev/null
check "the program asks" "Save it?" "$(drive answer Cancel)"
check "the file stays shown" "Current View: A.INC" "$(drive status)"
check "with its node" "*A.INC" "$(drive tree)"
check "and its text" "{ undecided }procedure A;" "$(drive text)"
same "the file is as it was" "$before" "$(cat "$game/A.INC")"
close_and_check

journey "an include from another folder"
mkdir "$game/elsewhere"
printf 'procedure Far;\r\nbegin\r\nend;\r\n' > "$game/elsewhere/FAR.INC"
printf 'procedure Not;\r\nbegin\r\nend;\r\n' > "$game/elsewhere/NOT.INC"
start "$game/MAIN.TPJ"
await "the project is there" "Current View: MAIN.PAS" drive status
drive go-to-line 2 > /dev/null
drive menu mnuOpenIncfile > /dev/null
same "a file is asked for" "Open include file" "$(drive file "$(windows_name "$game/elsewhere/FAR.INC")")"
check "its folder is another" "Do you wish to copy this file to the project dir?" "$(drive answer Yes)"
check "its directive is offered" 'Insert {$i FAR.INC} at the current cursor position?' "$(drive answer Yes)"
await "it hangs in the tree" "    FAR.INC" drive tree
same "the copy is the file" "same" "$(cmp "$game/FAR.INC" "$game/elsewhere/FAR.INC" && echo same)"
check "the directive is in the text" '{$i FAR.INC }' "$(drive text)"
drive menu mnuOpenIncfile > /dev/null
drive file "$(windows_name "$game/elsewhere/NOT.INC")" > /dev/null
check "a copy can be refused" "Do you wish to copy" "$(drive answer No)"
check "and the directive too" 'Insert {$i NOT.INC}' "$(drive answer No)"
same "then there is no copy" "none" "$([[ -e $game/NOT.INC ]] || echo none)"
same "and no node" "0" "$(drive tree | grep -c NOT.INC)"
close_and_check

journey "preferences and their effects"
start "$game/MAIN.TPJ"
await "the project is there" "Current View: MAIN.PAS" drive status
drive menu mnupreferences > /dev/null
drive fill "$(control Form4_Text1)" 'C:\emulator.exe' > /dev/null
drive fill "$(control Form4_cmbFontSize)" 16 > /dev/null
drive check "$(control Form4_Check2)" > /dev/null
drive check "$(control Form4_Check3)" > /dev/null
drive click Ok > /dev/null
await "the font is larger" "16" drive font-size
type_at_start '{ by itself }'
drive click-node A.INC > /dev/null
await "with AutoSave a switch asks nothing" "Current View: A.INC" drive status
check "and saves" "{ by itself }" "$(cat "$game/MAIN.PAS")"
close_and_check
start
check "no new project is offered at the next start" "Current View: no file" "$(drive status)"
same "the font is still large" "16" "$(drive font-size)"
drive menu mnupreferences > /dev/null
same "the emulator is still there" 'C:\emulator.exe' "$(drive field "$(control Form4_Text1)")"

journey "preferences cancelled"
cp "$program/config.cfg" "$work.config"
drive fill "$(control Form4_Text1)" 'C:\another.exe' > /dev/null
drive check "$(control Form4_Check2)" > /dev/null
drive click Cancel > /dev/null
drive menu mnupreferences > /dev/null
same "the emulator is the former one" 'C:\emulator.exe' "$(drive field "$(control Form4_Text1)")"
drive click Cancel > /dev/null
same "nothing is written" "same" "$(cmp "$work.config" "$program/config.cfg" && echo same)"
close_and_check

journey "the recent list with missing files"
for name in ONE TWO; do
  printf "$name\r\n2E9B\r\nD200\r\nMAIN.PAS\r\n" > "$game/$name.TPJ"
  start "$game/$name.TPJ"
  await "$name is opened" "$name [2]" drive tree
  stop
done
rm "$game/TWO.TPJ"
start
drive menu 'mnurecent(0)' > /dev/null
same "a missing file is told" "Error: Tavrel cannot find this file!" "$(drive answer OK)"
drive menu 'mnurecent(0)' > /dev/null
await "its entry is gone, the next has moved up" "ONE [2]" drive tree
close_and_check
same "also from the settings" "0" "$(grep -c -a 'TWO\.TPJ' "$program/config.cfg")"

journey "a palette in and out"
{
  printf 'JASC-PAL\r\n0100\r\n16\r\n'
  for i in {0..15}; do printf '%d %d 255\r\n' $((16 * i)) $((255 - 16 * i)); done
} > "$game/COLOURS.PAL"
start "$game/MAIN.TPJ"
await "the project is there" "Current View: MAIN.PAS" drive status
drive go-to-line 3 > /dev/null
drive menu mnuConvPal > /dev/null
drive click Open > /dev/null
same "a file is asked for" "Select file to convert" "$(drive file "$(windows_name "$game/COLOURS.PAL")")"
drive click Convert > /dev/null
await "the colours are converted" "SetPalette(00,0,7,7);" drive field "$(control frmConvPal_Text2)"
check "to the last one" "SetPalette(15,7,0,7);" "$(drive field "$(control frmConvPal_Text2)")"
drive click 'Insert on code' > /dev/null
await "and inserted" "SetPalette(15,7,0,7);" drive text
drive click 'Save to file' > /dev/null
drive file "$(windows_name "$game/COLOURS.PL5")" > /dev/null
# FE, addresses of the first and the last byte, no start address; then red and blue in one byte, green in the next.
await "the file has a header and 16 colours" "fe8076 9f7600 000707 0707" \
  eval 'od -An -v -tx1 "$game/COLOURS.PL5" | tr -d " \n" | sed -E "s/(.{6})(.{6})(.{6})(.{4}).*/\1 \2 \3 \4/"'
same "39 bytes" "39" "$(wc -c < "$game/COLOURS.PL5")"
drive click Close > /dev/null
close_and_check

journey "printing to a file"
for ((line = 1; line <= 120; ++line)); do printf '{ line }\r\n'; done >> "$game/MAIN.PAS" # more than a page
add_printer "$game/paper.ps"
start "$game/MAIN.TPJ"
await "the project is there" "Current View: MAIN.PAS" drive status
drive menu mnuPrint > /dev/null
await "the document is whole" "%%EOF" eval 'tail -c 20 "$game/paper.ps"'
pages=$(grep -a -c '^%%Page:' "$game/paper.ps")
same "it has several pages" "yes" "$( ((pages > 1)) && echo yes || echo "$pages")"
same "the header is on each" "$pages" "$(printed "$game/paper.ps" | grep -o 'MAIN.PASPage' | wc -l)"
check "the text follows" "programMain;" "$(printed "$game/paper.ps")" # blanks between coloured words are not letters
same "all of it" "120" "$(printed "$game/paper.ps" | grep -o ' line ' | wc -l)"
same "no box comes up" "Current View: MAIN.PAS" "$(drive status | sed -n 2p)"
close_and_check
remove_printer

journey "find, replace, go to line"
start "$game/MAIN.TPJ"
await "the project is there" "Current View: MAIN.PAS" drive status
drive press Ctrl+G > /dev/null
drive fill "$(control GoToLine_Number)" 4 > /dev/null
drive click Ok > /dev/null
await "Ctrl+G goes to the line" "line 4 column 1" drive caret
drive press Ctrl+H > /dev/null
drive fill 1152 "program" > /dev/null # edt1 and edt2 of the system's dialog
drive fill 1153 "unit" > /dev/null
drive click 'Replace &All' > /dev/null
await "all places are replaced" "unit Main;" drive text
check "and counted" "1 place replaced" "$(drive status)"
drive fill 1152 "nowhere" > /dev/null
drive click '&Find Next' > /dev/null
check "what is not there is told" '"nowhere" was not found.' "$(drive answer OK)"
drive click Cancel > /dev/null
close_and_check

journey "a program without a project file"
rm "$game/MAIN.TPJ"
start
check "there is no file at first" "Current View: no file" "$(drive status)"
drive menu mnuFileOpen > /dev/null
same "a file is asked for" "Open File" "$(drive file "$(windows_name "$game/MAIN.PAS")")"
await "its include is in the tree" "    A.INC" drive tree
drive menu mnuProp > /dev/null
drive fill "$(control Form3_Text3)" 3000 > /dev/null
drive click Ok > /dev/null
drive menu mnuSavePrj > /dev/null
same "a name is asked for" "Save Project" "$(drive file "$(windows_name "$game/OWN.TPJ")")"
await_file "$game/OWN.TPJ"
check "the addresses are in the project file" "|3000|D200|MAIN.PAS|" "$(without_cr "$game/OWN.TPJ" | tr '\n' '|')"
check "it builds" "No errors - Sucessfully compiled" "$(drive compile-and-report --key)"
drive escape > /dev/null
close_and_check

journey "the program's own words"
start "$game/MAIN.TPJ"
await "the project is there" "Current View: MAIN.PAS" drive status
drive menu mnuAbout > /dev/null
check "About says the version" "Version" "$(drive field "$(control Form6_Version)")"
drive click History > /dev/null
await "the history is there" "Tavrel" drive field "$(control Form7_Text1)"
close_and_check

summary
