# Sourced by ./test: counts test cases, keeps what failed.
# shellcheck shell=bash

# start_report FOLDER: begins a count; records of several processes go into one file there.
start_report() {
  records=$1/records.txt
  : > "$records"
}

# record NAME PASSED FAILED LOG: notes the counts, and shows the log of what failed. Indented, because a log may hold a
# line that looks like the final one. The lock keeps the texts of lanes that run side by side apart.
record() {
  local name=$1 log=$4 now=$SECONDS
  {
    flock 9
    printf '%s %s %s\n' "$2" "$3" "$name" >&9
    printf '%-40s %s passed, %s failed (%d s)\n' "$name" "$2" "$3" $((now - ${recorded_at:-0}))
    if (($3 > 0)) && [[ -s $log ]]; then tail -n 200 "$log" | sed 's/^/    /'; fi
  } 9>> "$records"
  recorded_at=$now
}

# check NAME LOG COMMAND...: a command that is one test case.
check() {
  local name=$1 log=$2
  shift 2
  if "$@" > "$log" 2>&1 < /dev/null; then record "$name" 1 0 "$log"; else record "$name" 0 1 "$log"; fi
}

# count_googletest XML: prints "PASSED FAILED", and the names of the failed cases on further lines.
count_googletest() {
  awk '
    function attribute(name) { return match($0, " " name "=\"[^\"]*\"") ? substr($0, RSTART + length(name) + 3, RLENGTH - length(name) - 4) : "" }
    /<testcase / { counted = attribute("result") == "completed"; current = attribute("classname") "." attribute("name"); total += counted }
    /<failure/ && counted { counted = 0; ++bad; names = names current "\n" }
    END { printf "%d %d\n%s", total - bad, bad, names }' "$1"
}

# repeat_failures LOG: what the failed cases of a test program printed, at most 40 lines of each, at the end of the log,
# since only its end is shown.
repeat_failures() {
  local text
  text=$(awk '
    /^\[ RUN / { lines = 0; shown = "" }
    lines++ < 40 { shown = shown $0 "\n" }
    /^\[  FAILED  \] .* ms\)/ { printf "%s", shown }' "$1")
  printf '%s\n' "$text" >> "$1"
}

# googletest NAME FOLDER LIMIT COMMAND...: runs one test program with --gtest_output added. Only the report counts that
# it writes at its end: a program that did not start, crashed, hung or held no test is one failed case.
googletest() {
  local name=$1 folder=$2 limit=$3
  shift 3
  local base=$folder/${name//\//-} report log status=0 counts good bad
  report=$base.xml log=$base.log
  rm -f "$report"
  local report_name=$report
  if [[ $1 == wine ]]; then report_name=$(windows_path "$report"); fi
  # In a subshell of its own, so that what bash says about an abort goes to the log as well.
  (timeout -k 5 "$limit" "$@" "--gtest_output=xml:$report_name" || exit) > "$log" 2>&1 < /dev/null || status=$?
  if [[ ! -s $report ]]; then
    echo "$name wrote no report: it crashed, hung (limit $limit s) or did not start; it ended with $status" >> "$log"
    record "$name" 0 1 "$log"
    return
  fi
  counts=$(count_googletest "$report")
  read -r good bad <<< "$counts"
  if ((bad > 0)); then repeat_failures "$log"; fi
  tail -n +2 <<< "$counts" | sed '/./s/^/failed: /' >> "$log"
  if ((good + bad == 0)); then
    echo "$name ran no test" >> "$log"
    bad=1
  elif ((status != 0 && bad == 0)); then
    echo "$name ended with $status after its tests" >> "$log"
    bad=1
  fi
  record "$name" "$good" "$bad" "$log"
}

# suite NAME LOG LIMIT SCRIPT: a script whose last line is "N passed, N failed"; without that line, or when its exit
# code does not fit, it is one failed case more.
suite() {
  local name=$1 log=$2 limit=$3 script=$4 status=0 last good=0 bad=0
  timeout -k 10 "$limit" "$script" > "$log" 2>&1 < /dev/null || status=$?
  last=$(tail -n 1 "$log" | tr -d '\r')
  if [[ $last =~ ^([0-9]+)\ passed,\ ([0-9]+)\ failed$ ]]; then
    good=${BASH_REMATCH[1]} bad=${BASH_REMATCH[2]}
    if ((good + bad == 0 || (status != 0 && bad == 0) || (status == 0 && bad != 0))); then
      echo "$name ended with $status, which does not fit its last line" >> "$log"
      bad=$((bad + 1))
    fi
  else
    echo "$name ended with $status and without a line \"N passed, N failed\" (limit $limit s)" >> "$log"
    bad=1
  fi
  record "$name" "$good" "$bad" "$log"
}

# ctest_others NAME FOLDER TREE: what is registered with CTest and is no GoogleTest program; one case each.
ctest_others() {
  local name=$1 folder=$2 tree=$3 log=$2/ctest.log report=$2/ctest.xml status=0 total bad
  if (cd "$tree" && ctest -N -LE googletest) 2> /dev/null | grep -qx 'Total Tests: 0'; then return; fi
  rm -f "$report"
  (cd "$tree" && ctest -LE googletest --timeout 300 --output-on-failure --output-junit "$report") > "$log" 2>&1 < /dev/null ||
    status=$?
  total=$(grep -c '<testcase ' "$report" 2> /dev/null) || true
  bad=$(grep '<testcase ' "$report" 2> /dev/null | grep -vc 'status="run"') || true
  total=${total:-0} bad=${bad:-0}
  if ((total == 0 || (status != 0 && bad == 0))); then bad=$((bad + 1)) total=$((total + 1)); fi
  record "$name" $((total - bad)) "$bad" "$log"
}

# report: the failing names and the last line; returns whether all is well.
report() {
  awk '
    { passed += $1; failed += $2 }
    $2 > 0 { sub(/^[0-9]+ [0-9]+ /, ""); names = names "  " $0 "\n" }
    END {
      if (names != "") printf "Failed:\n%s", names
      printf "%d passed, %d failed\n", passed, failed
      exit failed > 0 || passed == 0
    }' "$records"
}
