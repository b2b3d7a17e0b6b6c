// Standard input: lines edited as users know it, and the items taken from them.
#include "library_machine.h"

#include <gtest/gtest.h>

using runtime_test::Image;
using runtime_test::LibraryMachine;
using runtime_test::Registers;
using tp3::RuntimeEntry;

namespace {

constexpr std::uint16_t variable = 0x9000;
constexpr int unchanged = 0x4BAD;

class InputTest : public testing::Test {
  protected:
    explicit InputTest(std::uint8_t flags = 3) : machine(Image{.heapBottom = {}, .flags = flags}) {}

    void begin(const std::string& keys) {
        machine.keys = keys;
        machine.output.clear();
        machine.call(RuntimeEntry::readBegin);
    }
    void readLine() { machine.call(RuntimeEntry::readLine); }

    int readInteger() {
        machine.setWord(variable, unchanged);
        Registers in;
        in.hl = variable;
        machine.call(RuntimeEntry::readInteger, in);
        return static_cast<std::int16_t>(machine.word(variable));
    }
    char readChar() {
        Registers in;
        in.hl = variable;
        machine.call(RuntimeEntry::readChar, in);
        return static_cast<char>(machine.byte(variable));
    }
    std::string readString(unsigned maximum = 255) {
        machine.setString(variable, "old");
        Registers in;
        in.hl = variable;
        in.a = static_cast<std::uint8_t>(maximum);
        machine.call(RuntimeEntry::readString, in);
        return machine.string(variable);
    }
    std::string readChars(std::size_t count) {
        machine.setText(variable, std::string(count + 1, '#'));
        Registers in;
        in.hl = variable;
        in.bc = static_cast<std::uint16_t>(count);
        machine.call(RuntimeEntry::readChars, in);
        EXPECT_EQ(machine.text(static_cast<std::uint16_t>(variable + count), 1), "#");
        return machine.text(variable, count);
    }
    unsigned ioResult() { return machine.call(RuntimeEntry::ioResult).hl; }
    /// The line that these keys give.
    std::string line(const std::string& keys) {
        begin(keys);
        return readString();
    }

