#!/bin/bash
# licences.sh ARCHITECTURE: prints the licences of all that others wrote and that a program folder of this architecture
# holds, from the source packages that were built and from the compiler's packages.
set -euo pipefail
source "$(dirname "$0")/../setup/lib.sh"
architecture=$1

library() { "$TAVREL_ROOT/setup/dependency.sh" "$1" "$architecture" --path; }
licence() { # HEADING FILE
  printf '\n\n%s\n%s\n%s\n\n' "$(printf '=%.0s' {1..78})" "$1" "$(printf '=%.0s' {1..78})"
  [[ -s $2 ]] || die "the licence $2 is missing"
  tr -d '\r' < "$2"
}
# The source tarball of a package: name and hash, as they were built.
tarball() { sed -nE "s/^([0-9a-f]{64})  ($1_.*)\$/  \2\n  SHA-256 \1/p" "$TAVREL_ROOT/setup/sources.sha256"; }

# The MSX emulator is in 64-bit packages only.
emulator=
if [[ $architecture == x86_64 ]]; then
  emulator=$("$TAVREL_ROOT/setup/emulator.sh" --path)
  if [[ ! -d $emulator ]]; then emulator=; fi
fi
emulator_contents() {
  if [[ -z $emulator ]]; then return; fi
  cat << END
emulator\\openmsx\\ is            openMSX, a separate program, with its data; its openmsx.exe contains SDL 2, SDL_ttf,
                               FreeType, libpng, zlib, GLEW, Tcl, Dear ImGui and ImGuiFileDialog; with it come the
                               fonts DejaVu and the ROMs of C-BIOS
END
}
emulator_source() {
  if [[ -z $emulator ]]; then return; fi
  cat << END

The source of openMSX
---------------------

openMSX is under the GNU General Public License, version 2. It is built from this archive of Debian, with one change
that the script setup/recipes/openmsx.sh makes and explains:

$(tarball openmsx)

and its libraries, whose licences follow, unchanged but for what their scripts leave out, from these:

$(for name in libsdl2 libsdl2-ttf freetype 'libpng1\.6' zlib glew 'tcl8\.6'; do tarball "$name"; done)

The descriptions of the C-BIOS machines are from Debian's package openmsx-data, part of openMSX; the ROMs from its package
cbios. Archives and scripts are in Tavrel-$(tavrel_version)-sources.zip, under the same offer as the source of DOSBox.
END
}
emulator_licences() {
  if [[ -z $emulator ]]; then return; fi
  licence "openMSX" "$emulator/share/COPYING"
  licence "openMSX: MIDI under Windows" "$emulator/share/midi.txt"
  licence "Dear ImGui" "$emulator/share/imgui.txt"
  licence "ImGuiFileDialog" "$emulator/share/ImGuiFileDialog.txt"
  licence "SDL 2" "$(library sdl2)/share/COPYING"
  licence "SDL_ttf" "$(library sdl2ttf)/share/COPYING"
  licence "FreeType" "$(library freetype)/share/COPYING"
  licence "libpng" "$(library png)/share/COPYING"
  licence "zlib" "$(library zlib)/share/COPYING"
  licence "GLEW" "$(library glew)/share/COPYING"
  licence "Tcl" "$(library tcl)/share/COPYING"
  licence "The DejaVu fonts" /usr/share/doc/fonts-dejavu-core/copyright
  licence "C-BIOS" /usr/share/doc/cbios/copyright
}

{
  cat << END
Licences of what others wrote and Tavrel brings along
=====================================================

Tavrel itself is under the MIT licence: see license.txt.

Tavrel.exe contains            Scintilla, Lexilla
compiler\\DOSBox-0.74\\DOSBox.exe is  DOSBox, a separate program, and contains SDL 1.2
every .exe contains            parts of the libraries of GCC and mingw-w64
$(emulator_contents)
The source of DOSBox and SDL
----------------------------

DOSBox is under the GNU General Public License, version 2; SDL under the GNU Lesser General Public License, version
2.1. Both are built unchanged from these archives of Debian:

$(tarball dosbox)
$(tarball 'libsdl1\.2')

The archives, with the scripts that build DOSBox.exe from them, are the package Tavrel-$(tavrel_version)-sources.zip, which is
offered at the place where this package is. Should it be missing there: whoever gave you this package will, for three
years from then on, give anybody who asks the complete source code of DOSBox and SDL that belongs to it, on a medium
customarily used for software, for no more than the cost of the copy.
END
  emulator_source
  licence "Scintilla" "$(library scintilla)/share/License.txt"
  licence "Lexilla" "$(library lexilla)/share/License.txt"
  licence "DOSBox" "$(library dosbox)/share/COPYING"
  licence "SDL 1.2" "$(library sdl)/share/COPYING"
  emulator_licences
  licence "mingw-w64 and winpthreads" /usr/share/doc/mingw-w64-common/copyright
  licence "The libraries of GCC, with the runtime library exception" \
    "/usr/share/doc/gcc-mingw-w64-${architecture//_/-}-posix-runtime/copyright"
} | sed 's/$/\r/'
