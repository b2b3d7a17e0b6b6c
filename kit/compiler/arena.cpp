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

// Goes on to a chunk that has `size` bytes: one that was given back, or a new one.
void Arena::nextChunk(std::size_t size) {
    std::size_t next = next_ == nullptr ? 0 : current_ + 1;
    while (next < chunks_.size() && chunks_[next].size < size)
        ++next;
    if (next == chunks_.size()) {
        const std::size_t bytes = size > chunkSize ? size : chunkSize;
        chunks_.push_back({nullptr, 0}); // first, so that the chunk has an owner whatever fails
        chunks_.back().memory = new char[bytes];
        chunks_.back().size = bytes;
        forbid(chunks_.back().memory, bytes);
    }
    current_ = next;
    next_ = chunks_[next].memory;
    room_ = chunks_[next].size;
}

void* Arena::cleared(char* place, std::size_t size) {
    allow(place, size);
    return std::memset(place, 0, size);
}

const char* Arena::copyText(const char* text, std::size_t length) {
    char* copy = static_cast<char*>(allocate(length == 0 ? 1 : length));
    if (length != 0)
        std::memcpy(copy, text, length);
    return copy;
}

Arena::Mark Arena::mark() const {
    return {current_, next_ == nullptr ? 0 : chunks_[current_].size - room_};
}

void Arena::release(Mark mark) {
    for (std::size_t i = mark.chunk; i < chunks_.size(); ++i) {
        const std::size_t kept = i == mark.chunk ? mark.used : 0;
        forbid(chunks_[i].memory + kept, chunks_[i].size - kept);
    }
    if (chunks_.empty())
        return;
    current_ = mark.chunk;
    next_ = chunks_[mark.chunk].memory + mark.used;
    room_ = chunks_[mark.chunk].size - mark.used;
}

void Arena::trim() {
    while (chunks_.size() > current_ + 1) {
        allow(chunks_.back().memory, chunks_.back().size);
        delete[] chunks_.back().memory;
        chunks_.pop_back();
    }
}

std::size_t Arena::capacity() const {
    std::size_t bytes = 0;
    for (const Chunk& chunk : chunks_)
        bytes += chunk.size;
    return bytes;
}

} // namespace tp3
