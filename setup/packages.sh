#!/bin/bash
# packages.sh GROUP...: installs what setup/packages.txt lists and this machine lacks. Ends with an error only when
# a package of one of the named groups could not be had; what else is missing is named, and its users will fail.
set -euo pipefail
source "$(dirname "$0")/lib.sh"
list=$TAVREL_ROOT/setup/packages.txt

missing_of() { # GROUP-PATTERN: the listed packages that are not installed
  awk -v group="^($1)\$" 'NR == FNR { installed[$1]; next }
    /^[a-z0-9]/ && $1 ~ group && !($2 in installed) { print $2 }' \
    <(dpkg-query -W -f '${db:Status-Status} ${Package}\n' | sed -n 's/^installed //p') "$list"
}

as_root() {
  if ((EUID == 0)); then "$@"; else sudo "$@"; fi
}

install_packages() {
  say "set-up: installing $*"
  as_root env DEBIAN_FRONTEND=noninteractive apt-get -q -y -o Acquire::Retries=3 -o DPkg::Lock::Timeout=300 \
    install --no-install-recommends "$@" < /dev/null >> "$log" 2>&1
}

mapfile -t missing < <(missing_of '.*')
if ((${#missing[@]} == 0)); then exit 0; fi

# What could not be had today is not asked for again at each call, as long as it is not a must.
log=$TAVREL_OUT/packages.log
given_up=$TAVREL_OUT/packages.missing
mapfile -t needed < <(missing_of "$(IFS='|'; echo "$*")")
if ((${#needed[@]} == 0)) && [[ -n $(find "$given_up" -mmin -720 2> /dev/null) && $(< "$given_up") == "${missing[*]}" ]]; then
  say "set-up: not installed: ${missing[*]} (see $log)"
  exit 0
fi
((EUID == 0)) || command -v sudo > /dev/null || die "as root, please: apt-get install ${missing[*]}"

mkdir -p "$TAVREL_OUT"
: > "$log"
as_root apt-get -q -o Acquire::Retries=3 update < /dev/null >> "$log" 2>&1 || say "set-up: apt could not read every package index"

# All at once is quickest. When one file cannot be had apt installs nothing, so then group by group, then one by one.
if ! install_packages "${missing[@]}"; then
  for group in build i686 wine emulator package test; do
    mapfile -t missing < <(missing_of "$group")
    ((${#missing[@]})) || continue
    install_packages "${missing[@]}" && continue
    for package in "${missing[@]}"; do install_packages "$package" || true; done
  done
fi

mapfile -t missing < <(missing_of '.*')
if ((${#missing[@]} == 0)); then exit 0; fi
echo "${missing[*]}" > "$given_up"
say "set-up: could not install: ${missing[*]} (what apt said is in $log)"
mapfile -t needed < <(missing_of "$(IFS='|'; echo "$*")")
((${#needed[@]} == 0)) || die "cannot go on without: ${needed[*]}"
