#!/bin/bash
# emulator.sh [--path]: has openMSX for Windows ready and prints the folder that holds it. The first time that takes a
# quarter of an hour, and the result lies in the cache folder from then on. Ends with an error, and says what is
# missing, when it cannot be had. With --path only prints the folder's name.
set -euo pipefail
source "$(dirname "$0")/lib.sh"
dependency=$TAVREL_ROOT/setup/dependency.sh
compiler=x86_64-w64-mingw32-g++-posix
command -v "$compiler" > /dev/null || die "the MSX emulator needs $compiler to be built"
folder=$("$dependency" openmsx x86_64 --path)
if [[ -d $folder || ${1:-} == --path ]]; then
  echo "$folder"
  exit
fi
for tool in python3 bzip2 perl make; do
  command -v "$tool" > /dev/null || die "the MSX emulator cannot be built without $tool"
done
failed=$folder.failed
if [[ -f $failed ]]; then
  die "the MSX emulator could not be built here, see $TAVREL_CACHE/deps/openmsx-x86_64.log; delete $failed to try again"
fi
"$TAVREL_ROOT/setup/fetch.sh" openmsx/trixie > /dev/null || die "the MSX emulator cannot be had without its source"
# Two at a time: configure runs of one fill the pauses of the other. Those that need others wait for them.
printf '%s\n' tcl sdl2 png freetype glew | xargs -P 2 -I NAME "$dependency" NAME x86_64 > /dev/null ||
  die "a library of the MSX emulator could not be built"
"$dependency" openmsx x86_64 || { touch "$failed"; exit 1; }
