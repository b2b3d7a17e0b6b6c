# GLEW: the functions of OpenGL past version 1.1, asked for at run time.
# shellcheck shell=bash disable=SC2034,SC2154,SC2164
source_package=glew

build() {
  cd glew-*
  compile_library libglew32.a "-O2 -DGLEW_STATIC -DGLEW_NO_GLU -Iinclude" src/glew.c
  install_headers GL include/GL/*.h
  install_licence LICENSE.txt
}
