// What goes wrong with a file of the host.
#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

namespace files {

using Path = std::filesystem::path;

enum class Reason {
    badName,      ///< nothing can have this name
    fileNotFound, ///< the folder is there, the file is not
    folderNotFound,
    folder,   ///< the name is that of a folder
    link,     ///< the name is that of a link, which is not written through
    notAFile, ///< a device or pipe where only a file will do
    writeProtected,
    inUse, ///< another program holds it open
    tooLarge,
    diskFull,
    device, ///< the hardware failed
    refused ///< for another reason, which the system gives
};

/// A file that cannot be read or written. what() names it and says why, in UTF-8.
class FileError : public std::runtime_error {
  public:
    /// `systemCode` (errno, or under Windows what GetLastError gives) says why when the reason does not.
    FileError(Reason reason, const Path& path, int systemCode = 0);

    Reason reason() const { return reason_; }

  private:
    Reason reason_;
};

/// Paths as text: UTF-8 on Windows, the system's bytes elsewhere.
Path pathOf(const std::string& text);
std::string textOf(const Path& path);

} // namespace files
