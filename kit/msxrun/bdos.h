// The function calls of MSX-DOS 1, over a console and a folder of the host.
#pragma once

#include "msxrun/console.h"
#include "msxrun/disk.h"
#include "msxrun/fcb.h"
#include "msxrun/memory.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace msxrun {

/// The registers that a call looks at.
struct BdosCall {
    std::uint8_t function = 0; ///< C
    std::uint16_t de = 0;
    std::uint16_t hl = 0;
};

/// What a call gives back. A register that is not named here holds nothing of use afterwards.
struct BdosAnswer {
    std::optional<std::uint8_t> a{};
    std::optional<std::uint16_t> hl{};
    std::optional<std::uint16_t> de{};
    std::optional<std::uint16_t> bc{};
    bool endsProgram = false; ///< function 0, or ^C at a call that heeds it
};

/// What is wrong with the disk. The real system asks its user then (Abort, Retry, Ignore); here the call
/// fails at once, which is what a program sees that is to go on.
struct DiskFaults {
    bool readOnly = false;                     ///< it is write-protected
    std::optional<std::uint64_t> removedAfter; ///< file calls after which it is taken out of the drive
};

/// MSX-DOS 1 behind the entry at 0005h. Drive A: is the disk given; there is no other.
class Bdos {
  public:
    /// Receives one line about something that a program did and no test should overlook.
    using Notice = std::function<void(const std::string&)>;

    Bdos(Memory& memory, Console& console, Disk& disk, Notice notice);

    /// Lets file calls fail from now on as the faults say.
    void setFaults(const DiskFaults& faults) { faults_ = faults; }

    /// Serves one call.
    BdosAnswer call(const BdosCall& call);

    /// The console services that the BIOS table offers too.
    BdosAnswer consoleStatus();
    BdosAnswer readRaw();
    void writeConsole(std::uint8_t character);
    void writePrinter(std::uint8_t character) { console_.print(character); }

  private:
    /// The direction and the unit of a transfer between a file and the DMA address.
    struct Transfer {
        std::uint64_t offset = 0; ///< bytes from the start of the file
        unsigned recordSize = 128;
        unsigned count = 1; ///< records
        std::uint8_t filler = 0xE5;
    };

    std::optional<BdosAnswer> callConsole(const BdosCall& call);
    std::optional<BdosAnswer> callFaultyDisk(const BdosCall& call);
    std::optional<BdosAnswer> callDirectory(const BdosCall& call);
    std::optional<BdosAnswer> callTransfer(const BdosCall& call);
    BdosAnswer callSystem(const BdosCall& call);

    std::optional<std::uint8_t> nextKey();
    bool heedControlKey(std::uint8_t key);
    BdosAnswer abortProgram();
    BdosAnswer readKey(bool echo);
    BdosAnswer directConsole(std::uint8_t character);
    BdosAnswer writeText(std::uint16_t address);
    BdosAnswer readLine(std::uint16_t address);
    bool interrupted();
    void echoControl(std::uint8_t character);

    BdosAnswer openFile(Fcb fcb);
    BdosAnswer closeFile(Fcb fcb);
    BdosAnswer searchFirst(Fcb fcb);
    BdosAnswer searchNext();
    BdosAnswer deleteFiles(Fcb fcb);
    BdosAnswer createFile(Fcb fcb);
    BdosAnswer renameFiles(Fcb fcb);
    BdosAnswer fileSize(Fcb fcb);
    void fillOpened(Fcb fcb, const DirectoryEntry& entry) const;
    std::vector<DirectoryEntry> entriesFor(const Fcb& fcb);

    BdosAnswer sequential(Fcb fcb, bool writes);
    BdosAnswer random(Fcb fcb, bool writes, std::uint8_t filler);
    BdosAnswer randomBlock(Fcb fcb, unsigned count, bool writes);
    unsigned readRecords(Fcb fcb, const Transfer& transfer);
    bool writeRecords(Fcb fcb, const Transfer& transfer);
    unsigned readDevice(Device device, std::span<std::uint8_t> bytes);
    void writeDevice(Device device, std::span<const std::uint8_t> bytes);
    bool deviceIsHidden(const Fcb& fcb) const;

    BdosAnswer diskInformation(unsigned drive);
    BdosAnswer date() const;
    BdosAnswer time() const;
    BdosAnswer setDate(const BdosCall& call);
    BdosAnswer setTime(const BdosCall& call);
    std::tm now() const;
    void setNow(std::tm wanted);

    Memory& memory_;
    Console& console_;
    Disk& disk_;
    Notice notice_;
    DiskFaults faults_;
    std::uint64_t fileCalls_ = 0;
    std::uint16_t dma_ = 0x80;
    std::vector<DirectoryEntry> found_; ///< what the last search has still to give, the next one last
    std::chrono::seconds clockOffset_{0};
    bool printerEcho_ = false;  ///< ^P: what goes to the screen is printed too
    bool endDelivered_ = false; ///< the ^Z at the end of a script has been read once
};

} // namespace msxrun
