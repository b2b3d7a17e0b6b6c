// Set operations against std::bitset.
#include "library_machine.h"

#include <bitset>
#include <gtest/gtest.h>
#include <random>

using runtime_test::LibraryMachine;
using runtime_test::Registers;
using tp3::RuntimeEntry;

namespace {

using Set = std::bitset<256>;
constexpr std::uint16_t leftAddress = 0x9000;
constexpr std::uint16_t rightAddress = 0x9100;
constexpr std::uint16_t storedAddress = 0x9200;

class SetTest : public testing::Test {
  protected:
    void put(std::uint16_t at, const Set& set) {
        for (unsigned number = 0; number < 32; ++number) {
            unsigned value = 0;
            for (unsigned bit = 0; bit < 8; ++bit) {
                value |= (set[number * 8 + bit] ? 1U : 0U) << bit;
            }
            machine.setByte(static_cast<std::uint16_t>(at + number), static_cast<std::uint8_t>(value));
        }
    }
    Set get(std::uint16_t at) const {
        Set set;
        for (unsigned element = 0; element < 256; ++element) {
            const unsigned value = machine.byte(static_cast<std::uint16_t>(at + element / 8));
            set[element] = (value >> element % 8U & 1U) != 0;
        }
        return set;
    }
    Registers call(RuntimeEntry entry, std::uint16_t hl, std::uint16_t de = 0, unsigned first = 0,
                   unsigned count = 0, unsigned a = 0) {
        Registers in;
        in.hl = hl;
        in.de = de;
        in.bc = static_cast<std::uint16_t>(first << 8U | count);
        in.a = static_cast<std::uint8_t>(a);
        machine.output.clear();
        return machine.call(entry, in);
    }
    Set randomSet() {
        Set set;
        const auto density = random() % 20;
        for (unsigned element = 0; element < 256; ++element) {
            set[element] = random() % 20 < density;
        }
        return set;
    }

