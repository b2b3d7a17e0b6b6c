// The file calls of the BDOS: directory calls and transfers through file control blocks.
#include "msxrun/bdos.h"

#include <algorithm>
#include <string_view>

namespace msxrun {

namespace {

constexpr std::uint8_t success = 0;
constexpr std::uint8_t directoryFailure = 0xFF; ///< of calls that look for a file
constexpr std::uint8_t transferFailure = 1;     ///< of reads and writes
constexpr unsigned standardRecord = 128;
constexpr std::uint8_t endOfFile = 0x1A;

/// The device byte of an open disk file; while this bit is set there is nothing to note at a close.
constexpr unsigned unchangedBit = 0x40;
constexpr unsigned deviceBit = 0x80;

/// What lies in clusters that a write has only passed over: a new disk's sectors.
constexpr std::uint8_t staleByte = 0xE5;

BdosAnswer inA(std::uint8_t value) {
    return {.a = value};
}

Device deviceOf(const Fcb& fcb) {
    return fcb.deviceByte() >= static_cast<unsigned>(Device::prn) ? static_cast<Device>(fcb.deviceByte())
                                                                  : Device::none;
}

/// A name with the '?' of a pattern taken from another name.
Name83 filledIn(Name83 pattern, const Name83& from) {
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        if (pattern[i] == '?') {
            pattern[i] = from[i];
        }
    }
    return pattern;
}

} // namespace

/// The failure of a file call that the disk cannot serve, or nothing for every other call.
std::optional<BdosAnswer> Bdos::callFaultyDisk(const BdosCall& call) {
    constexpr std::string_view directoryCalls = "\x0F\x10\x11\x12\x13\x16\x17\x23";
    constexpr std::string_view transferCalls = "\x14\x15\x21\x22\x26\x27\x28";
    constexpr std::string_view writingCalls = "\x13\x15\x16\x17\x22\x26\x28";
    const auto isOneOf = [&](std::string_view calls) {
        return calls.find(static_cast<char>(call.function)) != std::string_view::npos;
    };
    const bool transfers = isOneOf(transferCalls);
    const Fcb fcb(memory_, call.de);
    if ((!transfers && !isOneOf(directoryCalls)) || deviceNamed(fcb.name()) != Device::none) {
        return std::nullopt;
    }
    const bool removed = faults_.removedAfter && fileCalls_ >= *faults_.removedAfter;
    ++fileCalls_;
    if (!removed && !(faults_.readOnly && isOneOf(writingCalls))) {
        return std::nullopt;
    }
    return transfers ? BdosAnswer{.a = transferFailure, .hl = std::uint16_t{0}} : inA(directoryFailure);
}

std::optional<BdosAnswer> Bdos::callDirectory(const BdosCall& call) {
    const Fcb fcb(memory_, call.de);
    switch (call.function) {
    case 0x0F:
        return openFile(fcb);
    case 0x10:
        return closeFile(fcb);
    case 0x11:
        return searchFirst(fcb);
    case 0x12:
        return searchNext();
    case 0x13:
        return deleteFiles(fcb);
    case 0x16:
        return createFile(fcb);
    case 0x17:
        return renameFiles(fcb);
    case 0x23:
        return fileSize(fcb);
    default:
        return std::nullopt;
    }
}

std::optional<BdosAnswer> Bdos::callTransfer(const BdosCall& call) {
    Fcb fcb(memory_, call.de);
    switch (call.function) {
    case 0x14:
        return sequential(fcb, false);
    case 0x15:
        return sequential(fcb, true);
    case 0x21:
        return random(fcb, false, staleByte);
    case 0x22:
        return random(fcb, true, staleByte);
    case 0x24:
        fcb.setRandomRecord(fcb.sequentialRecord());
        return BdosAnswer{};
    case 0x26:
        return randomBlock(fcb, call.hl, true);
    case 0x27:
        return randomBlock(fcb, call.hl, false);
    case 0x28:
        return random(fcb, true, 0);
    default:
        return std::nullopt;
    }
}

std::vector<DirectoryEntry> Bdos::entriesFor(const Fcb& fcb) {
    if (fcb.drive() > 1) {
        return {};
    }
    return disk_.list(fcb.name());
}

/// Opening fills in what the directory knows. It leaves the block, the record size, the current and the
/// random record as they are: those the program sets.
void Bdos::fillOpened(Fcb fcb, const DirectoryEntry& entry) const {
    fcb.setFileSize(entry.size);
    fcb.setStamp(entry.date, entry.time);
    fcb.setDeviceByte(unchangedBit);
    fcb.setFirstCluster(entry.cluster);
}

