// The heap against a model of what it promises: first fit, neighbours merged, the top taken back.
#include "library_machine.h"

#include <gtest/gtest.h>
#include <map>
#include <random>

using runtime_test::Image;
using runtime_test::LibraryMachine;
using runtime_test::Registers;
using tp3::RuntimeEntry;

namespace {

constexpr unsigned margin = 192;
constexpr unsigned reserve = 544;

unsigned rounded(unsigned size) {
    return size == 0 ? 4 : (size + 3) / 4 * 4;
}

/// Free blocks by address, the used ones, and the top.
class Model {
  public:
    explicit Model(unsigned bottom) : top(bottom) {}

    /// The address that the library must give, or 0 when there is no room.
    unsigned allocate(unsigned size) {
        size = rounded(size);
        for (auto& [at, length] : free) {
            if (length >= size) {
                const unsigned result = at + length - size;
                length -= size;
                if (length == 0) {
                    free.erase(at);
                }
                return result;
            }
        }
        if (top + size + margin > LibraryMachine::stackPointer - 2U) {
            return 0;
        }
        const unsigned result = top;
        top += size;
        return result;
    }
    void release(unsigned at, unsigned size) {
        auto [block, fresh] = free.emplace(at, rounded(size));
        ASSERT_TRUE(fresh);
        if (const auto behind = std::next(block);
            behind != free.end() && block->first + block->second == behind->first) {
            block->second += behind->second;
            free.erase(behind);
        }
        if (block != free.begin()) {
            const auto before = std::prev(block);
            if (before->first + before->second == block->first) {
                before->second += block->second;
                free.erase(block);
                block = before;
            }
        }
        if (block->first + block->second == top) {
            top = block->first;
            free.erase(block);
        }
    }
    unsigned room() const {
        const unsigned stack = LibraryMachine::stackPointer - 2U;
        return stack < top + margin + reserve ? 0 : (stack - top - margin - reserve) / 4 * 4;
    }
    unsigned available() const {
        unsigned sum = room();
        for (const auto& [at, length] : free) {
            sum += length;
        }
        return sum;
    }
    unsigned largest() const {
        unsigned result = room();
        for (const auto& [at, length] : free) {
            result = std::max(result, length);
        }
        return result;
    }

    std::map<unsigned, unsigned> free;
    unsigned top;
};

class HeapTest : public testing::Test {
  protected:
    unsigned allocate(unsigned size) {
        Registers in;
        in.hl = static_cast<std::uint16_t>(size);
        return machine.call(RuntimeEntry::heapAllocate, in).hl;
    }
    void release(unsigned at, unsigned size) {
        Registers in;
        in.hl = static_cast<std::uint16_t>(at);
        in.de = static_cast<std::uint16_t>(size);
        machine.call(RuntimeEntry::heapFree, in);
    }
    unsigned top() const { return machine.word(LibraryMachine::address(RuntimeEntry::heapPtr)); }
    unsigned limit() const { return machine.word(LibraryMachine::address(RuntimeEntry::stackLimit)); }
    unsigned available() { return machine.call(RuntimeEntry::memAvail).hl; }
    unsigned largest() { return machine.call(RuntimeEntry::maxAvail).hl; }

    LibraryMachine machine;
};

TEST_F(HeapTest, SurvivesAMillionRandomOperations) {
    Model model(top());
    std::mt19937 random{42};
    std::vector<std::pair<unsigned, unsigned>> used; // address, size
    for (int operation = 0; operation < 1'000'000; ++operation) {
        // The number of blocks in use swings slowly between few and many.
        const bool grow = random() % 100 < (operation / 5000 % 2 == 0 ? 60U : 40U);
        if (used.empty() || (grow && used.size() < 25)) {
            const unsigned size = static_cast<unsigned>(random() % 50 == 0 ? random() % 3000 : random() % 40);
            const unsigned expected = model.allocate(size);
            ASSERT_NE(expected, 0U);
            ASSERT_EQ(allocate(size), expected) << operation;
            used.emplace_back(expected, size);
        } else {
            const std::size_t index = random() % used.size();
            const auto [at, size] = used[index];
            used[index] = used.back();
            used.pop_back();
            ASSERT_NO_FATAL_FAILURE(model.release(at, size));
            release(at, size);
        }
        ASSERT_EQ(top(), model.top) << operation;
        if (operation % 64 == 0) {
            ASSERT_EQ(available(), model.available());
            ASSERT_EQ(largest(), model.largest());
            ASSERT_EQ(limit(), (0x10000 - model.top - margin) & 0xFFFFU);
        }
    }
    for (const auto& [at, size] : used) {
        release(at, size);
    }
    EXPECT_EQ(top(), 0x2E9B + 0x40U);
}

TEST_F(HeapTest, GivesAllThatMaxAvailTells) {
    const unsigned bottom = top();
    const unsigned all = largest();
    EXPECT_EQ(all, available());
    EXPECT_EQ(allocate(all), bottom);
    EXPECT_FALSE(machine.ended);
    EXPECT_EQ(available(), 0U);
    release(bottom, all);
    EXPECT_EQ(available(), all);
}

TEST_F(HeapTest, ReportsAFullHeap) {
    for (const unsigned size : {0x9FE0U, 0xA000U, 0xF000U, 0xFFFDU, 0xFFFFU}) {
        LibraryMachine other;
        Registers in;
        in.hl = static_cast<std::uint16_t>(size);
        other.call(RuntimeEntry::heapAllocate, in);
        EXPECT_TRUE(other.ended) << size;
        EXPECT_EQ(other.output, "\r\nRun-time error FF, PC=8000\r\nProgram aborted\r\n");
    }
}

TEST_F(HeapTest, ReleasesToAMark) {
    allocate(100);
    const unsigned hole = allocate(8);
    const unsigned last = allocate(12);
    const unsigned mark = machine.call(RuntimeEntry::heapMark).hl;
    EXPECT_EQ(mark, top());
    const unsigned above = allocate(50);
    allocate(6);
    release(above, 50);
    release(hole, 8);
    Registers in;
    in.hl = static_cast<std::uint16_t>(mark);
    machine.call(RuntimeEntry::heapRelease, in);
    EXPECT_EQ(top(), mark);
    EXPECT_EQ(limit(), 0x10000 - mark - margin);
    EXPECT_EQ(allocate(8), hole);
    EXPECT_EQ(allocate(4), mark);
    release(mark, 4);
    release(hole, 8);
    release(last, 12);
    EXPECT_EQ(top(), hole);
}

TEST_F(HeapTest, IgnoresNil) {
    const unsigned before = available();
    release(0, 20);
    EXPECT_EQ(available(), before);
}

TEST_F(HeapTest, TellsTheStackToThePascalVariables) {
    EXPECT_EQ(machine.word(LibraryMachine::address(RuntimeEntry::stackPtr)), Image{}.stackTop);
    EXPECT_EQ(machine.word(LibraryMachine::address(RuntimeEntry::recurPtr)), Image{}.stackTop - 1024);
}

} // namespace
