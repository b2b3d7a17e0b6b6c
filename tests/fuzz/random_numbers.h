#pragma once

#include <cstdint>

namespace fuzz {

/// Numbers that depend on the seed alone, not on a library: splitmix64.
class RandomNumbers {
  public:
    explicit RandomNumbers(std::uint64_t seed) : state_(seed * 0x9E3779B97F4A7C15U + 1) {}

    /// 0 .. count - 1; count at least 1.
    int below(int count) { return static_cast<int>(next() % static_cast<std::uint64_t>(count)); }
    /// first .. last, both possible.
    int between(int first, int last) { return first + below(last - first + 1); }
    /// True in `part` of `whole` cases.
    bool chance(int part, int whole) { return below(whole) < part; }

  private:
    std::uint64_t next() {
        state_ += 0x9E3779B97F4A7C15U;
        std::uint64_t z = state_;
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9U;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBU;
        return (z ^ (z >> 31)) >> 8;
    }

    std::uint64_t state_;
};

} // namespace fuzz
