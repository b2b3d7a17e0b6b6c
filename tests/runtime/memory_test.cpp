// Move, FillChar and UpCase.
#include "library_machine.h"

#include <cctype>
#include <gtest/gtest.h>
#include <random>

using runtime_test::LibraryMachine;
using runtime_test::Registers;
using tp3::RuntimeEntry;

namespace {

constexpr std::uint16_t first = 0x9000; ///< the memory played in: 1000h bytes from here

TEST(MemoryTest, MovesOverlappingBlocks) {
    LibraryMachine machine;
    std::mt19937 random(99);
    for (int round = 0; round < 2000; ++round) {
        const std::string before = machine.text(first, 0x1000);
        const std::size_t count = round % 10 == 0 ? random() % 3 : random() % 0x400;
        const std::size_t from = 0x200 + random() % 0x800;
        const std::size_t to = round % 2 == 0 ? from - 0x100 + random() % 0x200 : random() % 0xC00;
        Registers in;
        in.hl = static_cast<std::uint16_t>(first + from);
        in.de = static_cast<std::uint16_t>(first + to);
        in.bc = static_cast<std::uint16_t>(count);
        machine.call(RuntimeEntry::moveBytes, in);
        std::string expected = before;
        expected.replace(to, count, before.substr(from, count));
        ASSERT_TRUE(machine.text(first, 0x1000) == expected) << from << " to " << to << " count " << count;
        machine.setByte(static_cast<std::uint16_t>(first + random() % 0x1000),
                        static_cast<std::uint8_t>(random()));
    }
}

TEST(MemoryTest, MovesMoreThanHalfOfTheMemory) {
    LibraryMachine machine;
    machine.setText(0x3000, "begin");
    machine.setText(0x3000 + 0x8FFB, "end.!");
    Registers in;
    in.hl = 0x3000;
    in.de = 0x3005;
    in.bc = 0x9000;
    EXPECT_NO_THROW(machine.call(RuntimeEntry::moveBytes, in));
    EXPECT_EQ(machine.text(0x3005, 5), "begin");
    EXPECT_EQ(machine.text(0x3005 + 0x8FFB, 5), "end.!");
}

TEST(MemoryTest, FillsExactlyTheBlock) {
    LibraryMachine machine;
    for (const std::size_t count : {0U, 1U, 2U, 3U, 255U, 256U, 257U, 1000U}) {
        std::string expected = machine.text(first, 0x1000);
        Registers in;
        in.hl = first + 16;
        in.bc = static_cast<std::uint16_t>(count);
        in.a = static_cast<std::uint8_t>(count + 0x37);
        machine.call(RuntimeEntry::fillBytes, in);
        expected.replace(16, count, count, static_cast<char>(in.a));
        EXPECT_TRUE(machine.text(first, 0x1000) == expected) << count;
    }
}

TEST(MemoryTest, UpCaseChangesSmallLettersOnly) {
    LibraryMachine machine;
    for (unsigned code = 0; code < 256; ++code) {
        Registers in;
        in.a = static_cast<std::uint8_t>(code);
        in.bc = 0x1234;
        in.de = 0x5678;
        in.hl = 0x9ABC;
        const Registers out = machine.call(RuntimeEntry::upCase, in);
        EXPECT_EQ(out.a, code >= 'a' && code <= 'z' ? code - 32 : code);
        EXPECT_EQ(out.bc, in.bc);
        EXPECT_EQ(out.de, in.de);
        EXPECT_EQ(out.hl, in.hl);
    }
}

} // namespace
