# openmsx.exe, complete in one file, and the data that it was made for. Of the releases that Debian has, 20.0 is the one
# that this compiler builds. Laserdisc and the MIDI of other systems are left out.
# shellcheck shell=bash disable=SC2034,SC2154,SC2164
source_package=openmsx
source_suite=trixie
needs="zlib png freetype sdl2 sdl2ttf glew tcl"

# write_libraries FILE: what its probe of the system would find out; that asks for scripts which static libraries in
# folders of their own do not have.
write_libraries() {
  local library need flags=''
  for need in $needs; do flags+=" -isystem $work/$need/include"; done
  for library in ALSA OGG THEORA VORBIS; do
    printf '%s:=\n' "HAVE_${library}_H" "HAVE_${library}_LIB" "${library}_CFLAGS" "${library}_LDFLAGS"
  done > "$1"
  for library in GL GLEW PNG FREETYPE SDL2 SDL2_TTF TCL ZLIB; do
    printf '%s:=true\n' "HAVE_${library}_H" "HAVE_${library}_LIB"
    printf '%s:=\n' "${library}_LDFLAGS"
    if [[ $library != ZLIB ]]; then printf '%s:=\n' "${library}_CFLAGS"; fi
  done >> "$1"
  {
    echo "ZLIB_CFLAGS:=$flags -isystem $work/sdl2/include/SDL2 -Dmain=SDL_main -DGLEW_STATIC -DSTATIC_BUILD"
    echo "ZLIB_LDFLAGS:=$(for need in $needs; do printf ' -L%s' "$work/$need/lib"; done) -lmingw32 -lSDL2main -lSDL2_ttf -lfreetype" \
      "-lpng16 -ltcl86 -lglew32 -lSDL2 -lz -lopengl32 -ldsound -lgdi32 -lwinmm -limm32 -lole32 -loleaut32 -lsetupapi -lversion" \
      "-luuid -lws2_32 -lwsock32 -lsecur32 -lnetapi32 -luserenv -lshell32 -ladvapi32"
  } >> "$1"
}

# The window registers itself as an observer of settings before it asks for OpenGL 2.1. Where that fails, nobody takes the
# registrations back, and the program crashes before it can say why. So they come last, when nothing can fail any more.
register_window_last() {
  perl -0pi -e 's/(\tinputEventGenerator\.getGrabInput\(\)\.attach\(\*this\);\n.*?\n\tupdateCursor\(\);\n)(.*?)(?=\trenderSettings\.getVSyncSetting\(\)\.attach)/$2$1\n/s or die' \
    src/video/VisibleSurface.cc
}

build() {
  local tree=derived/x86_64-mingw-w64-opt-3rd tool
  # Its makefiles know a compiler by a name that ends in g++.
  mkdir "$work/names"
  for tool in gcc g++; do ln -s "$(command -v "$host-$tool-posix")" "$work/names/$host-$tool"; done
  PATH=$work/names:$PATH
  cd openMSX-*
  register_window_last
  mkdir -p "$tree/config"
  openmsx_make() {
    make -s -f build/main.mk "$@" OPENMSX_TARGET_OS=mingw-w64 OPENMSX_TARGET_CPU="${host%%-*}" OPENMSX_FLAVOUR=opt \
      3RDPARTY_FLAG=true 3RDPARTY_INSTALL_DIR="$work" WINDRES="$host-windres" LDFLAGS=--no-insert-timestamp \
      CXXFLAGS="-O2 -DNDEBUG -fomit-frame-pointer -w"
  }
  openmsx_make probe   # also finds out about functions of the system, which is right
  write_libraries "$tree/config/probed_defs.mk"
  openmsx_make -j"$jobs" all
  mkdir -p "$prefix/bin" "$prefix/share"
  cp "$tree/bin/openmsx.exe" "$prefix/bin/"
  cp -r share "$prefix/share/openmsx"
  install_licence doc/GPL.txt
  cp src/3rdparty/imgui/LICENSE.txt "$prefix/share/imgui.txt"
  cp src/3rdparty/ImGuiFileDialog/LICENSE "$prefix/share/ImGuiFileDialog.txt"
  sed -n '1,/\*\//p' src/serial/Midi_w32.cc > "$prefix/share/midi.txt"
}
