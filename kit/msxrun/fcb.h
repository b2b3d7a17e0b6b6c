// The file control block: 37 bytes in the program's memory by which MSX-DOS knows an open file.
#pragma once

#include "msxrun/memory.h"
#include "msxrun/name83.h"

#include <cstdint>

namespace msxrun {

/// The devices that a file name can stand for, with the id that opening one leaves in the block.
enum class Device : std::uint8_t { none = 0, prn = 0xFB, lst = 0xFC, nul = 0xFD, aux = 0xFE, con = 0xFF };

/// The device of that name, whatever the type is.
Device deviceNamed(const Name83& name);

/// A view of a file control block where it lies in memory; every access is to that memory, as MSX-DOS 1
/// keeps nothing about an open file elsewhere.
class Fcb {
  public:
    Fcb(Memory& memory, std::uint16_t address) : memory_(memory), address_(address) {}

    /// True when some of the block lies where the disk ROM is switched in (4000h to 7FFFh): searches and
    /// devices then see the ROM in its place.
    bool hiddenByDiskRom() const;

    unsigned drive() const { return memory_.byte(address_); }
    Name83 name() const { return nameAt(1); }
    /// The second name of a rename.
    Name83 newName() const { return nameAt(17); }

    unsigned recordSize() const { return memory_.word(at(14)); }
    std::uint32_t fileSize() const { return memory_.doubleWord(at(16)); }
    void setFileSize(std::uint32_t bytes) { memory_.setDoubleWord(at(16), bytes); }
    void setStamp(std::uint16_t date, std::uint16_t time);

    unsigned deviceByte() const { return memory_.byte(at(24)); }
    void setDeviceByte(unsigned value) { memory_.setByte(at(24), value); }
    /// The first cluster, by which the file is known on its disk.
    unsigned firstCluster() const { return memory_.word(at(26)); }
    void setFirstCluster(unsigned cluster);

    /// The record that the next sequential access takes: 128 to a block.
    std::uint32_t sequentialRecord() const {
        return memory_.word(at(12)) * 128U + (memory_.byte(at(32)) & 0x7FU);
    }
    void setSequentialRecord(std::uint32_t record);

    /// The random record of a 128-byte access: three bytes.
    std::uint32_t randomRecord() const { return memory_.doubleWord(at(33)) & 0xFFFFFFU; }
    void setRandomRecord(std::uint32_t record);
    /// The random record of a block access: its fourth byte counts only for records below 64 bytes.
    std::uint32_t blockRecord() const;
    void setBlockRecord(std::uint32_t record);

  private:
    unsigned at(unsigned offset) const { return address_ + offset; }
    Name83 nameAt(unsigned offset) const;

    Memory& memory_;
    std::uint16_t address_;
};

} // namespace msxrun
