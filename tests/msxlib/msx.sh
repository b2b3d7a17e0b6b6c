# Sourced by suites that run programs on an emulated MSX2. Needs openMSX with C-BIOS, and pasmo.
# shellcheck shell=bash

msx_scripts=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

# prepare_msx FOLDER: what the emulator needs lies in this folder from now on.
prepare_msx() {
  export SDL_VIDEODRIVER=dummy SDL_AUDIODRIVER=dummy OPENMSX_HOME=$1/openmsx TAVREL_DOS=$1/dos.bin
  pasmo "$msx_scripts/dos.asm" "$TAVREL_DOS"
}

# on_the_msx PROGRAM [SECONDS [SCRIPT [MOUSE]]]: runs it in its folder; the names of what is left begin like its own. It
# prints how that ended.
on_the_msx() {
  local base=${1%.*}
  export TAVREL_PROGRAM=$1 TAVREL_RESULT=$base TAVREL_SHOT=$base.png TAVREL_LOG=$base.log
  export TAVREL_FOLDER=${1%/*} TAVREL_SECONDS=${2:-} TAVREL_SCRIPT=${3:-} TAVREL_MOUSE=${4:-}
  rm -f "$base.end" "$base.log"
  timeout 60 openmsx -machine "${TAVREL_MACHINE:-C-BIOS_MSX2}" -script "$msx_scripts/msx.tcl" > "$base.openmsx" 2>&1 < /dev/null
  cat "$base.end" "$base.log" 2> /dev/null
}
