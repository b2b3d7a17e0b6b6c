// Arithmetic of reals: every result must be the real nearest to the exact one.
#include "library_machine.h"
#include "real_number.h"

#include <gtest/gtest.h>

using namespace runtime_test;
using tp3::RuntimeEntry;

namespace {

constexpr std::uint16_t leftAddress = 0x9000;
constexpr std::uint16_t rightAddress = 0x9010;
constexpr std::uint16_t targetAddress = 0x9020;

class RealTest : public testing::Test {
  protected:
    RealNumber calculate(RuntimeEntry entry, const RealNumber& left, const RealNumber& right,
                         std::uint16_t target = targetAddress) {
        putReal(machine, leftAddress, left);
        putReal(machine, rightAddress, right);
        Registers in;
        in.hl = leftAddress;
        in.de = rightAddress;
        in.bc = target;
        machine.call(entry, in);
        total += machine.tStates;
        longest = std::max(longest, machine.tStates);
        return getReal(machine, target);
    }
    RealNumber function(RuntimeEntry entry, const RealNumber& source, std::uint16_t target = targetAddress) {
        putReal(machine, leftAddress, source);
        Registers in;
        in.hl = leftAddress;
        in.de = target;
        machine.call(entry, in);
        return getReal(machine, target);
    }
    void restart() {
        fresh = std::make_unique<LibraryMachine>();
        machine.memory() = fresh->memory();
        machine.ended = false;
        machine.output.clear();
    }
    /// An operation on many pairs against the exact result.
    template <typename Exact> void check(RuntimeEntry entry, int rounds, int spread, Exact exact) {
        total = 0;
        longest = 0;
        for (int round = 0; round < rounds; ++round) {
            const RealNumber left = randomReal(random, spread);
            const RealNumber right = randomReal(random, spread);
            const RealNumber expected = nearestReal(exact(left.value(), right.value()));
            const RealNumber result = calculate(entry, left, right);
            if (expected.exponent > largestExponent) {
                ASSERT_TRUE(machine.ended);
                ASSERT_EQ(machine.output, "\r\nRun-time error 01, PC=8000\r\nProgram aborted\r\n");
                restart();
                continue;
            }
            ASSERT_FALSE(machine.ended);
            ASSERT_EQ(result, expected)
                << std::hex << "left " << left.negative << " " << left.exponent << " " << left.mantissa
                << " right " << right.negative << " " << right.exponent << " " << right.mantissa << " result "
                << result.negative << " " << result.exponent << " " << result.mantissa << " expected "
                << expected.exponent << " " << expected.mantissa;
        }
        RecordProperty("average", std::to_string(total / static_cast<unsigned>(rounds)));
        std::cout << tp3::runtimeEntryNames[static_cast<unsigned>(entry)] << ": average "
                  << total / static_cast<unsigned>(rounds) << " T, longest " << longest << " T\n";
    }

