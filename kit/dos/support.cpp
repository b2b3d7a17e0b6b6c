// What the compiler and the headers of the standard library expect of a system: memory functions, operator
// new, and the functions that would throw.
#include "dos/dos.h"
#include "dos/heap.h"
#include "dos/interrupt.h"

#include <cstddef>
#include <new>

namespace dos {

Heap& programHeap();

namespace {

OutOfMemoryHandler outOfMemoryHandler = nullptr;

void* allocate(std::size_t bytes) {
    void* piece = programHeap().allocate(bytes);
    if (piece == nullptr) {
        if (outOfMemoryHandler != nullptr) {
            outOfMemoryHandler();
        }
        fail("Out of memory", exitOutOfMemory);
    }
    return piece;
}

} // namespace

void setOutOfMemoryHandler(OutOfMemoryHandler handler) {
    outOfMemoryHandler = handler;
}

} // namespace dos

void* operator new(std::size_t bytes) {
    return dos::allocate(bytes);
}
void* operator new[](std::size_t bytes) {
    return dos::allocate(bytes);
}
void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
    return dos::programHeap().allocate(bytes);
}
void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept {
    return dos::programHeap().allocate(bytes);
}
void operator delete(void* piece) noexcept {
    dos::programHeap().release(piece);
}
void operator delete[](void* piece) noexcept {
    dos::programHeap().release(piece);
}
void operator delete(void* piece, std::size_t) noexcept {
    dos::programHeap().release(piece);
}
void operator delete[](void* piece, std::size_t) noexcept {
    dos::programHeap().release(piece);
}

// Plain loops: the compiler must not turn them into calls of themselves (this file is compiled accordingly).
extern "C" {

void* memcpy(void* to, const void* from, std::size_t bytes) {
    void* destination = to;
    std::size_t words = bytes / 4;
    asm volatile("rep movsl" : "+D"(destination), "+S"(from), "+c"(words) : : "memory");
    bytes %= 4;
    asm volatile("rep movsb" : "+D"(destination), "+S"(from), "+c"(bytes) : : "memory");
    return to;
}

void* memmove(void* to, const void* from, std::size_t bytes) {
    if (to <= from || to >= static_cast<const char*>(from) + bytes) {
        return memcpy(to, from, bytes);
    }
    void* destination = static_cast<char*>(to) + bytes - 1;
    const void* source = static_cast<const char*>(from) + bytes - 1;
    asm volatile("std\n\trep movsb\n\tcld" : "+D"(destination), "+S"(source), "+c"(bytes) : : "memory", "cc");
    return to;
}

void* memset(void* to, int value, std::size_t bytes) {
    void* destination = to;
    std::size_t words = bytes / 4;
    const std::uint32_t pattern = (static_cast<std::uint32_t>(value) & 0xFFU) * 0x01010101U;
    asm volatile("rep stosl" : "+D"(destination), "+c"(words) : "a"(pattern) : "memory");
    bytes %= 4;
    asm volatile("rep stosb" : "+D"(destination), "+c"(bytes) : "a"(pattern) : "memory");
    return to;
}

int memcmp(const void* left, const void* right, std::size_t bytes) {
    const auto* a = static_cast<const unsigned char*>(left);
    const auto* b = static_cast<const unsigned char*>(right);
    for (std::size_t i = 0; i < bytes; ++i) {
        if (a[i] != b[i]) {
            return a[i] < b[i] ? -1 : 1;
        }
    }
    return 0;
}

void* memchr(const void* memory, int value, std::size_t bytes) {
    const auto* cells = static_cast<const unsigned char*>(memory);
    for (std::size_t i = 0; i < bytes; ++i) {
        if (cells[i] == static_cast<unsigned char>(value)) {
            return const_cast<unsigned char*>(cells + i);
        }
    }
    return nullptr;
}

std::size_t strlen(const char* text) {
    std::size_t length = 0;
    while (text[length] != '\0') {
        ++length;
    }
    return length;
}

int strcmp(const char* left, const char* right) {
    while (*left != '\0' && *left == *right) {
        ++left;
        ++right;
    }
    return static_cast<unsigned char>(*left) - static_cast<unsigned char>(*right);
}

// Objects that live to the end are never destroyed.
int atexit(void (*)()) {
    return 0;
}

[[noreturn]] void abort() {
    dos::fail("Internal error: aborted", dos::exitStandardLibrary);
}

[[noreturn]] void __cxa_pure_virtual() {
    dos::fail("Internal error: pure virtual function", dos::exitStandardLibrary);
}
}

namespace std {

[[noreturn]] void __throw_length_error(const char* what) {
    dos::fail(what, dos::exitStandardLibrary);
}
[[noreturn]] void __throw_logic_error(const char* what) {
    dos::fail(what, dos::exitStandardLibrary);
}
[[noreturn]] void __throw_invalid_argument(const char* what) {
    dos::fail(what, dos::exitStandardLibrary);
}
[[noreturn]] void __throw_out_of_range(const char* what) {
    dos::fail(what, dos::exitStandardLibrary);
}
[[noreturn]] void __throw_out_of_range_fmt(const char* what, ...) {
    dos::fail(what, dos::exitStandardLibrary);
}
[[noreturn]] void __throw_bad_alloc() {
    dos::fail("Out of memory", dos::exitOutOfMemory);
}
[[noreturn]] void __throw_bad_array_new_length() {
    dos::fail("Out of memory", dos::exitOutOfMemory);
}
[[noreturn]] void __throw_bad_function_call() {
    dos::fail("bad function call", dos::exitStandardLibrary);
}
[[noreturn]] void __throw_bad_optional_access() {
    dos::fail("bad optional access", dos::exitStandardLibrary);
}

} // namespace std
