#!/bin/bash
# compare.sh FOLDER SEED [GENERATOR OPTION...]: makes the program of a seed in FOLDER, compiles and runs it twice: with tp3
# and msxrun, and with Free Pascal. Exit code 0 both print the same; 1 they differ; 2 ours did not compile; 3 Free
# Pascal could not compile or run it, which makes it no test.
set -uo pipefail
binaries=$(cd "$(dirname "$0")/../.." && pwd)/out/bin
folder=$1 seed=$2
shift 2
limit=2G # T-states: many times what the generator's budget of calls and loops allows
# Without optimisation: -O1 of Free Pascal 3.2.2 negates some conditions wrongly (seed 10868).
cd "$folder" || exit 3
rm -rf ours.com ours.txt free free.o free.txt disk -- *.TXT *.DAT
mkdir disk || exit 3
"$binaries/pascal_generator" "$seed" "$@" > ours.pas || exit 3
"$binaries/pascal_generator" "$seed" "$@" --free > free.pas || exit 3
fpc -Mtp -v0 -l- -O- free.pas > free.log 2>&1 || exit 3
timeout 10 ./free < /dev/null > free.txt 2>> free.log || exit 3
"$binaries/tp3" ours.pas -o ours.com > ours.log 2>&1 || exit 2
timeout 20 "$binaries/msxrun" --disk disk --limit "$limit" ours.com < /dev/null 2>> ours.log | tr -d '\r' > ours.txt
cmp -s ours.txt free.txt || exit 1
