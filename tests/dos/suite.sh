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
touch "$work/ERRORS.TXT" "$work/RESULT.TXT" "$work/TP3OUT.\$\$\$" "$work/MINE.\$\$\$" "$work/KEEP.TXT"
in_dos_with_code DOS2CASH 0
expect 'stale error file is gone' test ! -e "$work/ERRORS.TXT"
expect 'stale size file is gone' test ! -e "$work/RESULT.TXT"
expect "the compiler's temporary file is gone" test ! -e "$work/TP3OUT.\$\$\$"
expect "the user's temporary file stays" test -e "$work/MINE.\$\$\$"
expect 'other files stay' test -e "$work/KEEP.TXT"
expect 'prints nothing' test ! -s "$work/OUT.TXT"
expect 'exit code 0' test -e "$work/CODE.TXT"
in_dos_with_code DOS2CASH 0
expect 'nothing to do is no failure' test -e "$work/CODE.TXT" -a ! -s "$work/OUT.TXT"
ln -s nowhere "$work/RESULT.TXT"
in_dos DOS2CASH
expect 'a link that leads nowhere is no place to write through' test ! -L "$work/RESULT.TXT"

# What a project may run by mistake must reach no other folder.
mkdir "$work/victim"
reach_out=("mount d $work/victim" "echo reached > d:\\EVIL.TXT")
in_dos "${reach_out[@]}"
expect 'an open DOSBox mounts another folder' test -e "$work/victim/EVIL.TXT"
rm -f "$work/victim"/*
in_dos DOS2CASH "${reach_out[@]}"
expect 'a locked one does not' test ! -e "$work/victim/EVIL.TXT"
in_dos DOS2CASH "config -writeconf $work/victim/EVIL.TXT" 'echo on > AFTER.TXT'
expect 'nor does it write its settings' test ! -e "$work/victim/EVIL.TXT"
expect 'the script goes on after that' test -e "$work/AFTER.TXT"

# The build's script glues library and program, after a compiler that has succeeded.
printf 'LIBRARY' > "$work/RUNTIME.COM"
# build [COMPILER LINE...]: a build's script whose compiler is these lines; the report of the sizes comes first.
build() {
    printf 'PROGRAM' > "$work/GAME.CHN"
    printf 'old' > "$work/GAME.COM"
    {
        printf 'DOS2CASH\r\n'
        (($# == 0)) || printf '%s\r\n' "$@"
        printf 'copy runtime.com/b + GAME.chn/b GAME.com\r\n'
    } > "$work/TURBOPC.BAT"
    script_length=$(stat -c %s "$work/TURBOPC.BAT")
    in_dos 'call TURBOPC'
}
succeeds='echo Code: 16 bytes > result.txt'
fails='echo "GAME.PAS",3,1,41,"Unknown identifier" > errors.txt'
build "$succeeds"
expect 'library and program are glued' test "$(cat "$work/GAME.COM")" = LIBRARYPROGRAM
expect 'the script keeps its length' test "$(stat -c %s "$work/TURBOPC.BAT")" = "$script_length"
expect 'a success leaves no error' test ! -e "$work/ERRORS.TXT"
build "$fails"
expect 'after an error no program is made or changed' test "$(cat "$work/GAME.COM")" = old
expect 'and the error stays as it is' grep -q '^"GAME.PAS",3,1,41,"Unknown identifier"' "$work/ERRORS.TXT"
build
expect 'a compiler that did not run makes no program' test "$(cat "$work/GAME.COM")" = old
expect 'and is told' test "$(cat "$work/ERRORS.TXT")" = $'"GAME.PAS",1,1,98,"The compiler did not come to its end"\r'
build 'echo something else > result.txt'
expect 'nor does one that broke off' grep -q 'did not come to its end' "$work/ERRORS.TXT"
head -c 9000 /dev/zero > "$work/RUNTIME.COM"
: > "$work/victim/KEEP.COM"
rm -f "$work/GAME.COM"
ln -s victim/KEEP.COM "$work/LINK.COM"
printf 'PROGRAM' > "$work/LINK.CHN"
printf 'DOS2CASH\r\n%s\r\ncopy runtime.com/b + LINK.chn/b LINK.com\r\n' "$succeeds" > "$work/TURBOPC.BAT"
in_dos 'call TURBOPC'
expect 'a link is replaced, not followed' test ! -L "$work/LINK.COM" -a ! -s "$work/victim/KEEP.COM"
expect 'by the program' test "$(stat -c %s "$work/LINK.COM")" = 9007
# As on a full disk, no file can grow beyond a limit (8 blocks of 1024 bytes).
(trap '' XFSZ; ulimit -f 8; build "$succeeds")
expect 'a program that the disk does not hold is not left there in part' test ! -e "$work/GAME.COM"
expect 'and is told' test "$(cat "$work/ERRORS.TXT")" = $'"GAME.PAS",1,1,94,"Disk full: there is no room for the program"\r'
rm -f "$work/RUNTIME.COM"
build "$succeeds"
expect 'no program comes of a library that is not there' test ! -e "$work/GAME.COM" -a -e "$work/ERRORS.TXT"

# A build of a chain image alone has no such line; its outcome is looked at all the same.
chain_build() {
    printf 'DOS2CASH\r\n%s\r\n' "$1" > "$work/TURBOPC.BAT"
    in_dos 'call TURBOPC'
}
chain_build "$succeeds"
expect 'a chain image that was made is no error' test ! -e "$work/ERRORS.TXT"
chain_build 'echo x > result.txt'
expect 'one that was not is told' test "$(cat "$work/ERRORS.TXT")" = $'"TP3",1,1,98,"The compiler did not come to its end"\r'

echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
