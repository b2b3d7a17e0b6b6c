#!/bin/bash
# Projects from somebody who means harm, and builds that would not end, against the delivered program folder: each attack is
# made here, used as a person would use it, and shown to do nothing. docs/reliability.md has the table. Needs what the
# acceptance suite needs, and nasm.
set -u
source "$(dirname "$0")/../acceptance/using.sh"

delivered=$program
victim=$work.victim
mkdir "$victim"

# project NAME [LINE1 [LINE4]]: a new empty folder, the current one, with a project file P.TPJ and a main file X.PAS.
project() {
  game=$work/$1
  mkdir -p "$game"
  cd "$game" || exit 1
  printf 'begin\r\n  WriteLn(1)\r\nend.\r\n' > X.PAS
  printf '%s\r\n2E9B\r\nD200\r\n%s\r\n' "${2:-Game}" "${3:-X.PAS}" > P.TPJ
}
files_of() { (cd "$1" && ls -A | sort | paste -sd' '); }
open_project() { start "$game/P.TPJ"; }
# own_program NAME: a copy of the delivered program folder, which is the one that is used from now on.
own_program() {
  program=$work.$1
  cp -r "$delivered" "$program"
}
dosboxes() { pgrep -fc "$(basename "$work")[^ ]*DOSBox.exe" || true; } # of this suite's own program folders
# no_dosbox_within SECONDS
no_dosbox_within() {
  local tries
  for ((tries = 0; tries < $1 * 10; ++tries)); do
    [[ $(dosboxes) == 0 ]] && break
    sleep 0.1
  done
  dosboxes
}

# A program that writes EVIL.TXT into the folder where it is started: as the compiler's rival, and as somebody's calculator.
cat > "$work.evil.asm" <<'ASM'
        org 100h
        mov ah, 3Ch
        xor cx, cx
        mov dx, name
        int 21h
        mov ax, 4C00h
        int 21h
name    db "EVIL.TXT", 0
ASM
nasm -f bin -o "$work.evil.com" "$work.evil.asm"
echo 'here: jmp here' > "$work.hang.asm"
nasm -f bin -o "$work.hang.com" "$work.hang.asm"
evil_batch="mount d $victim\r\necho evil > d:\\\\EVIL.TXT\r\necho evil > EVIL.TXT\r\n"

rivals_of_the_compiler() {
  project rival
  cp "$work.evil.com" TP3.COM
  open_project
  check "TP3.COM in a project is refused by its name" "holds the file TP3.COM" "$(drive compile-and-report)"
  rm TP3.COM
  printf '%b' "$evil_batch" > tp3.bat
  check "so is TP3.BAT" "holds the file TP3.BAT" "$(drive compile-and-report)"
  same "neither was run" "P.TPJ X.PAS tp3.bat" "$(files_of .)"
  rm tp3.bat
  check "without them the project builds" "No errors" "$(drive compile-and-report)"
  stop

  # The second wall, without the first: the delivered DOSBox with a script that runs such a batch file.
  cp "$delivered/compiler/DOS2CASH.COM" .
  printf '%b' "$evil_batch" > TP3.BAT
  printf 'DOS2CASH\r\nTP3\r\n' > GO.BAT
  SDL_VIDEODRIVER=dummy timeout 60 wine "$delivered/compiler/DOSBox-0.74/DOSBox.exe" -conf "$(windows_name "$delivered/compiler/temp.conf")" \
    "$(windows_name "$game/GO.BAT")" -noconsole -exit > /dev/null 2>&1 < /dev/null
  check "and if it ran, it would run" "EVIL.TXT" "$(files_of .)"
  same "but in a DOSBox that is locked" "" "$(files_of "$victim")"
}

names_that_are_paths() {
  project name '..\victim\evil.bat'
  mkdir "$work/victim"
  open_project
  drive click-node '..\victim\evil.bat' > /dev/null
  drive type 'start evil' > /dev/null
  drive menu mnuCompile > /dev/null
  check "a project whose name is a path is not built" "cannot be the name of a file" "$(drive answer OK)"
  drive menu mnuSaveFile > /dev/null
  check "nor saved by Ctrl+S" "cannot be the name of a file" "$(drive answer OK)"
  drive menu mnuSavePrj > /dev/null
  check "nor by Save Project" "cannot be the name of a file" "$(drive answer OK)"
  stop
  same "nothing was written outside" "" "$(files_of "$work/victim")"
  same "nor inside" "P.TPJ X.PAS" "$(files_of .)"

  project line4 Game '../victim/X.PAS'
  echo 'the victim' | tee "$work/victim/X.COM" > "$work/victim/X.PAS"
  open_project
  check "of line 4 only the name counts" "begin" "$(drive text)"
  check "whichever separator it has" "No errors" "$(drive compile-and-report)"
  stop
  same "the program of another folder stays" "the victim" "$(cat "$work/victim/X.COM")"
  rm -r "$work/victim"
}

