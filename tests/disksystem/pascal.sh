#!/bin/bash
# The programs of tests/pascal, started by AUTOEXEC.BAT from a disk of their own on the emulated MSX: each must print what it
# prints in msxrun.
#   pascal.sh FOLDER FILE.PAS...    one line for each program, "ok NAME" or "FAIL NAME: why"
set -u
here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/../.." && pwd)
tp3=$root/out/bin/tp3
dsktool=$root/out/bin/dsktool
export TAVREL_MACHINE=C-BIOS_MSX2_JP   # 60 frames a second, as msxrun has them
source "$here/machine.sh"
source "$root/tests/pascal/texts.sh"
work=$1/$$
shift
mkdir -p "$work"
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 1
prepare_disk_machine "$work" || exit 1

# leave_free IMAGE BYTES: fills the disk up to so many bytes, cut down to whole clusters.
leave_free() {
  local free
  free=$("$dsktool" L "$1" | sed -n 's/.* \([0-9]*\) bytes free.*/\1/p')
  head -c $((free - $2 / 1024 * 1024)) /dev/zero > FILLER.BIN
  "$dsktool" A "$1" FILLER.BIN > /dev/null
  rm FILLER.BIN
}

# program SOURCE: compiles it to P.COM, and what it chains to; makes its disk and its job.
program() {
  local name chained length machine disk start= files=()
  name=$(basename "$1" .PAS)
  for chained in $(word chained "$1"); do
    "$tp3" "$root/tests/pascal/chained/$chained.PAS" --chn -o "$chained.CHN" > "$name.compiler" 2>&1 || return
    files+=("$chained.CHN")
  done
  "$tp3" "$1" -o P.COM > "$name.compiler" 2>&1 || return
  printf 'P %s\r\n' "$(word arguments "$1")" > AUTOEXEC.BAT
  "$dsktool" A "$name.dsk" P.COM AUTOEXEC.BAT "${files[@]}" >> "$name.compiler" 2>&1 || return
  length=$(stat -c %s P.COM)
  section input "$1" > "$name.keys"
  read -ra machine <<< "$(word machine "$1")"
  disk=$name.dsk
  case ${machine[0]:-} in
  --free) leave_free "$name.dsk" "${machine[1]}" ;;
  --tpa-top) # the entry of the system moves down, to a jump
    start="debug write memory 0x${machine[1]} 0xC3; put_word [expr 0x${machine[1]} + 1] [word 6]; put_word 6 0x${machine[1]}" ;;
  --read-only) # the emulator writes to no packed image
    gzip "$name.dsk"
    disk=$name.dsk.gz
    ;;
  --remove-after) start="set ::file_calls ${machine[1]}" ;;
  esac
  echo "image $disk base $name seconds 900 keys $name.keys length $length answer I start {$start}" >> jobs
}

# unasked: a text without the system's question what to do about a disk error, which msxrun's never asks.
unasked() { sed -z 's/\r\n[A-Za-z ]* \(reading\|writing\) drive A:\r\nAbort, Retry, Ignore? I\r\n//g' "$1"; }

# verdict SOURCE: one line, and what differs.
verdict() {
  local name
  name=$(basename "$1" .PAS)
  section output "$1" > expected
  if [[ -s $name.text ]]; then unasked "$name.text" | visible > actual; else cat "$name.compiler" > actual 2> /dev/null; fi
  if [[ $(cat "$name.end" 2> /dev/null) == ended ]] && cmp -s expected actual; then
    echo "ok $name"
  else
    echo "FAIL $name: $(cat "$name.end" 2> /dev/null || echo 'not run')"
    diff expected actual | head -20 | sed 's/^/     /'
  fi
}

for source in "$@"; do program "$source"; done
run_jobs jobs
for source in "$@"; do verdict "$source"; done
