# Tcl 8.6, the library alone: the emulator's own scripts are all that it runs. Its zlib is the one that everything
# else uses, not a copy inside.
# shellcheck shell=bash disable=SC2034,SC2154,SC2164
source_package=tcl8.6
needs="zlib"

build() {
  cd tcl8*/win
  ./configure -q --host="$host" --prefix="$prefix" --enable-64bit --disable-shared --enable-threads \
    CC="$host-gcc-posix" CFLAGS=-O2 RC="$host-windres" AR="$host-ar" RANLIB="$host-ranlib"
  make -s -j"$jobs" libtcl86.a ZLIB_OBJS= ZLIB_DIR="$work/zlib/include"
  mkdir -p "$prefix/lib"
  cp libtcl86.a "$prefix/lib/"
  cd ..
  install_headers . generic/{tcl,tclDecls,tclPlatDecls,tclTomMath,tclTomMathDecls}.h
  install_licence license.terms
}
