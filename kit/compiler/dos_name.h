// What DOS takes as a file name.
#pragma once

#include <string>
#include <string_view>

namespace tp3 {

/// True for a name without folder of one to eight characters that DOS takes, alone or with a dot and at most
/// three. Letters are upper case.
bool isDosName(std::string_view name);

/// True for the name of a device of DOS, such as CON or NUL.INC, in a folder or not: opening one never ends,
/// or never gives a line. Letters are upper case.
bool isDosDevice(std::string_view path);

/// What an error says about a name that is none: the name, and why the file cannot be found.
std::string notADosName(std::string_view name);

} // namespace tp3
