#!/bin/bash
# The whole program, used as a user would: starts out/Tavrel/Tavrel.exe with the sample project, compiles, reads the
# progress window, runs the program from the disk image. Needs a display, Wine with WINEPREFIX set, an assembled
# program folder, drive.exe, recorder.exe and msxrun, and mtools.
set -u
source "$(dirname "$0")/using.sh"

cp "$root"/share/samples/hello/* "$work"/
start "$work/HELLO.TPJ"
check "the sample project fills the tree" "*HELLO.PAS" "$(drive tree)"
check "the include hangs below the main file" "    HELLO.INC" "$(drive tree)"
check "the status line names the file" "Current View: HELLO.PAS" "$(drive status)"
check "the editor shows the main file" "program Hello;" "$(drive text)"
check "F6 compiles the sample" "No errors - Sucessfully compiled" "$(drive compile-and-report --key)"
check "the program has been made" "HELLO.COM" "$(ls "$work" | tr a-z A-Z)"
made=$(find "$work" -iname HELLO.COM)
fpc -Mtp -v0 -o"$work/peer" "$work/HELLO.PAS" > /dev/null 2>&1
check "the program prints what Free Pascal's prints" "same" \
  "$(cmp <("$root/out/bin/msxrun" "$made" | tr -d '\r') <("$work/peer") && echo same)"
rm -f "$work/peer" "$work"/*.o
check "the kit has been taken out again" "kit: 0" "kit: $(ls "$work" | grep -c -i -E 'tp3|runtime|dos2cash|turbopc')"
stop
check "the program ends when it is closed" "ended 0" "$ended"

# Compile and Run, in a program folder with settings of its own: the emulator is a program that records its command
# line, and the disk image lies in a folder whose name holds a blank.
folder_files() { (cd "$1" && ls) | tr a-z A-Z | sort; }

compile_and_run() {
  local own=$work.run program=$work.run/Tavrel image="$work.run/my disks/d.dsk" game=$work.run/game tries
  mkdir -p "$game" "$own/my disks"
  cp "$root"/share/samples/hello/* "$game"/
  cp -r "$root/out/Tavrel" "$program"
  cp "$root/out/bin/recorder.exe" "$own"/
  write_settings "$program" "$(windows_name "$own/recorder.exe")" '-diska %DSK -msx2' "$(windows_name "$own/my disks")"
  echo 'an older image' > "$image"
  start "$game/HELLO.TPJ"
  drive tree > /dev/null
  drive menu mnuCompileRun --key > /dev/null
  for ((tries = 0; tries < 1200; ++tries)); do
    [[ -f $own/recorder.txt ]] && break
    sleep 0.1
  done
  check "F5 starts the emulator with the disk image" "recorder.exe -diska $(windows_name "$image") -msx2" \
    "$(tr -d '\r' < "$own/recorder.txt" 2>&1)"
  check "the disk holds every file of the project folder" "$(folder_files "$game")" \
    "$(mdir -b -i "$image" :: 2>&1 | sed 's|^::/||' | sort)"
  mcopy -n -i "$image" ::HELLO.COM "$own/DISK.COM"
  check "the program on the disk is the one in the folder" "same" \
    "$(cmp "$own/DISK.COM" "$(find "$game" -iname HELLO.COM)" 2>&1 && echo same)"
  check "and it runs" "46 of them, their sum is 4227: odd." \
    "$("$root/out/bin/msxrun" --limit 1G "$own/DISK.COM" 2>&1)"
  stop
  check "the program ends after that too" "ended 0" "$ended"
}
compile_and_run

# An error in the include file; line 4 of it cannot be Pascal.
sed -i '4s/.*/  ] nonsense;\r/' "$work/HELLO.INC"
start "$work/HELLO.TPJ"
check "an error in an include is told" "HELLO.INC: line 4" "$(drive compile-and-report)"
check "the caret stands on the failing line" "line 4 column 1 highlighted 4" "$(drive caret)"
check "the failing file is shown" "Current View: HELLO.INC" "$(drive status)"
stop
check "the program still ends when it is closed" "ended 0" "$ended"

# An error in the main file, on its first and on its last line.
cp "$root"/share/samples/hello/* "$work"/
sed -i '1s/.*/] broken\r/' "$work/HELLO.PAS"
start "$work/HELLO.TPJ"
check "an error in the first line is told" "HELLO.PAS: line 1" "$(drive compile-and-report)"
check "the caret stands on the first line" "line 1 column 1 highlighted 1" "$(drive caret)"
stop

# What is wrong with a project is told, and the program lives on.
printf 'Hello\r\n2E9B\r\n' > "$work/SHORT.TPJ"
start "$work/SHORT.TPJ"
check "a short project file is told" "fewer than four lines" "$(drive answer OK)"
stop
check "a short project file ends nothing" "ended 0" "$ended"

printf 'Lost\r\n2E9B\r\nD200\r\nLOST.PAS\r\n' > "$work/LOST.TPJ"
start "$work/LOST.TPJ"
check "a missing main file is asked for" "Show where the file LOST.PAS is" "$(drive answer Cancel)"
check "a missing main file is told" "Could not find the file LOST.PAS" "$(drive answer OK)"
stop
check "a missing main file ends nothing" "ended 0" "$ended"

head -c 20000 /dev/urandom > "$work/NOISE.PAS"
cp "$work/NOISE.PAS" "$work/noise.copy"
printf 'Noise\r\n2E9B\r\nD200\r\nNOISE.PAS\r\n' > "$work/NOISE.TPJ"
start "$work/NOISE.TPJ"
check "a source of random bytes is an error" "Error :" "$(drive compile-and-report)"
check "random bytes stay as they are" "same" "$(cmp "$work/NOISE.PAS" "$work/noise.copy" && echo same)"
stop
check "random bytes end nothing" "ended 0" "$ended"

printf 'program Snake;\r\n{$I TAIL.INC}\r\nbegin\r\nend.\r\n' > "$work/SNAKE.PAS"
printf '{$I TAIL.INC}\r\n' > "$work/TAIL.INC"
printf 'Snake\r\n2E9B\r\nD200\r\nSNAKE.PAS\r\n' > "$work/SNAKE.TPJ"
start "$work/SNAKE.TPJ"
check "an include that includes itself is loaded" "TAIL.INC" "$(drive tree)"
check "an include that includes itself is an error" "Error : 96" "$(drive compile-and-report)"
stop
check "an include that includes itself ends nothing" "ended 0" "$ended"

# A program folder that lacks a part of the compiler.
cp "$root"/share/samples/hello/* "$work"/
program=$work.program # outside the project folder, which may not grow that large
cp -r "$root/out/Tavrel" "$program"
rm "$program/compiler/RUNTIME.COM"
start "$work/HELLO.TPJ"
check "an incomplete kit is no matter before a build" "*HELLO.PAS" "$(drive tree)"
drive menu mnuCompile > /dev/null
check "a missing kit file is told" "RUNTIME.COM" "$(drive answer OK)"
check "nothing of the kit is left behind" "kit: 0" "kit: $(ls "$work" | grep -c -i -E 'tp3|dos2cash|turbopc')"
stop
check "a missing kit file ends nothing" "ended 0" "$ended"

summary
