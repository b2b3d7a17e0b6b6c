// INT 21h from 32-bit code, for the files of this folder.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace dos {

/// The registers of a call. DS and ES name the transfer buffer, so addresses are offsets in it.
struct Registers {
    std::uint32_t eax = 0;
    std::uint32_t ebx = 0;
    std::uint32_t ecx = 0;
    std::uint32_t edx = 0;
    std::uint32_t esi = 0;
    std::uint32_t edi = 0;
    std::uint32_t flags = 0;

    std::uint32_t ax() const { return eax & 0xFFFFU; }
    bool failed() const { return (flags & 1U) != 0; } ///< the carry
};

/// Calls INT 21h and leaves in the registers what it gives back. Ends the program when the stack has run
/// over.
void interrupt21(Registers& registers);

/// The memory through which DOS gets and gives data.
constexpr std::size_t transferSize = TAVREL_DOS_TRANSFER_SIZE;
char* transferBuffer();

/// Ends the program with a line on the standard output. Works without heap.
[[noreturn]] void fail(std::string_view text, int exitCode);

} // namespace dos
