#!/bin/bash
# build.sh PRESET...: configures (when that is due) and builds; a preset that fails does not stop the next one.
set -euo pipefail
source "$(dirname "$0")/lib.sh"
cd "$TAVREL_ROOT"

build_one() {
  local preset=$1 tree=$TAVREL_OUT/build/$1
  # CMake looks after its own files, but not after the presets that it was started from.
  if [[ ! -f $tree/build.ninja || CMakePresets.json -nt $tree/.configured ]]; then
    cmake --preset "$preset" > "$tree.log" 2>&1 || { cat "$tree.log" >&2; return 1; }
    touch "$tree/.configured"
  fi
  cmake --build --preset "$preset" -- --quiet > "$tree.log" 2>&1 || { cat "$tree.log" >&2; return 1; }
}

mkdir -p "$TAVREL_OUT/build"
status=0
for preset in "$@"; do
  build_one "$preset" || { say "set-up: building $preset failed"; status=1; }
done
exit "$status"
