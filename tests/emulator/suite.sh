#!/bin/bash
# The starter of the MSX emulator, msx.exe, with a stand-in for openMSX that writes down what it gets: arguments, disks,
# a second program in the running emulator, either side killed, every failure with its message. Needs a display, Wine
# with WINEPREFIX set, msx.exe, the stand-in and drive.exe.
set -u
source "$(dirname "$0")/../acceptance/using.sh"
folder="$work/My Töols/emulator"
log=$work/fake.log
FAKE_LOG=$(windows_name "$log")
export FAKE_LOG

build=$root/out/build/mingw64
make_folder() {
  mkdir -p "$folder/openmsx"
  cp "$build/kit/emulator/msx.exe" "$root"/kit/emulator/data/{start.tcl,imgui.ini} "$folder/"
  cp "$build/tests/emulator/fake_openmsx.exe" "$folder/openmsx/openmsx.exe"
}

# msx ARGUMENT...: starts it as the IDE does, and goes on; $starter is its process.
msx() {
  wine "$folder/msx.exe" "$@" < /dev/null > /dev/null 2>&1 &
  starter=$!
}
# await_starter: waits for the last msx, half a minute at most; $ended says how it ended.
await_starter() {
  local tries
  ended=runs
  for ((tries = 0; tries < 300; ++tries)); do
    if ! kill -0 "$starter" 2> /dev/null; then
      wait "$starter"
      ended="ended $?"
      return
    fi
    sleep 0.1
  done
}
# logged PATTERN [COUNT]: waits until so many lines of the log match; prints the last of them.
logged() {
  local tries
  for ((tries = 0; tries < 300; ++tries)); do
    if [[ -f $log ]] && (($(grep -c -- "$1" "$log") >= ${2:-1})); then break; fi
    sleep 0.1
  done
  grep -- "$1" "$log" 2> /dev/null | tail -n 1
}
fresh() {
  rm -f "$log" "$log.close"
  unset FAKE_MODE
}
close_fake() {
  touch "$log.close"
  wait "$starter"
  ended="ended $?"
}
fake_process() { pgrep -f 'openmsx\\openmsx.exe' | head -n 1; }
await_no_fake() {
  local tries
  for ((tries = 0; tries < 100; ++tries)); do
    if [[ -z $(fake_process) ]]; then echo gone; return; fi
    sleep 0.1
  done
  echo "still there"
}
message() { drive answer OK; }

image=$work/disks/d.dsk
data=$folder/data
starts() {
  fresh
  mkdir -p "$work/disks"
  echo "first program" > "$image"
  msx -diska "$(windows_name "$image")" -msx2
  check "power is switched on" "command tavrel_show " "$(logged '^command')"
  check "it runs in its own data folder" "in $(windows_name "$data") home ." "$(logged '^started')"
  same "machine, disk drive, script and disk are named" "argument -machine C-BIOS_MSX2
argument -ext tavreldisk
argument -control ...
argument -script $(windows_name "$folder/start.tcl")
argument -diska $(windows_name "$data/disk-a.dsk")" "$(grep '^argument' "$log")"
  check "the disk is a copy" "disk-a.dsk holds first program" "$(logged '^disk')"
  check "a picture without icons is asked for" "show=0" "$(cat "$data/share/imgui.ini" 2> /dev/null)"
  chmod a-w "$image"
}

second_program() {
  local process number=$starter
  process=$(grep -c '^started' "$log")
  wine cmd /c del /f "$(windows_name "$image")" < /dev/null > /dev/null 2>&1
  same "the original is nobody's" "" "$(ls "$image" 2> /dev/null)"
  echo "second program" > "$image"
  msx -diska "$(windows_name "$image")" -msx2
  await_starter
  same "a further starter hands over and ends" "ended 0" "$ended"
  check "the running emulator gets the new disk" "disk-b.dsk holds second program" "$(logged '^disk' 2)"
  (cd "$work/disks" && echo "third program" > d.dsk && wine "$folder/msx.exe" -diska d.dsk -msx2 < /dev/null > /dev/null 2>&1)
  check "a third one too, from its own folder" "disk-a.dsk holds third program" "$(logged '^disk' 3)"
  same "it is one emulator" "$process" "$(grep -c '^started' "$log")"
  starter=$number
  close_fake
  same "the starter ends when the emulator is closed" "ended 0" "$ended"
}

other_machine() {
  local number
  fresh
  msx -diska "$(windows_name "$image")" -msx2
  logged '^command' > /dev/null
  number=$starter
  msx -diska "$(windows_name "$image")" -msx1 -carta x.rom
  logged '^argument -carta x.rom' > /dev/null
  check "another machine ends the emulator" "command exit" "$(logged '^command exit')"
  check "and is started" "argument -machine C-BIOS_MSX1" "$(logged '^argument -machine' 2)"
  same "with what was handed on" "argument -carta x.rom" "$(logged '^argument -carta')"
  starter=$number
  close_fake
}

# An image whose path has blanks and no quotes, as the default arguments give it; start /unix keeps the words apart.
unquoted() {
  local folder_of_blanks="$work/my disks ü/of today"
  fresh
  mkdir -p "$folder_of_blanks"
  echo "blanks" > "$folder_of_blanks/d.dsk"
  # shellcheck disable=SC2046 # split at its blanks on purpose
  msx -diska $(windows_name "$folder_of_blanks/d.dsk") -msx2+
  check "an image with blanks is found" "holds blanks" "$(logged '^disk')"
  same "the machine after it counts" "argument -machine C-BIOS_MSX2+" "$(logged '^argument -machine')"
  close_fake
}

