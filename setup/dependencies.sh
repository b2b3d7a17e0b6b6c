#!/bin/bash
# dependencies.sh: has all third-party libraries ready, and tells CMake where they are (out/dependencies.cmake).
set -euo pipefail
source "$(dirname "$0")/lib.sh"
dependency=$TAVREL_ROOT/setup/dependency.sh

# name architecture; the slow chain first, so that the others fill the second processor beside it.
wanted=("dosbox x86_64" "scintilla x86_64" "lexilla x86_64" "scintilla i686" "lexilla i686")

missing=()
for item in "${wanted[@]}"; do
  read -r name architecture <<< "$item"
  [[ -d $("$dependency" "$name" "$architecture" --path) ]] || missing+=("$item")
done
if ((${#missing[@]})); then
  printf '%s\n' "${missing[@]}" | xargs -P 2 -L 1 "$dependency" > /dev/null || die "not every library could be built"
fi

for item in "${wanted[@]}"; do
  read -r name architecture <<< "$item"
  echo "set(TAVREL_${name^^}_$architecture \"$("$dependency" "$name" "$architecture" --path)\")"
done | write_if_changed "$TAVREL_OUT/dependencies.cmake"
