# SDL 1.2 as DOSBox needs it. DirectX is left out: the machine that cross-compiles has no headers for it, and
# the Windows GDI driver and the dummy driver are enough.
# shellcheck shell=bash disable=SC2034,SC2154,SC2164
source_package=libsdl1.2

build() {
  cd SDL-*
  ./configure -q --host="$host" --prefix="$prefix" CC="$host-gcc-posix" CFLAGS=-O2 --disable-shared --enable-static \
    --disable-directx --disable-stdio-redirect --disable-video-opengl
  make -s -j"$jobs"
  make -s install
  rm -rf "$prefix/share/man"
  cp COPYING "$prefix/share/"
}
