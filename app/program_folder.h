// Where the program lies, in the form that the whole program uses.
#pragma once

#include <optional>
#include <string>

namespace tavrel {

/// A path that is there, in the ANSI code page: as it is, or by its short name when it has characters that
/// the page does not have. Nothing when it has no short name either.
std::optional<std::string> ansiPath(const std::wstring& path);

/// Folder of the running program with its trailing backslash. Nothing when no name of it fits.
std::optional<std::string> programFolder();

/// The folder of the user's own data with its trailing backslash, "" when there is none.
std::string userDataFolder();

} // namespace tavrel
