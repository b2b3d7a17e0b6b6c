#include "dos/heap.h"

#include <cstring>
#include <gtest/gtest.h>
#include <random>
#include <vector>

namespace dos {
namespace {

class HeapTest : public testing::Test {
  protected:
    HeapTest() : memory_(20000) { heap_.initialize(memory_.data(), memory_.size()); }
    std::vector<std::byte> memory_;
    Heap heap_;
};

TEST_F(HeapTest, GivesAlignedPieces) {
    for (const std::size_t size : {0U, 1U, 7U, 8U, 9U, 100U}) {
        void* piece = heap_.allocate(size);
        ASSERT_NE(piece, nullptr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(piece) % Heap::alignment, 0U);
    }
}

TEST_F(HeapTest, RefusesWhatDoesNotFit) {
    EXPECT_EQ(heap_.allocate(20000), nullptr);
    EXPECT_EQ(heap_.allocate(SIZE_MAX), nullptr);
    EXPECT_NE(heap_.allocate(heap_.largestFree()), nullptr);
    EXPECT_EQ(heap_.allocate(1), nullptr);
    EXPECT_EQ(heap_.largestFree(), 0U);
}

TEST_F(HeapTest, TooLittleMemoryIsAnEmptyHeap) {
    heap_.initialize(memory_.data(), 7);
    EXPECT_EQ(heap_.allocate(1), nullptr);
    EXPECT_EQ(heap_.freeBytes(), 0U);
}

/// Pieces of random sizes come and go; none may touch another, and at the end the memory is one piece again.
TEST_F(HeapTest, KeepsPiecesApartAndJoinsThemAgain) {
    const std::size_t all = heap_.largestFree();
    struct Piece {
        unsigned char* bytes;
        std::size_t size;
        unsigned char mark;
    };
    std::vector<Piece> pieces;
    std::mt19937 random(1);
    for (int step = 0; step < 50000; ++step) {
        if (random() % 2 == 0 || pieces.empty()) {
            const std::size_t size = random() % (random() % 10 == 0 ? 3000 : 60);
            auto* bytes = static_cast<unsigned char*>(heap_.allocate(size));
            if (bytes != nullptr) {
                const auto mark = static_cast<unsigned char>(step);
                std::memset(bytes, mark, size);
                pieces.push_back({bytes, size, mark});
            }
            continue;
        }
        const std::size_t chosen = random() % pieces.size();
        const Piece piece = pieces[chosen];
        for (std::size_t i = 0; i < piece.size; ++i) {
            ASSERT_EQ(piece.bytes[i], piece.mark);
        }
        heap_.release(piece.bytes);
        pieces[chosen] = pieces.back();
        pieces.pop_back();
    }
    EXPECT_GT(pieces.size(), 0U);
    for (const Piece& piece : pieces) {
        heap_.release(piece.bytes);
    }
    EXPECT_EQ(heap_.largestFree(), all);
}

TEST_F(HeapTest, ReleasingNullIsAllowed) {
    heap_.release(nullptr);
    EXPECT_NE(heap_.allocate(1), nullptr);
}

} // namespace
} // namespace dos
