// What the output entries print, against the same text made in C++.
#include "library_machine.h"

#include <cstdio>
#include <gtest/gtest.h>

using runtime_test::Image;
using runtime_test::LibraryMachine;
using runtime_test::Registers;
using tp3::RuntimeEntry;

namespace {

constexpr std::uint16_t textAddress = 0x9000;

std::string justified(const std::string& text, int width) {
    const auto blanks = width - static_cast<int>(text.size());
    return std::string(blanks > 0 ? static_cast<std::size_t>(blanks) : 0, ' ') + text;
}

class OutputTest : public testing::Test {
  protected:
    std::string printed(RuntimeEntry entry, const Registers& in, unsigned skipped = 0) {
        machine.output.clear();
        machine.call(entry, in, skipped);
        return machine.output;
    }

    LibraryMachine machine;
};

Registers inHL(int value) {
    Registers in;
    in.hl = static_cast<std::uint16_t>(value);
    return in;
}

TEST_F(OutputTest, WritesEveryInteger) {
    for (int value = -32768; value <= 32767; ++value) {
        ASSERT_EQ(printed(RuntimeEntry::writeInteger, inHL(value)), std::to_string(value));
    }
}

TEST_F(OutputTest, WritesIntegersInEveryWidth) {
    for (const int value : {0, 7, -7, 42, 255, 256, -256, 999, 1000, 9999, 10000, 32767, -32768}) {
        for (const int width : {-32768, -1, 0, 1, 2, 3, 4, 5, 6, 7, 8, 20, 80, 255, 256, 300}) {
            Registers in = inHL(value);
            in.de = static_cast<std::uint16_t>(width);
            ASSERT_EQ(printed(RuntimeEntry::writeIntegerWidth, in), justified(std::to_string(value), width));
        }
    }
}

TEST_F(OutputTest, WritesEveryCharacter) {
    for (const int flags : {3, 2}) {
        Image image;
        image.flags = static_cast<std::uint8_t>(flags);
        LibraryMachine other(image);
        for (unsigned code = 0; code < 256; ++code) {
            other.output.clear();
            Registers in;
            in.a = static_cast<std::uint8_t>(code);
            other.call(RuntimeEntry::writeChar, in);
            ASSERT_EQ(other.output, std::string(1, static_cast<char>(code)));
        }
    }
}

TEST_F(OutputTest, ChoosesTheFunctionThatReactsToControlC) {
    for (const auto& [flags, function] : {std::pair<std::uint8_t, int>{1, 2}, {0, 6}}) {
        Image image;
        image.flags = flags;
        LibraryMachine other(image);
        Registers in;
        in.a = 'x';
        other.call(RuntimeEntry::writeChar, in);
        EXPECT_EQ(other.functions, std::vector<int>{function});
    }
}

TEST_F(OutputTest, WritesCharactersInWidths) {
    for (const int width : {-5, 0, 1, 2, 10}) {
        Registers in;
        in.a = '*';
        in.de = static_cast<std::uint16_t>(width);
        EXPECT_EQ(printed(RuntimeEntry::writeCharWidth, in), justified("*", width));
    }
}

TEST_F(OutputTest, WritesBooleans) {
    for (const auto& [value, text] :
         {std::pair<std::uint8_t, const char*>{0, "FALSE"}, {1, "TRUE"}, {0x80, "TRUE"}}) {
        Registers in;
        in.a = value;
        EXPECT_EQ(printed(RuntimeEntry::writeBoolean, in), text);
        for (const int width : {-1, 3, 5, 6, 12}) {
            in.de = static_cast<std::uint16_t>(width);
            EXPECT_EQ(printed(RuntimeEntry::writeBooleanWidth, in), justified(text, width));
        }
    }
}

TEST_F(OutputTest, WritesStringsOfEveryLength) {
    for (std::size_t length = 0; length < 256; ++length) {
        std::string text;
        for (std::size_t index = 0; index < length; ++index) {
            text += static_cast<char>('!' + (index + length) % 90);
        }
        machine.setString(textAddress, text);
        ASSERT_EQ(printed(RuntimeEntry::writeString, inHL(textAddress)), text);
        for (const int width : {-1, 0, 100, 254, 255, 256, 400}) {
            Registers in = inHL(textAddress);
            in.de = static_cast<std::uint16_t>(width);
            ASSERT_EQ(printed(RuntimeEntry::writeStringWidth, in), justified(text, width));
        }
    }
}

TEST_F(OutputTest, WritesArraysOfCharacters) {
    std::string text;
    for (int index = 0; index < 1000; ++index) {
        text += static_cast<char>('a' + index % 26);
    }
    machine.setText(textAddress, text);
    for (const unsigned count : {0U, 1U, 255U, 256U, 257U, 1000U}) {
        Registers in = inHL(textAddress);
        in.bc = static_cast<std::uint16_t>(count);
        EXPECT_EQ(printed(RuntimeEntry::writeChars, in), text.substr(0, count));
        in.de = 260;
        EXPECT_EQ(printed(RuntimeEntry::writeCharsWidth, in), justified(text.substr(0, count), 260));
    }
}

TEST_F(OutputTest, WritesLiteralsAndGoesOnBehindThem) {
    for (const std::size_t length : {0U, 1U, 17U, 255U}) {
        const std::string text(length, 'q');
        machine.setString(LibraryMachine::callSite + 3, text);
        EXPECT_EQ(printed(RuntimeEntry::writeLiteral, {}, static_cast<unsigned>(length) + 1), text);
    }
}

TEST_F(OutputTest, WritesLineEnds) {
    EXPECT_EQ(printed(RuntimeEntry::writeLine, {}), "\r\n");
}

TEST_F(OutputTest, IntegersTakeNoLongerThanDocumented) {
    // Conversion, the library's part of writing, and 20 T for each call of the BDOS.
    std::uint64_t longest = 0;
    for (int value = -32768; value <= 32767; value += 7) {
        printed(RuntimeEntry::writeInteger, inHL(value));
        longest = std::max(longest, machine.tStates);
    }
    EXPECT_LE(longest, 2716U);
    printed(RuntimeEntry::writeInteger, inHL(7));
    EXPECT_LE(machine.tStates, 429U);
}

} // namespace