    LibraryMachine machine;
    std::mt19937 random{20250101};
};

TEST_F(SetTest, CombinesAndCompares) {
    for (int round = 0; round < 300; ++round) {
        const Set a = randomSet();
        const Set b = round % 5 == 0 ? a : round % 5 == 1 ? a | randomSet() : randomSet();
        const auto combined = [&](RuntimeEntry entry) {
            put(leftAddress, a);
            put(rightAddress, b);
            EXPECT_EQ(call(entry, leftAddress, rightAddress).hl, leftAddress);
            EXPECT_EQ(get(rightAddress), b);
            return get(leftAddress);
        };
        ASSERT_EQ(combined(RuntimeEntry::setUnion), a | b);
        ASSERT_EQ(combined(RuntimeEntry::setIntersection), a & b);
        ASSERT_EQ(combined(RuntimeEntry::setDifference), a & ~b);
        put(leftAddress, a);
        ASSERT_EQ(call(RuntimeEntry::setEqual, leftAddress, rightAddress).a, a == b ? 1 : 0);
        ASSERT_EQ(call(RuntimeEntry::setSubset, leftAddress, rightAddress).a, (a & ~b).none() ? 1 : 0);
        ASSERT_EQ(call(RuntimeEntry::setSubset, rightAddress, leftAddress).a, (b & ~a).none() ? 1 : 0);
    }
}

TEST_F(SetTest, ClearsExactly32Bytes) {
    machine.setByte(leftAddress - 1, 0x5A);
    machine.setByte(leftAddress + 32, 0x5A);
    put(leftAddress, Set().set());
    call(RuntimeEntry::setClear, leftAddress);
    EXPECT_TRUE(get(leftAddress).none());
    EXPECT_EQ(machine.byte(leftAddress - 1), 0x5A);
    EXPECT_EQ(machine.byte(leftAddress + 32), 0x5A);
}

TEST_F(SetTest, ExpandsAndShrinksEverySlice) {
    for (unsigned first = 0; first < 32; ++first) {
        for (unsigned count = 1; first + count <= 32; ++count) {
            const Set all = randomSet();
            Set part;
            for (unsigned element = first * 8; element < (first + count) * 8; ++element) {
                part[element] = all[element];
            }
            put(leftAddress, all);
            machine.setByte(static_cast<std::uint16_t>(storedAddress + count), 0xA5);
            call(RuntimeEntry::setShrink, leftAddress, storedAddress, first, count);
            ASSERT_EQ(machine.byte(static_cast<std::uint16_t>(storedAddress + count)), 0xA5);
            call(RuntimeEntry::setExpand, storedAddress, rightAddress, first, count);
            ASSERT_EQ(get(rightAddress), part) << first << " " << count;

            put(rightAddress, part);
            call(RuntimeEntry::setCheckShrink, rightAddress, storedAddress, first, count);
            ASSERT_FALSE(machine.ended);
            call(RuntimeEntry::setExpand, storedAddress, rightAddress, first, count);
            ASSERT_EQ(get(rightAddress), part);
        }
    }
}

TEST_F(SetTest, ReportsAnElementThatWouldBeLost) {
    for (const unsigned element : {0U, 7U, 8U, 100U, 159U, 160U, 255U}) {
        LibraryMachine other;
        put(leftAddress, Set().set(element));
        for (unsigned at = 0; at < 32; ++at) {
            other.setByte(static_cast<std::uint16_t>(leftAddress + at),
                          machine.byte(static_cast<std::uint16_t>(leftAddress + at)));
        }
        Registers in;
        in.hl = leftAddress;
        in.de = storedAddress;
        in.bc = 0x0113; // bytes 1 to 19: elements 8 to 159
        other.call(RuntimeEntry::setCheckShrink, in);
        const bool fits = element >= 8 && element < 160;
        EXPECT_EQ(other.ended, !fits) << element;
        if (!fits) {
            EXPECT_EQ(other.output, "\r\nRun-time error 91, PC=8000\r\nProgram aborted\r\n");
        }
    }
}

TEST_F(SetTest, IncludesEveryElementAndRange) {
    for (unsigned element = 0; element < 256; ++element) {
        const Set before = randomSet();
        put(leftAddress, before);
        ASSERT_EQ(call(RuntimeEntry::setInclude, leftAddress, 0, 0, 0, element).hl, leftAddress);
        ASSERT_EQ(get(leftAddress), Set(before).set(element));
    }
    for (unsigned low = 0; low < 256; low += 3) {
        for (unsigned high = 0; high < 256; high += 5) {
            Set expected = Set().set(17);
            for (unsigned element = low; element <= high; ++element) {
                expected.set(element);
            }
            put(leftAddress, Set().set(17));
            ASSERT_EQ(
                call(RuntimeEntry::setIncludeRange, leftAddress, static_cast<std::uint16_t>(low << 8U | high))
                    .hl,
                leftAddress);
            ASSERT_EQ(get(leftAddress), expected) << low << ".." << high;
        }
    }
}

TEST_F(SetTest, FindsElements) {
    const Set set = randomSet();
    put(leftAddress, set);
    for (unsigned first = 0; first < 32; first += 3) {
        for (unsigned count = 1; first + count <= 32; count += 4) {
            for (const unsigned element :
                 {0U, 1U, 7U, 8U, 63U, 99U, 127U, 128U, 200U, 247U, 248U, 255U, 256U, 0x1010U, 0xFFFFU}) {
                const bool within = element >= first * 8 && element < (first + count) * 8;
                ASSERT_EQ(call(RuntimeEntry::setContains, static_cast<std::uint16_t>(leftAddress + first),
                               static_cast<std::uint16_t>(element), first, count)
                              .a,
                          within && set[element] ? 1 : 0);
            }
        }
    }
    for (unsigned element = 0; element < 256; ++element) {
        ASSERT_EQ(call(RuntimeEntry::setContains, leftAddress, static_cast<std::uint16_t>(element), 0, 32).a,
                  set[element] ? 1 : 0);
    }
}

} // namespace
