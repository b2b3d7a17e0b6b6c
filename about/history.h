// The release history "history.txt" beside the program.
#pragma once

#include <string>

namespace tavrel {

/// All lines of the history, each with CR LF behind it. Throws RuntimeError 53 when the file is missing.
/// `AppDir` is the program folder with its trailing backslash.
std::string readHistory(const std::string& AppDir);

} // namespace tavrel
