// The system's calls that saving a file is made of, each one on its own, so that a test can let any of them
// fail.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace tavrel {

/// What a path names before it is written to.
enum class TargetKind { missing, file, readOnlyFile, folder, device };

/// A file open for writing. Going away closes it, if close() has not done so.
class OutputFile {
  public:
    virtual ~OutputFile() = default;
    /// The file's own path.
    virtual const std::string& path() const = 0;
    /// Writes some of the bytes and gives back how many, at least one. Throws RuntimeError.
    virtual std::size_t write(std::string_view bytes) = 0;
    /// Sees to it that the bytes are on the disk. Throws RuntimeError.
    virtual void flush() = 0;
    /// Throws RuntimeError; the file is closed all the same.
    virtual void close() = 0;
};

class FileSystem {
  public:
    virtual ~FileSystem() = default;
    virtual TargetKind kindOf(const std::string& path) = 0;
    /// A new empty file in the folder of `path`. Throws RuntimeError.
    virtual std::unique_ptr<OutputFile> createBeside(const std::string& path) = 0;
    /// Throws RuntimeError.
    virtual std::unique_ptr<OutputFile> openDevice(const std::string& path) = 0;
    /// Gives `fresh` the name `target`, in one step and in place of what has that name. Throws RuntimeError.
    virtual void replace(const std::string& fresh, const std::string& target) = 0;
    /// Deletes a file. Throws RuntimeError.
    virtual void remove(const std::string& path) = 0;
};

/// The calls of the system that the program runs on.
FileSystem& systemFiles();

/// The calls that files are written with now: systemFiles(), unless a test put others in their place.
FileSystem& currentFileSystem();

/// For tests: writes go through `other` from now on; null stands for systemFiles().
void useFileSystem(FileSystem* other) noexcept;

} // namespace tavrel
