#!/bin/bash
# Disks that fail: protected, with bad sectors, taken out, changed, and a machine that is switched off. Sourced by suite.sh, which
# has `same`, `$work` and the machine; or on its own: faults.sh FOLDER.
# shellcheck shell=bash

# fault_program NAME: compiles one of programs/.
fault_program() { "$root/out/bin/tp3" "$here/programs/$1.PAS" -o "$faults/$1.COM" > "$faults/$1.compiler" 2>&1; }
# fault_disk IMAGE COMMANDS FILES...: a disk that does these commands (lines of AUTOEXEC.BAT) at its start.
fault_disk() {
  local image=$1 commands=$2
  shift 2
  printf "$commands" | sed 's/$/\r/' > "$faults/AUTOEXEC.BAT"
  rm -f "$faults/$image"
  (cd "$faults" && "$root/out/bin/dsktool" A "$image" "$@" AUTOEXEC.BAT) > "$faults/$image.dsktool" 2>&1 || cat "$faults/$image.dsktool"
}
# sectors_of IMAGE NAME: the sectors of a file.
sectors_of() {
  perl -I"$here" -MDisk -le 'my $disk = Disk->open($ARGV[0]);
    print for map { ($disk->{data} / 512 + ($_ - 2) * 2, $disk->{data} / 512 + ($_ - 2) * 2 + 1) } sort { $a <=> $b }
      grep { $disk->{owner}{$_} eq $ARGV[1] } keys %{$disk->{owner}}' "$faults/$1" "$2"
}
# shown BASE: what was on the screen, without returns.
shown() { tr -d '\r' < "$faults/$1.screen"; }
holds() { if grep -qF -- "$2" <<< "$1"; then echo yes; else echo "no: $1"; fi; }
content_of() { rm -rf "$faults/got" && mkdir "$faults/got" && "$root/out/bin/dsktool" E "$faults/$1" "$2" -o "$faults/got" > /dev/null 2>&1; cat "$faults/got/$2" 2> /dev/null | sha256sum; }
sound() { "$here/check-disk.pl" "$faults/$1"; }

fault_jobs() { (cd "$faults" && run_jobs jobs); }

write_protected() {
  fault_disk protected.dsk 'COPYING\n' COPYING.COM FROM.DAT
  gzip -kf "$faults/protected.dsk"
  cat > "$faults/jobs" << 'END'
image protected.dsk.gz base abort seconds 40 answer A
image protected.dsk.gz base retry seconds 40 answer RRA
image protected.dsk.gz base ignore seconds 60 answer I
END
  fault_jobs
  for name in abort retry ignore; do same "protected disk, $name: comes back" ended "$(cat "$faults/$name.end")"; done
  same "protected disk: says so" yes "$(holds "$(shown abort)" 'Write protected writing drive A:')"
  same "protected disk: asks" yes "$(holds "$(shown abort)" 'Abort, Retry, Ignore? ')"
  same "protected disk: abort ends the program" 0 "$(grep -c 'started\|I/O error' "$faults/abort.text")"
  same "protected disk: retry asks again" 3 "$(grep -c 'Abort, Retry, Ignore' "$faults/retry.screen")"
  same "protected disk: ignore lets the call fail" yes "$(holds "$(shown ignore)" 'I/O error F1')"
}

bad_sectors() {
  local sector
  fault_disk good.dsk 'COPYING\n' COPYING.COM FROM.DAT
  sector=$(sectors_of good.dsk FROM.DAT | sed -n 7p)
  "$here/dmk.pl" "$faults/good.dsk" "$faults/good.dmk"
  "$here/dmk.pl" "$faults/good.dsk" "$faults/bad.dmk" bad "$sector"
  "$here/dmk.pl" "$faults/good.dsk" "$faults/missing.dmk" missing "$sector"
  cat > "$faults/jobs" << 'END'
image good.dmk base track seconds 90 answer A
image bad.dmk base bad seconds 90 answer RA
image missing.dmk base missing seconds 90 answer RA
image bad.dmk base badignored seconds 90 answer I
END
  fault_jobs
  same "a disk of whole tracks: is read and written" copied "$(sed -n 2p "$faults/track.text" | tr -d '\r')"
  for name in bad missing badignored; do same "$name sector: comes back" ended "$(cat "$faults/$name.end")"; done
  same "bad sector: says so" yes "$(holds "$(shown bad)" 'Bad data reading drive A:')"
  same "bad sector: retry asks again" 2 "$(grep -c 'Abort, Retry, Ignore' "$faults/bad.screen")"
  same "missing sector: says so" yes "$(holds "$(shown missing)" 'Sector not found reading drive A:')"
  # BlockRead then gives no records, which ends the program's loop.
  same "bad sector: ignore lets the call fail" copied "$(grep -a -o '^copied' "$faults/badignored.text")"
}

