// The image's first steps: zeroed data, heap, constructors, the program.
#include "dos/dos.h"
#include "dos/heap.h"
#include "dos/interrupt.h"

#include <algorithm>
#include <array>

// The stub jumps to the image's first byte with the transfer buffer's address in EAX, that of the extended
// memory in EBX, its kB in ECX and linear address 0 in EDX.
asm(".section .entry, \"xr\"\n"
    ".globl _imageEntry\n"
    "_imageEntry:\n"
    "    pushl %edx\n"
    "    pushl %ecx\n"
    "    pushl %ebx\n"
    "    pushl %eax\n"
    "    call _dosStart\n"
    ".text\n");

extern "C" {
using Constructor = void (*)();
extern Constructor constructorsStart[];
extern Constructor constructorsEnd[];
extern char zeroedStart[];
extern char imageEnd[];
[[noreturn]] void dosStart(char* transfer, char* extended, std::size_t extendedKilobytes,
                           const volatile std::uint32_t* zero);
}

namespace dos {

namespace {

/// Less heap than this is not worth a start.
constexpr std::size_t leastHeap = 32 * 1024;
constexpr std::size_t tailRoom = 128;
/// Words at the bottom of the stack that nothing may change.
constexpr std::size_t guardWords = 16;
constexpr std::uint32_t guardWord = 0x5AC3A5F0;

struct State {
    Heap heap;
    char* transfer = nullptr;
    std::uint32_t* stackBottom = nullptr;
    std::size_t heapSize = 0;
    std::array<char, tailRoom> tail{};
    std::string_view commandLine;
};
State state;

bool stackIsWhole() {
    return std::all_of(state.stackBottom, state.stackBottom + guardWords,
                       [](std::uint32_t word) { return word == guardWord; });
}

void callDos(Registers& registers) {
    // The stub keeps EBX, ESI, EDI and EBP and copies the record back.
    Registers* record = &registers;
    asm volatile("lcall $0x18, $0" : "+a"(record) : : "ecx", "edx", "memory", "cc");
}

[[noreturn]] void endProgram(int code) {
    Registers registers{.eax = 0x4C00U | (static_cast<std::uint32_t>(code) & 0xFFU)};
    for (;;) {
        callDos(registers);
    }
}

/// The memory at 1 MB is not the memory at 0: a closed A20 gate would make them one.
bool gateIsOpen(const volatile std::uint32_t* zero) {
    constexpr std::uintptr_t megabyte = 1024 * 1024;
    volatile std::uint32_t& high =
        *reinterpret_cast<volatile std::uint32_t*>(reinterpret_cast<std::uintptr_t>(zero) + megabyte);
    const std::uint32_t before = *zero;
    const std::uint32_t kept = high;
    high = ~before;
    const bool open = *zero == before && high == ~before;
    high = kept;
    return open;
}

/// The heap lies in extended memory when that is the larger one.
void makeHeap(char* extended, std::size_t extendedKilobytes, std::size_t conventional,
              const volatile std::uint32_t* zero) {
    constexpr std::size_t kilobyte = 1024;
    const std::size_t bytes = extendedKilobytes * kilobyte;
    if (bytes > conventional && gateIsOpen(zero)) {
        state.heapSize = bytes;
        state.heap.initialize(extended, bytes);
    } else {
        state.heapSize = conventional;
        state.heap.initialize(imageEnd, conventional);
    }
}

void keepCommandLine() {
    // Length, then the text; COMMAND.COM never makes it longer than 126.
    const auto length = std::min<std::size_t>(static_cast<unsigned char>(state.transfer[0]), tailRoom - 2);
    std::copy_n(state.transfer + 1, length, state.tail.begin());
    std::string_view text(state.tail.data(), length);
    const auto isBlank = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    state.commandLine = text;
}

} // namespace

void interrupt21(Registers& registers) {
    if (!stackIsWhole()) {
        std::fill_n(state.stackBottom, guardWords, guardWord);
        fail("Internal error: stack overflow", exitStackOverflow);
    }
    callDos(registers);
}

char* transferBuffer() {
    return state.transfer;
}

void fail(std::string_view text, int exitCode) {
    print("\r\n");
    print(text);
    print("\r\n");
    endProgram(exitCode);
}

std::string_view commandLine() {
    return state.commandLine;
}

void exit(int code) {
    if (!stackIsWhole()) {
        std::fill_n(state.stackBottom, guardWords, guardWord);
        fail("Internal error: stack overflow", exitStackOverflow);
    }
    endProgram(code);
}

std::size_t memorySize() {
    return state.heapSize;
}

std::size_t memoryFree() {
    return state.heap.freeBytes();
}

std::size_t largestFree() {
    return state.heap.largestFree();
}

std::size_t stackLeft() {
    const auto here = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
    const auto bottom = reinterpret_cast<std::uintptr_t>(state.stackBottom + guardWords);
    return here > bottom ? here - bottom : 0;
}

/// For operator new and delete.
Heap& programHeap() {
    return state.heap;
}

} // namespace dos

void dosStart(char* transfer, char* extended, std::size_t extendedKilobytes,
              const volatile std::uint32_t* zero) {
    using namespace dos;
    char* const stackBottom = transfer - stackSize;
    // Without room, zeroing the data could already run into the stack.
    const bool roomy =
        stackBottom > imageEnd && static_cast<std::size_t>(stackBottom - imageEnd) >= leastHeap;
    if (roomy) {
        std::fill(zeroedStart, imageEnd, '\0');
    }
    state.transfer = transfer;
    state.stackBottom = reinterpret_cast<std::uint32_t*>(stackBottom);
    std::fill_n(state.stackBottom, guardWords, guardWord);
    if (!roomy) {
        fail("Not enough memory to start", exitTooLittleMemory);
    }
    keepCommandLine();
    makeHeap(extended, extendedKilobytes, static_cast<std::size_t>(stackBottom - imageEnd), zero);
    for (Constructor* constructor = constructorsEnd; constructor != constructorsStart;) {
        (*--constructor)();
    }
    dos::exit(dosMain());
}
