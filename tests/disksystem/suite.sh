#!/bin/bash
# The disk system on MSX computers that we did not write: openMSX with C-BIOS starts from disks with our disk ROM.
# Needs out/bin and the ROM, pasmo, Perl, openMSX with C-BIOS, dosfstools.
#   tests/disksystem/suite.sh [PART]    PART: pascal, calls, faults, msxlib
# Last line: N passed, N failed. Exit code 0 when nothing failed.
set -u
here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/../.." && pwd)
work=$root/out/disksystem
filter=${1:-}
export LC_ALL=C.UTF-8
source "$here/machine.sh"
source "$here/faults.sh"
passed=0
failed=0
rm -rf "$work"
mkdir -p "$work"

wanted() { [[ $1 == *"$filter"* ]]; }

# same NAME EXPECTED ACTUAL
same() {
  if [[ $3 == "$2" ]]; then
    passed=$((passed + 1))
  else
    printf 'FAIL %s\n     expected: %s\n     found:    %s\n' "$1" "$2" "$3"
    failed=$((failed + 1))
  fi
}

# counted FILE: adds up lines "ok NAME" and "FAIL NAME..."; shows the others.
counted() {
  grep -a -v '^ok ' "$1"
  passed=$((passed + $(grep -a -c '^ok ' "$1")))
  failed=$((failed + $(grep -a -c '^FAIL ' "$1")))
}

# Every program of tests/pascal but one: how long Delay takes on a machine is measured by tests/console, which allows for what an
# interrupt takes there.
pascal() {
  find "$root/tests/pascal" -maxdepth 1 -name '*.PAS' ! -name DELAYS.PAS -print0 | sort -z |
    xargs -0 -P2 -n 54 "$here/pascal.sh" "$work/pascal" > "$work/pascal.txt" 2>&1
  counted "$work/pascal.txt"
  same "pascal: each program was run" "$(find "$root/tests/pascal" -maxdepth 1 -name '*.PAS' ! -name DELAYS.PAS | wc -l)" \
    "$(grep -a -c '^ok \|^FAIL ' "$work/pascal.txt")"
}

# Sequences of calls, always the same ones here; calls.sh does any others.
calls() {
  seq 1 25 "${TAVREL_SEQUENCES:-100}" | xargs -P2 -I{} "$here/calls.sh" "$work/calls" {} 25 > "$work/calls.txt" 2>&1
  counted "$work/calls.txt"
  same "calls: each sequence was done" "${TAVREL_SEQUENCES:-100}" "$(grep -a -c '^ok \|^FAIL ' "$work/calls.txt")"
}

# The suite of the MSX library, its programs started from disks.
msxlib() {
  TAVREL_BOOT=disk "$root/tests/msxlib/suite.sh" > "$work/msxlib.txt" 2>&1
  grep -a -v ' passed, ' "$work/msxlib.txt"
  local last
  last=$(tail -n 1 "$work/msxlib.txt")
  if [[ $last =~ ^([0-9]+)\ passed,\ ([0-9]+)\ failed$ ]]; then
    passed=$((passed + BASH_REMATCH[1])) failed=$((failed + BASH_REMATCH[2]))
  else
    same "msxlib: comes to its end" "N passed, N failed" "$last"
  fi
}

if wanted pascal; then pascal; fi
if wanted calls; then calls; fi
if wanted faults; then disk_faults "${2:-}"; fi
# Only by its name: three of its programs show something else than without a disk, and LOADING 8 takes too long.
if [[ $filter == msxlib ]]; then msxlib; fi

echo "$passed passed, $failed failed"
((failed == 0 && passed > 0))
