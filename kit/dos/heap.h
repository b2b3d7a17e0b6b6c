// A heap over one piece of memory, for programs that have no other.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace dos {

/// Hands out pieces of one block of memory. Free neighbours are joined at once; free pieces are kept in lists
/// by the power of two of their size, so that neither taking nor giving back walks through the memory.
class Heap {
  public:
    /// Every piece begins at a multiple of this.
    static constexpr std::size_t alignment = 8;

    /// Takes over the memory. What does not make up whole units at its ends is left out; at most 2 GB are
    /// used.
    void initialize(void* memory, std::size_t bytes);

    /// A piece of at least so many bytes (one, when none are asked for); null when there is none.
    void* allocate(std::size_t bytes);
    /// Gives a piece back. Null is allowed.
    void release(void* piece);

    /// The bytes that are not handed out, their headers included.
    std::size_t freeBytes() const { return freeBytes_; }
    /// The largest piece that allocate() can give.
    std::size_t largestFree() const;

  private:
    /// Stands before each piece. Sizes count bytes and include this header; they are multiples of 8, so the
    /// lowest bit of `size` is free to say that the piece is handed out.
    struct Header {
        std::uint32_t previousSize; ///< of the piece below; 0 at the bottom
        std::uint32_t size;
    };
    /// In the place of a free piece's contents: its neighbours in its list, as offsets from the bottom.
    struct Links {
        std::uint32_t next;
        std::uint32_t previous;
    };
    static constexpr std::uint32_t usedBit = 1;
    static constexpr std::uint32_t none = UINT32_MAX;
    static constexpr std::uint32_t smallest = sizeof(Header) + sizeof(Links);
    static constexpr std::size_t listCount = 32;

    Header& header(std::uint32_t offset) const { return *reinterpret_cast<Header*>(bottom_ + offset); }
    Links& links(std::uint32_t offset) const {
        return *reinterpret_cast<Links*>(bottom_ + offset + sizeof(Header));
    }
    std::uint32_t findFree(std::uint32_t size) const;
    void addFree(std::uint32_t offset, std::uint32_t size);
    void takeFree(std::uint32_t offset);
    void tellUpperNeighbour(std::uint32_t offset, std::uint32_t size);

    std::byte* bottom_ = nullptr;
    std::uint32_t size_ = 0;
    std::size_t freeBytes_ = 0;
    std::array<std::uint32_t, listCount> lists_{};
};

} // namespace dos