programs_in_the_current_folder() {
  own_program planted
  write_settings "$program" '' '-diska %dsk -msx2' "$(windows_name "$program/dsk")"
  project planted
  mkdir -p "$work/current/1"
  cd "$work/current" || exit 1 # where Tavrel is started
  cp "$root/out/bin/recorder.exe" ' -diska.exe'
  cp "$root/out/bin/recorder.exe" -- '-diska.exe'
  cp "$root/out/bin/recorder.exe" 1/calc.exe
  cp "$root/out/bin/recorder.exe" calc.exe
  open_project
  drive tree > /dev/null
  drive menu mnuCalc > /dev/null
  drive menu mnuCompileRun > /dev/null
  await_file "$program/dsk/d.dsk"
  await "without an emulator F5 says so" "No emulator is set" drive status
  sleep 2
  check "a program in the place of the emulator or the calculator is not started" "none" \
    "$(find "$work/current" "$game" "$program" -name 'recorder.txt' | grep . || echo none)"
  check "and the image is there" "X        COM" "$(mdir -i "$program/dsk/d.dsk" :: 2>&1)"
  stop
  program=$delivered
}

bombs() {
  project circle
  mkdir a b
  ln -s ../b a/b
  ln -s ../a b/a
  ln -s .. b/up
  open_project
  check "folder links in a circle hang no build" "No errors" "$(drive compile-and-report --timeout 100)"
  stop
  project includes
  yes $'{$I A.INC}\r' | head -2000 | tee A.INC > X.PAS
  start "$game/P.TPJ"
  check "2,000 includes of 2,000 includes come to an end" "includes too many files" "$(drive answer OK)"
  same "with as many nodes as there may be" 500 "$(drive tree | wc -l)"
  stop
}

# A user's own files that look like left-overs.
files_that_are_the_users() {
  project own
  touch '~tavrel-notes.txt' 'BACKUP.$$$'
  open_project
  check "a project with odd files builds" "No errors" "$(drive compile-and-report)"
  stop
  check "a user's ~tavrel file stays" '~tavrel-notes.txt' "$(files_of .)"
  check "a user's .\$\$\$ file stays" 'BACKUP.$$$' "$(files_of .)"
}

folders_with_letters() {
  local folder
  own_program letters
  write_settings "$program" '' '' "$(windows_name "$program/dsk")" # no New Project dialog
  for folder in 'Jürgen/Töne' 'café' 'a b & (c)'; do
    project "$folder"
    # By the dialog: an argument with blanks comes in quotes, and is then no project.
    start
    drive menu mnuOpenProject > /dev/null
    drive file "$(windows_name "$game/P.TPJ")" > /dev/null
    await "a project in $folder opens" "X.PAS" drive tree
    check "a build in $folder" "No errors" "$(drive compile-and-report)"
    check "makes the program" "X.COM" "$(files_of . | tr a-z A-Z)"
    stop
  done
  project '50%off'
  open_project
  check "a folder with a % is refused" "has a % in its name" "$(drive compile-and-report)"
  drive answer OK > /dev/null
  stop
  project '5€'
  open_project
  check "so is one with a letter that DOS does not have" "has a letter in its name" "$(drive compile-and-report)"
  drive answer OK > /dev/null
  stop

  project plain
  for folder in 'with blank' 'with€'; do
    own_program "$folder"
    open_project
    check "Tavrel in a folder $folder says so before a build" "Move Tavrel into another folder" "$(drive compile-and-report)"
    drive answer OK > /dev/null
    stop
  done
  own_program incomplete
  rm "$program/compiler/DOSBox-0.74/DOSBox.exe"
  open_project
  check "without DOSBox there is no success" "DOSBox.exe" "$(drive compile-and-report)"
  drive answer OK > /dev/null
  stop
  program=$delivered
}

