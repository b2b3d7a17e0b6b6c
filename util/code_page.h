// The two 8-bit code pages of Windows: its programs' and its command interpreter's.
#pragma once

#include <optional>
#include <string>

namespace tavrel {

/// An ANSI text in the OEM code page, which batch files are read in; nothing when that page lacks one of its
/// letters. Outside Windows (tests) both are ASCII.
std::optional<std::string> oemText(const std::string& ansiText);

} // namespace tavrel
