#!/bin/bash
# The reduced cases, and 200 random programs that must do the same when Free Pascal compiles them. The last line is
# "N passed, N failed".
# Needs no display.
set -uo pipefail
cd "$(dirname "$0")/../.." || exit 1
source setup/lib.sh
setup/build.sh tools > /dev/null || die "the tools could not be built"
first=1 count=200
passed=0 failed=0
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# expected FILE: the text between "{ output" and "}".
expected() { sed -n '/^{ output/,/^}/p' "$1" | sed '1d;$d'; }

for file in tests/fuzz/cases/*.PAS; do
  cp "$file" "$work/CASE.PAS"
  rm -f "$work/CASE.COM"
  if out/bin/tp3 "$work/CASE.PAS" -o "$work/CASE.COM" > "$work/log" 2>&1 &&
    out/bin/msxrun --limit 2G "$work/CASE.COM" < /dev/null 2>> "$work/log" | tr -d '\r' > "$work/out" &&
    diff <(expected "$file") "$work/out" >> "$work/log"; then
    passed=$((passed + 1))
  else
    failed=$((failed + 1))
    echo "$file:"
    cat "$work/log"
  fi
done

tests/fuzz/long "$count" "$first" > "$work/log"
read -r compared different skipped < <(tail -n 1 "$work/log" | tr -cd '0-9 \n')
if ((different > 0 || compared + skipped < count || skipped > count / 10)); then cat "$work/log"; fi
# What Free Pascal skips is no test: it counts as neither, but there must not be many.
passed=$((passed + compared))
failed=$((failed + different))
if ((compared + different < count * 9 / 10 && different == 0)); then failed=$((failed + 1)); fi
echo "$passed passed, $failed failed"
((failed == 0))
