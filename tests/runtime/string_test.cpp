// The string entries against a model on std::string, with random strings and at the limits.
#include "library_machine.h"

#include <gtest/gtest.h>
#include <limits>
#include <random>

using runtime_test::LibraryMachine;
using runtime_test::Registers;
using tp3::RuntimeEntry;

namespace {

constexpr std::uint16_t source = 0x9000;
constexpr std::uint16_t target = 0x9400;
constexpr std::uint16_t variable = 0x9800;
constexpr std::uint16_t codeVariable = 0x9802;
constexpr int rounds = 3000;

class StringTest : public testing::Test {
  protected:
    std::size_t anyLength() {
        constexpr std::array limits{0U, 1U, 2U, 127U, 128U, 253U, 254U, 255U};
        return random() % 3 == 0 ? limits.at(random() % limits.size()) : random() % 256;
    }
    /// Few different characters, so that searches and comparisons get far.
    std::string anyString(std::size_t length) {
        const unsigned kinds = random() % 2 == 0 ? 2 : 256;
        std::string text;
        while (text.size() < length) {
            text += static_cast<char>(kinds == 2 ? 'a' + random() % 2 : random() % 256);
        }
        return text;
    }
    std::string anyString() { return anyString(anyLength()); }

    /// Puts marks around the target's room: nothing may be written outside.
    void guard(std::size_t room) {
        guardedRoom = static_cast<std::uint16_t>(room);
        machine.setByte(target - 1, 0xE5);
        machine.setByte(static_cast<std::uint16_t>(target + room + 1), 0xE5);
    }
    void expectTarget(const std::string& text) {
        ASSERT_FALSE(machine.ended) << machine.output;
        ASSERT_EQ(machine.string(target), text);
        ASSERT_EQ(machine.byte(target - 1), 0xE5);
        ASSERT_EQ(machine.byte(static_cast<std::uint16_t>(target + guardedRoom + 1)), 0xE5);
    }
    static Registers addresses(std::uint16_t hl = source, std::uint16_t de = target) {
        Registers in;
        in.hl = hl;
        in.de = de;
        return in;
    }

