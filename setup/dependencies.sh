#!/bin/bash
# dependencies.sh: has all third-party libraries ready, and tells CMake where they are (out/dependencies.cmake).
# One that cannot be had is named, and does not keep the others from being built; what needs it will fail.
set -euo pipefail
source "$(dirname "$0")/lib.sh"
dependency=$TAVREL_ROOT/setup/dependency.sh

# name architecture; the slow chain first, so that the others fill the second processor beside it.
wanted=("dosbox x86_64" "scintilla x86_64" "lexilla x86_64" "scintilla i686" "lexilla i686")

path_of() { # "NAME ARCHITECTURE": the folder, or nothing when there is no compiler for it
  local name architecture
  read -r name architecture <<< "$1"
  command -v "$architecture-w64-mingw32-g++-posix" > /dev/null || return 0
  "$dependency" "$name" "$architecture" --path
}

missing=()
for item in "${wanted[@]}"; do
  path=$(path_of "$item")
  if [[ -z $path ]]; then say "set-up: no compiler for $item"; fi
  if [[ -n $path && ! -d $path ]]; then missing+=("$item"); fi
done
if ((${#missing[@]})); then
  printf '%s\n' "${missing[@]}" | xargs -P 2 -L 1 "$dependency" > /dev/null || say "set-up: not every library could be built"
fi

for item in "${wanted[@]}"; do
  path=$(path_of "$item")
  if [[ -d $path ]]; then
    read -r name architecture <<< "$item"
    echo "set(TAVREL_${name^^}_$architecture \"$path\")"
  fi
done | write_if_changed "$TAVREL_OUT/dependencies.cmake"
