# libpng, static, as its authors configure it by default.
# shellcheck shell=bash disable=SC2034,SC2154,SC2164
source_package=libpng1.6
needs="zlib"

build() {
  cd libpng-*
  cp scripts/pnglibconf.h.prebuilt pnglibconf.h
  compile_library libpng16.a "-O2 -I$work/zlib/include" png.c pngerror.c pngget.c pngmem.c pngpread.c pngread.c pngrio.c \
    pngrtran.c pngrutil.c pngset.c pngtrans.c pngwio.c pngwrite.c pngwtran.c pngwutil.c
  install_headers . png.h pngconf.h pnglibconf.h
  install_licence LICENSE
}
