// Random numbers: in range, evenly spread, the same for the same start, different after Randomize.
#include "library_machine.h"

#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <set>

using runtime_test::LibraryMachine;
using runtime_test::Registers;
using tp3::RuntimeEntry;

namespace {

unsigned draw(LibraryMachine& machine, unsigned limit) {
    Registers in;
    in.hl = static_cast<std::uint16_t>(limit);
    return machine.call(RuntimeEntry::randomWord, in).hl;
}

/// Chi-square of counts that should be equal, as standard deviations from its mean: (x - n) / sqrt(2 n), n
/// freedoms.
double deviation(const std::vector<unsigned>& counts, double draws) {
    const double expected = draws / static_cast<double>(counts.size());
    double sum = 0;
    for (const unsigned count : counts) {
        const double difference = count - expected;
        sum += difference * difference / expected;
    }
    const auto freedoms = static_cast<double>(counts.size() - 1);
    return (sum - freedoms) / std::sqrt(2 * freedoms);
}

TEST(RandomTest, SpreadsEvenlyOverEachLimit) {
    LibraryMachine machine;
    for (const unsigned limit : {2U, 3U, 6U, 10U, 52U, 100U, 256U, 1000U}) {
        std::vector<unsigned> counts(limit);
        constexpr unsigned draws = 20'000;
        for (unsigned round = 0; round < draws; ++round) {
            const unsigned value = draw(machine, limit);
            ASSERT_LT(value, limit);
            ++counts[value];
        }
        EXPECT_LT(std::abs(deviation(counts, draws)), 4.0) << "limit " << limit;
    }
}

TEST(RandomTest, SpreadsEvenlyOverLargeLimits) {
    // 2/3 of the range of a word: without care for the remainder every second value would come twice as
    // often.
    LibraryMachine machine;
    for (const unsigned limit : {43690U, 65535U, 32767U}) {
        std::vector<unsigned> remainders(2);
        std::vector<unsigned> sixteenths(16);
        constexpr unsigned draws = 40'000;
        for (unsigned round = 0; round < draws; ++round) {
            const unsigned value = draw(machine, limit);
            ASSERT_LT(value, limit);
            ++remainders[value % 2];
            ++sixteenths[value * 16 / limit];
        }
        EXPECT_LT(std::abs(deviation(remainders, draws)), 4.0) << "limit " << limit;
        EXPECT_LT(std::abs(deviation(sixteenths, draws)), 4.0) << "limit " << limit;
    }
}

TEST(RandomTest, PairsOfNeighboursSpreadEvenly) {
    LibraryMachine machine;
    std::vector<unsigned> counts(256);
    constexpr unsigned draws = 40'000;
    unsigned before = draw(machine, 16);
    for (unsigned round = 0; round < draws; ++round) {
        const unsigned value = draw(machine, 16);
        ++counts[before * 16 + value];
        before = value;
    }
    EXPECT_LT(std::abs(deviation(counts, draws)), 4.0);
}

/// The generator as it is described: a xorshift register and a sequence that adds a constant.
struct Generator {
    std::uint32_t shift = 0x1D876F35U;
    std::uint16_t weyl = 0xB2C9U;

    static std::uint32_t stepped(std::uint32_t x) {
        x ^= x << 8U;
        x ^= x >> 9U;
        return x ^ x << 23U;
    }
    /// The next 24 bits.
    std::uint32_t next() {
        shift = stepped(shift);
        weyl = static_cast<std::uint16_t>(weyl + 0x9E37U);
        return ((weyl + (shift >> 16U)) & 0xFFFFU) << 8U | (shift >> 8U & 0xFFU);
    }
};

TEST(RandomTest, FollowsTheGeneratorWhosePeriodIsKnown) {
    LibraryMachine machine;
    Generator generator;
    for (int round = 0; round < 5000; ++round) {
        const unsigned limit = 2U + static_cast<unsigned>(round) * 13U;
        ASSERT_EQ(draw(machine, limit), static_cast<std::uint64_t>(generator.next()) * limit >> 24U) << round;
    }
}

/// A linear step of 32 bits: what becomes of each single bit.
using Step = std::array<std::uint32_t, 32>;

std::uint32_t applied(const Step& step, std::uint32_t bits) {
    std::uint32_t result = 0;
    for (std::size_t bit = 0; bit < step.size(); ++bit) {
        result ^= (bits >> bit & 1U) != 0 ? step.at(bit) : 0;
    }
    return result;
}

Step repeated(Step step, std::uint32_t times) {
    Step result{};
    for (std::size_t bit = 0; bit < result.size(); ++bit) {
        result.at(bit) = 1U << bit;
    }
    for (; times != 0; times >>= 1U) {
        Step squared{};
        for (std::size_t bit = 0; bit < step.size(); ++bit) {
            if ((times & 1U) != 0) {
                result.at(bit) = applied(step, result.at(bit));
            }
            squared.at(bit) = applied(step, step.at(bit));
        }
        step = squared;
    }
    return result;
}

TEST(RandomTest, HasTheLongestPeriod) {
    // The register comes back after 2^32 - 1 steps and after none of that number's parts, so it passes
    // through every value but 0; the sequence beside it, whose constant is odd, through all 2^16. Both
    // numbers have no common factor.
    Step step{};
    Step identity{};
    for (std::size_t bit = 0; bit < step.size(); ++bit) {
        identity.at(bit) = 1U << bit;
        step.at(bit) = Generator::stepped(1U << bit);
    }
    EXPECT_EQ(repeated(step, 0xFFFFFFFFU), identity);
    for (const std::uint32_t factor : {3U, 5U, 17U, 257U, 65537U}) {
        EXPECT_NE(repeated(step, 0xFFFFFFFFU / factor), identity) << factor;
    }
}

TEST(RandomTest, LimitsZeroAndOneGiveZero) {
    LibraryMachine machine;
    EXPECT_EQ(draw(machine, 0), 0U);
    EXPECT_EQ(draw(machine, 1), 0U);
}

TEST(RandomTest, IsTheSameUntilRandomized) {
    LibraryMachine one;
    LibraryMachine two;
    LibraryMachine three;
    three.call(RuntimeEntry::randomize);
    unsigned equalToThree = 0;
    for (int round = 0; round < 100; ++round) {
        const unsigned value = draw(one, 30000);
        ASSERT_EQ(draw(two, 30000), value);
        equalToThree += draw(three, 30000) == value ? 1U : 0U;
    }
    EXPECT_LT(equalToThree, 3U);
}

TEST(RandomTest, DependsOnTheFrameCounter) {
    std::set<unsigned> firsts;
    for (unsigned frame = 0; frame < 50; ++frame) {
        LibraryMachine machine;
        machine.setWord(0xFC9E, static_cast<std::uint16_t>(frame));
        machine.call(RuntimeEntry::randomize);
        firsts.insert(draw(machine, 65535));
    }
    EXPECT_GT(firsts.size(), 47U);
}

} // namespace
