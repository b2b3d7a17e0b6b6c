# SDL_ttf without HarfBuzz: the texts of the emulator's menus need no shaping.
# shellcheck shell=bash disable=SC2034,SC2154,SC2164
source_package=libsdl2-ttf
needs="sdl2 freetype"

build() {
  cd SDL2_ttf-*
  compile_library libSDL2_ttf.a "-O2 -DTTF_USE_HARFBUZZ=0 -I$work/sdl2/include/SDL2 -I$work/freetype/include" SDL_ttf.c
  install_headers SDL2 SDL_ttf.h
  install_licence LICENSE.txt
}