BdosAnswer Bdos::openFile(Fcb fcb) {
    if (const Device device = deviceNamed(fcb.name()); device != Device::none) {
        fcb.setFileSize(0);
        fcb.setDeviceByte(static_cast<unsigned>(device));
        return inA(success);
    }
    const auto entries = entriesFor(fcb);
    if (entries.empty()) {
        return inA(directoryFailure);
    }
    fillOpened(fcb, entries.front());
    return inA(success);
}

BdosAnswer Bdos::closeFile(Fcb fcb) {
    if (deviceOf(fcb) != Device::none) {
        return inA(success);
    }
    if ((fcb.deviceByte() & deviceBit) != 0 || !disk_.knows(fcb.firstCluster())) {
        return inA(directoryFailure);
    }
    if ((fcb.deviceByte() & unchangedBit) == 0) {
        if (!disk_.close(fcb.firstCluster(), fcb.fileSize())) {
            return inA(directoryFailure);
        }
        fcb.setDeviceByte(unchangedBit);
    }
    return inA(success);
}

BdosAnswer Bdos::searchFirst(Fcb fcb) {
    found_.clear();
    if (fcb.hiddenByDiskRom()) {
        notice_("search with a file control block between 4000h and 7FFFh, where the disk ROM hides it");
        return inA(directoryFailure);
    }
    found_ = entriesFor(fcb);
    std::reverse(found_.begin(), found_.end());
    return searchNext();
}

/// Puts the drive number and the directory entry (32 bytes) at the DMA address.
BdosAnswer Bdos::searchNext() {
    if (found_.empty()) {
        return inA(directoryFailure);
    }
    const DirectoryEntry entry = found_.back();
    found_.pop_back();
    memory_.setByte(dma_, 1);
    const unsigned start = dma_ + 1U;
    for (unsigned i = 0; i < 32; ++i) {
        memory_.setByte(start + i, 0);
    }
    for (unsigned i = 0; i < entry.name.size(); ++i) {
        memory_.setByte(start + i, static_cast<unsigned char>(entry.name[i]));
    }
    memory_.setWord(start + 22U, entry.time);
    memory_.setWord(start + 24U, entry.date);
    memory_.setWord(start + 26U, entry.cluster);
    memory_.setDoubleWord(start + 28U, entry.size);
    return inA(success);
}

BdosAnswer Bdos::deleteFiles(Fcb fcb) {
    bool any = false;
    for (const DirectoryEntry& entry : entriesFor(fcb)) {
        any = disk_.remove(entry.name) || any;
    }
    return inA(any ? success : directoryFailure);
}

BdosAnswer Bdos::createFile(Fcb fcb) {
    if (deviceNamed(fcb.name()) != Device::none) {
        return openFile(fcb);
    }
    if (fcb.drive() > 1) {
        return inA(directoryFailure);
    }
    const auto entry = disk_.create(fcb.name());
    if (!entry) {
        return inA(directoryFailure);
    }
    fillOpened(fcb, *entry);
    return inA(success);
}

BdosAnswer Bdos::renameFiles(Fcb fcb) {
    bool any = false;
    for (const DirectoryEntry& entry : entriesFor(fcb)) {
        if (!disk_.rename(entry.name, filledIn(fcb.newName(), entry.name))) {
            return inA(directoryFailure);
        }
        any = true;
    }
    return inA(any ? success : directoryFailure);
}

/// Sets the random record to the number of 128-byte records, the last part counting as a whole one.
BdosAnswer Bdos::fileSize(Fcb fcb) {
    const auto entries = entriesFor(fcb);
    if (entries.empty()) {
        return inA(directoryFailure);
    }
    const std::uint64_t bytes = entries.front().size;
    fcb.setRandomRecord(static_cast<std::uint32_t>((bytes + standardRecord - 1) / standardRecord));
    return inA(success);
}

bool Bdos::deviceIsHidden(const Fcb& fcb) const {
    if (!fcb.hiddenByDiskRom()) {
        return false;
    }
    notice_("device access with a file control block between 4000h and 7FFFh, where the disk ROM hides it");
    return true;
}

BdosAnswer Bdos::sequential(Fcb fcb, bool writes) {
    const std::uint32_t record = fcb.sequentialRecord();
    const Transfer transfer{.offset = std::uint64_t{record} * standardRecord, .filler = staleByte};
    const bool done = writes ? writeRecords(fcb, transfer) : readRecords(fcb, transfer) == 1;
    if (!done) {
        return inA(transferFailure);
    }
    fcb.setSequentialRecord(record + 1);
    return inA(success);
}

/// One record of 128 bytes at the random record, which stays; a sequential access then takes the same one.
BdosAnswer Bdos::random(Fcb fcb, bool writes, std::uint8_t filler) {
    const std::uint32_t record = fcb.randomRecord();
    fcb.setSequentialRecord(record);
    const Transfer transfer{.offset = std::uint64_t{record} * standardRecord, .filler = filler};
    const bool done = writes ? writeRecords(fcb, transfer) : readRecords(fcb, transfer) == 1;
    return inA(done ? success : transferFailure);
}

