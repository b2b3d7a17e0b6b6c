// A Z80 with the run-time library in its memory, whose entries C++ calls one by one with registers of its
// choice. The BDOS is a small one: keys come from a string, the console's output goes into one, and every
// call destroys all registers, as MSX-DOS may.
#pragma once

#include "runtime_entries.h"

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

struct _z80_cpu_context;

namespace runtime_test {

/// The registers that entries take and give back; f has the Z80's flag bits.
struct Registers {
    std::uint8_t a = 0;
    std::uint16_t bc = 0;
    std::uint16_t de = 0;
    std::uint16_t hl = 0;
    std::uint8_t f = 0;

    bool carry() const { return (f & 0x01U) != 0; }
    bool zero() const { return (f & 0x40U) != 0; }
};

/// What the program's chain image says of itself. Its code is one endless loop.
struct Image {
    std::uint16_t start = 0x2E9B;
    std::uint16_t length = 0x40;
    std::uint16_t end = 0xD200;
    std::uint16_t stackTop = 0xD000;
    std::optional<std::uint16_t> heapBottom; ///< start + length unless given
    std::uint8_t flags = 3;                  ///< bit 0 {$C+}, bit 1 {$B+}
};

class LibraryMachine {
  public:
    static constexpr std::uint16_t tpaTop = 0xD606;
    static constexpr std::uint16_t callSite = 0x8000; ///< where `call` has its CALL instruction
    static constexpr std::uint16_t stackPointer = 0xCF00;

    /// Loads the library and an image behind it and runs its start. When that gives control back to MSX-DOS,
    /// `ended` is set.
    explicit LibraryMachine(const Image& image = {});
    /// Runs the start from a file's bytes as they are.
    explicit LibraryMachine(std::span<const std::uint8_t> file);
    ~LibraryMachine();
    LibraryMachine(const LibraryMachine&) = delete;
    LibraryMachine& operator=(const LibraryMachine&) = delete;

    /// Bytes that an entry may take off the stack, the return address included: what the margin between heap
    /// and stack allows for (stackMargin in the sources). The deepest of them takes 26.
    static constexpr int deepestCall = 32;

    /// Lets the program that was started run to its end; `leastGap` tells how near its stack came to its
    /// heap.
    void runProgram();
    int leastGap = 0x10000; ///< bytes between the heap's top and the stack pointer at the worst moment

    /// Calls an entry. Returns when it comes back to `callSite` + 3 + `skipped`, or when the program has
    /// ended.
    /// @throws std::runtime_error when it does neither, comes back with another stack pointer, or calls a
    /// BDOS function
    ///         that it should not
    Registers call(tp3::RuntimeEntry entry, const Registers& in = {}, unsigned skipped = 0);

    static std::uint16_t address(tp3::RuntimeEntry entry);
    std::uint8_t byte(std::uint16_t at) const { return memory_[at]; }
    std::uint16_t word(std::uint16_t at) const;
    void setByte(std::uint16_t at, std::uint8_t value) { memory_[at] = value; }
    void setWord(std::uint16_t at, std::uint16_t value);
    /// Bytes as text; a string with its length byte in front.
    std::string text(std::uint16_t at, std::size_t count) const;
    void setText(std::uint16_t at, std::string_view characters);
    std::string string(std::uint16_t at) const { return text(static_cast<std::uint16_t>(at + 1), byte(at)); }
    void setString(std::uint16_t at, std::string_view characters);

    std::string output;                       ///< what the console has shown; tests clear it
    std::string keys;                         ///< keys to come; ^Z for ever behind the last
    std::vector<int> functions;               ///< BDOS functions called
    std::map<std::string, std::string> files; ///< the disk: bytes by name ("NAME.TYP"), as closed or not
    std::size_t diskRoom = 700'000;           ///< bytes that all files together may have
    std::string printer;                      ///< what went to the printer
    std::string auxiliary;                    ///< what went to the auxiliary device
    std::string auxiliaryInput;               ///< what comes from there
    bool ended = false;                       ///< the program has given control back to MSX-DOS
    std::uint64_t tStates = 0;                ///< of the last call, without its CALL instruction
    bool otherRegistersKept =
        false; ///< the last call has left IX, IY and the alternate registers as they were
    std::uint16_t programCounter = 0; ///< where the start has jumped to
    std::uint16_t startStack = 0;     ///< the stack pointer there

    std::array<std::uint8_t, 0x10000>& memory() { return memory_; }

  private:
    struct Callbacks;
    struct ProcessorDeleter {
        void operator()(_z80_cpu_context* processor) const;
    };
    LibraryMachine(std::vector<std::uint8_t> file, std::uint16_t stopAt);

    void runTo(std::uint16_t stopAt);
    void serveBdos();
    /// A file function of the BDOS: A, and HL for block transfers.
    std::pair<std::uint8_t, std::uint16_t> serveFile(std::uint8_t function, std::uint16_t block,
                                                     std::uint16_t count);
    std::uint8_t transferBlock(std::string& bytes, std::uint16_t block, std::uint16_t& count, bool writes);
    std::uint8_t nextKey();
    std::uint16_t noise();

    std::array<std::uint8_t, 0x10000> memory_{};
    std::unique_ptr<_z80_cpu_context, ProcessorDeleter> processor_;
    int stackDepth_ = 0; ///< bytes of the stack that the last call has taken
    bool watchesHeap_ = false;
    std::uint32_t noise_ = 0x2545F491U;
    std::uint16_t transferAddress_ = 0x80;
};

/// The bytes of RUNTIME.COM.
const std::vector<std::uint8_t>& libraryFile();
/// The bytes of a .COM: the library and an image.
std::vector<std::uint8_t> programFile(const Image& image);

} // namespace runtime_test
