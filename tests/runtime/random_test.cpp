// Random numbers: in range, evenly spread, the same for the same start, different after Randomize.
#include "library_machine.h"

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
