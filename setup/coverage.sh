#!/bin/bash
# coverage.sh: what `./test --coverage` does. Builds the pure code with counters (preset "coverage"), runs the native tests and
# the suites that are about native tools, prints how many lines of each source folder ran, and writes out/coverage/: files.txt
# (each file) and uncovered.txt (each line that never ran). The last line is "N passed, N failed"; below the goal of 95 % of all
# lines that is one failed case more.
set -uo pipefail
cd "$(dirname "$0")/.." || exit 1
source setup/lib.sh
source setup/test-report.sh
goal=95
program_limit=600
tree=$TAVREL_OUT/build/coverage
results=$TAVREL_OUT/coverage
gcov=gcov-$(g++ -dumpversion) # reads only what its own compiler wrote
command -v "$gcov" > /dev/null || gcov=gcov
command -v "$gcov" > /dev/null || die "gcov is missing, which comes with the compiler: apt-get install g++"
rm -rf "$results"
mkdir -p "$results"
start_report "$results"

run_tests() {
  local path name
  while IFS= read -r path; do
    name=coverage/$(basename "$path")
    googletest "$name" "$results" "$program_limit" "$path"
  done < "$tree/tests.txt"
  ctest_others coverage/ctest "$results" "$tree"
  TAVREL_DSKTOOL=$tree/kit/disk/dsktool suite coverage/disk "$results/disk.log" "$program_limit" tests/disk/suite.sh
  export TAVREL_TP3=$tree/kit/compiler/tp3 TAVREL_MSXRUN=$tree/kit/msxrun/msxrun
  suite coverage/programs "$results/programs.log" "$program_limit" setup/coverage-programs.sh
}

check build/coverage "$results/build.log" setup/build.sh coverage
if ! report > "$results/build-report.txt"; then
  cat "$results/build-report.txt"
  exit 1
fi
find "$tree" -name '*.gcda' -delete # counters of an earlier run, or of objects that are no more
run_tests
find "$tree" -name '*.gcno' -print0 | perl setup/coverage.pl "$gcov" "$TAVREL_ROOT" "$results" "$goal" \
  2> "$results/gcov.log" # which also tells of each object that never ran
check "coverage/$goal percent" /dev/null test -e "$results/reached"
report
