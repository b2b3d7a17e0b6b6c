#!/bin/bash
# Runs the DOS programs of a build tree in DOSBox, with the configuration that the product uses.
#   tests/dos/suite.sh [folder with the programs]
# Last line: N passed, N failed. Exit code 0 when nothing failed.
# Needs no display.
set -u
root=$(cd "$(dirname "$0")/../.." && pwd)
programs=${1:-$root/out/build/dos/kit/dos}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
passed=0
failed=0

# in_dos LINE...: runs the lines as a batch file in a fresh drive C: of copies; what they wrote stays in $work.
product_configuration=$root/share/program/compiler/temp.conf
configuration=$product_configuration
in_dos() {
    printf '%s\r\n' '@echo off' "$@" >"$work/GO.BAT"
    SDL_VIDEODRIVER=dummy SDL_AUDIODRIVER=dummy timeout 60 dosbox \
        -conf "$configuration" "$work/GO.BAT" -noconsole -exit >/dev/null 2>&1
}

# with_memory MEGABYTES XMS: what follows runs on such a machine.
with_memory() {
    sed -E "s/^memsize=.*/memsize=$1/; s/^xms=.*/xms=$2/" "$product_configuration" >"$work/machine.conf"
    configuration=$work/machine.conf
}

# heap_is NAME LEAST MOST: the heap has so many kB, and all of it is memory of its own.
heap_is() {
    local size
    in_dos 'SELFTEST heap > OUT.TXT'
    size=$(sed -n 's/^\([0-9]*\) kB whole.*/\1/p' "$work/OUT.TXT")
    expect "$1" test "${size:-0}" -ge "$2" -a "${size:-0}" -le "$3"
}

# in_dos_with_code COMMAND CODE: runs it, its output in OUT.TXT, and makes CODE.TXT when it ends with that code.
# (DOSBox makes the file of a redirection whether or not the IF before it holds, hence the jumps.)
in_dos_with_code() {
    rm -f "$work/OUT.TXT" "$work/CODE.TXT"
    in_dos "$1 > OUT.TXT" "if errorlevel $(($2 + 1)) goto end" "if errorlevel $2 goto equal" 'goto end' \
        ':equal' 'echo yes > CODE.TXT' ':end'
}

# expect NAME CONDITION...: counts one test.
expect() {
    local name=$1
    shift
    if "$@"; then
        passed=$((passed + 1))
    else
        failed=$((failed + 1))
        echo "FAIL $name"
        sed 's/^/     /' "$work"/OUT.TXT 2>/dev/null
    fi
}

# ends NAME ARGUMENTS CODE [TEXT]: SELFTEST ends with the exit code and prints the text.
ends() {
    in_dos_with_code "SELFTEST $2" "$3"
    expect "$1: exit code $3" test -e "$work/CODE.TXT"
    if [ $# -gt 3 ]; then
        expect "$1: says $4" grep -q "$4" "$work/OUT.TXT"
    fi
}

cp "$programs"/*.EXE "$programs"/*.COM "$work" || exit 1

in_dos 'SELFTEST all > OUT.TXT'
expect 'the platform' grep -q '^[1-9][0-9]* passed, 0 failed' "$work/OUT.TXT"
ends 'exit code' 'exit 9' 9
ends 'unknown word' 'nothing' 200
ends 'memory runs out' 'memory' 251 'Out of memory'
ends 'own handler' 'handler' 77 'my own handler'
ends 'stack overflow' 'stack' 254 'stack overflow'
ends 'division by zero' 'divide' 253 'exception 00'
ends 'out of range' 'at' 250 'range'
ends 'recursion' 'depth' 1

# Memory above 1 MB: by XMS, given back at every kind of end; by INT 15h; none.
heap_is 'XMS' 14000 16000
in_dos 'SELFTEST exit 9' 'SELFTEST divide' 'SELFTEST memory' 'SELFTEST stack' 'SELFTEST heap > OUT.TXT'
expect 'XMS is given back' grep -q '^1[45][0-9][0-9][0-9] kB whole' "$work/OUT.TXT"
with_memory 16 false
heap_is 'INT 15h' 14000 16000
with_memory 1 false
heap_is 'conventional memory only' 300 640
with_memory 1 true
heap_is 'XMS without memory' 300 640
configuration=$product_configuration

# A build that was killed leaves its files; the next one must not take them for its own.
touch "$work/ERRORS.TXT" "$work/RESULT.TXT" "$work/A.\$\$\$" "$work/KEEP.TXT"
in_dos_with_code DOS2CASH 0
expect 'stale error file is gone' test ! -e "$work/ERRORS.TXT"
expect 'stale size file is gone' test ! -e "$work/RESULT.TXT"
expect 'temporary files are gone' test ! -e "$work/A.\$\$\$"
expect 'other files stay' test -e "$work/KEEP.TXT"
expect 'prints nothing' test ! -s "$work/OUT.TXT"
expect 'exit code 0' test -e "$work/CODE.TXT"
in_dos_with_code DOS2CASH 0
expect 'nothing to do is no failure' test -e "$work/CODE.TXT" -a ! -s "$work/OUT.TXT"

# The build's script glues library and program with a COPY that DOSBox alone would not understand.
printf 'LIBRARY' > "$work/RUNTIME.COM"
printf 'PROGRAM' > "$work/GAME.CHN"
printf 'DOS2CASH\r\ncopy runtime.com/b + GAME.chn/b GAME.com\r\n' > "$work/TURBOPC.BAT"
script_length=$(stat -c %s "$work/TURBOPC.BAT")
in_dos TURBOPC
expect 'library and program are glued' test "$(cat "$work/GAME.COM")" = LIBRARYPROGRAM
expect 'the script keeps its length' test "$(stat -c %s "$work/TURBOPC.BAT")" = "$script_length"
printf 'DOS2CASH\r\nTP3 GAME /H > result.txt\r\n' > "$work/TURBOPC.BAT"
cp "$work/TURBOPC.BAT" "$work/SAME.TXT"
in_dos_with_code DOS2CASH 0
expect 'a script without that line stays as it is' cmp -s "$work/TURBOPC.BAT" "$work/SAME.TXT"

echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
