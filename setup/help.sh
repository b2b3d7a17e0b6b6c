#!/bin/bash
# help.sh [FOLDER]: makes the Pascal Reference in out/build/reference: the help file tp3reference.chm, autocomplete.txt and
# the topics, which are copied to the web site out/reference-site. Does nothing when no source has changed since the last time.
# With FOLDER, which must be empty, everything is made there and nothing else is touched.
set -euo pipefail
source "$(dirname "$0")/lib.sh"
target=$TAVREL_OUT/build/reference
site=$TAVREL_OUT/reference-site
sources=$TAVREL_ROOT/docs/reference

command -v chmcmd > /dev/null || die "chmcmd is not installed (package fp-utils)"
mapfile -t libraries < <(find "$TAVREL_ROOT/share/program/library" -name '*.LIB' | LC_ALL=C sort)

sum_of_sources() {
  cd "$TAVREL_ROOT"
  { find docs/reference docs/guide share/program/library -type f
    echo setup/help.sh; echo kit/compiler/errors.h; echo kit/compiler/errors.cpp; } | LC_ALL=C sort | xargs -d '\n' sha256sum
  sha256sum < "$(command -v chmcmd)"
}

# set_time_stamps FILE.chm: in place of the moment, of which one help file holds two, a number that depends on the topics
# alone. The help viewer tells different versions of a file by it.
set_time_stamps() {
  local sum
  sum=$(cd "$(dirname "$1")" && find . -name '*.htm' -o -name '*.css' | LC_ALL=C sort | xargs cat | sha256sum)
  perl -0777 -i -pe '
    BEGIN { $stamp = pack("H8", shift @ARGV); binmode STDOUT }
    substr($_, 16, 4) = $stamp;
    s/(\x03\0\0\0\x0A\0\x04\0)....(?=\x09\0..HHA Version)/$1$stamp/s or die "no time stamp in #SYSTEM\n"' "${sum:0:8}" "$1"
}

make_reference() { # FOLDER
  perl "$sources/make_reference.pl" "$TAVREL_ROOT" "$1" "${libraries[@]}"
  if ! (cd "$1" && chmcmd --no-html-scan tp3reference.hhp) > "$1/chmcmd.log" 2>&1 || [[ ! -s $1/tp3reference.chm ]]; then
    cat "$1/chmcmd.log" >&2
    die "chmcmd made no help file"
  fi
  set_time_stamps "$1/tp3reference.chm"
}

if (($#)); then
  make_reference "$1"
  exit
fi
sum=$(sum_of_sources | sha256sum)
if [[ -f $target/.sources && $(< "$target/.sources") == "$sum" && -f $site/index.htm ]]; then exit 0; fi
rm -rf "$target" "$site"
mkdir -p "$target" "$site"
make_reference "$target"
cp -r "$target"/*.htm "$target/lib" "$target/style.css" "$site"
echo "$sum" > "$target/.sources"
