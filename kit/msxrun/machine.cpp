#include "msxrun/machine.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <vector>
#include <z80ex/z80ex.h>

namespace msxrun {

namespace {

constexpr std::uint16_t programStart = 0x0100;
constexpr std::uint16_t tailAddress = 0x0080;
constexpr std::size_t longestTail = 127;

/// The 3.58 MHz clock and the frame rate of an NTSC machine.
constexpr std::uint64_t clockHertz = 3579545;
constexpr std::uint64_t framesPerSecond = 60;
constexpr std::uint16_t jiffyAddress = 0xFC9E;

/// The system's entries are `OUT (trapPort),A` and `RET`. MSX hardware does not answer at this port, and the
/// machine looks at the address of the OUT as well, so that a program's own OUT means nothing.
constexpr std::uint8_t trapPort = 0x2E;
constexpr unsigned entryLength = 3;
constexpr std::uint8_t opcodeOut = 0xD3;
constexpr std::uint8_t opcodeReturn = 0xC9;
constexpr std::uint8_t opcodeJump = 0xC3;
constexpr std::uint8_t opcodeEnableInterrupts = 0xFB;

/// BOOT, WBOOT, CONST, CONIN, CONOUT, LIST, PUNCH, READER; the disk entries after them are dummies.
constexpr unsigned biosEntries = 17;

/// Where the BIOS tells character set, frame rate (bit 7: 50 Hz), keyboard and kind of machine.
constexpr std::uint16_t identityAddress = 0x002B;
constexpr std::uint16_t identityBytes = 3;

constexpr std::uint16_t readSlotAddress = 0x000C;

/// The slot calls that the system keeps in page zero.
struct SlotEntry {
    std::uint16_t address;
    const char* name;
};
constexpr SlotEntry slotEntries[] = {
    {readSlotAddress, "RDSLT"}, {0x0014, "WRSLT"}, {0x001C, "CALSLT"}, {0x0024, "ENASLT"}, {0x0030, "CALLF"}};

std::string hex(unsigned value) {
    char text[8];
    std::snprintf(text, sizeof text, "%04Xh", value & 0xFFFFU);
    return text;
}

} // namespace

/// What the processor asks of the machine while it executes.
struct Machine::Callbacks {
    static Z80EX_BYTE read(Z80EX_CONTEXT*, Z80EX_WORD address, int, void* machine) {
        return static_cast<Machine*>(machine)->memory_.byte(address);
    }
    static Z80EX_BYTE readCountingFetches(Z80EX_CONTEXT*, Z80EX_WORD address, int isFetch, void* machine) {
        auto& self = *static_cast<Machine*>(machine);
        self.fetches_ += isFetch != 0 ? 1U : 0U;
        return self.memory_.byte(address);
    }
    static void write(Z80EX_CONTEXT*, Z80EX_WORD address, Z80EX_BYTE value, void* machine) {
        static_cast<Machine*>(machine)->memory_.setByte(address, value);
    }
    static Z80EX_BYTE input(Z80EX_CONTEXT*, Z80EX_WORD, void*) {
        return 0xFF; // nothing drives the bus
    }
    static void output(Z80EX_CONTEXT*, Z80EX_WORD port, Z80EX_BYTE, void* machine) {
        static_cast<Machine*>(machine)->trapped_ |= (port & 0xFFU) == trapPort;
    }
    static Z80EX_BYTE vector(Z80EX_CONTEXT*, void*) { return 0xFF; }
};

void Machine::ProcessorDeleter::operator()(_z80_cpu_context* processor) const {
    z80ex_destroy(processor);
}

Machine::Machine(Console& console, Disk& disk, const Settings& settings, Bdos::Notice notice)
    : settings_(settings), notice_(std::move(notice)),
      bdos_(memory_, console, disk, [this](const std::string& line) { tellOnce(line); }) {
    processor_.reset(z80ex_create(settings.msxWaits ? Callbacks::readCountingFetches : Callbacks::read, this,
                                  Callbacks::write, this, Callbacks::input, this, Callbacks::output, this,
                                  Callbacks::vector, this));
    if (processor_ == nullptr) {
        throw std::bad_alloc();
    }
    bdos_.setFaults(settings.faults);
    buildSystem();
}

Machine::~Machine() = default;

/// Lays out page zero, the BDOS entry at the top of the TPA and the BIOS table on the next page boundary.
void Machine::buildSystem() {
    const auto putEntry = [this](unsigned address) {
        memory_.setByte(address, opcodeOut);
        memory_.setByte(address + 1, trapPort);
        memory_.setByte(address + 2, opcodeReturn);
    };
    biosTable_ = static_cast<std::uint16_t>((settings_.tpaTop + entryLength + 0xFFU) & 0xFF00U);
    for (unsigned entry = 0; entry < biosEntries; ++entry) {
        putEntry(biosTable_ + entry * entryLength);
    }
    putEntry(settings_.tpaTop);
    for (const SlotEntry& slot : slotEntries) {
        putEntry(slot.address);
    }
    memory_.setByte(0x0000, opcodeJump);
    memory_.setWord(0x0001, biosTable_ + entryLength);
    memory_.setByte(0x0005, opcodeJump);
    memory_.setWord(0x0006, settings_.tpaTop);
    memory_.setByte(0x0038, opcodeEnableInterrupts);
    memory_.setByte(0x0039, opcodeReturn);
    setCommandTail("");

    z80ex_reset(processor_.get());
    scrambleRegisters();
    // The program is called: a plain RET gets to 0000h. Its stack is just below the system.
    const unsigned stack = settings_.tpaTop - 2U;
    memory_.setWord(stack, 0);
    z80ex_set_reg(processor_.get(), regSP, static_cast<Z80EX_WORD>(stack));
    z80ex_set_reg(processor_.get(), regPC, programStart);
    z80ex_set_reg(processor_.get(), regIM, 1);
    z80ex_set_reg(processor_.get(), regIFF1, 1);
    z80ex_set_reg(processor_.get(), regIFF2, 1);
}

void Machine::load(std::span<const std::uint8_t> program) {
    if (program.empty()) {
        throw std::length_error("the program is empty");
    }
    if (program.size() > room()) {
        throw std::length_error("the program has " + std::to_string(program.size()) + " bytes; only " +
                                std::to_string(room()) + " fit below " + hex(settings_.tpaTop));
    }
    for (unsigned i = 0; i < program.size(); ++i) {
        memory_.setByte(programStart + i, program[i]);
    }
}

void Machine::setCommandTail(std::string_view tail) {
    if (tail.size() > longestTail) {
        throw std::length_error("the arguments are longer than 127 characters");
    }
    memory_.setByte(tailAddress, static_cast<unsigned>(tail.size()));
    for (unsigned i = 0; i < longestTail; ++i) {
        memory_.setByte(tailAddress + 1U + i,
                        i < tail.size() ? static_cast<unsigned char>(upperCase(tail[i])) : 0U);
    }
    for (const unsigned address : {0x5CU, 0x6CU}) {
        const std::size_t start = std::min(tail.find_first_not_of(" \t"), tail.size());
        tail.remove_prefix(start);
        const std::size_t end = std::min(tail.find_first_of(" \t"), tail.size());
        const ParsedWord word = parseWord(tail.substr(0, end));
        tail.remove_prefix(end);
        memory_.setByte(address, word.drive);
        for (unsigned i = 0; i < word.name.size(); ++i) {
            memory_.setByte(address + 1U + i, static_cast<unsigned char>(word.name[i]));
        }
    }
}

Ending Machine::run(std::uint64_t limit) {
    while (!finished_) {
        if (tStates_ >= limit) {
            return Ending::limit;
        }
        const std::uint64_t frameEnd = (frame_ + 1) * clockHertz / framesPerSecond;
        step(std::min(frameEnd, limit));
        if (tStates_ >= frameEnd && !finished_ && !endFrame()) {
            return Ending::hung;
        }
    }
    return Ending::finished;
}

/// Executes instructions until so many T-states have passed in all or the program ends.
void Machine::step(std::uint64_t end) {
    Z80EX_CONTEXT* processor = processor_.get();
    while (tStates_ < end) {
        tStates_ += static_cast<unsigned>(z80ex_step(processor));
        if (settings_.msxWaits) {
            tStates_ += fetches_;
            fetches_ = 0;
        }
        if (trapped_) {
            trapped_ = false;
            serveTrap();
            if (finished_) {
                return;
            }
        }
    }
}

/// The end of a frame advances JIFFY. The interrupt itself reaches the program only where it waits for one
/// in a HALT. False when it would wait for ever.
bool Machine::endFrame() {
    ++frame_;
    memory_.setWord(jiffyAddress, memory_.word(jiffyAddress) + 1U);
    if (z80ex_doing_halt(processor_.get()) == 0) {
        return true;
    }
    const int used = z80ex_int(processor_.get());
    tStates_ += static_cast<unsigned>(used);
    return used != 0;
}

/// Serves the entry whose OUT was just executed, if it was one of the system's.
void Machine::serveTrap() {
    const unsigned address = z80ex_get_reg(processor_.get(), regPC) - 2U;
    if (address == settings_.tpaTop) {
        serveBdos();
        return;
    }
    if (address >= biosTable_ && address < biosTable_ + biosEntries * entryLength &&
        (address - biosTable_) % entryLength == 0) {
        serveBios((address - biosTable_) / entryLength);
        return;
    }
    for (const SlotEntry& slot : slotEntries) {
        if (address == slot.address) {
            if (slot.address == readSlotAddress && readsIdentity()) {
                return;
            }
            const bool callsRoutine = slot.address == 0x001C;
            tellOnce(std::string(slot.name) + " is not available" +
                     (callsRoutine ? ": routine " + hex(z80ex_get_reg(processor_.get(), regIX)) : ""));
        }
    }
}

/// Serves RDSLT where it asks what machine this is: an international MSX1 with 60 frames a second. Interrupts
/// are off afterwards. False for every other address.
bool Machine::readsIdentity() {
    const unsigned address = z80ex_get_reg(processor_.get(), regHL);
    if (address < identityAddress || address >= identityAddress + identityBytes) {
        return false;
    }
    apply({.a = std::uint8_t{0}});
    z80ex_set_reg(processor_.get(), regIFF1, 0);
    z80ex_set_reg(processor_.get(), regIFF2, 0);
    return true;
}

void Machine::serveBdos() {
    Z80EX_CONTEXT* processor = processor_.get();
    const BdosCall call{.function = static_cast<std::uint8_t>(z80ex_get_reg(processor, regBC) & 0xFFU),
                        .de = z80ex_get_reg(processor, regDE),
                        .hl = z80ex_get_reg(processor, regHL)};
    apply(bdos_.call(call));
}

void Machine::serveBios(unsigned entry) {
    const auto character = static_cast<std::uint8_t>(z80ex_get_reg(processor_.get(), regBC) & 0xFFU);
    switch (entry) {
    case 0: // BOOT
    case 1: // WBOOT
        finished_ = true;
        return;
    case 2: // CONST
        apply(bdos_.consoleStatus());
        return;
    case 3: // CONIN
        apply(bdos_.readRaw());
        return;
    case 4: // CONOUT
        bdos_.writeConsole(character);
        break;
    case 5: // LIST
        bdos_.writePrinter(character);
        break;
    case 7: // READER: nothing is connected
        apply({.a = std::uint8_t{0x1A}});
        return;
    default:
        break;
    }
    apply({});
}

/// Leaves in the registers what the call gives back, and nothing else of use: a program that relies on more
/// works on some systems only.
void Machine::apply(const BdosAnswer& answer) {
    if (answer.endsProgram) {
        finished_ = true;
        return;
    }
    scrambleRegisters();
    Z80EX_CONTEXT* processor = processor_.get();
    if (answer.a) {
        const unsigned flags = z80ex_get_reg(processor, regAF) & 0xFFU;
        z80ex_set_reg(processor, regAF, static_cast<Z80EX_WORD>(unsigned{*answer.a} << 8U | flags));
    }
    if (answer.hl) {
        z80ex_set_reg(processor, regHL, *answer.hl);
    }
    if (answer.de) {
        z80ex_set_reg(processor, regDE, *answer.de);
    }
    if (answer.bc) {
        z80ex_set_reg(processor, regBC, *answer.bc);
    }
}

/// Fills every register but SP, PC, I, R and the interrupt state with noise, the same in each run.
void Machine::scrambleRegisters() {
    for (const Z80_REG_T reg : {regAF, regBC, regDE, regHL, regAF_, regBC_, regDE_, regHL_, regIX, regIY}) {
        noise_ ^= noise_ << 13U;
        noise_ ^= noise_ >> 17U;
        noise_ ^= noise_ << 5U;
        z80ex_set_reg(processor_.get(), reg, static_cast<Z80EX_WORD>(noise_ >> 8U));
    }
}

void Machine::tellOnce(const std::string& line) {
    if (told_.insert(line).second) {
        notice_(line);
    }
}

} // namespace msxrun
