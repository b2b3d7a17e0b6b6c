// From the paths of the IDE to those of the system that it runs on.
#pragma once

#include "files/file_error.h"

#include <string>

namespace tavrel {

/// What the system calls a Windows path in the ANSI code page. Outside Windows (tests) a backslash stands for
/// the system's separator, and the last name is matched without regard to case or blanks at its end.
files::Path hostPath(const std::string& path);

} // namespace tavrel
