# Sourced by the other set-up scripts: where everything lies, how they speak.
# shellcheck shell=bash
#
# TAVREL_CACHE  folder that holds cache/ (downloads) and deps/ (built libraries); by default the user's cache folder, so
#               that another working copy finds what one has built. `out` where a user has no such place.

TAVREL_ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
TAVREL_OUT=$TAVREL_ROOT/out
if [[ -z ${TAVREL_CACHE:-} ]]; then
  user_cache=${XDG_CACHE_HOME:-${HOME:+$HOME/.cache}}
  TAVREL_CACHE=${user_cache:+$user_cache/tavrel}
  if [[ -z $TAVREL_CACHE ]] || ! mkdir -p "$TAVREL_CACHE" 2> /dev/null; then TAVREL_CACHE=$TAVREL_OUT; fi
fi
mkdir -p "$TAVREL_CACHE"
TAVREL_CACHE=$(cd "$TAVREL_CACHE" && pwd)
export TAVREL_CACHE

say() { printf '%s\n' "$*" >&2; }
die() { say "set-up: $*"; exit 1; }

# write_if_changed FILE: takes the new text from stdin; leaves FILE and its time alone when it is the same.
write_if_changed() {
  local new=$1.new.$$
  mkdir -p "$(dirname "$1")"
  cat > "$new"
  if cmp -s "$new" "$1"; then rm -f "$new"; else mv -f "$new" "$1"; fi
}

# tavrel_version: the version, as CMake reads it.
tavrel_version() { sed -nE 's/^project\(Tavrel VERSION ([0-9]+\.[0-9]+\.[0-9]+) .*/\1/p' "$TAVREL_ROOT/CMakeLists.txt"; }
