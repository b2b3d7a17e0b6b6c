#!/bin/bash
# apt-sources.sh FOLDER: writes FOLDER/sources.list and FOLDER/sources.sources, the deb-src twins of the
# machine's own package sources, so that source packages come from where its binary packages come from.
# Both forms that apt knows are read: one line each (*.list) and paragraphs (*.sources).
set -euo pipefail
folder=$1
etc=/etc/apt
mkdir -p "$folder"
shopt -s nullglob

lists=("$etc"/sources.list.d/*.list)
if [[ -f $etc/sources.list ]]; then lists+=("$etc/sources.list"); fi
if ((${#lists[@]})); then
  sed -nE 's/^[[:space:]]*deb(-src)?([[:space:]].*)$/deb-src\2/p' "${lists[@]}" | sort -u
fi > "$folder/sources.list"

# A blank line between two files keeps the last paragraph of one apart from the first of the next.
for file in "$etc"/sources.list.d/*.sources; do
  sed -E 's/^Types:.*/Types: deb-src/I' "$file"
  echo
done > "$folder/sources.sources"
