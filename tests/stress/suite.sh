#!/bin/bash
# The whole program under stress, in a small measure: actions at random, and kills while it saves and builds. The long
# runs are tests/acceptance/random_actions and tests/acceptance/kill with numbers of one's own. Needs what the
# acceptance suite needs. The last line is "N passed, N failed".
set -u
folder=$(cd "$(dirname "$0")/../acceptance" && pwd)
log=$(mktemp)
trap 'rm -f "$log"' EXIT

passed=1
failed=0
if ! "$folder/random_actions" --actions 120 --seed 11 > "$log"; then
  passed=0
  failed=1
fi
grep -E '^(before|after|the system|box|seed|DEFECT|random_actions)' "$log"
if ((failed)); then tail -n 40 "$log"; fi

"$folder/kill" --count 8 --seed 11 > "$log"
cat "$log"
read -r kills_passed _ kills_failed _ < <(tail -n 1 "$log")
passed=$((passed + ${kills_passed:-0}))
failed=$((failed + ${kills_failed:-1}))
echo "$passed passed, $failed failed"
((failed == 0 && passed > 1))