    LibraryMachine machine;
    std::mt19937 random{4711};
    std::uint16_t guardedRoom = 0;
};

TEST_F(StringTest, CopiesAndCutsToTheMaximum) {
    for (int round = 0; round < rounds; ++round) {
        const std::string text = anyString();
        const std::size_t maximum = anyLength();
        machine.setString(source, text);
        guard(maximum);
        Registers in = addresses();
        in.a = static_cast<std::uint8_t>(maximum);
        machine.call(RuntimeEntry::stringCopy, in);
        ASSERT_NO_FATAL_FAILURE(expectTarget(text.substr(0, maximum)));
        guard(text.size());
        machine.call(RuntimeEntry::stringMove, in);
        ASSERT_NO_FATAL_FAILURE(expectTarget(text));
    }
}

TEST_F(StringTest, Appends) {
    for (int round = 0; round < rounds; ++round) {
        const std::string front = anyString();
        const std::string back = anyString(random() % (256 - front.size()));
        machine.setString(target, front);
        machine.setString(source, back);
        guard(255);
        const Registers out = machine.call(RuntimeEntry::stringAppend, addresses());
        ASSERT_NO_FATAL_FAILURE(expectTarget(front + back));
        ASSERT_EQ(out.de, target);
        if (front.size() < 255) {
            machine.setString(target, front);
            Registers in = addresses();
            in.a = 'x';
            ASSERT_EQ(machine.call(RuntimeEntry::stringAppendChar, in).de, target);
            ASSERT_NO_FATAL_FAILURE(expectTarget(front + 'x'));
        }
    }
}

TEST_F(StringTest, AppendsAStringToItself) {
    for (std::size_t length = 0; length < 128; ++length) {
        const std::string text = anyString(length);
        machine.setString(target, text);
        guard(255);
        machine.call(RuntimeEntry::stringAppend, addresses(target, target));
        ASSERT_NO_FATAL_FAILURE(expectTarget(text + text));
    }
}

TEST_F(StringTest, MakesStringsOfCharacters) {
    for (std::size_t length = 0; length < 256; ++length) {
        const std::string text = anyString(length);
        machine.setText(source, text);
        guard(255);
        Registers in = addresses();
        in.bc = static_cast<std::uint16_t>(length);
        ASSERT_EQ(machine.call(RuntimeEntry::stringFromChars, in).de, target);
        ASSERT_NO_FATAL_FAILURE(expectTarget(text));
    }
}

TEST_F(StringTest, Compares) {
    for (int round = 0; round < rounds; ++round) {
        const std::string left = anyString();
        std::string right = random() % 2 == 0 ? left : anyString();
        if (random() % 3 == 0 && !right.empty()) {
            right[random() % right.size()] = static_cast<char>(random() % 256);
        }
        if (random() % 3 == 0) {
            right.resize(random() % (right.size() + 1));
        }
        machine.setString(source, left);
        machine.setString(target, right);
        const Registers out = machine.call(RuntimeEntry::stringCompare, addresses());
        ASSERT_EQ(out.carry(), left < right);
        ASSERT_EQ(out.zero(), left == right);
    }
}

TEST_F(StringTest, FindsPositions) {
    int found = 0;
    for (int round = 0; round < rounds; ++round) {
        const std::string text = anyString();
        const std::size_t length = random() % 4 == 0 ? anyLength() : random() % 10;
        const bool part = random() % 2 == 0 && !text.empty();
        const std::string wanted = part ? text.substr(random() % text.size(), length) : anyString(length);
        machine.setString(source, wanted);
        machine.setString(target, text);
        const std::size_t position = wanted.empty() ? std::string::npos : text.find(wanted);
        const Registers out = machine.call(RuntimeEntry::stringPosition, addresses());
        ASSERT_EQ(out.hl, position == std::string::npos ? 0 : position + 1) << wanted << " in " << text;
        found += position != std::string::npos ? 1 : 0;
    }
    EXPECT_GT(found, rounds / 4);
}

int anyCount(std::mt19937& random) {
    constexpr std::array counts{-32768, -1, 0, 1, 2, 254, 255, 256, 300, 32767};
    return random() % 3 == 0 ? counts.at(random() % counts.size()) : static_cast<int>(random() % 256);
}

TEST_F(StringTest, CopiesSlices) {
    for (int round = 0; round < rounds; ++round) {
        const std::string text = anyString();
        const std::size_t position = 1 + random() % 255;
        const int count = anyCount(random);
        machine.setString(source, text);
        machine.setWord(LibraryMachine::address(RuntimeEntry::stringCount),
                        static_cast<std::uint16_t>(count));
        guard(255);
        Registers in = addresses();
        in.bc = static_cast<std::uint16_t>(position);
        ASSERT_EQ(machine.call(RuntimeEntry::stringSlice, in).de, target);
        const bool some = position <= text.size() && count > 0;
        ASSERT_NO_FATAL_FAILURE(
            expectTarget(some ? text.substr(position - 1, static_cast<std::size_t>(count)) : ""));
    }
}

TEST_F(StringTest, DeletesParts) {
    for (int round = 0; round < rounds; ++round) {
        std::string text = anyString();
        const std::size_t position = 1 + random() % 255;
        const int count = anyCount(random);
        machine.setString(target, text);
        guard(text.size());
        Registers in = addresses(target, static_cast<std::uint16_t>(position));
        in.bc = static_cast<std::uint16_t>(count);
        machine.call(RuntimeEntry::stringDelete, in);
        if (position <= text.size() && count > 0) {
            text.erase(position - 1, static_cast<std::size_t>(count));
        }
        ASSERT_NO_FATAL_FAILURE(expectTarget(text));
    }
}

TEST_F(StringTest, InsertsAndCutsToTheMaximum) {
    for (int round = 0; round < 3 * rounds; ++round) {
        const std::size_t maximum = random() % 4 == 0 ? 255 : 1 + random() % 255;
        std::string text = anyString(random() % (maximum + 1));
        const bool itself = random() % 8 == 0;
        const std::string inserted =
            itself ? text : anyString(random() % 2 == 0 ? anyLength() : random() % 20);
        const std::size_t position =
            random() % 4 == 0 ? 1 + random() % 255 : 1 + random() % (text.size() + 1);
        machine.setString(source, inserted);
        machine.setString(target, text);
        guard(maximum);
        Registers in = addresses(itself ? target : source);
        in.bc = static_cast<std::uint16_t>(std::min<std::size_t>(position, 255));
        in.a = static_cast<std::uint8_t>(maximum);
        machine.call(RuntimeEntry::stringInsert, in);
        text.insert(std::min(std::min<std::size_t>(position, 255) - 1, text.size()), inserted);
        text.resize(std::min(text.size(), maximum));
        ASSERT_NO_FATAL_FAILURE(expectTarget(text)) << "round " << round << " maximum " << maximum;
    }
}

TEST_F(StringTest, MakesStringsOfIntegers) {
    for (int round = 0; round < rounds; ++round) {
        const int value = static_cast<std::int16_t>(random() >> (16 + random() % 16));
        const int width = static_cast<int>(random() % 300) - 20;
        const std::size_t maximum = round % 2 == 0 ? 255 : anyLength();
        guard(maximum);
        Registers in = addresses(static_cast<std::uint16_t>(value));
        in.bc = static_cast<std::uint16_t>(width);
        in.a = static_cast<std::uint8_t>(maximum);
        machine.call(RuntimeEntry::stringFromInteger, in);
        std::string text = std::to_string(value);
        if (width > static_cast<int>(text.size())) {
            text.insert(0, static_cast<std::size_t>(width) - text.size(), ' ');
        }
        ASSERT_NO_FATAL_FAILURE(expectTarget(text.substr(0, maximum))) << value << ":" << width;
    }
}

class ValueTest : public StringTest {
  protected:
    static constexpr int unchanged = 0x4BAD;
    void expectValue(const std::string& text, int value, int code) {
        machine.setString(source, text);
        machine.setWord(variable, unchanged);
        Registers in = addresses(source, variable);
        in.bc = codeVariable;
        machine.call(RuntimeEntry::stringToInteger, in);
        ASSERT_EQ(static_cast<std::int16_t>(machine.word(variable)), static_cast<std::int16_t>(value))
            << text;
        ASSERT_EQ(machine.word(codeVariable), code) << text;
    }
};

TEST_F(ValueTest, ReadsEveryInteger) {
    for (int value = -32768; value <= 32767; ++value) {
        ASSERT_NO_FATAL_FAILURE(expectValue(std::to_string(value), value, 0));
    }
}

TEST_F(ValueTest, ReadsHexadecimalsSignsAndLeadingZeros) {
    expectValue("$0", 0, 0);
    expectValue("$ff", 255, 0);
    expectValue("$FFFF", -1, 0);
    expectValue("$8000", -32768, 0);
    expectValue("$00000AbC", 0xABC, 0);
    expectValue("-$10", -16, 0);
    expectValue("+7", 7, 0);
    expectValue("0000000000123", 123, 0);
    expectValue("-0", 0, 0);
}

TEST_F(ValueTest, GivesThePositionOfTheFirstBadCharacter) {
    for (const auto& [text, code] : {std::pair<const char*, int>{"", 1},
                                     {" 1", 1},
                                     {"1 ", 2},
                                     {"12a4", 3},
                                     {"a", 1},
                                     {"-", 2},
                                     {"+", 2},
                                     {"--1", 2},
                                     {"$", 2},
                                     {"$G", 2},
                                     {"$1:", 3},
                                     {"-$", 3},
                                     {"1.5", 2},
                                     {"32768", 5},
                                     {"-32769", 6},
                                     {"65536", 5},
                                     {"99999", 5},
                                     {"327670", 6},
                                     {"-327680", 7},
                                     {"$10000", 6},
                                     {"1-", 2},
                                     {"/", 1},
                                     {":", 1},
                                     {"$@", 2},
                                     {"$/", 2}}) {
        expectValue(text, unchanged, code);
    }
}

} // namespace
