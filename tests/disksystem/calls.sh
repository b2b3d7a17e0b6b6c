#!/bin/bash
# Random sequences of calls in msxrun and on the emulated MSX; calls.pl says more.
#   calls.sh FOLDER FIRST COUNT    works in a folder of its own below FOLDER
#   calls.sh --jobs FILE           runs jobs, for calls.pl
set -u
here=$(cd "$(dirname "$0")" && pwd)
source "$here/machine.sh"
if [[ $1 == --jobs ]]; then
  run_jobs "$2"
  exit
fi
work=$1/$2
mkdir -p "$work"
prepare_disk_machine "$work" || exit 1
pasmo "$here/calls.asm" "$work/calls.bin" || exit 1
cat > "$work/run" << END
#!/bin/bash
exec "$here/calls.sh" --jobs "\$1"
END
chmod +x "$work/run"
TAVREL_BIN=$machine_root/out/bin TAVREL_CALLS=$work/calls.bin TAVREL_RUN=$work/run "$here/calls.pl" "$work" "$2" "$3"
[[ -n ${TAVREL_KEEP:-} ]] || rm -rf "$work"
