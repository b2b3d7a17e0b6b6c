#!/bin/bash
# The disk tool against mtools, and against a world where writing fails.
#   tests/disk/suite.sh [dsktool]
# Last line: N passed, N failed. Exit code 0 when nothing failed.
# Needs no display.
set -u
root=$(cd "$(dirname "$0")/../.." && pwd)
tool=${1:-${TAVREL_DSKTOOL:-$root/out/bin/dsktool}}
export LC_ALL=C.UTF-8 TZ=UTC MTOOLSRC=/dev/null MTOOLS_SKIP_CHECK=0
work=$(mktemp -d)
mounted=
passed=0
failed=0

cleanup() {
  if [[ -n $mounted ]]; then umount "$mounted"; fi
  rm -rf "$work"
}
trap cleanup EXIT
cd "$work" || exit 1

# expect NAME COMMAND...: counts one test; the command's output is shown when it fails.
expect() {
  local name=$1 output
  shift
  if output=$("$@" 2>&1); then
    passed=$((passed + 1))
  else
    failed=$((failed + 1))
    printf 'FAIL %s\n%s\n' "$name" "$output"
  fi
}

# ends_with CODE COMMAND...: the command's exit code is that one.
ends_with() {
  local code=$1 found
  shift
  "$@"
  found=$?
  [[ $found == "$code" ]] || { echo "exit code $found instead of $code"; return 1; }
}

# same FOLDER FOLDER: the same files, to the byte and the time.
same() { diff -r "$1" "$2" && diff <(times "$1") <(times "$2"); }
times() { (cd "$1" && find . -type f -printf '%p %Ts\n' | sort); }

no_leftovers() { ! find "$1" -name '*.new' | grep .; }

# Sizes around a cluster, and dates from the first that a disk knows on; all even, as the disk keeps them.
mkdir files
number=0
for size in 0 1 511 512 513 1023 1024 1025 2048 10000 65535 65536 200000; do
  number=$((number + 1))
  head -c "$size" /dev/urandom > "files/F$size.DAT"
  touch -d "@$((315532800 + number * 100000000))" "files/F$size.DAT"
done
printf 'begin end.\r\n' > files/HELLO.PAS
touch -d '2024-02-29 23:59:58' files/HELLO.PAS

# Ours, read by mtools.
expect 'dsktool makes a disk' ends_with 0 "$tool" A ours.dsk 'files/*.*'
mkdir read
expect 'mtools finds no fault' minfo -i ours.dsk ::
expect 'mtools reads it' mcopy -m -i ours.dsk '::*' read
expect 'mtools reads the same bytes and times' same files read
expect 'mtools sees the directory' grep -q 'HELLO *PAS *12 2024-02-29 *23:59' <(mdir -i ours.dsk ::)
free=$(mdir -i ours.dsk :: | tr -dc '0-9\n' | tail -2 | tr -d '\n')
expect 'both count the same free bytes' grep -q " $free bytes free" <("$tool" L ours.dsk)
expect 'mtools can write on' mcopy -i ours.dsk files/HELLO.PAS ::MORE.PAS
expect 'and dsktool reads that' ends_with 0 "$tool" E ours.dsk MORE.PAS -o more
expect 'to the byte' cmp files/HELLO.PAS more/MORE.PAS
expect 'fsck finds no fault' fsck.fat -n ours.dsk

# Theirs, read by us.
mformat -C -f 720 -i theirs.dsk ::
mcopy -m -i theirs.dsk files/* ::
expect 'dsktool lists a disk of mtools' grep -q '^HELLO.PAS *12  2024-02-29 23:59:58$' <("$tool" L theirs.dsk)
expect 'dsktool extracts it' ends_with 0 "$tool" E theirs.dsk -o extracted
expect 'the same bytes and times' same files extracted
expect 'dsktool deletes on it' ends_with 0 "$tool" D theirs.dsk 'F1*.*'
expect 'dsktool replaces on it' ends_with 0 "$tool" A theirs.dsk files/F200000.DAT files/F1024.DAT
mkdir back
expect 'mtools still reads it' mcopy -m -i theirs.dsk '::*' back
expect 'what was added is right' cmp files/F1024.DAT back/F1024.DAT
expect 'what was replaced is right' cmp files/F200000.DAT back/F200000.DAT
expect 'what was deleted is gone' test ! -e back/F1.DAT -a ! -e back/F10000.DAT
mcopy -i theirs.dsk files/HELLO.PAS '::A long name for a file.pascal'
mmd -i theirs.dsk ::FOLDER
mcopy -i theirs.dsk files/HELLO.PAS ::FOLDER
expect 'long names and folders do not disturb' ends_with 0 "$tool" D theirs.dsk 'ALONGN~1.PAS'
expect 'and the folder is whole' cmp files/HELLO.PAS <(mtype -i theirs.dsk ::FOLDER/HELLO.PAS)
expect 'no long name is left behind' test -z "$(mdir -i theirs.dsk :: | grep -i 'long name')"
mformat -C -f 1440 -i pc.dsk ::
expect 'a disk of another size is written too' ends_with 0 "$tool" A pc.dsk files/F65536.DAT
expect 'to the byte again' cmp files/F65536.DAT <(mtype -i pc.dsk ::F65536.DAT)

# Writing fails.
cp ours.dsk before.dsk
expect 'a device is no image' ends_with 1 "$tool" A /dev/full files/HELLO.PAS
expect 'and stays a device' test -c /dev/full
expect 'a device is no file' ends_with 1 "$tool" A new.dsk /dev/zero
expect 'no image was made' test ! -e new.dsk
list_to_full() { "$tool" L ours.dsk > /dev/full; }
expect 'a list that cannot be written is a failure' ends_with 1 list_to_full
limited() { (trap '' XFSZ; ulimit -f 100; "$tool" "$@"); }
expect 'a file that must not grow is a failure' ends_with 1 limited A ours.dsk files/F1.DAT
expect 'the image is whole' cmp ours.dsk before.dsk
expect 'a new image that must not grow is a failure' ends_with 1 limited A new.dsk files/F1.DAT
expect 'there is no half image' test ! -e new.dsk
expect 'an extracted file that must not grow is a failure' ends_with 1 limited E ours.dsk F200000.DAT -o half
expect 'there is no half file' test ! -e half/F200000.DAT
expect 'a folder that is not there is made' ends_with 0 "$tool" A none/d.dsk files/F1.DAT
expect 'one that cannot be made is a failure' ends_with 1 "$tool" A files/F1.DAT/d.dsk files/F1.DAT
expect 'a file in place of the folder is a failure' ends_with 1 "$tool" E ours.dsk -o files/F1.DAT
mkdir small
if mount -t tmpfs -o size=800k tmpfs small 2> /dev/null; then
  mounted=$work/small
  cp ours.dsk small/d.dsk
  expect 'on a full disk adding fails' ends_with 1 "$tool" A small/d.dsk files/F1.DAT
  expect 'and the image is whole' cmp ours.dsk small/d.dsk
  expect 'and nothing is left behind' no_leftovers small
fi
expect 'nothing is left behind' no_leftovers .

echo "$passed passed, $failed failed"
((failed == 0))
