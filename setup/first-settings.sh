#!/bin/bash
# first-settings.sh FOLDER: gives a program folder that has no settings yet those of a first start, with its own MSX
# emulator already chosen, as the installer does.
set -euo pipefail
source "$(dirname "$0")/lib.sh"
source "$TAVREL_ROOT/setup/wine.sh"
folder=$(cd "$1" && pwd)
settings=$folder/config.cfg
if [[ -f $settings ]]; then exit 0; fi

number() { printf '%b' "$(printf '\\x%02x\\x%02x' $(($1 & 255)) $(($1 >> 8 & 255)))"; }
# A path in the code page that the program has under Wine.
text() {
  local bytes
  bytes=$(iconv -f UTF-8 -t CP1252//TRANSLIT <<< "$1" | wc -c)
  number $((bytes - 1))
  printf '%s' "$1" | iconv -f UTF-8 -t CP1252//TRANSLIT
}
{
  text "$(windows_path "$folder/emulator/msx.exe")"
  text '-diska %dsk -msx2'
  for _ in 1 2 3 4 5; do text ''; done
  text "$(windows_path "$folder/dsk/")"
  number 0; number 0; number 65535; number 65535 # association, saving without a question; new project dialog, tooltips
  number 11
  text Terminal
} > "$settings.new"
mv -f "$settings.new" "$settings"
