#include "disk/host_files.h"

#include <algorithm>
#include <memory>
#include <system_error>
#include <windows.h>

namespace disk {

namespace {

struct HandleCloser {
    using pointer = HANDLE;
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using FileHandle = std::unique_ptr<HANDLE, HandleCloser>;

constexpr std::int64_t ticksPerSecond = 10'000'000;
constexpr std::int64_t secondsFrom1601To1970 = 11'644'473'600;

[[noreturn]] void fail(const Path& path, DWORD error) {
    throw HostError(textOf(path) + ": " + std::system_category().message(static_cast<int>(error)));
}

/// An empty handle when the file cannot be opened; GetLastError says why.
FileHandle openFile(const Path& path, DWORD access, DWORD disposition) {
    constexpr DWORD share = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    HANDLE const handle =
        CreateFileW(path.c_str(), access, share, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
    return FileHandle(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
}

FILETIME fileTimeOf(std::time_t time) {
    const std::int64_t ticks = (static_cast<std::int64_t>(time) + secondsFrom1601To1970) * ticksPerSecond;
    return {static_cast<DWORD>(ticks & 0xFFFFFFFF), static_cast<DWORD>(ticks >> 32)};
}

/// Writes, flushes and closes; 0 or the error code.
DWORD complete(FileHandle file, const Bytes& content, std::optional<std::time_t> time) {
    std::size_t done = 0;
    while (done < content.size()) {
        const auto chunk = static_cast<DWORD>(std::min<std::size_t>(content.size() - done, 1U << 20));
        DWORD count = 0;
        if (WriteFile(file.get(), content.data() + done, chunk, &count, nullptr) == 0)
            return GetLastError();
        if (count == 0)
            return ERROR_DISK_FULL;
        done += count;
    }
    if (FlushFileBuffers(file.get()) == 0)
        return GetLastError();
    if (time) {
        const FILETIME written = fileTimeOf(*time);
        if (SetFileTime(file.get(), nullptr, nullptr, &written) == 0)
            return GetLastError();
    }
    return CloseHandle(file.release()) == 0 ? GetLastError() : 0;
}

/// Refuses what the rename would replace without a word, or could not replace.
void requireReplaceable(const Path& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES)
        return;
    if ((attributes & FILE_ATTRIBUTE_READONLY) != 0)
        throw HostError(textOf(path) + ": the file is write-protected");
    const FileHandle file = openFile(path, FILE_READ_ATTRIBUTES, OPEN_EXISTING);
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 || (file && GetFileType(file.get()) != FILE_TYPE_DISK))
        throw HostError(textOf(path) + ": this is not an ordinary file");
}

} // namespace

std::time_t timeOf(const Path& path) {
    WIN32_FILE_ATTRIBUTE_DATA data = {};
    if (GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data) == 0)
        fail(path, GetLastError());
    const std::int64_t ticks = static_cast<std::int64_t>(data.ftLastWriteTime.dwHighDateTime) << 32 |
                               data.ftLastWriteTime.dwLowDateTime;
    return static_cast<std::time_t>(ticks / ticksPerSecond - secondsFrom1601To1970);
}

void writeFileSafely(const Path& path, const Bytes& content, std::optional<std::time_t> time) {
    requireReplaceable(path);
    Path fresh;
    FileHandle file;
    for (int attempt = 0; !file; ++attempt) {
        fresh = path;
        fresh += "." + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(attempt) + ".new";
        file = openFile(fresh, GENERIC_WRITE, CREATE_NEW);
        if (!file && GetLastError() != ERROR_FILE_EXISTS)
            fail(path, GetLastError());
    }
    DWORD error = complete(std::move(file), content, time);
    if (error == 0 &&
        MoveFileExW(fresh.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) == 0)
        error = GetLastError();
    if (error != 0) {
        DeleteFileW(fresh.c_str());
        fail(path, error);
    }
}

} // namespace disk
