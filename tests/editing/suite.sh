#!/bin/bash
# The editor by real keys and mouse buttons, in the program as it is started by its user; and what start-up says when
# its data are missing. Needs a display, Wine with WINEPREFIX set, out/Tavrel and drive.exe.
set -u
source "$(dirname "$0")/../acceptance/using.sh"

# The program with nothing but its word list.
program=$work.program
mkdir -p "$program/help" "$work/game"
cp "$root/out/Tavrel/Tavrel.exe" "$program"/
cp "$root/out/Tavrel/help/autocomplete.txt" "$program/help"/
printf 'Game\r\n2E9B\r\nD200\r\nGAME.PAS\r\n' > "$work/game/GAME.TPJ"
printf ' begin\r\nend.\r\n' > "$work/game/GAME.PAS"
signature=$(tr -d '\r' < "$program/help/autocomplete.txt" | grep -i -m 1 '^writeln')

start "$work/game/GAME.TPJ"
await "the project is loaded" "Current View: GAME.PAS" drive status
drive keys 'writeln('
await "typing writeln( shows its signature" "$signature" drive status
check "and gets into the text" "writeln( begin" "$(drive text)"
drive press Ctrl+S
await "Ctrl+S saves what was typed" "writeln( begin" cat "$work/game/GAME.PAS"
drive press Ctrl+Z
check "Ctrl+Z does nothing in an unmodified text" "writeln( begin" "$(drive text)"
drive keys 'xy'
await "keys after that are typed" "writeln(xy begin" drive text
for _ in 1 2; do drive press Ctrl+Z; done
check "Ctrl+Z undoes in a modified text" "no xy" "$(drive text | grep -q xy || echo 'no xy')"

await "there is one pane at first" "pane 0 of 1" drive pane
drive press Ctrl+Tab
check "Ctrl+Tab stays in the only pane" "pane 0 of 1" "$(drive pane)"
drive menu mnuSplit
await "Split makes a second pane" "pane 0 of 2" drive pane
drive press Ctrl+Tab
await "Ctrl+Tab goes to the next pane" "pane 1 of 2" drive pane
drive press Ctrl+Tab
await "and around the end" "pane 0 of 2" drive pane
drive press Ctrl+Shift+Tab
await "Ctrl+Shift+Tab goes around the start" "pane 1 of 2" drive pane
drive menu mnuSplit
await "Split again closes the second pane" "pane 0 of 1" drive pane

before=$(drive text)
drive right-click
check "the right button pops up a menu" "0" "$?"
drive press Down
drive press Enter
check "Cut is off while nothing is selected" "$before" "$(drive text)"
drive press Esc
drive press Esc
drive press Ctrl+A
drive right-click
drive press Down
drive press Enter
await "with a selection Cut is on" "empty" eval '[[ -z $(drive text) ]] && echo empty'
drive right-click
for _ in 1 2 3; do drive press Down; done
drive press Enter
await "and Paste, the third entry, brings it back" "begin" drive text
stop
check "the program ends without a question about the text" "ended 0" "$ended"

# A machine without a printer and without the help viewer loses printing and help, nothing else.
CUPS_SERVER=/nowhere WINEDLLOVERRIDES="${WINEDLLOVERRIDES:-};hhctrl.ocx=" start "$work/game/GAME.TPJ"
await "the project is loaded again" "Current View: GAME.PAS" drive status
drive menu mnuPrint
check "without a printer the user is told" "There is no printer to print on." "$(drive answer OK)"
drive menu mnuRefHelp --key
drive keys 'z'
await "without the help viewer the program works on" "z" drive text
drive menu mnuSplit --key
await "Ctrl+F6 splits" "of 2" drive pane
drive menu mnuSplit --key
await "and joins again" "of 1" drive pane
stop
check "and ends as ever" "ended 0" "$ended"

rm "$program/help/autocomplete.txt"
start
check "a missing word list is told" "File not found" "$(drive answer OK)"
await_end
check "and ends the program with 1" "ended 1" "$ended"
: > "$program/help/autocomplete.txt"
start
check "an empty word list is told" "Input past end of file" "$(drive answer OK)"
await_end
check "and ends the program with 1 too" "ended 1" "$ended"

summary
