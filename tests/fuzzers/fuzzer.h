// What a fuzz target defines.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// Does with the bytes what the program does with a file that holds them. Returns 0; what must not happen
/// aborts.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace tavrel::fuzzing {

/// Ends the run with a report when something that always holds does not.
inline void require(bool holds) {
    if (!holds)
        std::abort();
}

} // namespace tavrel::fuzzing
