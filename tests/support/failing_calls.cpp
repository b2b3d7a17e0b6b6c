#include "tests/support/failing_calls.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tavrel::test {

namespace {

bool active = false;
unsigned calls = 0;
unsigned failingCall = 0;
bool failsForEver = false;
CallFailure way = CallFailure::before;
bool failed = false;

/// Counts a call. True when it is its turn to fail.
bool fails() {
    if (!active)
        return false;
    ++calls;
    const bool turn = calls == failingCall || (failsForEver && calls > failingCall);
    failed = failed || turn;
    return turn;
}

bool takesHalf(std::size_t size) {
    return active && way == CallFailure::partWise && size > 1;
}

/// The function that ours stands in front of.
template <typename Function> Function* next(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

/// One call that does nothing when it fails.
template <typename Result, typename Call> Result orFail(Result failure, int reason, const Call& call) {
    if (fails()) {
        errno = reason;
        return failure;
    }
    return call();
}

/// One call that may do its work before it says that it failed.
template <typename Result, typename Call> Result orFailAfter(Result failure, int reason, const Call& call) {
    const bool turn = fails();
    if (turn && way != CallFailure::after) {
        errno = reason;
        return failure;
    }
    const Result result = call();
    if (turn)
        errno = reason;
    return turn ? failure : result;
}

/// Closing sets free whatever it says.
template <typename Call> int closeOrFail(const Call& call) {
    const bool turn = fails();
    const int result = call();
    if (turn)
        errno = EIO;
    return turn ? EOF : result;
}

} // namespace

FailingCalls::FailingCalls(unsigned failAt, bool forEver, CallFailure failure) {
    calls = 0;
    failingCall = failAt;
    failsForEver = forEver;
    way = failure;
    failed = false;
    active = true;
}

FailingCalls::~FailingCalls() {
    active = false;
}

bool callHasFailed() {
    return failed;
}

} // namespace tavrel::test

using namespace tavrel::test;

extern "C" {

int open(const char* path, int flags, ...) {
    static auto* const real = next<int(const char*, int, ...)>("open");
    mode_t mode = 0;
    if ((flags & O_CREAT) != 0) {
        va_list more;
        va_start(more, flags);
        mode = va_arg(more, mode_t);
        va_end(more);
    }
    return orFail(-1, EIO, [&] { return real(path, flags, mode); });
}

ssize_t read(int file, void* buffer, size_t size) {
    static auto* const real = next<ssize_t(int, void*, size_t)>("read");
    return orFail(ssize_t{-1}, EIO, [&] { return real(file, buffer, size); });
}

ssize_t write(int file, const void* buffer, size_t size) {
    static auto* const real = next<ssize_t(int, const void*, size_t)>("write");
    return orFailAfter(ssize_t{-1}, ENOSPC,
                       [&] { return real(file, buffer, takesHalf(size) ? size / 2 : size); });
}

int fsync(int file) {
    static auto* const real = next<int(int)>("fsync");
    return orFailAfter(-1, EIO, [&] { return real(file); });
}

int futimens(int file, const timespec* times) {
    static auto* const real = next<int(int, const timespec*)>("futimens");
    return orFail(-1, EIO, [&] { return real(file, times); });
}

int close(int file) {
    static auto* const real = next<int(int)>("close");
    return closeOrFail([&] { return real(file); });
}

int rename(const char* from, const char* to) {
    static auto* const real = next<int(const char*, const char*)>("rename");
    return orFailAfter(-1, EIO, [&] { return real(from, to); });
}

int unlink(const char* path) {
    static auto* const real = next<int(const char*)>("unlink");
    return orFail(-1, EIO, [&] { return real(path); });
}

int remove(const char* path) {
    static auto* const real = next<int(const char*)>("remove");
    return orFail(-1, EIO, [&] { return real(path); });
}

int mkdir(const char* path, mode_t mode) {
    static auto* const real = next<int(const char*, mode_t)>("mkdir");
    return orFail(-1, EIO, [&] { return real(path, mode); });
}

int stat(const char* path, struct stat* status) {
    static auto* const real = next<int(const char*, struct stat*)>("stat");
    return orFail(-1, EIO, [&] { return real(path, status); });
}

int lstat(const char* path, struct stat* status) {
    static auto* const real = next<int(const char*, struct stat*)>("lstat");
    return orFail(-1, EIO, [&] { return real(path, status); });
}

int fstat(int file, struct stat* status) {
    static auto* const real = next<int(int, struct stat*)>("fstat");
    return orFail(-1, EIO, [&] { return real(file, status); });
}

FILE* fopen(const char* path, const char* mode) {
    static auto* const real = next<FILE*(const char*, const char*)>("fopen");
    return orFail(static_cast<FILE*>(nullptr), EIO, [&] { return real(path, mode); });
}

FILE* fopen64(const char* path, const char* mode) {
    static auto* const real = next<FILE*(const char*, const char*)>("fopen64");
    return orFail(static_cast<FILE*>(nullptr), EIO, [&] { return real(path, mode); });
}

size_t fwrite(const void* buffer, size_t size, size_t count, FILE* file) {
    static auto* const real = next<size_t(const void*, size_t, size_t, FILE*)>("fwrite");
    if (!fails())
        return real(buffer, size, count, file);
    // Less than all is a failure here, unlike with write().
    if (way != CallFailure::before)
        real(buffer, size, way == CallFailure::partWise ? count / 2 : count, file);
    errno = ENOSPC;
    return way == CallFailure::partWise ? count / 2 : 0;
}

int fflush(FILE* file) {
    static auto* const real = next<int(FILE*)>("fflush");
    return orFailAfter(EOF, ENOSPC, [&] { return real(file); });
}

int fclose(FILE* file) {
    static auto* const real = next<int(FILE*)>("fclose");
    return closeOrFail([&] { return real(file); });
}

} // extern "C"
