// Reading and writing files of the host. All programs of the system write by the one policy of
// writeWholeFile.
#pragma once

#include "files/file_error.h"

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace files {

struct WriteOptions {
    /// Wait until the bytes are on the disk. Without it a power cut may lose a file that is made anew anyway.
    bool flush = true;
    /// A device or pipe is written to as it is; without it, it is refused.
    bool devices = true;
    /// The time of the last change that the file gets; without one, now.
    std::optional<std::time_t> time = {};
};

/// Makes `bytes` the file's content, or leaves the old file as it was and throws FileError. A new file with a
/// temporary name of its own is written in the same folder, flushed, closed, and takes the old one's place by
/// one rename; when a step fails it is deleted. Folders, links and write-protected files are refused.
void writeWholeFile(const Path& path, std::string_view bytes, const WriteOptions& options = {});
void writeWholeFile(const Path& path, std::span<const std::uint8_t> bytes, const WriteOptions& options = {});

/// All bytes of a file. Throws FileError when it cannot be read, is no ordinary file, or is longer than
/// `atMost`; no more than that is read.
std::string readWholeFile(const Path& path, std::size_t atMost = SIZE_MAX);

/// True for an ordinary file that can be opened for reading.
bool canBeRead(const Path& path);

/// When a file was last changed. Throws FileError.
std::time_t timeOf(const Path& path);

} // namespace files
