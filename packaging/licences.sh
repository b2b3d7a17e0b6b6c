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

{
  cat << END
Licences of what others wrote and Tavrel brings along
=====================================================

Tavrel itself is under the MIT licence: see license.txt.

Tavrel.exe contains            Scintilla, Lexilla
compiler\\DOSBox-0.74\\DOSBox.exe is  DOSBox, a separate program, and contains SDL 1.2
every .exe contains            parts of the libraries of GCC and mingw-w64

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
  licence "Scintilla" "$(library scintilla)/share/License.txt"
  licence "Lexilla" "$(library lexilla)/share/License.txt"
  licence "DOSBox" "$(library dosbox)/share/COPYING"
  licence "SDL 1.2" "$(library sdl)/share/COPYING"
  licence "mingw-w64 and winpthreads" /usr/share/doc/mingw-w64-common/copyright
  licence "The libraries of GCC, with the runtime library exception" \
    "/usr/share/doc/gcc-mingw-w64-${architecture//_/-}-posix-runtime/copyright"
} | sed 's/$/\r/'
