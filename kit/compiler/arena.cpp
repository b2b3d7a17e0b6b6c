#include "arena.h"

#include <cstring>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/asan_interface.h>
#endif

namespace tp3 {
namespace {

// What was given back must not be looked at again; the address sanitizer finds those who do.
void forbid([[maybe_unused]] char* memory, [[maybe_unused]] std::size_t size) {
#if defined(__SANITIZE_ADDRESS__)
    __asan_poison_memory_region(memory, size);
#endif
}

void allow([[maybe_unused]] char* memory, [[maybe_unused]] std::size_t size) {
#if defined(__SANITIZE_ADDRESS__)
    __asan_unpoison_memory_region(memory, size);
#endif
}

} // namespace

Arena::~Arena() {
    for (const Chunk& chunk : chunks_) {
        allow(chunk.memory, chunk.size);
        delete[] chunk.memory;
    }
}

void* Arena::allocate(std::size_t size) {
    constexpr std::size_t alignment = alignof(std::max_align_t) < 8 ? alignof(std::max_align_t) : 8;
    size = (size + alignment - 1) & ~(alignment - 1);
    while (current_ < chunks_.size() && chunks_[current_].size - used_ < size) {
        ++current_;
        used_ = 0;
    }
    if (current_ == chunks_.size()) {
        const std::size_t bytes = size > chunkSize ? size : chunkSize;
        chunks_.push_back({nullptr, 0}); // first, so that the chunk has an owner whatever fails
        chunks_.back().memory = new char[bytes];
        chunks_.back().size = bytes;
        forbid(chunks_.back().memory, bytes);
    }
    char* place = chunks_[current_].memory + used_;
    used_ += size;
    allow(place, size);
    std::memset(place, 0, size);
    return place;
}

const char* Arena::copyText(const char* text, std::size_t length) {
    char* copy = static_cast<char*>(allocate(length == 0 ? 1 : length));
    if (length != 0)
        std::memcpy(copy, text, length);
    return copy;
}

Arena::Mark Arena::mark() const {
    return {current_, used_};
}

void Arena::release(Mark mark) {
    for (std::size_t i = mark.chunk; i < chunks_.size(); ++i) {
        const std::size_t kept = i == mark.chunk ? mark.used : 0;
        forbid(chunks_[i].memory + kept, chunks_[i].size - kept);
    }
    current_ = mark.chunk;
    used_ = mark.used;
}

std::size_t Arena::capacity() const {
    std::size_t bytes = 0;
    for (const Chunk& chunk : chunks_)
        bytes += chunk.size;
    return bytes;
}

} // namespace tp3