    LibraryMachine machine;
    std::unique_ptr<LibraryMachine> fresh;
    std::mt19937_64 random{7};
    std::uint64_t total = 0;
    std::uint64_t longest = 0;
};

const auto sum = [](Quad a, Quad b) { return a + b; };
const auto difference = [](Quad a, Quad b) { return a - b; };
const auto product = [](Quad a, Quad b) { return a * b; };
const auto quotient = [](Quad a, Quad b) { return a / b; };

TEST_F(RealTest, Adds) {
    check(RuntimeEntry::realAdd, 100'000, 4, sum);
    check(RuntimeEntry::realAdd, 100'000, 25, sum);
    check(RuntimeEntry::realSubtract, 50'000, 2, difference);
    check(RuntimeEntry::realSubtract, 50'000, 25, difference);
}
TEST_F(RealTest, Multiplies) {
    check(RuntimeEntry::realMultiply, 100'000, 60, product);
}
TEST_F(RealTest, Divides) {
    check(RuntimeEntry::realDivide, 100'000, 60, quotient);
}
TEST_F(RealTest, OverflowsAndUnderflows) {
    check(RuntimeEntry::realMultiply, 3'000, 127, product);
    check(RuntimeEntry::realDivide, 3'000, 127, quotient);
    for (const auto& [left, right, fits] :
         {std::tuple{0xFFFFFFFFFFULL, 0x8000000000ULL, true}, {0xFFFFFFFFFFULL, 0xFFFFFFFFFFULL, false}}) {
        calculate(RuntimeEntry::realAdd, {false, 127, left}, {false, fits ? 80 : 127, right});
        EXPECT_EQ(machine.ended, !fits);
        restart();
    }
    // The smallest real, half of it, and half of it rounded up to it again.
    EXPECT_EQ(calculate(RuntimeEntry::realMultiply, {false, -126, 1ULL << 39U}, {false, 0, 1ULL << 39U}),
              (RealNumber{false, -127, 1ULL << 39U}));
    EXPECT_EQ(calculate(RuntimeEntry::realMultiply, {false, -127, 1ULL << 39U}, {false, 0, 1ULL << 39U}),
              RealNumber{});
    EXPECT_EQ(
        calculate(RuntimeEntry::realSubtract, {false, -127, (1ULL << 39U) + 1}, {false, -127, 1ULL << 39U}),
        RealNumber{});
    EXPECT_EQ(machine.word(targetAddress + 4), 0);
}

TEST_F(RealTest, ReportsADivisionByZero) {
    calculate(RuntimeEntry::realDivide, {false, 3, 1ULL << 39U}, {});
    EXPECT_TRUE(machine.ended);
    EXPECT_EQ(machine.output, "\r\nRun-time error 02, PC=8000\r\nProgram aborted\r\n");
}

TEST_F(RealTest, CalculatesWithZero) {
    const RealNumber five{true, 3, 5ULL << 37U};
    const RealNumber minusFive{false, 3, 5ULL << 37U};
    EXPECT_EQ(calculate(RuntimeEntry::realAdd, five, {}), five);
    EXPECT_EQ(calculate(RuntimeEntry::realAdd, {}, five), five);
    EXPECT_EQ(calculate(RuntimeEntry::realSubtract, {}, five), minusFive);
    EXPECT_EQ(calculate(RuntimeEntry::realSubtract, five, {}), five);
    EXPECT_EQ(calculate(RuntimeEntry::realSubtract, five, five), RealNumber{});
    EXPECT_EQ(calculate(RuntimeEntry::realMultiply, five, {}), RealNumber{});
    EXPECT_EQ(calculate(RuntimeEntry::realMultiply, {}, five), RealNumber{});
    EXPECT_EQ(calculate(RuntimeEntry::realDivide, {}, five), RealNumber{});
    EXPECT_EQ(function(RuntimeEntry::realNegate, {}), RealNumber{});
    EXPECT_EQ(machine.byte(targetAddress + 5), 0);
}

TEST_F(RealTest, StoresIntoItsOperands) {
    for (int round = 0; round < 500; ++round) {
        const RealNumber a = randomReal(random, 20);
        const RealNumber b = randomReal(random, 20);
        for (const std::uint16_t target : {leftAddress, rightAddress}) {
            ASSERT_EQ(calculate(RuntimeEntry::realAdd, a, b, target), nearestReal(a.value() + b.value()));
            ASSERT_EQ(calculate(RuntimeEntry::realMultiply, a, b, target),
                      nearestReal(a.value() * b.value()));
            ASSERT_EQ(calculate(RuntimeEntry::realDivide, a, b, target), nearestReal(a.value() / b.value()));
        }
        ASSERT_EQ(function(RuntimeEntry::realSqr, a, leftAddress), nearestReal(a.value() * a.value()));
        ASSERT_EQ(function(RuntimeEntry::realFrac, a, leftAddress),
                  nearestReal(a.value() - static_cast<Quad>(std::trunc(a.longValue()))));
    }
}

TEST_F(RealTest, Compares) {
    std::vector<RealNumber> numbers{{}, {false, 127, (1ULL << 40U) - 1}, {true, 127, (1ULL << 40U) - 1}};
    for (int index = 0; index < 60; ++index) {
        numbers.push_back(randomReal(random, 3));
        RealNumber near = numbers.back();
        near.mantissa ^= 1ULL << random() % 39U;
        numbers.push_back(near);
        near.negative = !near.negative;
        numbers.push_back(near);
    }
    for (const RealNumber& a : numbers) {
        for (const RealNumber& b : numbers) {
            putReal(machine, leftAddress, a);
            putReal(machine, rightAddress, b);
            Registers in;
            in.hl = leftAddress;
            in.de = rightAddress;
            const Registers out = machine.call(RuntimeEntry::realCompare, in);
            ASSERT_EQ(out.zero(), a == b);
            ASSERT_EQ(out.carry(), a.value() < b.value());
        }
    }
}

TEST_F(RealTest, ConvertsEveryInteger) {
    for (int value = -32768; value <= 32767; ++value) {
        Registers in;
        in.hl = static_cast<std::uint16_t>(value);
        in.de = targetAddress;
        machine.call(RuntimeEntry::realFromInteger, in);
        ASSERT_EQ(getReal(machine, targetAddress), nearestReal(static_cast<Quad>(value))) << value;
        in.hl = targetAddress;
        ASSERT_EQ(machine.call(RuntimeEntry::realTruncate, in).hl, static_cast<std::uint16_t>(value));
    }
}

TEST_F(RealTest, TruncatesAndRounds) {
    for (int round = 0; round < 60'000; ++round) {
        RealNumber number = randomReal(random, 18);
        if (round % 3 == 0) { // halves and their neighbours
            number = nearestReal(static_cast<Quad>(static_cast<int>(random() % 70000) - 35000) +
                                 static_cast<Quad>(0.5));
            number.mantissa += random() % 3 - 1;
        }
        const long double value = number.longValue();
        for (const bool rounds : {false, true}) {
            const long double expected = rounds ? std::round(value) : std::trunc(value);
            putReal(machine, leftAddress, number);
            Registers in;
            in.hl = leftAddress;
            const Registers out =
                machine.call(rounds ? RuntimeEntry::realRound : RuntimeEntry::realTruncate, in);
            if (expected < -32768 || expected > 32767) {
                ASSERT_TRUE(machine.ended) << static_cast<double>(value);
                ASSERT_EQ(machine.output, "\r\nRun-time error 92, PC=8000\r\nProgram aborted\r\n");
                restart();
            } else {
                ASSERT_FALSE(machine.ended) << static_cast<double>(value);
                ASSERT_EQ(static_cast<std::int16_t>(out.hl), static_cast<int>(expected))
                    << static_cast<double>(value);
            }
        }
    }
}

TEST_F(RealTest, SplitsIntoWholeAndFraction) {
    for (int round = 0; round < 20'000; ++round) {
        const RealNumber number = randomReal(random, 45);
        const long double whole = std::trunc(number.longValue());
        ASSERT_EQ(function(RuntimeEntry::realInt, number), nearestReal(static_cast<Quad>(whole)));
        ASSERT_EQ(function(RuntimeEntry::realFrac, number),
                  nearestReal(number.value() - static_cast<Quad>(whole)));
        RealNumber other = number;
        other.negative = !number.negative;
        ASSERT_EQ(function(RuntimeEntry::realNegate, number), other);
        other.negative = false;
        ASSERT_EQ(function(RuntimeEntry::realAbs, number), other);
    }
}

TEST_F(RealTest, DrawsRandomReals) {
    constexpr int draws = 40'000;
    std::array<int, 100> counts{};
    double sumOfAll = 0;
    for (int draw = 0; draw < draws; ++draw) {
        Registers in;
        in.hl = targetAddress;
        machine.call(RuntimeEntry::realRandom, in);
        const RealNumber number = getReal(machine, targetAddress);
        const auto value = static_cast<double>(number.longValue());
        ASSERT_GE(value, 0);
        ASSERT_LT(value, 1);
        ++counts.at(static_cast<std::size_t>(value * 100));
        sumOfAll += value;
    }
    EXPECT_NEAR(sumOfAll / draws, 0.5, 0.006);
    double chiSquare = 0;
    for (const int count : counts) {
        chiSquare += (count - draws / 100.0) * (count - draws / 100.0) / (draws / 100.0);
    }
    EXPECT_LT(chiSquare, 149); // 99.9 % of good generators stay below
    EXPECT_GT(chiSquare, 60);
}

} // namespace
