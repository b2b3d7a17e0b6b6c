# FreeType, static, reduced to TrueType fonts: the emulator brings no others along. Its list of modules is a header
# that is ours to write. Compressed fonts are left out (the emulator unpacks them itself), and with them an inner zlib
# that would clash with the real one.
# shellcheck shell=bash disable=SC2034,SC2154,SC2164
source_package=freetype

build() {
  cd freetype-*
  cat > include/freetype/config/ftmodule.h << 'MODULES'
FT_USE_MODULE( FT_Module_Class, autofit_module_class )
FT_USE_MODULE( FT_Driver_ClassRec, tt_driver_class )
FT_USE_MODULE( FT_Module_Class, psnames_module_class )
FT_USE_MODULE( FT_Module_Class, sfnt_module_class )
FT_USE_MODULE( FT_Renderer_Class, ft_smooth_renderer_class )
FT_USE_MODULE( FT_Renderer_Class, ft_raster1_renderer_class )
MODULES
  sed -i -E 's,^#define (FT_CONFIG_OPTION_USE_(ZLIB|LZW)|TT_CONFIG_OPTION_(BDF|GX_VAR_SUPPORT)|FT_CONFIG_OPTION_(MAC_FONTS|SVG))\>.*,,' \
    include/freetype/config/ftoption.h
  compile_library libfreetype.a "-O2 -DFT2_BUILD_LIBRARY -Iinclude" src/autofit/autofit.c src/base/{ftbase,ftbitmap,ftdebug}.c \
    src/base/{ftglyph,ftinit,ftstroke,ftsynth,ftsystem}.c src/psnames/psnames.c src/raster/raster.c src/sfnt/sfnt.c \
    src/smooth/smooth.c src/truetype/truetype.c
  mkdir -p "$prefix/include"
  cp -r include/freetype include/ft2build.h "$prefix/include/"
  install_licence docs/FTL.TXT
}
