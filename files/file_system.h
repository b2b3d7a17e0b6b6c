// The system's calls that saving a file is made of, each one on its own, so that a test can let any of them
// fail.
#pragma once

#include "files/file_error.h"

#include <cstddef>
#include <ctime>
#include <memory>
#include <string_view>

namespace files {

/// What a path names before it is written to.
enum class TargetKind {
    missing,
    file,
    writeProtected,
    folder,
    link,
    device, ///< takes bytes as they come: a printer, a terminal, a pipe
    other   ///< nothing that a program has to write to, such as a whole disk
};

/// A file open for writing. Its destructor closes it, if close() has not done so.
class OutputFile {
  public:
    virtual ~OutputFile() = default;
    /// The file's own path.
    virtual const Path& path() const = 0;
    /// Writes some of the bytes and gives back how many, at least one. Throws FileError.
    virtual std::size_t write(std::string_view bytes) = 0;
    /// Returns when the bytes are on the disk. Throws FileError.
    virtual void flush() = 0;
    /// Sets the time of the last change. Throws FileError.
    virtual void setTime(std::time_t time) = 0;
    /// Throws FileError; the file is closed all the same.
    virtual void close() = 0;
};

class FileSystem {
  public:
    virtual ~FileSystem() = default;
    /// Throws FileError when the system does not say.
    virtual TargetKind kindOf(const Path& path) = 0;
    /// A new empty file with a temporary name in the folder of `path`, and with the rights of the file of
    /// that path when there is one. Throws FileError.
    virtual std::unique_ptr<OutputFile> createBeside(const Path& path) = 0;
    /// Throws FileError.
    virtual std::unique_ptr<OutputFile> openDevice(const Path& path) = 0;
    /// Gives `fresh` the name `target`, in one step and in place of what has that name. Throws FileError.
    virtual void replace(const Path& fresh, const Path& target) = 0;
    /// Deletes a file. Throws FileError.
    virtual void remove(const Path& path) = 0;
};

/// The calls of the system that the program runs on.
FileSystem& systemFiles();

/// The calls that files are written with now: systemFiles(), unless a test put others in their place.
FileSystem& currentFileSystem();

/// For tests: writes go through `other` from now on; null stands for systemFiles().
void useFileSystem(FileSystem* other) noexcept;

} // namespace files
