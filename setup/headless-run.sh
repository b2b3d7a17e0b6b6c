#!/bin/bash
# headless-run.sh: the whole way without a screen. Opens the sample project in Tavrel on a private display, has it
# compiled, prints what the progress window says and what the program prints, and presses F5, which shows the program in
# the MSX emulator; pictures go to out/screenshots.
# Ends with an error when a piece is missing, the compilation fails, or the program does not end normally.
set -euo pipefail
source "$(dirname "$0")/lib.sh"
source "$TAVREL_ROOT/setup/wine.sh"
pictures=$TAVREL_OUT/screenshots

check_pieces() {
  local missing=() piece
  for piece in Tavrel/Tavrel.exe Tavrel/compiler/{TP3.EXE,RUNTIME.COM,DOS2CASH.COM,temp.conf,DOSBox-0.74/DOSBox.exe} \
    bin/drive.exe bin/msxrun; do
    if [[ ! -f $TAVREL_OUT/$piece ]]; then missing+=("out/$piece"); fi
  done
  if ((${#missing[@]})); then die "cannot run without: ${missing[*]}"; fi
}

colours() { import -window root -format %k info: 2> /dev/null || echo 0; }

# An empty root window has one colour; toolbars, text and tree together have many.
wait_for_window() {
  local tries
  for ((tries = 0; tries < 100; ++tries)); do
    if (($(colours) > 8)); then return 0; fi
    kill -0 "$ide" 2> /dev/null || die "Tavrel ended before it showed its window"
    sleep 0.2
  done
  say "set-up: no window of Tavrel was seen within 20 seconds"
}

picture() { # NAME
  if command -v import > /dev/null; then import -window root "$pictures/$1.png"; fi
}

# The process of the emulator that this program folder's starter has started, under Wine or not.
emulator_process() { pgrep -f "Tavrel.emulator.start\\.tcl" | while read -r process; do
  if tr '\\' / < "/proc/$process/cmdline" | grep -q -F "$TAVREL_OUT/Tavrel/emulator/start.tcl"; then echo "$process"; fi
done; }

# Presses F5 and waits until the emulator's picture stands still for longer than its logo does; a minute and a half at most.
run_in_emulator() {
  local tries before='' now still=0
  timeout -k 5 60 wine "$TAVREL_OUT/bin/drive.exe" press F5 < /dev/null > /dev/null 2>&1 || return 1
  for ((tries = 0; tries < 180 && still < 20; ++tries)); do
    sleep 0.5
    if [[ -z $(emulator_process) ]]; then continue; fi
    now=$(import -window root rgb:- 2> /dev/null | md5sum)
    if [[ $now == "$before" ]]; then still=$((still + 1)); else still=0; fi
    before=$now
  done
  picture emulator
  ((still == 20))
}

finish() {
  local process
  for process in $(emulator_process); do kill "$process" 2> /dev/null || true; done
  if [[ -n ${ide:-} ]]; then kill "$ide" 2> /dev/null || true; fi
  timeout 20 wineserver -w || true
  stop_display
}

check_pieces
project=$("$TAVREL_ROOT/setup/sample.sh")
find "$(dirname "$project")" -iname '*.com' -delete   # what is run later must be made by this compilation
mkdir -p "$pictures"
make_wine_prefix
trap finish EXIT
start_display

cd "$(dirname "$project")" # DOSBox leaves its stdout.txt in the folder where the program was started
wine "$TAVREL_OUT/Tavrel/Tavrel.exe" "$(windows_path "$project")" < /dev/null > /dev/null 2>&1 &
ide=$!
if command -v import > /dev/null; then wait_for_window; else say "set-up: no pictures without imagemagick"; fi
picture before

status=0
timeout -k 5 120 wine "$TAVREL_OUT/bin/drive.exe" compile-and-report < /dev/null > "$pictures/compilation.txt" 2> /dev/null ||
  status=$?
picture after
echo "--- Compilation"
tr -d '\r' < "$pictures/compilation.txt"
if ((status)); then die "the compilation did not succeed (drive.exe ended with $status)"; fi

program=$(find "$(dirname "$project")" -iname '*.com' | head -n 1)
[[ -n $program ]] || die "the compilation left no .COM file"
echo "--- $(basename "$program")"
timeout -k 5 60 "$TAVREL_OUT/bin/msxrun" "$program" < /dev/null || { status=$?; }
if ((status)); then die "$(basename "$program") ended with $status"; fi

echo "--- Pictures: out/screenshots/before.png, out/screenshots/after.png"
if [[ ! -f $TAVREL_OUT/Tavrel/emulator/openmsx/openmsx.exe && -z ${TAVREL_OPENMSX:-} ]] || ! command -v import > /dev/null; then
  say "set-up: F5 is not shown: no MSX emulator, or no imagemagick for its picture"
elif run_in_emulator; then
  echo "--- F5: out/screenshots/emulator.png"
else
  say "set-up: the emulator did not show the program in time, see out/screenshots/emulator.png"
fi
