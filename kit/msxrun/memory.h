// The 64 kilobytes that a program under MSX-DOS sees: RAM in all four pages.
#pragma once

#include <array>
#include <cstdint>

namespace msxrun {

/// 64 kB of RAM. Addresses wrap at FFFFh, as the processor's do.
class Memory {
  public:
    std::uint8_t byte(unsigned address) const { return cells_[address & 0xFFFFU]; }
    void setByte(unsigned address, unsigned value) {
        cells_[address & 0xFFFFU] = static_cast<std::uint8_t>(value);
    }

    /// A word, low byte first.
    std::uint16_t word(unsigned address) const {
        return static_cast<std::uint16_t>(byte(address) | byte(address + 1U) << 8U);
    }
    void setWord(unsigned address, unsigned value) {
        setByte(address, value);
        setByte(address + 1U, value >> 8U);
    }

    /// Four bytes, low byte first.
    std::uint32_t doubleWord(unsigned address) const {
        return word(address) | static_cast<std::uint32_t>(word(address + 2U)) << 16U;
    }
    void setDoubleWord(unsigned address, std::uint32_t value) {
        setWord(address, value & 0xFFFFU);
        setWord(address + 2U, value >> 16U);
    }

  private:
    std::array<std::uint8_t, 65536> cells_{};
};

} // namespace msxrun