builds_that_hang() {
  own_program hanging
  cp "$work.hang.com" "$program/compiler/TP3.EXE"
  project hanging
  echo old > X.COM
  open_project
  drive tree > /dev/null
  drive menu mnuCompile > /dev/null
  sleep 21
  await "a build that takes long names the key that ends it" "Ctrl+Break" drive status
  drive break > /dev/null
  check "which it does" "The build was broken off. No program was made." "$(drive outcome)"
  same "nothing stays of it" "P.TPJ X.PAS" "$(files_of .)"
  same "nor of DOSBox" 0 "$(no_dosbox_within 20)"
  cp "$delivered/compiler/TP3.EXE" "$program/compiler/"
  check "the next build builds" "No errors" "$(drive compile-and-report)"

  cp "$work.hang.com" "$program/compiler/TP3.EXE"
  drive escape > /dev/null
  drive menu mnuCompile > /dev/null
  for ((tries = 0; tries < 200; ++tries)); do
    [[ $(dosboxes) != 0 ]] && break
    sleep 0.1
  done
  sleep 2
  kill -9 "$tavrel_process"
  wait "$tavrel_process" 2> /dev/null
  tavrel_process=
  same "a hanging DOSBox does not outlive Tavrel" 0 "$(no_dosbox_within 20)"
  program=$delivered

  # By itself, given a file that is not there (as by a launcher in the wrong code page).
  SDL_VIDEODRIVER=dummy timeout 60 wine "$delivered/compiler/DOSBox-0.74/DOSBox.exe" -conf "$(windows_name "$delivered/compiler/temp.conf")" \
    "$(windows_name "$work/nowhere/turbopc.bat")" -noconsole -exit > /dev/null 2>&1 < /dev/null
  same "DOSBox ends when its file is missing" 0 $?
}

failed_builds_make_no_program() {
  project failing
  echo 'somebody else' > B.COM
  cp X.PAS 'A B.PAS'
  printf 'Game\r\n2E9B\r\nD200\r\nA B.PAS\r\n' > P.TPJ
  open_project
  check "a name that DOS cannot hold is an error" "File not found: A B.PAS" "$(drive compile-and-report)"
  stop
  same "and makes no program, in no name" './B.COM' "$(find . -iname '*.com')"
  same "nor changes one" 'somebody else' "$(cat B.COM)"

  project second
  open_project
  check "first a build that succeeds" "No errors" "$(drive compile-and-report)"
  stop
  printf 'begin\r\n  nonsense\r\nend.\r\n' > X.PAS
  open_project
  check "then one that fails" "Error :" "$(drive compile-and-report)"
  check "no program is made of the old chain image" "X.CHN" "$(files_of . | tr a-z A-Z)"
  check "none at all" "none" "$(find . -iname '*.COM' | grep . || echo none)"
  stop
}

much_for_a_disk() {
  own_program disk
  write_settings "$program" "$(windows_name "$program/nowhere.exe")" '-diska %dsk -msx2' "$(windows_name "$program/new/disks")"
  project much
  for ((i = 0; i < 120; ++i)); do echo "$i" > "F$i.DAT"; done
  echo x > 'a long name with blanks.txt'
  open_project
  drive tree > /dev/null
  drive menu mnuCompileRun > /dev/null
  await_file "$program/new/disks/d.dsk"
  await "what does not fit on a disk is told" "Not every file is on the disk image" drive status
  check "and that the emulator cannot be started" "The emulator cannot be started" "$(drive status)"
  check "the program is on it" "X        COM" "$(mdir -i "$program/new/disks/d.dsk" :: 2>&1)"
  same "with as much as fits" 112 "$(mdir -b -i "$program/new/disks/d.dsk" :: | wc -l)"
  check "the rest is named beside it" 'a long name with blanks.txt: not a name for an MSX disk' \
    "$(cat "$program/new/disks/d.dsk.txt")"
  stop

  # A project where a first one is often made: in the program's own folder.
  printf 'begin end.\r\n' > "$program/X.PAS"
  printf 'Game\r\n2E9B\r\nD200\r\nX.PAS\r\n' > "$program/P.TPJ"
  start "$program/P.TPJ"
  check "a project in Tavrel's own folder is too large" "cannot have more than 720kb" "$(drive compile-and-report)"
  check "and the way out is named" "Tavrel itself lies in this folder" "$(drive status)"
  stop
  program=$delivered
}

rivals_of_the_compiler
names_that_are_paths
programs_in_the_current_folder
bombs
files_that_are_the_users
folders_with_letters
builds_that_hang
failed_builds_make_no_program
much_for_a_disk
summary