killed() {
  local victim
  fresh
  msx -diska "$(windows_name "$image")" -msx2
  logged '^command' > /dev/null
  kill -9 "$starter"
  wait "$starter" 2> /dev/null
  same "the emulator goes with a killed starter" "gone" "$(await_no_fake)"

  fresh
  msx -diska "$(windows_name "$image")" -msx2
  check "the next start works" "command tavrel_show" "$(logged '^command')"
  victim=$(fake_process)
  kill -9 "$victim"
  await_starter
  check "a starter ends with its killed emulator" "ended" "$ended"
  fresh
  msx -diska "$(windows_name "$image")" -msx2
  check "and the next start works too" "command tavrel_show" "$(logged '^command')"
  close_fake
}
failures() {
  fresh
  export FAKE_MODE="no start"
  msx -diska "$(windows_name "$image")" -msx2
  check "the emulator's own reason is shown" "Fatal error: there is no sound" "$(message)"
  await_starter
  same "the starter fails" "ended 1" "$ended"

  fresh
  export FAKE_MODE=refuse
  msx -diska "$(windows_name "$image")" -msx2
  check "a refused command is shown" "The emulator cannot run the program:" "$(message)"
  await_starter
  same "the starter fails then" "ended 1" "$ended"

  fresh
  export FAKE_MODE=crash
  msx -diska "$(windows_name "$image")" -msx2
  check "a crash is shown" "The emulator ended with an error (code 3)" "$(message)"
  await_starter
  same "the starter fails then too" "ended 1" "$ended"

  fresh
  msx -diska 'C:\no such\d.dsk' -msx2
  check "a missing image is named whole" 'C:\no such\d.dsk' "$(message)"
  await_starter

  printf 'openmsx = C:\\none\\openmsx.exe\n' > "$folder/msx.ini"
  msx -diska "$(windows_name "$image")" -msx2
  check "a missing emulator is named" 'There is no C:\none\openmsx.exe, which' "$(message)"
  await_starter
  printf 'msx2 = X\nmsx3 = Y\n' > "$folder/msx.ini"
  msx -diska "$(windows_name "$image")" -msx2
  check "a mistake in the settings is named with its line" "msx.ini, line 2: the name 'msx3' is not known" "$(message)"
  await_starter
  rm -f "$folder/msx.ini"
}

own_settings() {
  fresh
  printf 'msx2 = Mine\ndisk = none\nscale = 4\ndata = user\noption = -ext\noption = fmpac\n' > "$folder/msx.ini"
  msx -diska "$(windows_name "$image")" -msx2
  same "the window is as large as set" "command tavrel_show 4" "$(logged '^command')"
  same "the machine is the user's" "argument -machine Mine" "$(logged '^argument -machine')"
  same "no disk drive is added, and the option is" "argument -ext fmpac" "$(logged '^argument -ext')"
  check "the data are openMSX's own" "home " "$(logged '^started' | sed 's/home \./home OURS/')"
  close_fake
  rm -f "$folder/msx.ini"
}

# As many programs as a long evening has.
hundred_times() {
  local number i
  fresh
  msx -diska "$(windows_name "$image")" -msx2
  logged '^command' > /dev/null
  number=$starter
  for ((i = 1; i < 100; ++i)); do
    echo "program $i" > "$image.new" && mv -f "$image.new" "$image"
    wine "$folder/msx.exe" -diska "$(windows_name "$image")" -msx2 < /dev/null > /dev/null 2>&1
  done
  check "the hundredth program is on the disk" "holds program 99" "$(logged '^disk' 100)"
  same "in the one emulator" "1" "$(grep -c '^started' "$log")"
  starter=$number
  close_fake
}

folder_as_disk() {
  fresh
  msx -diska "$(windows_name "$work/disks")" -msx2
  check "a folder is handed on as it is" "argument -diska $(windows_name "$work/disks")" "$(logged '^argument -diska')"
  message > /dev/null # the stand-in takes no folder
  await_starter
}

no_data_folder() {
  fresh
  rm -rf "$data"
  touch "$data" # a file where the folder should be
  msx -diska "$(windows_name "$image")" -msx2
  check "a data folder that cannot be made is named" "emulator\data\share cannot be made" "$(message)"
  await_starter
  same "and nothing was started" "" "$(cat "$log" 2> /dev/null)"
  rm -f "$data"
}

# What ./run gives a program folder: the settings of a first start, with the emulator of the folder.
first_settings() {
  local folder=$work/first
  mkdir "$folder"
  "$root/setup/first-settings.sh" "$folder"
  same "the first settings name the emulator, and are Tavrel's own otherwise" "$({
    text_record "$(windows_name "$folder/emulator/msx.exe")"
    text_record '-diska %dsk -msx2'
    for _ in 1 2 3 4 5; do text_record ''; done
    text_record "$(windows_name "$folder/dsk/")"
    printf '\0\0\0\0\xff\xff\xff\xff\x0b\0'
    text_record Terminal
  } | od -An -v -tx1)" "$(od -An -v -tx1 "$folder/config.cfg")"
  echo mine > "$folder/config.cfg"
  "$root/setup/first-settings.sh" "$folder"
  same "settings that are there stay" "mine" "$(cat "$folder/config.cfg")"
}

make_folder
first_settings
starts
second_program
other_machine
unquoted
killed
failures
own_settings
folder_as_disk
no_data_folder
hundred_times
summary
