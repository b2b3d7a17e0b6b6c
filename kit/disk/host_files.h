// Finding files of the host by names and patterns.
#pragma once

#include "files/file_error.h"

#include <string>
#include <string_view>
#include <vector>

namespace disk {

using files::FileError;
using files::Path;
using files::pathOf;
using files::textOf;

/// True for a text with '*' or '?' in its last name.
bool hasWildcards(const std::string& text);

/// True when the name fits, whatever the case of letters. As DOS has it, "*.*" fits every name, and ".*" at
/// the end also fits a name without a point.
bool fitsPattern(std::string_view name, std::string_view pattern);

/// The files (no folders) whose names fit the pattern in the last part of `pattern`, hidden ones too, sorted.
/// @throws FileError when the folder cannot be read
std::vector<Path> filesThatFit(const std::string& pattern);

/// True when the text is the path of a file, or a pattern in a folder that there is.
bool namesFiles(const std::string& text);

/// True when there is something of this name. @throws FileError when that cannot be told
bool isThere(const Path& path);

} // namespace disk
