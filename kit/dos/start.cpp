// The image's first steps: zeroed data, heap, constructors, the program.
#include "dos/dos.h"
#include "dos/heap.h"
#include "dos/interrupt.h"

#include <algorithm>
#include <array>

// The stub jumps to the image's first byte with the transfer buffer's address in EAX.
asm(".section .entry, \"xr\"\n"
    ".globl _imageEntry\n"
    "_imageEntry:\n"
    "    pushl %eax\n"
    "    call _dosStart\n"
    ".text\n");

extern "C" {
using Constructor = void (*)();
extern Constructor constructorsStart[];
extern Constructor constructorsEnd[];
extern char zeroedStart[];
extern char imageEnd[];
[[noreturn]] void dosStart(char* transfer);
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

void dosStart(char* transfer) {
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
    state.heapSize = static_cast<std::size_t>(stackBottom - imageEnd);
    state.heap.initialize(imageEnd, state.heapSize);
    for (Constructor* constructor = constructorsEnd; constructor != constructorsStart;) {
        (*--constructor)();
    }
    dos::exit(dosMain());
}
