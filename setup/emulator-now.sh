# Sourced by ./run: which openMSX F5 starts from out/Tavrel. The one for Windows when it is built; until then Debian's
# own, which the starter calls through Wine.
# shellcheck shell=bash
if [[ ! -f $TAVREL_OUT/Tavrel/emulator/openmsx/openmsx.exe ]]; then
  if command -v openmsx > /dev/null; then
    TAVREL_OPENMSX=$(command -v openmsx)
    export TAVREL_OPENMSX
    say "set-up: F5 shows Debian's openMSX here; setup/emulator.sh builds the one that packages have (a quarter of an hour)"
  else
    say "set-up: F5 finds no emulator here: neither openmsx nor openmsx.exe could be had"
  fi
fi
