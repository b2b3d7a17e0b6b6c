#include "disk/geometry.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

namespace disk {

namespace {

// Offsets in the boot sector.
constexpr std::size_t oemName = 3;
constexpr std::size_t parameters = 0x0B;
constexpr std::size_t bootEntry = 0x1E;

/// The sector lies at C000h when the disk system calls the boot entry: with carry clear first, which wants
/// nothing of it, and with carry set when RAM is in place and a system may start. Loads the user's MSXDOS.SYS
/// if the disk has it; returns otherwise, which starts BASIC.
///
/// The bytes from 24h to 3Dh are no code: later systems keep the drive's number there, a mark for a disk that
/// was not unmounted, a serial number and a label, and would complain of what they find.
constexpr std::array<std::uint8_t, 110> bootCode = {
    0xD0,                // C01E RET NC
    0x18, 0x1D,          //      JR C03E
    0,    0,    0,       // C021
    0,    0,    0x29,    // C024 no drive number, unmounted as it should be, and the three that follow:
    0,    0,    0,    0, //      serial number
    'N',  'O',  ' ',  'N', 'A', 'M', 'E', ' ', ' ', ' ', ' ', //      label
    'F',  'A',  'T',  '1', '2', ' ', ' ', ' ',                //      type
    0x11, 0x67, 0xC0,                                         // C03E LD DE,C067      the file control block
    0x0E, 0x0F,                                               //      LD C,0F         open
    0xCD, 0x7D, 0xF3, //      CALL F37D       the disk system's entry while there is no page 0 of MSX-DOS
    0xB7,             //      OR A
    0xC0,             //      RET NZ
    0x11, 0x00, 0x01, //      LD DE,0100
    0x0E, 0x1A,       //      LD C,1A         where to read to
    0xCD, 0x7D, 0xF3, //      CALL F37D
    0x21, 0x01, 0x00, //      LD HL,1
    0x22, 0x75, 0xC0, //      LD (C075),HL    records of one byte
    0x21, 0x00, 0x3F, //      LD HL,3F00      as many as there are, up to page 1
    0x11, 0x67, 0xC0, //      LD DE,C067
    0x0E, 0x27,       //      LD C,27         read
    0xCD, 0x7D, 0xF3, //      CALL F37D
    0x31, 0x1F, 0xF5, //      LD SP,F51F
    0xC3, 0x00, 0x01, //      JP 0100
    0x00, 'M',  'S',  'X', 'D', 'O', 'S', ' ', ' ', 'S', 'Y', 'S',
    // C073: the rest of the block's 37 bytes is 0
};

/// With more clusters the entries of the file allocation table would have 16 bits.
constexpr unsigned mostClusters = 4084;

std::optional<Geometry> parametersOf(std::span<const std::uint8_t> image) {
    if (readWord(image, parameters) != sectorBytes)
        return std::nullopt;
    Geometry geometry;
    geometry.sectorsPerCluster = image[parameters + 2];
    geometry.reservedSectors = readWord(image, parameters + 3);
    geometry.fatCount = image[parameters + 5];
    geometry.rootEntries = readWord(image, parameters + 6);
    geometry.totalSectors = readWord(image, parameters + 8);
    geometry.media = image[parameters + 10];
    geometry.sectorsPerFat = readWord(image, parameters + 11);
    geometry.sectorsPerTrack = readWord(image, parameters + 13);
    geometry.heads = readWord(image, parameters + 15);
    return geometry;
}

std::optional<Geometry> geometryOfMedia(std::span<const std::uint8_t> image) {
    Geometry geometry;
    if (image[sectorBytes] == 0xF8) {
        geometry.media = 0xF8;
        geometry.totalSectors = 720;
        geometry.sectorsPerFat = 2;
        geometry.heads = 1;
    } else if (image[sectorBytes] != 0xF9) {
        return std::nullopt;
    }
    if (image.size() != geometry.totalSectors * sectorBytes)
        return std::nullopt;
    return geometry;
}

bool isFat12(const Geometry& geometry) {
    if (geometry.sectorsPerCluster == 0 || geometry.reservedSectors == 0 || geometry.fatCount == 0 ||
        geometry.sectorsPerFat == 0 || geometry.rootEntries == 0 ||
        geometry.rootEntries % (sectorBytes / directoryEntryBytes) != 0)
        return false;
    const unsigned clusters = geometry.clusterCount();
    if (clusters == 0 || clusters > mostClusters)
        return false;
    const std::size_t entries = clusters + 2U;
    return (entries * 3 + 1) / 2 <= geometry.fatBytes();
}

} // namespace

unsigned Geometry::clusterCount() const {
    const std::size_t before = dataOffset() / sectorBytes;
    return totalSectors <= before ? 0 : static_cast<unsigned>((totalSectors - before) / sectorsPerCluster);
}

unsigned readWord(std::span<const std::uint8_t> bytes, std::size_t offset) {
    return bytes[offset] | static_cast<unsigned>(bytes[offset + 1]) << 8;
}

std::uint32_t readLong(std::span<const std::uint8_t> bytes, std::size_t offset) {
    return readWord(bytes, offset) | static_cast<std::uint32_t>(readWord(bytes, offset + 2)) << 16;
}

void writeWord(std::span<std::uint8_t> bytes, std::size_t offset, unsigned value) {
    bytes[offset] = static_cast<std::uint8_t>(value & 0xFF);
    bytes[offset + 1] = static_cast<std::uint8_t>(value >> 8 & 0xFF);
}

void writeLong(std::span<std::uint8_t> bytes, std::size_t offset, std::uint32_t value) {
    writeWord(bytes, offset, value & 0xFFFF);
    writeWord(bytes, offset + 2, value >> 16);
}

Geometry readGeometry(std::span<const std::uint8_t> image) {
    if (image.size() < 2 * sectorBytes)
        throw DiskError("the image is too short for a disk");
    std::optional<Geometry> geometry = parametersOf(image);
    if (!geometry || !isFat12(*geometry))
        geometry = geometryOfMedia(image);
    if (!geometry)
        throw DiskError("this is not the image of an MSX disk (FAT12)");
    if (image.size() < geometry->totalSectors * sectorBytes)
        throw DiskError("the image is shorter than its boot sector says");
    return *geometry;
}

void writeBootSector(std::span<std::uint8_t> image, const Geometry& geometry) {
    // MSX-BASIC takes a sector that does not begin with a jump for no disk at all.
    static constexpr std::array<std::uint8_t, 3> jump = {0xEB, 0xFE, 0x90};
    static constexpr std::string_view name = "TAVREL  ";
    std::fill_n(image.begin(), sectorBytes, std::uint8_t{0});
    std::copy(jump.begin(), jump.end(), image.begin());
    std::copy(name.begin(), name.end(), image.begin() + oemName);
    std::copy(bootCode.begin(), bootCode.end(), image.begin() + bootEntry);
    writeWord(image, parameters, sectorBytes);
    image[parameters + 2] = static_cast<std::uint8_t>(geometry.sectorsPerCluster);
    writeWord(image, parameters + 3, geometry.reservedSectors);
    image[parameters + 5] = static_cast<std::uint8_t>(geometry.fatCount);
    writeWord(image, parameters + 6, geometry.rootEntries);
    writeWord(image, parameters + 8, geometry.totalSectors);
    image[parameters + 10] = geometry.media;
    writeWord(image, parameters + 11, geometry.sectorsPerFat);
    writeWord(image, parameters + 13, geometry.sectorsPerTrack);
    writeWord(image, parameters + 15, geometry.heads);
}

} // namespace disk
