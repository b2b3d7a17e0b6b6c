#include "dos/heap.h"

#include <bit>

namespace dos {

namespace {

/// The list that holds free pieces of a size.
std::size_t listOf(std::uint32_t size) {
    return static_cast<std::size_t>(std::bit_width(size) - 1);
}

} // namespace

void Heap::initialize(void* memory, std::size_t bytes) {
    lists_.fill(none);
    freeBytes_ = 0;
    size_ = 0;
    const std::size_t skipped =
        (alignment - reinterpret_cast<std::uintptr_t>(memory) % alignment) % alignment;
    bottom_ = static_cast<std::byte*>(memory) + skipped;
    constexpr std::size_t most = std::size_t{1} << 31U;
    const std::size_t usable = bytes > skipped ? (bytes - skipped) & ~(alignment - 1) : 0;
    if (usable < smallest) {
        return;
    }
    size_ = static_cast<std::uint32_t>(usable < most ? usable : most - alignment);
    header(0).previousSize = 0;
    addFree(0, size_);
}

void* Heap::allocate(std::size_t bytes) {
    if (bytes > size_) {
        return nullptr;
    }
    auto wanted = static_cast<std::uint32_t>((bytes + sizeof(Header) + alignment - 1) & ~(alignment - 1));
    if (wanted < smallest) {
        wanted = smallest;
    }
    const std::uint32_t offset = findFree(wanted);
    if (offset == none) {
        return nullptr;
    }
    const std::uint32_t found = header(offset).size;
    takeFree(offset);
    std::uint32_t taken = found;
    if (found - wanted >= smallest) {
        taken = wanted;
        header(offset + wanted).previousSize = wanted;
        addFree(offset + wanted, found - wanted);
    }
    header(offset).size = taken | usedBit;
    return bottom_ + offset + sizeof(Header);
}

void Heap::release(void* piece) {
    if (piece == nullptr) {
        return;
    }
    auto offset = static_cast<std::uint32_t>(static_cast<std::byte*>(piece) - bottom_ -
                                             static_cast<std::ptrdiff_t>(sizeof(Header)));
    std::uint32_t size = header(offset).size & ~usedBit;
    const std::uint32_t above = offset + size;
    if (above < size_ && (header(above).size & usedBit) == 0) {
        size += header(above).size;
        takeFree(above);
    }
    if (const std::uint32_t below = header(offset).previousSize;
        below != 0 && (header(offset - below).size & usedBit) == 0) {
        offset -= below;
        size += below;
        takeFree(offset);
    }
    addFree(offset, size);
}

std::size_t Heap::largestFree() const {
    for (std::size_t list = listCount; list-- > 0;) {
        std::uint32_t largest = 0;
        for (std::uint32_t offset = lists_[list]; offset != none; offset = links(offset).next) {
            largest = header(offset).size > largest ? header(offset).size : largest;
        }
        if (largest != 0) {
            return largest - sizeof(Header);
        }
    }
    return 0;
}

/// A free piece of at least the size. In the list of its own power of two it has to look; any piece of a
/// longer list will do.
std::uint32_t Heap::findFree(std::uint32_t size) const {
    const std::size_t own = listOf(size);
    for (std::uint32_t offset = lists_[own]; offset != none; offset = links(offset).next) {
        if (header(offset).size >= size) {
            return offset;
        }
    }
    for (std::size_t list = own + 1; list < listCount; ++list) {
        if (lists_[list] != none) {
            return lists_[list];
        }
    }
    return none;
}

void Heap::addFree(std::uint32_t offset, std::uint32_t size) {
    std::uint32_t& first = lists_[listOf(size)];
    header(offset).size = size;
    links(offset) = {.next = first, .previous = none};
    if (first != none) {
        links(first).previous = offset;
    }
    first = offset;
    freeBytes_ += size;
    tellUpperNeighbour(offset, size);
}

void Heap::takeFree(std::uint32_t offset) {
    const std::uint32_t size = header(offset).size;
    const Links own = links(offset);
    if (own.previous != none) {
        links(own.previous).next = own.next;
    } else {
        lists_[listOf(size)] = own.next;
    }
    if (own.next != none) {
        links(own.next).previous = own.previous;
    }
    freeBytes_ -= size;
}

void Heap::tellUpperNeighbour(std::uint32_t offset, std::uint32_t size) {
    if (offset + size < size_) {
        header(offset + size).previousSize = size;
    }
}

} // namespace dos
