// Files of the host: finding them by patterns, reading, and writing so that nothing is lost half-way.
#pragma once

#include "disk/geometry.h"

#include <ctime>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace disk {

using Path = std::filesystem::path;

/// A host file that cannot be read or written; what() names it and says why.
class HostError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Paths as text: UTF-8 on Windows, the system's bytes elsewhere.
Path pathOf(const std::string& text);
std::string textOf(const Path& path);

/// True for a text with '*' or '?' in its last name.
bool hasWildcards(const std::string& text);

/// True when the name fits, whatever the case of letters. As DOS has it, "*.*" fits every name, and ".*" at
/// the end also fits a name without a point.
bool fitsPattern(std::string_view name, std::string_view pattern);

/// The files (no folders) whose names fit the pattern in the last part of `pattern`, hidden ones too, sorted.
/// @throws HostError when the folder cannot be read
std::vector<Path> filesThatFit(const std::string& pattern);

/// True when the text is the path of a file, or a pattern in a folder that there is.
bool namesFiles(const std::string& text);

/// True when there is something of this name. @throws HostError when that cannot be told
bool isThere(const Path& path);

/// All bytes of a file. @throws HostError when it cannot be read, is longer than `atMost` or no ordinary file
Bytes readFile(const Path& path, std::size_t atMost);

/// When a file was last written. @throws HostError
std::time_t timeOf(const Path& path);

/// Makes `content` the file's content: written beside it, flushed, then renamed, so that the old content is
/// there until the new one is complete. A file that is write-protected or no ordinary file is refused.
/// @throws HostError; nothing is left behind then
void writeFileSafely(const Path& path, const Bytes& content, std::optional<std::time_t> time = {});

} // namespace disk