    LibraryMachine machine;
};

const std::string erased = "\b \b";

TEST_F(InputTest, TakesALineAndEchoesItWithoutItsEnd) {
    EXPECT_EQ(line("Hello\rmore"), "Hello");
    EXPECT_EQ(machine.output, "Hello");
    EXPECT_EQ(machine.keys, "more");
    machine.call(RuntimeEntry::readEnd);
    EXPECT_EQ(machine.output, "Hello");
}

TEST_F(InputTest, ReadLnEchoesTheEnd) {
    begin("Hello\r");
    readLine();
    EXPECT_EQ(machine.output, "Hello\r\n");
}

TEST_F(InputTest, BackspaceAndDeleteTakeBackOne) {
    EXPECT_EQ(line("ab\bc\x7F\x7F"
                   "d\r"),
              "d");
    EXPECT_EQ(machine.output, "ab" + erased + "c" + erased + erased + "d");
    EXPECT_EQ(line("\b\x7F"
                   "x\r"),
              "x");
    EXPECT_EQ(machine.output, "x");
}

TEST_F(InputTest, EscapeAndControlXCancelTheLine) {
    EXPECT_EQ(line("abc\x1B"
                   "d\r"),
              "d");
    EXPECT_EQ(machine.output, "abc" + erased + erased + erased + "d");
    EXPECT_EQ(line("abc\x18"
                   "e\r"),
              "e");
}

TEST_F(InputTest, ControlDAndControlRRecallTheLastLine) {
    EXPECT_EQ(line("first line\r"), "first line");
    EXPECT_EQ(line("\x04\x04X\x04\r"), "fiXs");
    EXPECT_EQ(machine.output, "fiXs");
    EXPECT_EQ(line("\x12!\r"), "fiXs!");
    EXPECT_EQ(line("12345\r"), "12345");
    EXPECT_EQ(line("A\x12\r"), "A2345");
    EXPECT_EQ(line("\x12\x12\x04\r"), "A2345");
    EXPECT_EQ(line("wrong\x1B\x12\r"), "wrong");
    EXPECT_EQ(line("a\r"), "a");
    EXPECT_EQ(line("\x12\r"), "a");
}

TEST_F(InputTest, KeepsTabsAndIgnoresOtherControlCharacters) {
    EXPECT_EQ(line("a\tb\n\x01\x1F\x80\xFF\r"), "a\tb\x80\xFF");
    EXPECT_EQ(machine.output, "a b\x80\xFF");
}

TEST_F(InputTest, TheLineHasBufLenCharacters) {
    const std::string text(200, 'k');
    EXPECT_EQ(line(text + "\r"), std::string(127, 'k'));
    const std::uint16_t bufLen = LibraryMachine::address(RuntimeEntry::bufLen);
    for (const auto& [limit, length] :
         {std::pair<int, std::size_t>{5, 5}, {0, 0}, {127, 127}, {128, 127}, {-1, 127}}) {
        machine.setWord(bufLen, static_cast<std::uint16_t>(limit));
        EXPECT_EQ(line(text + "\r").size(), length);
        EXPECT_EQ(machine.word(bufLen), 127);
    }
    machine.setWord(bufLen, 3);
    EXPECT_EQ(line("\x12\x12\r"), "kkk");
    EXPECT_EQ(machine.output, "kkk");
}

TEST_F(InputTest, ReadsIntegersOfALine) {
    begin(" 12\t-7 $1F +5 \r");
    EXPECT_EQ(readInteger(), 12);
    EXPECT_EQ(readInteger(), -7);
    EXPECT_EQ(readInteger(), 31);
    EXPECT_EQ(readInteger(), 5);
    EXPECT_EQ(readInteger(), unchanged);
    EXPECT_EQ(ioResult(), 0U);
}

TEST_F(InputTest, ABadNumberIsError10AndLeavesTheVariables) {
    for (const char* const text : {"abc", "1x", "1.5", "32768", "-32769", "-", "$", "1,2", "'"}) {
        begin(std::string(text) + " 5\r");
        EXPECT_EQ(readInteger(), unchanged) << text;
        EXPECT_EQ(readInteger(), unchanged) << text;
        readLine();
        EXPECT_EQ(machine.output, std::string(text) + " 5\r\n");
        EXPECT_EQ(ioResult(), 0x10U) << text;
    }
}

TEST_F(InputTest, ReadsBytes) {
    begin("300 -1\r");
    machine.setByte(variable + 1, 0x77);
    Registers in;
    in.hl = variable;
    machine.call(RuntimeEntry::readByte, in);
    EXPECT_EQ(machine.byte(variable), 300 % 256);
    machine.call(RuntimeEntry::readByte, in);
    EXPECT_EQ(machine.byte(variable), 255);
    EXPECT_EQ(machine.byte(variable + 1), 0x77);
}

TEST_F(InputTest, ReadsCharactersAndTheLinesEnd) {
    begin("a \r");
    EXPECT_EQ(readChar(), 'a');
    EXPECT_EQ(readChar(), ' ');
    EXPECT_EQ(readChar(), '\r');
    EXPECT_EQ(readChar(), '\r');
}

TEST_F(InputTest, ReadsStringsUpToTheirMaximum) {
    begin("abcdef\r");
    EXPECT_EQ(readString(4), "abcd");
    EXPECT_EQ(readString(), "ef");
    EXPECT_EQ(readString(), "");
}

TEST_F(InputTest, FillsArraysWithBlanks) {
    begin("abcdef\r");
    EXPECT_EQ(readChars(4), "abcd");
    EXPECT_EQ(readChars(5), "ef   ");
    EXPECT_EQ(readChars(300), std::string(300, ' '));
}

TEST_F(InputTest, ControlZEndsInputForTheItemsOfTheRead) {
    begin("12\x1A");
    EXPECT_EQ(readInteger(), 12);
    EXPECT_EQ(readInteger(), unchanged);
    EXPECT_EQ(readChar(), '\x1A');
    EXPECT_EQ(readString(), "");
    EXPECT_EQ(readChars(2), "  ");
    readLine();
    EXPECT_EQ(ioResult(), 0U);
    EXPECT_EQ(line("next\r"), "next");
}

TEST_F(InputTest, GoesOnBehindTheEndOfAPipe) {
    for (int round = 0; round < 5; ++round) {
        begin("");
        EXPECT_EQ(readInteger(), unchanged);
        EXPECT_EQ(readChar(), '\x1A');
        readLine();
    }
    EXPECT_FALSE(machine.ended);
}

TEST_F(InputTest, ANewReadDropsTheRestOfTheLine) {
    begin("1 2 3\r4\r");
    EXPECT_EQ(readInteger(), 1);
    machine.call(RuntimeEntry::readEnd);
    machine.call(RuntimeEntry::readBegin);
    EXPECT_EQ(readInteger(), 4);
}

class NoBreakInputTest : public InputTest {
  protected:
    NoBreakInputTest() : InputTest(2) {}
};

TEST_F(NoBreakInputTest, ControlCIsOneOfTheIgnoredCharacters) {
    EXPECT_EQ(line("a\x03z\r"), "az");
    EXPECT_FALSE(machine.ended);
}

class UnbufferedInputTest : public InputTest {
  protected:
    UnbufferedInputTest() : InputTest(1) {}
};

TEST_F(UnbufferedInputTest, TakesKeyByKeyAndEchoes) {
    begin("ab\bc\rd");
    EXPECT_EQ(machine.keys.size(), 6U);
    EXPECT_EQ(readChar(), 'a');
    EXPECT_EQ(machine.keys.size(), 5U);
    EXPECT_EQ(machine.output, "a");
    EXPECT_EQ(readChar(), 'b');
    EXPECT_EQ(readChar(), '\b');
    EXPECT_EQ(readChar(), 'c');
    EXPECT_EQ(readChar(), '\r');
    EXPECT_EQ(machine.output, "ab\bc\r\n");
    EXPECT_EQ(readChar(), 'd');
}

TEST_F(UnbufferedInputTest, ReadsNumbersOverLineEnds) {
    begin("12 \r\r-3\rrest\rx");
    EXPECT_EQ(readInteger(), 12);
    machine.call(RuntimeEntry::readEnd);
    machine.call(RuntimeEntry::readBegin);
    EXPECT_EQ(readInteger(), -3);
    readLine();
    EXPECT_EQ(readString(), "rest");
    readLine();
    EXPECT_EQ(readChar(), 'x');
    EXPECT_EQ(machine.output, "12 \r\n\r\n-3\r\nrest\r\nx");
}

TEST_F(UnbufferedInputTest, ComesBackAtTheEndOfInput) {
    begin("");
    EXPECT_EQ(readInteger(), unchanged);
    EXPECT_EQ(readChar(), '\x1A');
    EXPECT_EQ(readString(), "");
    readLine();
    machine.keys = "7\r";
    machine.call(RuntimeEntry::readBegin);
    EXPECT_EQ(readInteger(), 7);
}

TEST_F(UnbufferedInputTest, BreaksAtTheItem) {
    begin("\x03");
    machine.output.clear();
    readChar();
    EXPECT_TRUE(machine.ended);
    EXPECT_EQ(machine.output, "\r\nUser break, PC=8000\r\nProgram aborted\r\n");
}

} // namespace
