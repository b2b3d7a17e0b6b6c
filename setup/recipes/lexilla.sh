# The lexer library, reduced to the Pascal lexer, behind its usual interface: CreateLexer("pascal").
# shellcheck shell=bash disable=SC2016,SC2034,SC2154
source_package=scite

build() {
  # The catalogue names every lexer there is; keep one. Nothing is exported from a static library.
  sed -E -e '/^extern const LexerModule lm/{/ lmPascal;/!d}' -e '/^\t\t&lm/{/&lmPascal,/!d}' \
    -e 's/__declspec\(dllexport\)//' lexilla/src/Lexilla.cxx > lexilla/src/Catalogue.cxx
  mkdir -p objects
  for file in lexilla/src/Catalogue.cxx lexilla/lexers/LexPascal.cxx lexilla/lexlib/*.cxx; do
    printf '%s\0' "$file"
  done | xargs -0 -P "$jobs" -I FILE sh -c '
    "$0" -std=c++17 -O2 -DNDEBUG -ffunction-sections -fdata-sections -Ilexilla/include -Iscintilla/include \
      -Ilexilla/lexlib -c "$1" -o "objects/$(basename "$1" .cxx).o"' "$host-g++-posix" FILE
  mkdir -p "$prefix/lib" "$prefix/share"
  "$host-ar" rcs "$prefix/lib/liblexilla.a" objects/*.o
  cp -r lexilla/include "$prefix/"
  cp lexilla/License.txt "$prefix/share/"
}
