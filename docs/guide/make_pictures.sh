#!/bin/bash
# make_pictures.sh: the guide's pictures, from the program as it is: follows first-program.md. Needs what `run` builds, and
# imagemagick.
set -uo pipefail
source "$(dirname "$0")/../../setup/lib.sh"
source "$TAVREL_ROOT/setup/wine.sh"
source "$TAVREL_ROOT/setup/picture.sh"
guide=$TAVREL_ROOT/docs/guide
make_wine_prefix && start_display || exit 1
wineserver -p < /dev/null > /dev/null 2>&1
wine reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f < /dev/null > /dev/null 2>&1 # no window manager to wait for
source "$TAVREL_ROOT/tests/acceptance/using.sh"
trap 'cd "$root"; cleanup; wineserver -k; stop_display' EXIT
picture() { # NAME
  take_picture "$guide/pictures/$1.png"
  convert "$guide/pictures/$1.png" -strip +dither -colors 256 "PNG8:$guide/pictures/$1.png"
}

program=$WINEPREFIX/drive_c/Tavrel # the path that the preferences show
rm -rf "$program"
cp -r "$root/out/Tavrel" "$program"
rm -f "$program/config.cfg"
mkdir "$work/HELLO"
start
drive status > /dev/null
picture templates
drive template Empty > /dev/null
drive file "$(windows_name "$work/HELLO/HELLO")" > /dev/null
drive menu mnuClear > /dev/null
drive type "$(guide_block 1 "$guide/first-program.md" | tr '\n' '\r')" > /dev/null
picture program
drive compile-and-report --key > /dev/null
picture compiled
drive escape > /dev/null
drive menu mnupreferences > /dev/null
picture preferences
drive answer Cancel > /dev/null
stop
rm -rf "$program"
