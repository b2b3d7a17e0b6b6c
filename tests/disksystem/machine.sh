# Sourced by what runs programs on an emulated MSX with our disk ROM. Needs openMSX with C-BIOS.
# shellcheck shell=bash
#   TAVREL_DISK_ROM      the ROM; the one that is built by default
#   TAVREL_MACHINE       the machine; C-BIOS_MSX2 by default

machine_scripts=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
machine_root=$(cd "$machine_scripts/../.." && pwd)

# prepare_disk_machine FOLDER: what the emulator needs lies in this folder from now on.
prepare_disk_machine() {
  local rom=${TAVREL_DISK_ROM:-$machine_root/out/bin/tavreldisk.rom}
  local description=${TAVREL_DISK_XML:-$machine_root/kit/disksystem/tavreldisk.xml}
  export SDL_VIDEODRIVER=dummy SDL_AUDIODRIVER=dummy OPENMSX_HOME=$1/openmsx OPENMSX_USER_DATA=$1/openmsx/share
  mkdir -p "$OPENMSX_USER_DATA/extensions"
  TAVREL_INIT=$(od -An -tu2 -j2 -N2 "$rom") || return 1
  export TAVREL_INIT
  cp "$rom" "$description" "$OPENMSX_USER_DATA/extensions"
}

# run_jobs FILE: the jobs of this file (machine.tcl says how they are written), in one run of the emulator.
run_jobs() {
  TAVREL_JOBS=$1 timeout "${TAVREL_JOBS_LIMIT:-600}" openmsx -machine "${TAVREL_MACHINE:-C-BIOS_MSX2}" -ext tavreldisk \
    -script "$machine_scripts/machine.tcl" > "$1.openmsx" 2>&1 < /dev/null
}
