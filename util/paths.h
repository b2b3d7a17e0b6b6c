// Windows paths as plain text: a folder ends in a backslash and a name is put behind it.
#pragma once

#include <string>
#include <string_view>

namespace tavrel {

/// Up to and including the last backslash; "" when there is none.
std::string GetFilePath(std::string_view path);

/// What stands behind the last backslash; the text itself when there is none.
std::string GetFileName(std::string_view path);

/// The text with a backslash behind it, unless its last character is one. "" becomes a single backslash.
std::string AddBackslash(std::string_view text);

} // namespace tavrel
