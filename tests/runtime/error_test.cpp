// The reports of errors: their text, the address in them, and that nothing runs on afterwards.
#include "library_machine.h"

#include <gtest/gtest.h>

using runtime_test::LibraryMachine;
using runtime_test::Registers;
using tp3::RuntimeEntry;

namespace {

constexpr std::uint16_t textAddress = 0x9000;
constexpr std::uint16_t otherAddress = 0x9800;

class ErrorTest : public testing::Test {
  protected:
    void expectReport(RuntimeEntry entry, const Registers& in, const std::string& what,
                      const std::string& echo = "") {
        machine.output.clear();
        machine.call(entry, in);
        EXPECT_TRUE(machine.ended);
        EXPECT_EQ(machine.output, echo + "\r\n" + what + ", PC=8000\r\nProgram aborted\r\n");
    }

    LibraryMachine machine;
};

TEST_F(ErrorTest, ReportsTheNumberThatItIsCalledWith) {
    Registers in;
    in.a = 0x02;
    expectReport(RuntimeEntry::runError, in, "Run-time error 02");
    in.a = 0xAF;
    expectReport(RuntimeEntry::runError, in, "Run-time error AF");
    expectReport(RuntimeEntry::stackError, {}, "Run-time error FF");
    expectReport(RuntimeEntry::indexError, {}, "Run-time error 90");
    expectReport(RuntimeEntry::rangeError, {}, "Run-time error 91");
}

TEST_F(ErrorTest, ReportsDivisionByZero) {
    for (const int dividend : {0, 1, -32768, -1}) {
        Registers in;
        in.hl = static_cast<std::uint16_t>(dividend);
        expectReport(RuntimeEntry::divide, in, "Run-time error 02");
    }
}

TEST_F(ErrorTest, ReportsStringsThatGrowTooLong) {
    Registers in;
    in.hl = textAddress;
    in.de = otherAddress;
    machine.setString(textAddress, std::string(56, 'a'));
    machine.setString(otherAddress, std::string(200, 'b'));
    expectReport(RuntimeEntry::stringAppend, in, "Run-time error 10");
    machine.setString(otherAddress, std::string(255, 'b'));
    expectReport(RuntimeEntry::stringAppendChar, in, "Run-time error 10");
}

TEST_F(ErrorTest, ReportsPositionsOutsideOfStrings) {
    for (const int position : {-32768, -1, 0, 256, 32767}) {
        const auto word = static_cast<std::uint16_t>(position);
        machine.setString(textAddress, "text");
        machine.setString(otherAddress, "other");
        machine.setWord(LibraryMachine::address(RuntimeEntry::stringCount), 1);
        Registers in;
        in.hl = textAddress;
        in.de = otherAddress;
        in.bc = word;
        in.a = 255;
        expectReport(RuntimeEntry::stringSlice, in, "Run-time error 11");
        expectReport(RuntimeEntry::stringInsert, in, "Run-time error 11");
        in.de = word;
        in.bc = 1;
        expectReport(RuntimeEntry::stringDelete, in, "Run-time error 11");
    }
}

TEST_F(ErrorTest, CheckPassesWithoutAnErrorAndKeepsTheRegisters) {
    Registers in;
    in.a = 0x5A;
    in.bc = 0x1234;
    in.de = 0x5678;
    in.hl = 0x9ABC;
    const Registers out = machine.call(RuntimeEntry::ioCheck, in);
    EXPECT_FALSE(machine.ended);
    EXPECT_EQ(out.a, in.a);
    EXPECT_EQ(out.bc, in.bc);
    EXPECT_EQ(out.de, in.de);
    EXPECT_EQ(out.hl, in.hl);
    EXPECT_TRUE(machine.otherRegistersKept);
}

class InputErrorTest : public ErrorTest {
  protected:
    void SetUp() override {
        machine.keys = "x1\r";
        machine.call(RuntimeEntry::readBegin);
        Registers in;
        in.hl = textAddress;
        machine.call(RuntimeEntry::readInteger, in);
        ASSERT_FALSE(machine.ended);
    }
};

TEST_F(InputErrorTest, CheckReportsIt) {
    expectReport(RuntimeEntry::ioCheck, {}, "I/O error 10");
}

TEST_F(InputErrorTest, ResultGivesItOnce) {
    EXPECT_EQ(machine.call(RuntimeEntry::ioResult).hl, 0x10);
    EXPECT_EQ(machine.call(RuntimeEntry::ioResult).hl, 0);
    machine.call(RuntimeEntry::ioCheck);
    EXPECT_FALSE(machine.ended);
}

TEST_F(InputErrorTest, InputAndOutputRestUntilTheResultIsAsked) {
    machine.output.clear();
    machine.keys = "next\r";
    Registers in;
    in.a = 'x';
    machine.call(RuntimeEntry::writeChar, in);
    machine.call(RuntimeEntry::readBegin);
    EXPECT_EQ(machine.output, "");
    EXPECT_EQ(machine.keys, "next\r");
    machine.call(RuntimeEntry::ioResult);
    machine.call(RuntimeEntry::writeChar, in);
    EXPECT_EQ(machine.output, "x");
}

TEST_F(ErrorTest, ReportsABreakAtTheReadThatWaits) {
    machine.keys = "ab\x03";
    expectReport(RuntimeEntry::readBegin, {}, "User break", "ab");
}

TEST_F(ErrorTest, HaltEndsTheProgramSilently) {
    machine.call(RuntimeEntry::halt);
    EXPECT_TRUE(machine.ended);
    EXPECT_EQ(machine.output, "");
}

} // namespace
