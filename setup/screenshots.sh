#!/bin/bash
# screenshots.sh: pictures of the main window and of every dialog, for a person to look at: out/screenshots/NAME.png.
# Needs what `run` builds, and imagemagick.
set -uo pipefail
source "$(dirname "$0")/lib.sh"
source "$TAVREL_ROOT/setup/wine.sh"
source "$TAVREL_ROOT/setup/picture.sh"
pictures=$TAVREL_OUT/screenshots
mkdir -p "$pictures"
make_wine_prefix && start_display || exit 1
wineserver -p < /dev/null > /dev/null 2>&1
wine reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f < /dev/null > /dev/null 2>&1 # no window manager to wait for
source "$TAVREL_ROOT/tests/acceptance/using.sh"
trap 'cd "$root"; cleanup; wineserver -k; stop_display' EXIT

picture() { take_picture "$pictures/$1.png"; }
# dialog NAME COMMAND: chooses a command, takes the picture of what comes up, and closes it.
dialog() {
  drive menu "$2" > /dev/null
  picture "$1"
  drive answer Cancel > /dev/null
}

program=$work.program # its recent list and its settings are its own
cp -r "$root/out/Tavrel" "$program"
rm -f "$program/config.cfg"
cp "$root"/share/samples/hello/* "$work"/
start
drive status > /dev/null
picture new-project
drive answer Cancel > /dev/null
picture no-project
drive close > /dev/null
wait "$tavrel_process"

start "$work/HELLO.TPJ"
drive go-to-line 8 > /dev/null
picture main
drive press F10 > /dev/null
drive press Down > /dev/null
for menu in file new edit tools window help; do
  picture "menu-$menu"
  drive press Right > /dev/null
done
for _ in 1 2 3; do drive press Esc > /dev/null; done
drive menu mnuSplit > /dev/null
picture split
drive menu mnuShowProjectTree > /dev/null
picture split-tree-hidden
drive menu mnuSplit > /dev/null
picture tree-hidden
drive menu mnuShowProjectTree > /dev/null
dialog preferences mnupreferences
dialog properties mnuProp
dialog go-to-line keyGoToLine
dialog find mnuFind
dialog replace mnuReplace
dialog palette-converter mnuConvPal
drive menu mnuAbout > /dev/null
picture about
drive click History > /dev/null
picture history
drive answer Cancel > /dev/null
drive answer Cancel > /dev/null
dialog open-project mnuOpenProject
drive compile-and-report > /dev/null
picture progress
drive escape > /dev/null
sed -i '4s/.*/  ] nonsense;\r/' "$work/HELLO.INC"
drive menu mnuRefresh > /dev/null
drive compile-and-report > /dev/null
picture error
drive escape > /dev/null
drive menu mnuPrint > /dev/null
picture no-printer
drive answer OK > /dev/null
stop
