# DOSBox.exe, complete in one file, without the moment of its making, so that two builds are the same (strip would
# write it again; the linker's -s does not). The dynamic core does not work in 64-bit builds, so it is left out; inlining
# the processor's accesses to memory makes the others a tenth faster.
# shellcheck shell=bash disable=SC2034,SC2154,SC2164
source_package=dosbox
needs="sdl"

build() {
  # SDL was moved since it was built, and the configure script forgets to say so when it asks sdl-config.
  sed -i "s,^prefix=.*,prefix=$work/sdl," "$work/sdl/bin/sdl-config"
  cd dosbox-*
  # Asked to leave at the end (-exit), it would wait for keys all the same when the file that it is given is not there: in a
  # build nobody sees it and nobody can press one.
  sed -i 's/) goto nomount;/) { if (addexit) autoexec[16].Install("exit"); goto nomount; }/' src/shell/shell.cpp
  [[ $(grep -c 'Install("exit"); goto nomount' src/shell/shell.cpp) == 4 ]]
  ./configure -q --host="$host" --prefix="$prefix" --with-sdl-prefix="$work/sdl" --disable-sdltest \
    CC="$host-gcc-posix" CXX="$host-g++-posix" CFLAGS=-O2 CXXFLAGS="-O2 -std=gnu++98 -fpermissive -w" \
    LDFLAGS="-static -s -Wl,--no-insert-timestamp" --disable-opengl --disable-dynamic-core --enable-core-inline
  make -s -j"$jobs"
  mkdir -p "$prefix/bin" "$prefix/share"
  cp src/dosbox.exe "$prefix/bin/DOSBox.exe"
  cp COPYING "$prefix/share/"
}
