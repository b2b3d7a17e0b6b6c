// The OEM character set, which DOS sources are written in: each byte of the editor's text is a character of
// it.
#pragma once

#include <string>
#include <string_view>

namespace tavrel {

/// Bytes of the editor's text as Unicode.
std::wstring unicodeOfOem(std::string_view text);

/// Unicode as bytes for the editor; a character that the set does not have becomes one that is like it, or
/// "?".
std::string oemOfUnicode(std::wstring_view text);

/// Bytes of the editor's text in the ANSI code page, which message boxes show.
std::string ansiOfOem(std::string_view text);

} // namespace tavrel
