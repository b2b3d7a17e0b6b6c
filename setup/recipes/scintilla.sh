# The editor control (win32 platform) as a static library, with its headers.
# shellcheck shell=bash disable=SC2034,SC2154
source_package=scite

build() {
  make -s -C scintilla/win32 -j"$jobs" CXX="$host-g++-posix" AR="$host-ar" RANLIB="$host-ranlib" \
    BASE_FLAGS="-O2 -ffunction-sections -fdata-sections" ../bin/libscintilla.a
  mkdir -p "$prefix/lib" "$prefix/share"
  cp scintilla/bin/libscintilla.a "$prefix/lib/"
  cp -r scintilla/include "$prefix/"
  cp scintilla/License.txt "$prefix/share/"
}
