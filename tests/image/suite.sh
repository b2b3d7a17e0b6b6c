#!/bin/bash
# The image converter as its users have it: msximg.exe under Wine on each kind of picture file, and what it makes shown
# by openMSX with C-BIOS. Needs the assembled program folder, out/bin/quality, Wine with WINEPREFIX set, ImageMagick,
# openMSX.   tests/image/suite.sh
# Last line: N passed, N failed. Exit code 0 when nothing failed.
set -u
root=$(cd "$(dirname "$0")/../.." && pwd)
program=$root/out/Tavrel/msximg.exe
export LC_ALL=C.UTF-8 WINEDEBUG=${WINEDEBUG:--all} MAGICK_THREAD_LIMIT=1
export SDL_VIDEODRIVER=dummy SDL_AUDIODRIVER=dummy
work=$(mktemp -d)
export OPENMSX_HOME=$work/openmsx
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 1
passed=0
failed=0

# check NAME EXPECTED ACTUAL
check() {
  if [[ $3 == "$2" ]]; then
    passed=$((passed + 1))
  else
    printf 'FAIL %s\n     expected: %s\n     found:    %s\n' "$1" "$2" "$3"
    failed=$((failed + 1))
  fi
}
# All that it says, and its exit code.
converter() { wine "$program" "$@" 2>&1 < /dev/null | tr -d '\r'; echo "exit ${PIPESTATUS[0]}"; }
# different A B: how many pixels differ. Five bits of each component are compared: what the emulator draws with.
different() {
  convert "$1" -posterize 32 -depth 8 one.png
  convert "$2" -posterize 32 -depth 8 other.png
  compare -metric AE one.png other.png null: 2>&1
}

"$root/out/bin/quality" draw "$work" || exit 1
convert landscape.ppm landscape.png
convert landscape.ppm BMP3:landscape.bmp
convert landscape.ppm -quality 98 landscape.jpg
convert landscape.ppm landscape.gif
for kind in png bmp jpg gif; do
  check "a $kind picture is read" "exit 0" "$(converter "landscape.$kind" "$kind.sc5" --dither none --preview "$kind.preview.bmp")"
  check "its file has the size of a screen 5 picture" 30375 "$(stat -c %s "$kind.sc5")"
  check "its palette lies beside it" 39 "$(stat -c %s "$kind.pl5")"
done
check "a BMP picture gives the same as a PNG one" 0 "$(different png.preview.bmp bmp.preview.bmp)"
convert landscape.ppm -alpha set -channel A -evaluate set 0 clear.png
converter clear.png clear.sc5 --preview clear.bmp > /dev/null
check "what is transparent is black" "0" "$(convert clear.bmp -format '%[fx:maxima]' info:)"

check "Pascal lines" "SetPalette(00,0,0,0); 16" "$(converter landscape.png fixed.sc5 --palette fixed --palette-out P.INC > /dev/null
  echo "$(head -n 1 P.INC | tr -d '\r') $(wc -l < P.INC)")"
printf 'JASC-PAL\n0100\n16\n' > greys.pal
for ((i = 0; i < 16; ++i)); do echo "$((i * 17)) $((i * 17)) $((i * 17))"; done >> greys.pal
check "a palette of the user's" "exit 0" "$(converter landscape.png grey.sc5 --palette greys.pal --preview grey.bmp)"
check "makes a grey picture" "0" "$(convert grey.bmp -colorspace HSL -channel G -separate -format '%[fx:maxima]' info:)"

