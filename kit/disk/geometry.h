// Where things lie on an MSX disk.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <vector>

namespace disk {

using Bytes = std::vector<std::uint8_t>;

/// A disk that cannot be read or cannot take what was asked; what() is the message for the user.
class DiskError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

constexpr std::size_t sectorBytes = 512;
constexpr std::size_t directoryEntryBytes = 32;

/// The largest image there can be: the boot sector counts sectors in 16 bits.
constexpr std::size_t largestImage = 65535 * sectorBytes;

/// The layout of a FAT12 disk: reserved sectors, file allocation tables, root directory, clusters. Counts are
/// in sectors unless their name says otherwise. The initial values are those of a 720 kB disk.
struct Geometry {
    unsigned reservedSectors = 1;
    unsigned fatCount = 2;
    unsigned sectorsPerFat = 3;
    unsigned rootEntries = 112;
    unsigned sectorsPerCluster = 2;
    unsigned totalSectors = 1440;
    unsigned sectorsPerTrack = 9;
    unsigned heads = 2;
    std::uint8_t media = 0xF9;

    bool operator==(const Geometry&) const = default;

    std::size_t fatOffset() const { return reservedSectors * sectorBytes; }
    std::size_t fatBytes() const { return sectorsPerFat * sectorBytes; }
    std::size_t rootOffset() const { return fatOffset() + fatCount * fatBytes(); }
    std::size_t dataOffset() const { return rootOffset() + rootEntries * directoryEntryBytes; }
    std::size_t clusterBytes() const { return sectorsPerCluster * sectorBytes; }
    /// Clusters are numbered from 2; this many there are.
    unsigned clusterCount() const;
    std::size_t clusterOffset(unsigned cluster) const {
        return dataOffset() + (cluster - 2) * clusterBytes();
    }
};

/// Reads the boot sector of an image. Disks whose boot sector tells nothing are known by the first byte of
/// the file allocation table, as early MSX machines did it: F9h for 720 kB, F8h for 360 kB.
/// @throws DiskError when the image is not that of a FAT12 disk or is shorter than it says
Geometry readGeometry(std::span<const std::uint8_t> image);

/// Writes the boot sector. It starts MSX-DOS when MSXDOS.SYS is among the files, which only the user can put
/// there.
void writeBootSector(std::span<std::uint8_t> image, const Geometry& geometry);

/// 16 and 32 bits, the lowest byte first.
unsigned readWord(std::span<const std::uint8_t> bytes, std::size_t offset);
std::uint32_t readLong(std::span<const std::uint8_t> bytes, std::size_t offset);
void writeWord(std::span<std::uint8_t> bytes, std::size_t offset, unsigned value);
void writeLong(std::span<std::uint8_t> bytes, std::size_t offset, std::uint32_t value);

} // namespace disk
