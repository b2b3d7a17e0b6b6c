# zlib, static. No configure: it finds out nothing that zconf.h does not know.
# shellcheck shell=bash disable=SC2034,SC2154,SC2164
source_package=zlib

build() {
  cd zlib-*
  compile_library libz.a -O2 adler32.c compress.c crc32.c deflate.c gzclose.c gzlib.c gzread.c gzwrite.c infback.c \
    inffast.c inflate.c inftrees.c trees.c uncompr.c zutil.c
  install_headers . zlib.h zconf.h
  install_licence README
}