# A file of some kilobytes can stand for 900 million pixels. It has to be refused for what its header says, before a decoder
# makes room for them; so the header is all that these have.
printf '\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\x75\x30\0\0\x75\x30\x01\0\0\0\0' > bomb.png
printf 'BM%52s' '' | tr ' ' '\0' > bomb.bmp
printf '\x28\0\0\0\x30\x75\0\0\x30\x75\0\0' | dd of=bomb.bmp bs=1 seek=14 conv=notrunc status=none
printf '\xff\xd8\xff\xc0\0\x11\x08\x75\x30\x75\x30\x03' > bomb.jpg
printf 'GIF89a\x30\x75\x30\x75\0\0\0,\0\0\0\0\x30\x75\x30\x75\0\x02\0;' > bomb.gif
for kind in png bmp jpg gif; do
  check "a $kind picture of 900 million pixels is refused" \
    $'msximg: bomb.'$kind$'\nThis picture is too large: 30000 x 30000 pixels, or many frames. At most 64 million pixels are read.\nexit 1' \
    "$(converter "bomb.$kind" bomb.sc5)"
done
check "and nothing is written" "no" "$([[ -e bomb.sc5 ]] && echo yes || echo no)"

echo old > old.sc5
check "a missing picture is told" $'msximg: missing.png\nThis file does not exist.\nexit 1' "$(converter missing.png old.sc5)"
check "so is something else" $'msximg: greys.pal\nThis is no picture that can be read (BMP, PNG, JPEG, GIF).\nexit 1' \
  "$(converter greys.pal old.sc5)"
head -c 3000 landscape.png > cut.png
head -c 400 landscape.jpg > cut.jpg
check "so is half a picture" "1" "$(converter cut.jpg old.sc5 | grep -c 'exit 1')"
check "so is a damaged palette" $'msximg: Not a valid PSP palette file!\nmsximg: no palette in cut.png\nexit 1' \
  "$(converter landscape.png old.sc5 --palette cut.png)"
check "then nothing is written" old "$(cat old.sc5)"
check "wrong use is told" $'msximg: --screen does not know \'4\': 2, 5, 6, 7, 8 or 12\nexit 2' \
  "$(converter landscape.png a.sc4 --screen 4)"
check "there is help" "exit 0" "$(converter --help | tail -n 1)"
mkdir folder.sc5
check "a folder is not written over" "exit 1" "$(converter landscape.png folder.sc5 --screen 5 | tail -n 1)"

# on_the_msx SCREEN DITHER: how many pixels of the emulated screen differ from the preview.
on_the_msx() {
  local name=shown$1$2 width=512 height=424 left=64 top=28
  if (($1 == 2)); then height=384 top=48; fi
  if (($1 == 12)); then left=72; fi # this mode comes four pixels later
  converter portrait.png "$name.bin" --screen "$1" --dither "$2" --palette auto --palette-out "$name.pal" \
    --preview "$name.bmp" --resize fill > "$name.log"
  export TAVREL_SCREEN=$1 TAVREL_PICTURE=$PWD/$name.bin TAVREL_PALETTE=$PWD/$name.pal
  export TAVREL_SHOT=$PWD/$name.png TAVREL_LOG=$PWD/$name.log
  [[ -f $TAVREL_PALETTE ]] || TAVREL_PALETTE=
  timeout 60 openmsx -machine C-BIOS_MSX2+ -script "$root/tests/image/show.tcl" > "$name.openmsx" 2>&1 < /dev/null
  if [[ ! -s $TAVREL_SHOT ]]; then
    cat "$name.log" "$name.openmsx"
    return
  fi
  convert "$TAVREL_SHOT" +repage -crop "${width}x$height+$left+$top" +repage msx.png
  convert "$name.bmp" -sample "${width}x$height!" preview.png
  # A screen of one colour would be like nothing that was converted.
  if (($(convert msx.png -format %k info:) < 4)); then echo "one colour"; return; fi
  different msx.png preview.png
}
convert portrait.ppm portrait.png
for screen in 2 5 6 7 8 12; do
  for dither in none ordered fs; do
    check "screen $screen, dithering $dither: the MSX shows the preview" 0 "$(on_the_msx "$screen" "$dither")"
  done
done

"$root/bench/image" > quality.txt 2>&1
check "the colours are not further off than ImageMagick's" 0 $?
tail -n 40 quality.txt

echo "$passed passed, $failed failed"
((failed == 0))
