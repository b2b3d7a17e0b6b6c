// Functions of reals against long doubles, whose 64 bits leave room for one unit of the eleventh digit.
#include "library_machine.h"
#include "real_number.h"

#include <gtest/gtest.h>

using namespace runtime_test;
using tp3::RuntimeEntry;

namespace {

constexpr std::uint16_t sourceAddress = 0x9000;
constexpr std::uint16_t targetAddress = 0x9010;
constexpr int points = 20'000;

class RealFunctionTest : public testing::Test {
  protected:
    RealNumber function(RuntimeEntry entry, const RealNumber& source, std::uint16_t target = targetAddress) {
        putReal(machine, sourceAddress, source);
        Registers in;
        in.hl = sourceAddress;
        in.de = target;
        machine.call(entry, in);
        total += machine.tStates;
        ++calls;
        return getReal(machine, target);
    }
    /// One point: within one unit of the eleventh digit of the exact value.
    void check(RuntimeEntry entry, const RealNumber& source, long double exact, long double least = 0) {
        const RealNumber result = function(entry, source);
        ASSERT_FALSE(machine.ended) << static_cast<double>(source.longValue());
        const long double size = std::max(std::fabs(exact), least);
        const long double unit = size == 0 ? 0 : std::pow(10.0L, std::floor(std::log10(size)) - 10);
        const long double error = std::fabs(result.longValue() - exact);
        ASSERT_LE(error, unit) << static_cast<double>(source.longValue()) << " gives "
                               << static_cast<double>(result.longValue());
        worst = std::max(worst, size == 0 ? 0 : error / size * 0x1p40L);
    }
    void report(RuntimeEntry entry) {
        std::cout << tp3::runtimeEntryNames[static_cast<unsigned>(entry)] << ": average " << total / calls
                  << " T, error at most " << static_cast<double>(worst) << " * 2^-40\n";
        total = calls = 0;
        worst = 0;
    }
    RealNumber between(long double low, long double high) {
        const long double part = static_cast<long double>(random() >> 1U) / 0x1p63L;
        return nearestReal(static_cast<Quad>(low + (high - low) * part));
    }

