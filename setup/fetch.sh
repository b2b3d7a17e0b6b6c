#!/bin/bash
# fetch.sh PACKAGE[/SUITE]...: brings the original tarball of Debian source packages into the download cache, from the
# machine's own release or from the suite of that name.
# apt checks what it loads against the archive's signed index, and sources.sha256 pins the very file.
# The machine's own package configuration is read, never changed: state, lists and cache are private.
set -euo pipefail
source "$(dirname "$0")/lib.sh"
cache=$TAVREL_CACHE/cache
mkdir -p "$cache"
exec 9> "$cache/.lock"
flock 9   # one download at a time, also when working copies share the cache

private_apt() {
  APT_CONFIG=$apt_home/apt.conf apt-get -q "$@" < /dev/null
}

# use_suite SUITE: each suite, "" for the machine's own, has an apt of its own, so that one never hides another's versions.
use_suite() {
  suite=$1
  apt_home=$cache/apt${suite:+-$suite}
  mkdir -p "$apt_home"/{lists/partial,archives/partial,parts}
}

write_apt_configuration() {
  "$TAVREL_ROOT/setup/apt-sources.sh" "$apt_home/parts" "$suite"
  cat > "$apt_home/apt.conf" << END
Dir::State::lists "$apt_home/lists";
Dir::Cache "$apt_home";
Dir::Etc::sourcelist "/dev/null";
Dir::Etc::sourceparts "$apt_home/parts";
APT::Sandbox::User "root";
Acquire::Languages "none";
Acquire::Retries "3";
END
}

# update_index: an index that cannot be had must not stop what the others offer, so failures are only told.
update_index() {
  write_apt_configuration
  private_apt update > "$apt_home/update.log" 2>&1 || say "set-up: apt could not read every source index"
  touch "$apt_home/updated"
}

verified() { # FILE: whether it is in the cache with the right content
  (cd "$cache" && grep -F "  $1" "$TAVREL_ROOT/setup/sources.sha256" | sha256sum --check --status 2> /dev/null)
}

fetch_once() { # PACKAGE FILE
  local into=$cache/.incoming
  rm -rf "$into"
  mkdir -p "$into"
  (cd "$into" && private_apt source --download-only --tar-only "$1" > "$apt_home/$1.log" 2>&1) || return 1
  [[ -f $into/$2 ]] || { say "set-up: the archive has another version of $1: $(ls "$into")"; return 1; }
  mv -f "$into/$2" "$cache/$2"
  rm -rf "$into"
  verified "$2" || { say "set-up: $2 does not have the content recorded in setup/sources.sha256"; rm -f "$cache/$2"; return 1; }
}

for wanted in "$@"; do
  package=${wanted%%/*}
  use_suite "$(sed -n 's,^[^/]*/,,p' <<< "$wanted")"
  file=$(sed -nE "s/^[0-9a-f]{64}  (${package//./\\.}_.*)$/\1/p" "$TAVREL_ROOT/setup/sources.sha256")
  [[ -n $file ]] || die "setup/sources.sha256 has no line for $package"
  if verified "$file"; then continue; fi
  say "set-up: fetching $file"
  [[ -f $apt_home/updated ]] || update_index
  fetch_once "$package" "$file" && continue
  update_index
  fetch_once "$package" "$file" && continue
  grep -hE '^(Err|[EW]):' "$apt_home/update.log" "$apt_home/$package.log" 2> /dev/null | tail -n 8 >&2 || true
  die "cannot fetch $file; a copy laid into $cache by hand will do as well"
done
