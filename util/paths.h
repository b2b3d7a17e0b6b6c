// Windows paths as plain text: a folder ends in a backslash and a name is put behind it.
#pragma once

#include <string>
#include <string_view>

namespace tavrel {

/// Up to and including the last backslash; "" when there is none.
std::string GetFilePath(std::string_view path);

/// What stands behind the last backslash; the text itself when there is none.
std::string GetFileName(std::string_view path);

/// The name alone of a path that somebody else wrote: without any folder or drive, whichever separator made
/// it.
std::string bareFileName(std::string_view path);

/// Whether a text can be the name of a file in a folder: no part of it leads elsewhere, and it names no
/// device.
bool isFileName(std::string_view text);

/// The text with a backslash behind it, unless its last character is one. "" becomes a single backslash.
std::string AddBackslash(std::string_view text);

} // namespace tavrel
