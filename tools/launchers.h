// The programs and the help file that menu commands open.
#pragma once

#include "util/shell.h"

#include <string>

namespace tavrel {

/// The calculator of Windows.
ShellRequest calculator();

/// The image converter delivered with the program. `AppDir` is the program folder with its trailing
/// backslash.
ShellRequest imageConverter(const std::string& AppDir);

/// Path of the Pascal reference, a compiled HTML help file.
std::string pascalReference(const std::string& AppDir);

} // namespace tavrel
