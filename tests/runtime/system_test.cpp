// The screen, the keyboard's state, time, system calls and the command line.
#include "library_machine.h"

#include <gtest/gtest.h>

using runtime_test::LibraryMachine;
using runtime_test::Registers;
using tp3::RuntimeEntry;

namespace {

constexpr std::uint16_t target = 0x9000;

class SystemTest : public testing::Test {
  protected:
    std::string printed(RuntimeEntry entry, int column = 0, int row = 0) {
        machine.output.clear();
        Registers in;
        in.hl = static_cast<std::uint16_t>(column);
        in.de = static_cast<std::uint16_t>(row);
        machine.call(entry, in);
        return machine.output;
    }
    void setTail(const std::string& tail) { machine.setString(0x80, tail); }
    std::string parameter(int number) {
        machine.setString(target, "old");
        Registers in;
        in.hl = static_cast<std::uint16_t>(number);
        in.de = target;
        EXPECT_EQ(machine.call(RuntimeEntry::paramString, in).de, target);
        return machine.string(target);
    }

    LibraryMachine machine;
};

TEST_F(SystemTest, SendsTheScreensCodes) {
    EXPECT_EQ(printed(RuntimeEntry::clrScr), "\x0C");
    EXPECT_EQ(printed(RuntimeEntry::clrEol), "\x1BK");
    EXPECT_EQ(printed(RuntimeEntry::insLine), "\x1BL");
    EXPECT_EQ(printed(RuntimeEntry::delLine), "\x1BM");
}

TEST_F(SystemTest, PlacesTheCursor) {
    EXPECT_EQ(printed(RuntimeEntry::gotoXY, 1, 1), "\x1BY  ");
    EXPECT_EQ(printed(RuntimeEntry::gotoXY, 80, 24), "\x1BY7o");
    EXPECT_EQ(printed(RuntimeEntry::gotoXY, 223, 223), "\x1BY\xFE\xFE");
    for (const auto& [column, row] :
         {std::pair<int, int>{0, 1}, {1, 0}, {224, 1}, {1, 224}, {-1, 1}, {1, 256}}) {
        EXPECT_EQ(printed(RuntimeEntry::gotoXY, column, row), "");
    }
}

TEST_F(SystemTest, KeyPressedIsZeroOrOne) {
    EXPECT_EQ(machine.call(RuntimeEntry::keyPressed).a, 0);
    machine.keys = "k";
    EXPECT_EQ(machine.call(RuntimeEntry::keyPressed).a, 1);
    EXPECT_EQ(machine.keys, "k");
}

TEST_F(SystemTest, DelaysByPassesWhereNoFramesAreCounted) {
    // On an MSX at 3.58 MHz, whose wait states make a pass 67 T-states of 59 and the interrupts of whose
    // frames take 1.2 % of the time, these are the milliseconds; here interrupts are off.
    for (const int milliseconds : {0, 1, 10, 1000}) {
        Registers in;
        in.hl = static_cast<std::uint16_t>(milliseconds);
        machine.call(RuntimeEntry::delay, in);
        const double expected = 3579.5 / 1.012 * 59 / 67 * milliseconds;
        EXPECT_NEAR(static_cast<double>(machine.tStates), expected, 100 + expected / 100);
    }
    Registers in;
    in.hl = 0xFFFF;
    machine.call(RuntimeEntry::delay, in);
    EXPECT_LT(machine.tStates, 100U);
}

TEST_F(SystemTest, CallsTheSystem) {
    Registers in;
    in.bc = 0x000C;
    EXPECT_EQ(machine.call(RuntimeEntry::bdos, in).hl, 0x22);
    EXPECT_EQ(machine.call(RuntimeEntry::bdosHL, in).hl, 0x0022);
    in.bc = 0x002C;
    EXPECT_EQ(machine.call(RuntimeEntry::bdosHL, in).hl, 0x0B1E);
    in.bc = 2;
    in.de = '!';
    machine.call(RuntimeEntry::bdos, in);
    EXPECT_EQ(machine.output, "!");
}

TEST_F(SystemTest, SplitsTheCommandLine) {
    EXPECT_EQ(machine.call(RuntimeEntry::paramCount).hl, 0);
    EXPECT_EQ(parameter(1), "");
    setTail(" ONE  TWO\tB:THREE.PAS ");
    EXPECT_EQ(machine.call(RuntimeEntry::paramCount).hl, 3);
    EXPECT_EQ(parameter(1), "ONE");
    EXPECT_EQ(parameter(2), "TWO");
    EXPECT_EQ(parameter(3), "B:THREE.PAS");
    for (const int none : {0, 4, -1, 256, 257}) {
        EXPECT_EQ(parameter(none), "");
    }
    setTail("X");
    EXPECT_EQ(machine.call(RuntimeEntry::paramCount).hl, 1);
    EXPECT_EQ(parameter(1), "X");
    const std::string longest = ' ' + std::string(126, 'L');
    setTail(longest);
    EXPECT_EQ(parameter(1), longest.substr(1));
}

} // namespace
