#!/bin/bash
# assemble.sh [FOLDER ARCHITECTURE]: lays out the program folder, out/Tavrel for x86_64, as it is delivered; FOLDER.files
# becomes the list of what is delivered. Only files that differ are copied; a file
# that no longer belongs there is removed; what the program itself wrote there stays. A missing piece is named.
set -euo pipefail
source "$(dirname "$0")/lib.sh"
folder=${1:-$TAVREL_OUT/Tavrel}
architecture=${2:-x86_64}
build=$TAVREL_OUT/build
manifest=$folder.files
if [[ $architecture == i686 ]]; then windows=$build/mingw32; else windows=$build/mingw64; fi
placed=()
missing=()

put() { # FROM TO: TO is relative to the program folder
  placed+=("$2")
  if [[ ! -f $1 ]]; then
    missing+=("$2 (from ${1#"$TAVREL_ROOT/"})")
    rm -f "$folder/$2"   # one from an earlier build would pass for the real one
    return
  fi
  if ! cmp -s "$1" "$folder/$2"; then
    mkdir -p "$(dirname "$folder/$2")"
    cp -f "$1" "$folder/$2.new"
    mv -f "$folder/$2.new" "$folder/$2"
  fi
}

put_optional() { if [[ -f $1 ]]; then put "$1" "$2"; fi; }

# The emulator takes long to build, so the folder may be without it; whoever needs it builds it first.
put_emulator() {
  local from to
  if [[ ! -d $("$TAVREL_ROOT/setup/emulator.sh" --path) ]]; then
    say "set-up: no MSX emulator in the program folder yet; setup/emulator.sh builds it"
    return
  fi
  while IFS=$'\t' read -r from to; do put "$from" "$to"; done < <("$TAVREL_ROOT/setup/emulator-files.sh")
}

"$TAVREL_ROOT/setup/help.sh" || say "set-up: the Pascal Reference could not be made"
dosbox=$("$TAVREL_ROOT/setup/dependency.sh" dosbox "$architecture" --path)
licences=$build/licences-$architecture.txt
if ! "$TAVREL_ROOT/packaging/licences.sh" "$architecture" > "$licences"; then rm -f "$licences"; fi

sed 's/$/\r/' "$TAVREL_ROOT/LICENSE" | write_if_changed "$build/license.txt"

put "$windows/app/Tavrel.exe" Tavrel.exe
put "$windows/app/tavrel.ico" tavrel.ico
put "$windows/kit/image/msximg.exe" msximg.exe
put "$build/dos/kit/dos/TP3.EXE" compiler/TP3.EXE
put "$build/dos/kit/dos/DOS2CASH.COM" compiler/DOS2CASH.COM
put "$build/tools/kit/runtime/RUNTIME.COM" compiler/RUNTIME.COM
put "$dosbox/bin/DOSBox.exe" compiler/DOSBox-0.74/DOSBox.exe
put "$dosbox/share/COPYING" compiler/DOSBox-0.74/COPYING.txt
put "$build/license.txt" license.txt
put "$licences" licences.txt
put "$windows/kit/emulator/msx.exe" emulator/msx.exe
for name in start.tcl imgui.ini msx-example.ini; do put "$TAVREL_ROOT/kit/emulator/data/$name" "emulator/$name"; done
for name in tavreldisk.xml tavreldisk.rom; do put "$TAVREL_OUT/bin/$name" "emulator/data/share/extensions/$name"; done
if [[ $architecture == x86_64 ]]; then put_emulator; fi
put "$build/reference/tp3reference.chm" tp3reference.chm
put "$build/reference/autocomplete.txt" help/autocomplete.txt
put_optional "$windows/kit/disk/dsktool.exe" dsk/dsktool.exe

# Everything under share/program lies there as it lies in the program folder.
put "$TAVREL_ROOT/share/program/compiler/temp.conf" compiler/temp.conf
while IFS= read -r -d '' file; do
  put "$TAVREL_ROOT/share/program/$file" "$file"
done < <(cd "$TAVREL_ROOT/share/program" 2> /dev/null && find . -type f -printf '%P\0')

# A template gets each library that it includes: a new project is a copy of its folder, and is whole that way.
while IFS=: read -r file library; do
  put "$TAVREL_ROOT/share/program/library/$library" "$(dirname "$file")/$library"
done < <(cd "$TAVREL_ROOT/share/program" && grep -roE '^\{\$I [A-Z0-9]+\.LIB\}' projects | sed 's/{\$I //; s/}//' | sort -u)

if [[ -f $manifest ]]; then
  while IFS= read -r old; do rm -f "${folder:?}/$old"; done \
    < <(comm -23 <(sort -u "$manifest") <(printf '%s\n' "${placed[@]}" | sort -u))
fi
printf '%s\n' "${placed[@]}" | sort -u | write_if_changed "$manifest"

if ((${#missing[@]})); then
  say "set-up: the program folder lacks:"
  printf '  %s\n' "${missing[@]}" >&2
  exit 1
fi