/// Any number of records of the size that the block names; the random record goes on behind them.
BdosAnswer Bdos::randomBlock(Fcb fcb, unsigned count, bool writes) {
    const unsigned size = fcb.recordSize();
    if (size == 0) {
        notice_("block access with a record size of 0: it must be set after opening");
        return {.a = transferFailure, .hl = std::uint16_t{0}};
    }
    const std::uint32_t record = fcb.blockRecord();
    const Transfer transfer{
        .offset = std::uint64_t{record} * size, .recordSize = size, .count = count, .filler = staleByte};
    if (!writes) {
        const unsigned done = readRecords(fcb, transfer);
        fcb.setBlockRecord(record + done);
        return {.a = done == count ? success : transferFailure, .hl = static_cast<std::uint16_t>(done)};
    }
    if (count == 0) {
        const bool fits = transfer.offset <= UINT32_MAX && deviceOf(fcb) == Device::none &&
                          disk_.setLength(fcb.firstCluster(), static_cast<std::uint32_t>(transfer.offset));
        if (fits) {
            fcb.setFileSize(static_cast<std::uint32_t>(transfer.offset));
            fcb.setDeviceByte(0);
        }
        return inA(fits ? success : transferFailure);
    }
    if (!writeRecords(fcb, transfer)) {
        return inA(transferFailure);
    }
    fcb.setBlockRecord(record + count);
    return inA(success);
}

/// Moves records from the file to the DMA address. A last record that the file holds only a part of is
/// filled up with zeros and counts.
/// @return the number of records, less than asked for at the end of the file or of the memory
unsigned Bdos::readRecords(Fcb fcb, const Transfer& transfer) {
    const unsigned fitting = std::min(transfer.count, (65536U - dma_) / transfer.recordSize);
    std::vector<std::uint8_t> bytes(std::size_t{fitting} * transfer.recordSize, 0);
    std::size_t count = 0;
    if (const Device device = deviceOf(fcb); device != Device::none) {
        count = deviceIsHidden(fcb) ? 0 : readDevice(device, bytes);
    } else if (transfer.offset < fcb.fileSize()) {
        const std::size_t present = static_cast<std::size_t>(fcb.fileSize() - transfer.offset);
        count = disk_
                    .read(fcb.firstCluster(), static_cast<std::uint32_t>(transfer.offset),
                          std::span(bytes).first(std::min(bytes.size(), present)))
                    .value_or(0);
    }
    const auto records = static_cast<unsigned>((count + transfer.recordSize - 1) / transfer.recordSize);
    for (unsigned i = 0; i < records * transfer.recordSize; ++i) {
        memory_.setByte(dma_ + i, bytes[i]);
    }
    return records;
}

/// Moves records from the DMA address to the file; false when not all of them could be written.
bool Bdos::writeRecords(Fcb fcb, const Transfer& transfer) {
    const std::uint64_t length = std::uint64_t{transfer.count} * transfer.recordSize;
    if (length > 65536U - dma_ || transfer.offset + length > UINT32_MAX) {
        return false;
    }
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(length));
    for (unsigned i = 0; i < bytes.size(); ++i) {
        bytes[i] = memory_.byte(dma_ + i);
    }
    if (const Device device = deviceOf(fcb); device != Device::none) {
        if (deviceIsHidden(fcb)) {
            return false;
        }
        writeDevice(device, bytes);
        return true;
    }
    const auto offset = static_cast<std::uint32_t>(transfer.offset);
    if (!disk_.write(fcb.firstCluster(), offset, bytes, transfer.filler)) {
        return false;
    }
    fcb.setFileSize(std::max(fcb.fileSize(), static_cast<std::uint32_t>(offset + length)));
    fcb.setDeviceByte(0);
    return true;
}

/// What a device has to read: the keys typed until ^Z, or nothing.
unsigned Bdos::readDevice(Device device, std::span<std::uint8_t> bytes) {
    unsigned count = 0;
    while (device == Device::con && count < bytes.size()) {
        const auto key = nextKey();
        if (!key || *key == endOfFile) {
            break;
        }
        writeConsole(*key);
        bytes[count++] = *key;
    }
    return count;
}

void Bdos::writeDevice(Device device, std::span<const std::uint8_t> bytes) {
    for (const std::uint8_t character : bytes) {
        if (device == Device::con) {
            writeConsole(character);
        } else if (device == Device::lst || device == Device::prn) {
            writePrinter(character);
        }
    }
}

} // namespace msxrun
