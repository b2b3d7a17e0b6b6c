#pragma once

#include "arena.h"
#include "symbols.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tp3 {

/// Every identifier of a program, once. Reserved words are in it from the start.
class NameTable {
  public:
    NameTable();

    /// The name written as `text` (upper case), made when it is new. `hash` is what `hashStep` gives over its
    /// characters; the scanner has it at hand.
    Name* find(std::string_view text, std::uint32_t hash);
    Name* find(std::string_view text);

    static constexpr std::uint32_t hashStart = 0;
    static constexpr std::uint32_t hashStep(std::uint32_t hash, char character) {
        return hash * 31 + static_cast<unsigned char>(character); // a shift and a subtraction
    }

    /// Memory that lives as long as the names do.
    Arena& arena() { return arena_; }

  private:
    static constexpr std::size_t bucketCount = 1024; // some two names each in the largest programs

    Arena arena_;
    std::array<Name*, bucketCount> buckets_{};
};

} // namespace tp3
