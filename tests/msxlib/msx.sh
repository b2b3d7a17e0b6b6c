# Sourced by suites that run programs on an emulated MSX2. Needs openMSX with C-BIOS, and pasmo.
# shellcheck shell=bash

msx_scripts=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

# With TAVREL_BOOT=disk the programs are started by our disk ROM from a disk instead: no stand-in then.
if [[ ${TAVREL_BOOT:-} == disk ]]; then source "$msx_scripts/../disksystem/machine.sh"; fi

# prepare_msx FOLDER: what the emulator needs lies in this folder from now on.
prepare_msx() {
  if [[ ${TAVREL_BOOT:-} == disk ]]; then
    prepare_disk_machine "$1"
    return
  fi
  export SDL_VIDEODRIVER=dummy SDL_AUDIODRIVER=dummy OPENMSX_HOME=$1/openmsx TAVREL_DOS=$1/dos.bin
  pasmo "$msx_scripts/dos.asm" "$TAVREL_DOS"
}

# boot_disk PROGRAM: a disk with the program and all that lies beside it and may be its data, which starts it.
boot_disk() {
  local base=${1%.*} folder=${1%/*} file files=()
  for file in "$folder"/*; do
    case ${file##*/} in
    *.LIB | *.PAS | *.pas | *.png | *.dsk | *.log | *.end | *.openmsx | *.txt | *.vram | *.palette | *.psg | *.vdp | *.memory | *.text | \
      *.times | *.sound | *.fast) ;;
    *) files+=("$file") ;;
    esac
  done
  rm -f "$base.dsk"
  printf '%s\r\n' "$(basename "$base")" > "$folder/AUTOEXEC.BAT"
  "$machine_root/out/bin/dsktool" A "$base.dsk" "${files[@]}" "$folder/AUTOEXEC.BAT" > "$base.dsktool" 2>&1 || cat "$base.dsktool"
  rm "$folder/AUTOEXEC.BAT" "$base.dsktool"
}

# fetch_files IMAGE FOLDER: what the program may have written, into its folder.
fetch_files() {
  local fetched=$2/fetched
  mkdir "$fetched"
  "$machine_root/out/bin/dsktool" E "$1" -o "$fetched" > /dev/null
  rm -f "$fetched"/*.COM "$fetched/AUTOEXEC.BAT"
  find "$fetched" -type f -exec cp -p -t "$2" {} +
  rm -r "$fetched"
}

# on_the_msx PROGRAM [SECONDS [SCRIPT [MOUSE]]]: runs it in its folder; the names of what is left begin like its own. It
# prints how that ended.
on_the_msx() {
  local base=${1%.*}
  export TAVREL_PROGRAM=$1 TAVREL_RESULT=$base TAVREL_SHOT=$base.png TAVREL_LOG=$base.log
  export TAVREL_FOLDER=${1%/*} TAVREL_SECONDS=${2:-} TAVREL_SCRIPT=${3:-} TAVREL_MOUSE=${4:-}
  rm -f "$base.end" "$base.log"
  local disk=()
  if [[ ${TAVREL_BOOT:-} == disk ]]; then
    boot_disk "$1" || return
    disk=(-ext tavreldisk -diska "$base.dsk")
  fi
  timeout 60 openmsx -machine "${TAVREL_MACHINE:-C-BIOS_MSX2}" "${disk[@]}" -script "$msx_scripts/msx.tcl" > "$base.openmsx" 2>&1 < /dev/null
  if [[ ${TAVREL_BOOT:-} == disk ]]; then fetch_files "$base.dsk" "${1%/*}"; fi
  cat "$base.end" "$base.log" 2> /dev/null
}
