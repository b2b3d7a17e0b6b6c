// Reals written and read, against C++'s exact conversions.
#include "library_machine.h"
#include "real_number.h"

#include <cstdio>
#include <gtest/gtest.h>

using namespace runtime_test;
using tp3::RuntimeEntry;

namespace {

constexpr std::uint16_t realAddress = 0x9000;
constexpr std::uint16_t textAddress = 0x9010;
constexpr std::uint16_t codeAddress = 0x9200;

/// The digits of the exact value, `count` of them behind the point; long doubles hold 48-bit reals exactly.
std::string exactDigits(long double value, int count) {
    std::array<char, 512> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%.*Lf", count, value);
    return std::string(buffer.data());
}

/// Rounds a decimal text of digits with a point half up behind `place` digits, the point not counted.
std::string roundedHalfUp(const std::string& digits, std::size_t place) {
    std::string result = "0" + digits;
    std::size_t at = 1;
    for (std::size_t counted = 0; counted < place || result[at] == '.'; ++at) {
        counted += result[at] == '.' ? 0U : 1U;
    }
    bool carry = result[at] >= '5';
    for (std::size_t behind = at; behind < result.size(); ++behind) {
        result[behind] = result[behind] == '.' ? '.' : '0';
    }
    while (carry) {
        --at;
        if (result[at] == '.') {
            continue;
        }
        carry = result[at] == '9';
        result[at] = carry ? '0' : static_cast<char>(result[at] + 1);
    }
    return result[0] == '0' ? result.substr(1) : result;
}

std::string justified(const std::string& text, int width) {
    const auto blanks = width - static_cast<int>(text.size());
    return std::string(blanks > 0 ? static_cast<std::size_t>(blanks) : 0, ' ') + text;
}

std::size_t firstDigit(const std::string& digits) {
    std::size_t place = 0;
    for (const char digit : digits) {
        if (digit != '0' && digit != '.') {
            return place;
        }
        place += digit == '.' ? 0U : 1U;
    }
    return 0;
}

std::string fixedForm(const RealNumber& number, int width, int decimals) {
    const std::string digits = exactDigits(std::fabs(number.longValue()), 200);
    const std::size_t whole = digits.find('.');
    const std::size_t first = digits[0] == '0' ? (number.mantissa == 0 ? 1 : firstDigit(digits)) : 0;
    const std::size_t cut = std::min(whole + static_cast<std::size_t>(decimals), first + 11);
    std::string text = roundedHalfUp(digits, cut);
    text = text.substr(0, text.find('.') + (decimals == 0 ? 0 : 1 + static_cast<std::size_t>(decimals)));
    return justified((number.negative ? "-" : "") + text, width);
}

std::string exponentForm(const RealNumber& number, int width) {
    const int decimals = std::clamp(width - (number.negative ? 7 : 6), 1, 10);
    std::string text = "0." + std::string(static_cast<std::size_t>(decimals), '0') + "E+00";
    if (number.mantissa != 0) {
        const std::string digits = exactDigits(std::fabs(number.longValue()), 200);
        std::string rounded =
            roundedHalfUp(digits, firstDigit(digits) + 1 + static_cast<std::size_t>(decimals));
        const int whole = static_cast<int>(rounded.find('.'));
        const auto first = static_cast<int>(firstDigit(rounded));
        rounded.erase(static_cast<std::size_t>(whole), 1);
        std::array<char, 16> exponent{};
        std::snprintf(exponent.data(), exponent.size(), "E%+03d", whole - 1 - first);
        text = rounded.substr(static_cast<std::size_t>(first), 1) + "." +
               rounded.substr(static_cast<std::size_t>(first) + 1, static_cast<std::size_t>(decimals)) +
               exponent.data();
    }
    return justified((number.negative ? "-" : "") + text, width);
}

RealNumber realOf(long double value) {
    return nearestReal(static_cast<Quad>(value));
}

class RealTextTest : public testing::Test {
  protected:
    std::string written(const RealNumber& number, int width) {
        return output(RuntimeEntry::writeReal, number, width, 0x1234);
    }
    std::string writtenFixed(const RealNumber& number, int width, int decimals) {
        return output(RuntimeEntry::writeRealFixed, number, width, decimals);
    }
    std::string output(RuntimeEntry entry, const RealNumber& number, int width, int decimals) {
        putReal(machine, realAddress, number);
        machine.output.clear();
        Registers in;
        in.hl = realAddress;
        in.de = static_cast<std::uint16_t>(width);
        in.bc = static_cast<std::uint16_t>(decimals);
        machine.call(entry, in);
        return machine.output;
    }
    /// @return Val's code; the value is at realAddress
    int value(const std::string& text) {
        machine.setString(textAddress, text);
        Registers in;
        in.hl = textAddress;
        in.de = realAddress;
        in.bc = codeAddress;
        machine.call(RuntimeEntry::stringToReal, in);
        return machine.word(codeAddress);
    }

