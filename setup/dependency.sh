#!/bin/bash
# dependency.sh NAME ARCHITECTURE [--path]: builds one library by its recipe unless that was done, and prints the
# folder that holds it. With --path only prints the folder's name.
# The folder's name carries a hash of all that the result depends on; it appears by one rename when it is complete.
set -euo pipefail
source "$(dirname "$0")/lib.sh"
name=$1 architecture=$2 mode=${3:-}
needs='' source_package='' source_suite=''   # the recipe sets them; no suite is the machine's own
# shellcheck source=/dev/null
source "$TAVREL_ROOT/setup/recipes/$name.sh"
host=$architecture-w64-mingw32

hash=$({
  cat "$TAVREL_ROOT/setup/recipes/$name.sh"
  grep -F "  ${source_package}_" "$TAVREL_ROOT/setup/sources.sha256"
  "$host-gcc-posix" -dumpfullversion
  for need in $needs; do "$0" "$need" "$architecture" --path; done | sed 's,.*/,,'
} | sha256sum | cut -c 1-12)
folder=$TAVREL_CACHE/deps/$name-$architecture-$hash
if [[ -d $folder || $mode == --path ]]; then
  echo "$folder"
  exit
fi

mkdir -p "$TAVREL_CACHE/deps"
exec 9> "$TAVREL_CACHE/deps/.$name-$architecture.lock"
flock 9   # working copies that share the cache: the second waits and then finds it done
if [[ -d $folder ]]; then
  echo "$folder"
  exit
fi
"$TAVREL_ROOT/setup/fetch.sh" "$source_package${source_suite:+/$source_suite}"

# Built away from the repository, whose path may hold blanks, which neither configure nor make endures.
work=$(mktemp -d "${TMPDIR:-/tmp}/tavrel-$name.XXXXXX")
trap 'rm -rf "$work" "$folder.new"' EXIT
prefix=$work/prefix
jobs=$(nproc)
mkdir -p "$prefix"
for need in $needs; do cp -r "$("$0" "$need" "$architecture")" "$work/$need"; done
tarball=$(grep -F "  ${source_package}_" "$TAVREL_ROOT/setup/sources.sha256" | sed 's/^[^ ]*  //')
say "set-up: building $name ($architecture)"
log=$TAVREL_CACHE/deps/$name-$architecture.log
export work prefix jobs host

# For recipes of libraries that need no configure.
compile_library() { # LIBRARY FLAGS FILE...: C files into one static library
  local library=$1 flags=$2
  shift 2
  mkdir -p objects "$prefix/lib"
  printf '%s\0' "$@" | xargs -0 -P "$jobs" -I FILE sh -c '
    "$0-gcc-posix" $1 -c "$2" -o "objects/$(basename "$2" .c).o"' "$host" "$flags" FILE
  "$host-ar" rcsD "$prefix/lib/$library" objects/*.o
}
install_headers() { # FOLDER FILE...: FOLDER is relative to include
  mkdir -p "$prefix/include/$1"
  cp "${@:2}" "$prefix/include/$1/"
}
install_licence() { # FILE
  mkdir -p "$prefix/share"
  cp "$1" "$prefix/share/COPYING"
}

# Not `if ! (...)`: inside a condition bash does not stop at the first failing command.
set +e
(
  set -e
  cd "$work"
  tar -xf "$TAVREL_CACHE/cache/$tarball"
  build
) > "$log" 2>&1 < /dev/null 9>&-
status=$?
set -e
if ((status)); then
  tail -n 20 "$log" >&2
  die "building $name ($architecture) failed; all it said is in $log"
fi
rm -rf "$folder.new"
cp -r "$prefix" "$folder.new"
mv -T "$folder.new" "$folder"
echo "$folder"
