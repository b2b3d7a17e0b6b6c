// The image of an MSX disk (FAT12) in memory: files of its root directory, in and out.
#pragma once

#include "disk/geometry.h"
#include "msxrun/name83.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace disk {

using msxrun::Name83;

/// When a file was written, as a directory entry holds it.
struct FatTime {
    std::uint16_t date = 0; ///< year - 1980 in bits 9 to 15, month in 5 to 8, day in 0 to 4
    std::uint16_t time = 0; ///< hour in bits 11 to 15, minute in 5 to 10, half seconds in 0 to 4
    bool operator==(const FatTime&) const = default;
};

/// What the directory says of a file; on a damaged disk any of it may be wrong.
struct FileEntry {
    Name83 name{};
    bool isFolder = false;
    std::uint32_t size = 0; ///< bytes
    FatTime written;
    unsigned firstCluster = 0; ///< 0: none
    unsigned slot = 0;         ///< index in the root directory
};

/// A file that is to go onto a disk.
struct NewFile {
    Name83 name{};
    Bytes content;
    FatTime written;
};

/// Every operation that changes the disk either succeeds whole or throws and changes nothing. Subfolders (of
/// MSX-DOS 2) are seen and left alone.
class DiskImage {
  public:
    /// An empty disk of 720 kB.
    DiskImage();
    /// Takes the bytes of an image. @throws DiskError when they are not those of a FAT12 disk
    explicit DiskImage(Bytes bytes);

    const Bytes& bytes() const { return bytes_; }
    const Geometry& geometry() const { return geometry_; }
    std::size_t freeBytes() const { return freeClusters() * geometry_.clusterBytes(); }
    /// Files and folders in the order of the directory, without volume names and long names.
    std::vector<FileEntry> list() const;
    std::optional<FileEntry> find(const Name83& name) const;

    /// What is wrong with the disk, in words, each naming the file; nothing when it is sound.
    std::vector<std::string> faults() const;

    /// The bytes of a file of this disk. @throws DiskError when the disk does not hold all of them
    Bytes extract(const FileEntry& file) const;

    /// Adds files, in place of those of the same names. The names must differ from each other.
    /// @throws DiskError when the disk or its directory is full, a name is that of a folder, or the disk is
    /// damaged
    void add(const std::vector<NewFile>& files);

    /// Deletes files. @throws DiskError when one is a folder or the disk is damaged
    void remove(const std::vector<FileEntry>& files);

  private:
    std::span<std::uint8_t> slot(unsigned index);
    std::span<const std::uint8_t> slot(unsigned index) const;
    unsigned fatEntry(unsigned cluster) const;
    void setFatEntry(unsigned cluster, unsigned value);
    bool isCluster(unsigned number) const { return number >= 2 && number < geometry_.clusterCount() + 2; }
    std::size_t freeClusters() const;
    std::size_t clustersFor(std::size_t size) const;
    std::string faultOf(const FileEntry& file, std::vector<bool>& used) const;
    void requireSound() const;
    void release(const FileEntry& file);
    void makeRoom(const std::vector<NewFile>& files);
    unsigned freeSlot() const;
    void takeSlot(unsigned index);
    unsigned store(const Bytes& content);
    void put(const NewFile& file);
    void finish();

    Geometry geometry_;
    Bytes bytes_;
};

} // namespace disk
