# SDL 2: window, sound and joysticks of the emulator. No Vulkan and no Direct3D: it draws by OpenGL alone.
# shellcheck shell=bash disable=SC2034,SC2154,SC2164
source_package=libsdl2

build() {
  cd SDL2-*
  ./configure -q --host="$host" --prefix="$prefix" CC="$host-gcc-posix" CXX="$host-g++-posix" CFLAGS=-O2 \
    --disable-shared --enable-static --disable-render-d3d --disable-video-vulkan --disable-sensor
  make -s -j"$jobs"
  make -s install
  rm -rf "$prefix/share"
  install_licence LICENSE.txt
}