    LibraryMachine machine;
    std::mt19937_64 random{31};
    std::uint64_t total = 0;
    std::uint64_t calls = 0;
    long double worst = 0;
};

TEST_F(RealFunctionTest, SquareRootsAreTheNearestReals) {
    for (int point = 0; point < points; ++point) {
        RealNumber source = randomReal(random, 127);
        source.negative = false;
        if (point % 4 == 0) { // squares and their neighbours
            const RealNumber root = between(0.5L, 1);
            source = nearestReal(root.value() * root.value());
            source.mantissa += random() % 2;
        }
        // The root with 41 bits, by whole numbers.
        const bool odd = source.exponent % 2 != 0;
        __extension__ typedef unsigned __int128 Wide;
        const Wide radicand = static_cast<Wide>(source.mantissa) << (odd ? 41U : 42U);
        auto root = static_cast<std::uint64_t>(std::sqrt(static_cast<long double>(radicand)));
        while (static_cast<Wide>(root) * root > radicand) {
            --root;
        }
        while (static_cast<Wide>(root + 1) * (root + 1) <= radicand) {
            ++root;
        }
        RealNumber expected{false, (source.exponent + (odd ? 1 : 0)) / 2, (root + 1) >> 1U};
        if (expected.mantissa == 1ULL << 40U) {
            expected.mantissa >>= 1U;
            ++expected.exponent;
        }
        ASSERT_EQ(function(RuntimeEntry::realSqrt, source), expected)
            << static_cast<double>(source.longValue());
    }
    report(RuntimeEntry::realSqrt);
    EXPECT_EQ(function(RuntimeEntry::realSqrt, {}), RealNumber{});
}

TEST_F(RealFunctionTest, Sines) {
    for (int point = 0; point < points; ++point) {
        const RealNumber source = point % 4 == 0   ? between(-0.8L, 0.8L)
                                  : point % 4 == 1 ? between(-10, 10)
                                  : point % 4 == 2 ? between(-100000, 100000)
                                                   : randomReal(random, 127);
        ASSERT_NO_FATAL_FAILURE(check(RuntimeEntry::realSin, source, std::sin(source.longValue())));
    }
    report(RuntimeEntry::realSin);
    for (int point = 0; point < points; ++point) {
        const RealNumber source = point % 4 == 0   ? between(-0.8L, 0.8L)
                                  : point % 4 == 1 ? between(-10, 10)
                                  : point % 4 == 2 ? between(-100000, 100000)
                                                   : randomReal(random, 127);
        ASSERT_NO_FATAL_FAILURE(check(RuntimeEntry::realCos, source, std::cos(source.longValue())));
    }
    report(RuntimeEntry::realCos);
}

TEST_F(RealFunctionTest, SinesNearTheirZeros) {
    for (int turns = -65000; turns < 65000; turns += 61) {
        const RealNumber source =
            nearestReal(static_cast<Quad>(turns * 1.57079632679489661923132169163975144L));
        ASSERT_NO_FATAL_FAILURE(check(RuntimeEntry::realSin, source, std::sin(source.longValue())));
        ASSERT_NO_FATAL_FAILURE(check(RuntimeEntry::realCos, source, std::cos(source.longValue())));
    }
}

TEST_F(RealFunctionTest, SinesOfAllMagnitudes) {
    for (int point = 0; point < 1110; ++point) {
        RealNumber source = randomReal(random, 0);
        source.exponent = 17 + point % 111;
        ASSERT_NO_FATAL_FAILURE(check(RuntimeEntry::realSin, source, std::sin(source.longValue())));
        ASSERT_NO_FATAL_FAILURE(check(RuntimeEntry::realCos, source, std::cos(source.longValue())));
    }
    report(RuntimeEntry::realSin);
}

TEST_F(RealFunctionTest, SinesOfTheRealsNearestToQuarterTurns) {
    // The multiples of pi / 2 that come nearest to a real, by the continued fractions of 2^n / pi: up to
    // 2^-46 of a quarter.
    for (const auto& [exponent, mantissa] : {std::pair{24, 0xEFD8BA9042ULL},
                                             {47, 0x978D0B10CEULL},
                                             {104, 0xEFA065C1E6ULL},
                                             {63, 0xBA17A979DEULL},
                                             {115, 0xCABCAE21DCULL},
                                             {20, 0x9E7FED591AULL},
                                             {120, 0xFA8F278DA3ULL},
                                             {125, 0xAF56785902ULL}}) {
        for (const bool negative : {false, true}) {
            const RealNumber source{negative, exponent, mantissa};
            ASSERT_NO_FATAL_FAILURE(check(RuntimeEntry::realSin, source, std::sin(source.longValue())));
            ASSERT_NO_FATAL_FAILURE(check(RuntimeEntry::realCos, source, std::cos(source.longValue())));
        }
    }
}

TEST_F(RealFunctionTest, ArcTangents) {
    for (int point = 0; point < points; ++point) {
        const RealNumber source =
            point % 2 == 0 ? between(-3, 3) : randomReal(random, point % 4 == 1 ? 8 : 125);
        ASSERT_NO_FATAL_FAILURE(check(RuntimeEntry::realArcTan, source, std::atan(source.longValue())));
    }
    report(RuntimeEntry::realArcTan);
}

TEST_F(RealFunctionTest, Logarithms) {
    for (int point = 0; point < points; ++point) {
        RealNumber source = point % 3 == 0 ? between(0.5L, 2) : randomReal(random, 127);
        source.negative = false;
        if (point % 50 == 0) {
            source = nearestReal(1 + static_cast<Quad>(std::ldexp(1.0L, -static_cast<int>(random() % 40))));
        }
        ASSERT_NO_FATAL_FAILURE(check(RuntimeEntry::realLn, source, std::log(source.longValue())));
    }
    report(RuntimeEntry::realLn);
}

TEST_F(RealFunctionTest, Exponentials) {
    for (int point = 0; point < points; ++point) {
        const RealNumber source = point % 3 == 0   ? between(-88, 88)
                                  : point % 3 == 1 ? between(-2, 2)
                                                   : randomReal(random, 6);
        ASSERT_NO_FATAL_FAILURE(check(RuntimeEntry::realExp, source, std::exp(source.longValue())));
    }
    report(RuntimeEntry::realExp);
    EXPECT_EQ(function(RuntimeEntry::realExp, {}), nearestReal(1));
    EXPECT_EQ(function(RuntimeEntry::realExp, nearestReal(-90)), RealNumber{});
    EXPECT_EQ(function(RuntimeEntry::realExp, {true, 127, 1ULL << 39U}), RealNumber{});
}

TEST_F(RealFunctionTest, StoreIntoTheirArgument) {
    for (const auto& [entry, exact] : {std::pair{RuntimeEntry::realSin, std::sin(0.7L)},
                                       {RuntimeEntry::realCos, std::cos(0.7L)},
                                       {RuntimeEntry::realArcTan, std::atan(0.7L)},
                                       {RuntimeEntry::realLn, std::log(0.7L)},
                                       {RuntimeEntry::realExp, std::exp(0.7L)},
                                       {RuntimeEntry::realSqrt, std::sqrt(0.7L)}}) {
        const RealNumber result = function(entry, nearestReal(static_cast<Quad>(0.7L)), sourceAddress);
        EXPECT_NEAR(static_cast<double>(result.longValue()), static_cast<double>(exact), 1E-11);
    }
}

TEST_F(RealFunctionTest, ReportErrors) {
    for (const auto& [entry, value, number] : {std::tuple{RuntimeEntry::realSqrt, -1.0, "03"},
                                               {RuntimeEntry::realLn, -1.0, "04"},
                                               {RuntimeEntry::realLn, 0.0, "04"},
                                               {RuntimeEntry::realExp, 88.1, "01"},
                                               {RuntimeEntry::realExp, 1e30, "01"}}) {
        LibraryMachine other;
        putReal(other, sourceAddress, nearestReal(static_cast<Quad>(value)));
        Registers in;
        in.hl = sourceAddress;
        in.de = targetAddress;
        other.call(entry, in);
        EXPECT_TRUE(other.ended) << value;
        EXPECT_EQ(other.output,
                  "\r\nRun-time error " + std::string(number) + ", PC=8000\r\nProgram aborted\r\n");
    }
}

} // namespace
