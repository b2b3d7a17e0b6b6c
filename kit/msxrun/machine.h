// A Z80 with 64 kB of RAM under MSX-DOS 1.
#pragma once

#include "msxrun/bdos.h"
#include "msxrun/console.h"
#include "msxrun/disk.h"
#include "msxrun/memory.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <set>
#include <span>
#include <string>
#include <string_view>

struct _z80_cpu_context;

namespace msxrun {

/// How the machine is built.
struct Settings {
    std::uint16_t tpaTop = 0xD606; ///< what 0006h holds: the first address that is the system's
    bool msxWaits = false;         ///< one T-state more for each opcode fetch, as the MSX makes it
    DiskFaults faults{};           ///< what is wrong with the disk
};

/// Bounds of Settings::tpaTop: room for a stack below, for the entries above.
constexpr std::uint16_t lowestTpaTop = 0x0200;
constexpr std::uint16_t highestTpaTop = 0xF93C;

/// Why a program stopped.
enum class Ending : std::uint8_t {
    finished, ///< jumped to 0, returned, or called BDOS function 0
    limit,    ///< used up its T-states
    hung,     ///< waits for an interrupt with interrupts disabled
};

/// The machine. One object runs one program.
class Machine {
  public:
    /// @param notice told once about each odd thing that the program does, in one line
    Machine(Console& console, Disk& disk, const Settings& settings, Bdos::Notice notice);
    ~Machine();
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;

    /// The bytes that fit between 0100h and the top of the TPA.
    std::size_t room() const { return settings_.tpaTop - 0x100U; }
    /// Puts a .COM file's bytes at 0100h.
    /// @throws std::length_error when it is empty or longer than room()
    void load(std::span<const std::uint8_t> program);
    /// Puts the command tail at 0080h, upper-case, and its first two words into the blocks at 5Ch and 6Ch.
    /// @throws std::length_error when it is longer than 127 characters
    void setCommandTail(std::string_view tail);

    /// Runs until the program ends or has used `limit` T-states in all.
    Ending run(std::uint64_t limit = std::numeric_limits<std::uint64_t>::max());

    /// T-states so far. What the BDOS does takes none but those of the call and the return.
    std::uint64_t tStates() const { return tStates_; }
    Memory& memory() { return memory_; }

  private:
    struct Callbacks;
    struct ProcessorDeleter {
        void operator()(_z80_cpu_context* processor) const;
    };

    void buildSystem();
    void step(std::uint64_t end);
    bool endFrame();
    void serveTrap();
    bool readsIdentity();
    void serveBdos();
    void serveBios(unsigned entry);
    void apply(const BdosAnswer& answer);
    void scrambleRegisters();
    void tellOnce(const std::string& line);

    Settings settings_;
    Memory memory_;
    Bdos::Notice notice_;
    std::set<std::string> told_;
    Bdos bdos_;
    std::unique_ptr<_z80_cpu_context, ProcessorDeleter> processor_;
    std::uint16_t biosTable_ = 0;
    std::uint64_t tStates_ = 0;
    std::uint64_t fetches_ = 0; ///< opcode fetches that the waits have not been counted for
    std::uint64_t frame_ = 0;   ///< frames that are over
    std::uint32_t noise_ = 0x2F6E2B1U;
    bool trapped_ = false;
    bool finished_ = false;
};

} // namespace msxrun
