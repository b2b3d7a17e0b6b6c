// A folder of the host, seen as an MSX disk.
#pragma once

#include "msxrun/name83.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace msxrun {

/// What a directory entry says of a file.
struct DirectoryEntry {
    Name83 name{};
    std::uint16_t cluster = 0; ///< the first cluster, which tells the files of a disk apart
    std::uint32_t size = 0;    ///< bytes, as of the last close
    std::uint16_t date = 0;    ///< year - 1980 in bits 9 to 15, month in 5 to 8, day in 0 to 4
    std::uint16_t time = 0;    ///< hour in bits 11 to 15, minute in 5 to 10, half seconds in 0 to 4
};

/// The files of one folder that have an 8.3 name, whatever the case of its letters. Subfolders, symbolic
/// links and other names do not exist for the machine, so a program cannot leave the folder.
///
/// Written bytes reach the host's file at once, but as on the real system its directory entry says so only
/// after close(): what a program forgot to close is cut back by settle().
class Disk {
  public:
    /// Clusters of a 720 kB disk and their size in bytes.
    static constexpr unsigned clusterCount = 713;
    static constexpr unsigned clusterBytes = 1024;

    /// @param folder an existing folder
    /// @param freeBytes by how much all files together may grow before the disk is full
    /// @throws std::system_error when the folder cannot be opened
    Disk(const std::filesystem::path& folder, std::uint64_t freeBytes);
    ~Disk();
    Disk(const Disk&) = delete;
    Disk& operator=(const Disk&) = delete;

    /// The entries that fit the pattern, in the order of the directory: at first that of the host names; a
    /// new file takes the first place that a deleted one has left, a renamed one keeps its own.
    std::vector<DirectoryEntry> list(const Name83& pattern);
    /// Makes an empty file, or empties the one that is there.
    std::optional<DirectoryEntry> create(const Name83& name);
    /// Deletes the file; false when it is not there or the host refuses.
    bool remove(const Name83& name);
    /// Renames a file; false when it is not there, the new name is taken or not a name, or the host refuses.
    bool rename(const Name83& from, const Name83& to);

    /// True when the cluster belongs to a file that is still there.
    bool knows(unsigned cluster) const { return fileAt(cluster) != nullptr; }
    /// Bytes from an offset: how many there were, or nothing when the file is gone or unreadable.
    std::optional<std::size_t> read(unsigned cluster, std::uint32_t offset, std::span<std::uint8_t> bytes);
    /// Puts bytes at an offset. A gap behind the old end gets the filler: zeros, or what a real disk would
    /// have lying there. False when the disk is full or the file cannot be written.
    bool write(unsigned cluster, std::uint32_t offset, std::span<const std::uint8_t> bytes,
               std::uint8_t filler);
    /// Cuts or extends the file; false as for write().
    bool setLength(unsigned cluster, std::uint32_t length);
    /// Lets the directory entry say what the program's control block says.
    bool close(unsigned cluster, std::uint32_t size);

    /// Ends the session: files that were written and not closed get the length of their directory entry.
    /// @return their names
    std::vector<std::string> settle();

    std::uint64_t freeBytes() const { return freeBytes_; }

  private:
    struct File {
        std::string hostName;
        int descriptor = -1;
        bool present = true;
        bool unclosed = false;          ///< written since the directory entry was last right
        std::uint32_t recordedSize = 0; ///< what the directory entry says, while unclosed
    };

    const File* fileAt(unsigned cluster) const;
    File* fileAt(unsigned cluster);
    std::vector<std::string> hostNames() const;
    void refreshDirectory();
    void replaceInDirectory(const std::string& hostName, const std::string& newName);
    std::optional<std::string> hostNameOf(const Name83& name) const;
    std::uint16_t clusterOf(const std::string& hostName);
    std::optional<DirectoryEntry> entryOf(const std::string& hostName, const Name83& name);
    bool openDescriptor(File& file);
    void closeDescriptors();
    std::optional<std::uint32_t> hostLength(File& file);
    bool growTo(File& file, std::uint32_t oldLength, std::uint32_t newLength, std::uint8_t filler);
    void noteWrite(File& file, std::uint32_t oldLength);

    int folder_ = -1;
    std::uint64_t freeBytes_;
    std::vector<std::string> directory_; ///< a host name for each place, empty where a file was deleted
    std::vector<File> files_;            ///< index = cluster - 2: a disk's first cluster has the number 2
};

} // namespace msxrun
