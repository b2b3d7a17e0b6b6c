#!/bin/bash
# reduce.sh FOLDER SEED [GENERATOR OPTION...]: leaves out statements and terms of a program that differs (or that tp3 does
# not compile) for as long as compare.sh gives the same exit code; ours.pas and free.pas in FOLDER are the small case.
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
folder=$1 seed=$2
shift 2
"$here/compare.sh" "$folder" "$seed" "$@"
wanted=$?
if ((wanted != 1 && wanted != 2)); then
  echo "seed $seed does not differ ($wanted)"
  exit 1
fi
count=$("$here/../../out/bin/pascal_generator" "$seed" "$@" --count)

dropped=()
options=("$@")
try() { # LIST of one more range
  local list
  list=$(IFS=,; echo "${dropped[*]:+${dropped[*]},}$1")
  "$here/compare.sh" "$folder" "$seed" "${options[@]}" --drop "$list" 2> /dev/null
  (($? == wanted)) || return 1
  dropped+=("$1")
}

# halves FIRST LAST SMALLEST: tries the whole range, then its halves.
halves() {
  local first=$1 last=$2 middle
  if try "$first-$last"; then return; fi
  if ((last - first + 1 <= $3)); then return; fi
  middle=$(((first + last) / 2))
  halves $((middle + 1)) "$last" "$3"
  halves "$first" "$middle" "$3"
}

halves 0 $((count - 1)) 1
"$here/compare.sh" "$folder" "$seed" "${options[@]}" --drop "$(IFS=,; echo "${dropped[*]}")"
echo "--drop $(IFS=,; echo "${dropped[*]}")"