# The disk is out when the program wants it; it is put in again when the system asks.
disk_out() {
  fault_disk out.dsk 'COPYING\n' COPYING.COM FROM.DAT
  cp "$faults/out.dsk" "$faults/back.dsk"
  cp "$faults/out.dsk" "$faults/gone.dsk"
  cat > "$faults/jobs" << 'END'
image back.dsk base back seconds 90 answer R start {set ::left 12; set ::watch [debug set_bp 5 {[reg C] in {38 39}} {if {[incr ::left -1] == 0} {diska eject; debug remove_bp $::watch; after time 3 {diska back.dsk}}}]}
image gone.dsk base gone seconds 90 answer A start {set ::left 12; set ::watch [debug set_bp 5 {[reg C] in {38 39}} {if {[incr ::left -1] == 0} {diska eject; debug remove_bp $::watch; after time 3 {diska gone.dsk}}}]}
END
  fault_jobs
  same "disk taken out and put in: goes on" copied "$(grep -a -o '^copied' "$faults/back.screen")"
  same "disk taken out and put in: asks" yes "$(holds "$(shown back)" 'Not ready')"
  same "disk taken out and put in: all is written" "$(sha256sum < "$faults/FROM.DAT")" "$(content_of back.dsk TO.DAT)"
  same "disk taken out and put in: is whole" "" "$("$here/check-disk.pl" --whole "$faults/back.dsk")"
  same "disk taken out: abort comes back" ended "$(cat "$faults/gone.end")"
  same "disk taken out: is sound" "" "$(sound gone.dsk)"
}

# Another disk is put in while a file is open for writing: it is not written to.
disk_changed() {
  fault_disk first.dsk 'CHANGED\n' CHANGED.COM
  # As many clusters as the first one has: their tables are the same.
  fault_disk second.dsk 'REM\n' FROM.DAT
  sha256sum < "$faults/second.dsk" > "$faults/second.sum"
  printf 'x' > "$faults/key"
  echo "image first.dsk base changed seconds 90 answer A keys key start {debug set_bp 5 {[reg C] in {1 6 7 8} && [string match {*change it*} \$::screen] && [incr ::swaps] == 1} {diska second.dsk}; set ::swaps 0}" > "$faults/jobs"
  fault_jobs
  same "changed disk: comes back" ended "$(cat "$faults/changed.end")"
  same "changed disk: the new one stays as it was" "$(cat "$faults/second.sum")" "$(sha256sum < "$faults/second.dsk")"
  same "changed disk: the first one is sound" "" "$(sound first.dsk)"
  same "changed disk: the program is told" "" "$(grep -a 'went on TRUE TRUE' "$faults/changed.text")"
}

# Switched off at some moments; what was closed is there.
power_cut() {
  local moment pairs=() count=${TAVREL_CUTS:-25} most
  fault_disk cut.dsk 'WRITES\n' WRITES.COM
  : > "$faults/jobs"
  for ((moment = 1; moment <= count; ++moment)); do
    cp "$faults/cut.dsk" "$faults/cut$moment.dsk"
    # From the start of the program on, at moments that have nothing to do with anything.
    echo "image cut$moment.dsk base cut$moment seconds 200 start {after time [expr {0.3 + $moment * 0.9137}] {finish cut}}" >> "$faults/jobs"
    pairs+=("cut$moment.dsk" "cut$moment.screen")
  done
  fault_jobs
  same "switched off: it was, every time" "$count" "$(cat "$faults"/cut*.end | grep -o cut | wc -l)"
  most=$(grep -a -c '^made' "$faults/cut$count.screen")
  same "switched off: files were made before" yes "$( ((most > 9)) && echo yes || echo "$most")"
  same "switched off: the disk is sound, what was closed is there" "" "$(cd "$faults" && "$here/written.pl" "${pairs[@]}")"
  rm -f "$faults"/cut*
}

# disk_faults [PART]: all, or one.
disk_faults() {
  faults=$work/faults
  rm -rf "$faults"
  mkdir -p "$faults"
  prepare_disk_machine "$faults" || return
  fault_program COPYING
  fault_program CHANGED
  fault_program WRITES
  head -c 12288 /dev/urandom > "$faults/FROM.DAT"
  local part
  for part in ${1:-write_protected bad_sectors disk_out disk_changed power_cut}; do "$part"; done
}
