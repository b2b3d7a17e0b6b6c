#pragma once

#include <cstddef>
#include <cstdint>
#include <new>
#include <utility>
#include <vector>

namespace tp3 {

/// Memory for trees, symbols and types: handed out in order, given back in one step to an earlier mark.
/// What lives here is never destroyed one by one, so only trivially destructible things may.
/// Under DOS there are some 600 kB for everything, which is why a routine's tree goes as soon as its code is
/// made.
class Arena {
  public:
    struct Mark {
        std::size_t chunk = 0;
        std::size_t used = 0;
    };

    Arena() = default;
    Arena(const Arena&) = delete;
    Arena& operator=(const Arena&) = delete;
    ~Arena();

    /// `size` bytes, aligned for pointers and all that is no larger, zero-filled. Out of memory ends in the
    /// handler of operator new.
    void* allocate(std::size_t size) {
        size = (size + alignment - 1) & ~(alignment - 1);
        if (size > room_)
            nextChunk(size);
        char* const place = next_;
        next_ += size;
        room_ -= size;
        return cleared(place, size);
    }

    template <typename T, typename... Args> T* make(Args&&... args) {
        static_assert(std::is_trivially_destructible_v<T> && alignof(T) <= alignment);
        return new (allocate(sizeof(T))) T{std::forward<Args>(args)...};
    }

    /// A copy of `length` characters.
    const char* copyText(const char* text, std::size_t length);

    [[nodiscard]] Mark mark() const;
    /// Gives back everything allocated since `mark`.
    void release(Mark mark);
    /// Gives the memory behind the last allocation back to the system.
    void trim();
    /// Bytes taken from the system so far.
    [[nodiscard]] std::size_t capacity() const;

  private:
    struct Chunk {
        char* memory;
        std::size_t size;
    };
    static constexpr std::size_t chunkSize = 8192;
    static constexpr std::size_t alignment = alignof(void*);

    void nextChunk(std::size_t size);
    static void* cleared(char* place, std::size_t size);

    std::vector<Chunk> chunks_;
    std::size_t current_ = 0; ///< index of the chunk in use
    char* next_ = nullptr;    ///< its first free byte
    std::size_t room_ = 0;    ///< bytes from there to its end
};

} // namespace tp3
