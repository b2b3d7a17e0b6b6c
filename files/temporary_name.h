// The names of temporary files. A save that is killed leaves one, and cleaning up must never take a file of
// the user's for it, so the names have one exact form.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace files {

/// "~tavrel-", the number as eight hexadecimal digits, ".tmp"; all small letters. Short, since the whole path
/// must keep to the system's limit.
std::string temporaryFileName(std::uint32_t number);

/// What finds these names, and others too, when a folder is listed.
constexpr std::string_view temporaryFilePattern = "~tavrel-*.tmp";

/// True for a name (without folder) of exactly that form.
bool isTemporaryFileName(std::string_view name);

} // namespace files