    LibraryMachine machine;
    std::mt19937_64 random{99};
};

TEST_F(RealTextTest, WritesWellKnownValues) {
    EXPECT_EQ(written(realOf(3.14159265358979323846L), 18), "  3.1415926536E+00");
    EXPECT_EQ(written(realOf(-0.001L), 18), " -1.0000000000E-03");
    EXPECT_EQ(written({}, 18), "  0.0000000000E+00");
    EXPECT_EQ(written(realOf(9.99999999999L), 18), "  1.0000000000E+01");
    EXPECT_EQ(written(realOf(1.0L / 3), 7), "3.3E-01");
    EXPECT_EQ(written(realOf(-1.0L / 3), 7), "-3.3E-01");
    EXPECT_EQ(writtenFixed(realOf(0.5L), 0, 0), "1");
    EXPECT_EQ(writtenFixed(realOf(2.5L), 5, 0), "    3");
    EXPECT_EQ(writtenFixed(realOf(-0.001L), 0, 2), "-0.00");
    EXPECT_EQ(writtenFixed(realOf(99.995L), 8, 2), "   99.99");
    EXPECT_EQ(writtenFixed(realOf(99.999L), 8, 2), "  100.00");
    EXPECT_EQ(writtenFixed(realOf(1.0L / 3), 0, 20), "0.33333333333000000000");
    EXPECT_EQ(writtenFixed(realOf(2), 18, 25), "  2.0000000000E+00");
    EXPECT_EQ(writtenFixed(realOf(2), 18, -1), "  2.0000000000E+00");
    EXPECT_EQ(writtenFixed({}, 6, 2), "  0.00");
}

TEST_F(RealTextTest, WritesTheExponentForm) {
    for (int round = 0; round < 4000; ++round) {
        const RealNumber number = randomReal(random, round % 2 == 0 ? 127 : 20);
        const int width = round % 3 == 0 ? 18 : static_cast<int>(random() % 30) - 3;
        ASSERT_EQ(written(number, width), exponentForm(number, width))
            << static_cast<double>(number.longValue());
    }
}

TEST_F(RealTextTest, WritesTheFixedForm) {
    for (int round = 0; round < 6000; ++round) {
        RealNumber number = randomReal(random, round % 3 == 0 ? 127 : 20);
        if (round % 4 == 0) { // ties
            number = realOf(static_cast<long double>(static_cast<int>(random() % 20001) - 10000) / 16);
        }
        const auto decimals = static_cast<int>(random() % (round % 2 == 0 ? 25 : 5));
        const auto width = static_cast<int>(random() % 30);
        ASSERT_EQ(writtenFixed(number, width, decimals), fixedForm(number, width, decimals))
            << static_cast<double>(number.longValue()) << " " << decimals;
    }
}

TEST_F(RealTextTest, WritesIntoStrings) {
    putReal(machine, realAddress, realOf(-2.75L));
    const auto stored = [&](RuntimeEntry entry, int width, std::uint8_t maximum) {
        Registers in;
        in.hl = realAddress;
        in.de = textAddress;
        in.bc = static_cast<std::uint16_t>(width);
        in.a = maximum;
        machine.call(entry, in);
        return machine.string(textAddress);
    };
    machine.setWord(LibraryMachine::address(RuntimeEntry::realDecimals), 1);
    EXPECT_EQ(stored(RuntimeEntry::stringFromReal, 18, 255), " -2.7500000000E+00");
    EXPECT_EQ(stored(RuntimeEntry::stringFromRealFixed, 7, 255), "   -2.8");
    EXPECT_EQ(stored(RuntimeEntry::stringFromRealFixed, 7, 5), "   -2");
}

TEST_F(RealTextTest, ReadsTheNearestReal) {
    for (int round = 0; round < 4000; ++round) {
        const RealNumber number = randomReal(random, round % 3 == 0 ? 124 : 30);
        std::array<char, 80> buffer{};
        const auto digits = static_cast<int>(random() % 20);
        if (round % 2 == 0) {
            std::snprintf(buffer.data(), buffer.size(), "%.*Le", digits, number.longValue());
        } else {
            std::snprintf(buffer.data(), buffer.size(), "%.*Lf", digits, number.longValue());
        }
        // What the text says, to 64 bits: enough to tell its nearest real but for rare texts close to a half.
        const long double exact = std::strtold(buffer.data(), nullptr);
        ASSERT_EQ(value(buffer.data()), 0) << buffer.data();
        ASSERT_EQ(getReal(machine, realAddress), realOf(exact)) << buffer.data();
    }
}

TEST_F(RealTextTest, ReadsBackEverythingThatItWrites) {
    // Thirteen digits tell 40-bit mantissas apart; written exactly, every real comes back as itself.
    for (int round = 0; round < 2000; ++round) {
        const RealNumber number = randomReal(random, 127);
        std::array<char, 400> buffer{};
        std::snprintf(buffer.data(), buffer.size(), "%.*Le", round % 2 == 0 ? 13 : 60, number.longValue());
        ASSERT_EQ(value(buffer.data()), 0);
        ASSERT_EQ(getReal(machine, realAddress), number) << buffer.data();
    }
}

TEST_F(RealTextTest, RoundsTiesOfTextToEven) {
    // 2^40 + 1 lies between two reals, 2^40 + 3 too; a digit far behind decides.
    EXPECT_EQ(value("1099511627777"), 0);
    EXPECT_EQ(getReal(machine, realAddress).mantissa, 1ULL << 39U);
    value("1099511627779");
    EXPECT_EQ(getReal(machine, realAddress).mantissa, (1ULL << 39U) + 2);
    value("1099511627777." + std::string(150, '0') + "1");
    EXPECT_EQ(getReal(machine, realAddress).mantissa, (1ULL << 39U) + 1);
}

TEST_F(RealTextTest, TellsWhereATextIsBad) {
    for (const auto& [text, code] : {std::pair<const char*, int>{"", 1},
                                     {"-", 2},
                                     {"x", 1},
                                     {"1x", 2},
                                     {"1.5.2", 4},
                                     {"1E", 3},
                                     {"1E+", 4},
                                     {"1E5x", 4},
                                     {" 1", 1},
                                     {"1 ", 2},
                                     {".", 2},
                                     {"1E39", 4},
                                     {"1.71E38", 7},
                                     {"$10", 1}}) {
        putReal(machine, realAddress, realOf(7));
        EXPECT_EQ(value(text), code) << text;
        EXPECT_EQ(getReal(machine, realAddress), realOf(7)) << text;
    }
    for (const auto& [text, expected] : {std::pair<const char*, long double>{"5.", 5},
                                         {".5", 0.5L},
                                         {"+1e2", 100},
                                         {"-0012.50", -12.5L},
                                         {"0E200", 0},
                                         {"1E-60", 0},
                                         {"0.00001E+43", 1E38L},
                                         {"100E36", 1E38L},
                                         {"000000000000000000000000000000000000000000000000002", 2}}) {
        EXPECT_EQ(value(text), 0) << text;
        EXPECT_EQ(getReal(machine, realAddress), realOf(expected)) << text;
    }
    const RealNumber largest{false, 127, (1ULL << 40U) - 1};
    value(exactDigits(largest.longValue(), 1));
    EXPECT_EQ(getReal(machine, realAddress), largest);
    EXPECT_NE(value("170141183460469231731687303715884105727"), 0); // rounds up to 2^127
}

TEST_F(RealTextTest, ReadsFromTheConsole) {
    const auto read = [&](const std::string& keys) {
        machine.keys = keys;
        machine.call(RuntimeEntry::readBegin);
        putReal(machine, realAddress, realOf(7));
        Registers in;
        in.hl = realAddress;
        machine.call(RuntimeEntry::readReal, in);
        machine.call(RuntimeEntry::readLine);
        return getReal(machine, realAddress);
    };
    EXPECT_EQ(read(" -12.25 5\r"), realOf(-12.25L));
    EXPECT_EQ(machine.call(RuntimeEntry::ioResult).hl, 0);
    EXPECT_EQ(read("\r"), realOf(7));
    EXPECT_EQ(machine.call(RuntimeEntry::ioResult).hl, 0);
    EXPECT_EQ(read("1.2.3\r"), realOf(7));
    EXPECT_EQ(machine.call(RuntimeEntry::ioResult).hl, 0x10);
}

TEST_F(RealTextTest, TakesNoLongerThanDocumented) {
    written(realOf(3.14159265358979323846L), 18);
    const std::uint64_t writing = machine.tStates;
    value("3.1415926536");
    std::cout << "writeReal(pi:18): " << writing << " T, stringToReal: " << machine.tStates << " T\n";
    EXPECT_LE(writing, 19'500U);
    EXPECT_LE(machine.tStates, 83'000U);
}

} // namespace
