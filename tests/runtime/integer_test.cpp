// Multiplication, division and shifts against C++; and that they take no longer than docs/runtime.md says.
#include "library_machine.h"

#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>
#include <random>

using runtime_test::LibraryMachine;
using runtime_test::Registers;
using tp3::RuntimeEntry;

namespace {

using Word = std::uint16_t;

/// Values at which carries, signs and the routines' branches change, and their neighbours.
std::vector<Word> edgeValues() {
    std::vector<Word> values;
    for (unsigned bit = 0; bit < 16; ++bit) {
        for (const int delta : {-1, 0, 1}) {
            const auto value = static_cast<Word>(static_cast<int>(1U << bit) + delta);
            values.push_back(value);
            values.push_back(static_cast<Word>(-value));
        }
    }
    for (const int value : {3, 5, 7, 10, 100, 127, 200, 1000, 10000, 12345, 30000, 0x5555, 0xAAAA}) {
        values.push_back(static_cast<Word>(value));
        values.push_back(static_cast<Word>(-value));
    }
    std::sort(values.begin(), values.end());
    values.erase(std::unique(values.begin(), values.end()), values.end());
    return values;
}

std::int16_t asSigned(Word value) {
    return static_cast<std::int16_t>(value);
}

constexpr std::uint64_t longestDivision = 903; ///< T-states

class IntegerTest : public testing::Test {
  protected:
    void checkMultiply(Word left, Word right) {
        Registers in;
        in.hl = left;
        in.de = right;
        const Registers out = machine.call(RuntimeEntry::multiply, in);
        ASSERT_EQ(out.hl, static_cast<Word>(static_cast<unsigned>(left) * right)) << left << " * " << right;
        longest = std::max(longest, machine.tStates);
        total += machine.tStates;
        ++calls;
    }

    void checkDivide(Word left, Word right) {
        Registers in;
        in.hl = left;
        in.de = right;
        const Registers out = machine.call(RuntimeEntry::divide, in);
        const int dividend = asSigned(left);
        const int divisor = asSigned(right);
        ASSERT_EQ(out.hl, static_cast<Word>(dividend / divisor)) << dividend << " div " << divisor;
        ASSERT_EQ(out.de, static_cast<Word>(dividend % divisor)) << dividend << " mod " << divisor;
        longest = std::max(longest, machine.tStates);
        total += machine.tStates;
        ++calls;
    }

    LibraryMachine machine;
    std::mt19937 random{20240607};
    std::uint64_t longest = 0;
    std::uint64_t total = 0;
    std::uint64_t calls = 0;
};

Word anyWord(std::mt19937& random) {
    // Small and large magnitudes alike, both signs.
    const auto shift = random() % 16;
    return static_cast<Word>(asSigned(static_cast<Word>(random())) >> shift);
}

TEST_F(IntegerTest, MultipliesAllPairsOfEdgeValues) {
    const std::vector<Word> values = edgeValues();
    ASSERT_GT(values.size(), 90U);
    for (const Word left : values) {
        for (const Word right : values) {
            ASSERT_NO_FATAL_FAILURE(checkMultiply(left, right));
        }
    }
}

TEST_F(IntegerTest, MultipliesAllPairsOfBytes) {
    for (unsigned left = 0; left < 256; ++left) {
        for (unsigned right = 0; right < 256; ++right) {
            ASSERT_NO_FATAL_FAILURE(checkMultiply(static_cast<Word>(left), static_cast<Word>(right)));
        }
    }
    EXPECT_LE(total / calls, 261U);
    EXPECT_LE(longest, 322U);
}

TEST_F(IntegerTest, MultipliesRandomPairs) {
    for (int round = 0; round < 100'000; ++round) {
        ASSERT_NO_FATAL_FAILURE(checkMultiply(anyWord(random), anyWord(random)));
    }
    EXPECT_LE(longest, 549U);
}

TEST_F(IntegerTest, DividesAllPairsOfEdgeValues) {
    for (const Word left : edgeValues()) {
        for (const Word right : edgeValues()) {
            if (right != 0) {
                ASSERT_NO_FATAL_FAILURE(checkDivide(left, right));
            }
        }
    }
}

TEST_F(IntegerTest, DividesEveryDividendByByteDivisors) {
    for (const int divisor : {1, 3, 7, 10, 100, 127, 128, 129, 255, -1, -10, -128}) {
        for (unsigned dividend = 0; dividend < 0x10000; dividend += 3) {
            ASSERT_NO_FATAL_FAILURE(checkDivide(static_cast<Word>(dividend), static_cast<Word>(divisor)));
        }
    }
    EXPECT_LE(longest, longestDivision);
}

TEST_F(IntegerTest, DividesRandomPairs) {
    for (int round = 0; round < 100'000; ++round) {
        const Word divisor = anyWord(random);
        if (divisor != 0) {
            ASSERT_NO_FATAL_FAILURE(checkDivide(anyWord(random), divisor));
        }
    }
    EXPECT_LE(longest, longestDivision);
}

TEST_F(IntegerTest, LeavesIndexAndAlternateRegistersAlone) {
    for (const auto& [left, right] :
         {std::pair<Word, Word>{1234, 5678}, {3, 4}, {0xFFF0, 7}, {0x8000, 0x80}}) {
        checkMultiply(left, right);
        EXPECT_TRUE(machine.otherRegistersKept);
        checkDivide(left, right);
        EXPECT_TRUE(machine.otherRegistersKept);
    }
}

TEST_F(IntegerTest, ShiftsByEveryCount) {
    for (const Word value : edgeValues()) {
        for (unsigned count = 0; count < 256; ++count) {
            Registers in;
            in.a = static_cast<std::uint8_t>(count);
            in.hl = value;
            in.de = 0x1234;
            const Registers left = machine.call(RuntimeEntry::shiftLeft, in);
            ASSERT_EQ(left.hl, count < 16 ? static_cast<Word>(value << count) : 0)
                << value << " shl " << count;
            ASSERT_EQ(left.de, 0x1234);
            const Registers right = machine.call(RuntimeEntry::shiftRight, in);
            ASSERT_EQ(right.hl, count < 16 ? value >> count : 0) << value << " shr " << count;
            ASSERT_EQ(right.de, 0x1234);
        }
    }
}

} // namespace
