// The boot code of a new disk on a Z80, with a stand-in for the disk system behind its entry F37Dh.
#include "disk/disk_image.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <string>
#include <z80ex/z80ex.h>

namespace disk {
namespace {

constexpr std::uint16_t sectorAddress = 0xC000;
constexpr std::uint16_t bootEntry = 0xC01E;
constexpr std::uint16_t diskSystem = 0xF37D;
constexpr std::uint16_t returnAddress = 0x4000;
constexpr std::uint16_t programStart = 0x0100;

class Boot : public testing::Test {
  protected:
    Boot()
        : processor_(
              z80ex_create(read, this, write, this, input, nullptr, output, nullptr, vector, nullptr)) {
        const DiskImage disk;
        const Bytes& image = disk.bytes();
        // As much of the sector as every disk system loads.
        std::copy_n(image.begin(), 256, memory_.begin() + sectorAddress);
        memory_[diskSystem] = 0xC9;
    }
    ~Boot() override { z80ex_destroy(processor_); }
    Boot(const Boot&) = delete;
    Boot& operator=(const Boot&) = delete;

    /// Calls the boot entry. Gives back where the program goes in the end.
    std::uint16_t start(bool carry) {
        z80ex_set_reg(processor_, regSP, 0xF000);
        memory_[0xF000] = returnAddress & 0xFF;
        memory_[0xF001] = returnAddress >> 8;
        z80ex_set_reg(processor_, regPC, bootEntry);
        z80ex_set_reg(processor_, regAF, carry ? 1 : 0);
        for (int steps = 0; steps < 10000; ++steps) {
            const std::uint16_t at = z80ex_get_reg(processor_, regPC);
            if (at == returnAddress || at == programStart)
                return at;
            if (at == diskSystem)
                serve(z80ex_get_reg(processor_, regBC) & 0xFF);
            do {
                z80ex_step(processor_);
            } while (z80ex_last_op_type(processor_) != 0);
        }
        return 0;
    }

    bool hasSystem = true;
    std::string systemFile = "the system";
    std::array<std::uint8_t, 65536> memory_{};

  private:
    void serve(int function) {
        const std::uint16_t block = z80ex_get_reg(processor_, regDE);
        switch (function) {
        case 0x0F: {
            const std::string name(memory_.begin() + block, memory_.begin() + block + 12);
            EXPECT_EQ(name, std::string("\0MSXDOS  SYS", 12));
            for (std::uint16_t i = 12; i < 37; ++i)
                EXPECT_EQ(memory_[static_cast<std::uint16_t>(block + i)], 0);
            z80ex_set_reg(processor_, regAF, hasSystem ? 0 : 0xFF00);
            break;
        }
        case 0x1A:
            target_ = block;
            break;
        case 0x27: {
            EXPECT_EQ(memory_[static_cast<std::uint16_t>(block + 14)], 1);
            EXPECT_EQ(memory_[static_cast<std::uint16_t>(block + 15)], 0);
            const std::uint16_t wanted = z80ex_get_reg(processor_, regHL);
            EXPECT_LE(programStart + wanted, 0x4000);
            const std::size_t count = std::min<std::size_t>(wanted, systemFile.size());
            std::copy_n(systemFile.begin(), count, memory_.begin() + target_);
            z80ex_set_reg(processor_, regHL, static_cast<std::uint16_t>(count));
            z80ex_set_reg(processor_, regAF, count < wanted ? 0x0100 : 0);
            break;
        }
        default:
            FAIL() << "function " << function;
        }
    }

    static Boot& self(void* data) { return *static_cast<Boot*>(data); }
    static Z80EX_BYTE read(Z80EX_CONTEXT*, Z80EX_WORD at, int, void* data) { return self(data).memory_[at]; }
    static void write(Z80EX_CONTEXT*, Z80EX_WORD at, Z80EX_BYTE value, void* data) {
        self(data).memory_[at] = value;
    }
    static Z80EX_BYTE input(Z80EX_CONTEXT*, Z80EX_WORD, void*) { return 0xFF; }
    static void output(Z80EX_CONTEXT*, Z80EX_WORD, Z80EX_BYTE, void*) {}
    static Z80EX_BYTE vector(Z80EX_CONTEXT*, void*) { return 0xFF; }

    Z80EX_CONTEXT* processor_;
    std::uint16_t target_ = 0x80;
};

TEST_F(Boot, TheFirstCallWantsNothing) {
    EXPECT_EQ(start(false), returnAddress);
}

TEST_F(Boot, WithoutTheSystemFileBasicStarts) {
    hasSystem = false;
    EXPECT_EQ(start(true), returnAddress);
}

TEST_F(Boot, TheSystemFileIsLoadedAndStarted) {
    EXPECT_EQ(start(true), programStart);
    EXPECT_EQ(std::string(memory_.begin() + programStart, memory_.begin() + programStart + 10), systemFile);
}

} // namespace
} // namespace disk
