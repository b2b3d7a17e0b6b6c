#!/bin/bash
# emulator-files.sh: what the program folder gets for the MSX emulator, a line each: the file, a tabulator, its place.
# Of openMSX's data only what is used: no machines but those of C-BIOS, none of the scripts that are commands of their own.
set -euo pipefail
source "$(dirname "$0")/lib.sh"
openmsx=$("$TAVREL_ROOT/setup/emulator.sh" --path)
data=$openmsx/share/openmsx
share=emulator/openmsx/share

all() { # FROM-FOLDER TO-FOLDER NAME...
  local from=$1 to=$2 name
  shift 2
  for name in "$@"; do printf '%s\t%s\n' "$from/$name" "$to/$name"; done
}

all "$openmsx/bin" emulator/openmsx openmsx.exe
printf '%s\t%s\n' "$openmsx/share/COPYING" emulator/openmsx/COPYING.txt
all "$data" $share init.tcl
all "$TAVREL_ROOT/kit/emulator/data" $share settings.xml
all "$data/scripts" $share/scripts _cpuregs.tcl _cycle.tcl _disasm.tcl _osd.tcl _osd_menu.tcl _osd_widgets.tcl _reverse.tcl \
  _savestate.tcl _slot.tcl _type_via_keybuf.tcl _utils.tcl _vdp.tcl autoplug.tcl callbackprocs.tcl cashandler.tcl \
  keybindings.tcl lazy.tcl mode.tcl monitor.tcl osd_menu.tcl pause_on_lost_focus.tcl reverse.tcl \
  screenshot.tcl session_management.tcl type.tcl
for name in default fill monitor3D simple texture; do all "$data/shaders" $share/shaders $name.vert $name.frag; done
mapfile -t names < <(cd "$data/skins" 2> /dev/null && ls -d set1/*.png ./*.ttf.gz | sed 's,^\./,,')
all "$data/skins" $share/skins "${names[@]}" {led,led-off,pause,mute,throttle,breaked}.png
all "$data/unicodemaps" $share/unicodemaps unicodemap.int character_set_mappings/MSXVID.TXT
for machine in MSX1 MSX2 MSX2+; do all /usr/share/openmsx/machines $share/machines "C-BIOS_$machine.xml"; done
all /usr/share/cbios $share/systemroms/cbios cbios_{main,logo}_msx1.rom cbios_{main,logo}_msx2{,+}.rom cbios_{sub,music}.rom
