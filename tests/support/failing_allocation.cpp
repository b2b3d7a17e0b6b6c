#include "tests/support/failing_allocation.h"

#include <cstdlib>
#include <limits>
#include <new>

namespace tavrel::test {

namespace {

constexpr long never = std::numeric_limits<long>::max();
long requestsUntilFailure = never;
bool failsForEver = false;
bool failed = false;

/// Null when it is this request's turn to fail, or when there is no memory indeed.
void* request(std::size_t size) {
    if (requestsUntilFailure != never && --requestsUntilFailure <= 0) {
        requestsUntilFailure = failsForEver ? 1 : never;
        failed = true;
        return nullptr;
    }
    return std::malloc(size == 0 ? 1 : size);
}

void* requestOrThrow(std::size_t size) {
    void* const memory = request(size);
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}

} // namespace

FailingAllocation::FailingAllocation(long failAt, bool forEver) {
    failed = false;
    failsForEver = forEver;
    requestsUntilFailure = failAt;
}

FailingAllocation::~FailingAllocation() {
    requestsUntilFailure = never;
}

bool allocationHasFailed() {
    return failed;
}

} // namespace tavrel::test

void* operator new(std::size_t size) {
    return tavrel::test::requestOrThrow(size);
}
void* operator new[](std::size_t size) {
    return tavrel::test::requestOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return tavrel::test::request(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return tavrel::test::request(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}
