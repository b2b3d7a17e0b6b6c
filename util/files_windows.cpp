#include "util/files.h"

#include "util/paths.h"
#include "util/runtime_error.h"

#include <algorithm>
#include <array>
#include <memory>
#include <windows.h>

namespace tavrel {

namespace {

struct HandleCloser {
    using pointer = HANDLE;
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using FileHandle = std::unique_ptr<HANDLE, HandleCloser>;

RuntimeErrorNumber errorNumber(DWORD code) {
    switch (code) {
    case ERROR_FILE_NOT_FOUND:
        return RuntimeErrorNumber::fileNotFound;
    case ERROR_PATH_NOT_FOUND:
    case ERROR_BAD_PATHNAME:
    case ERROR_DIRECTORY:
    case ERROR_NOT_READY:
    case ERROR_INVALID_DRIVE:
        return RuntimeErrorNumber::pathNotFound;
    case ERROR_INVALID_NAME:
    case ERROR_FILENAME_EXCED_RANGE:
        return RuntimeErrorNumber::badFileNameOrNumber;
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
        return RuntimeErrorNumber::permissionDenied;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
        return RuntimeErrorNumber::diskFull;
    case ERROR_CRC:
    case ERROR_IO_DEVICE:
    case ERROR_GEN_FAILURE:
    case ERROR_READ_FAULT:
    case ERROR_WRITE_FAULT:
        return RuntimeErrorNumber::deviceIoError;
    default:
        return RuntimeErrorNumber::pathFileAccessError;
    }
}

[[noreturn]] void fail(DWORD code, const std::string& path) {
    throw RuntimeError(errorNumber(code), path);
}

/// An empty handle when the file cannot be opened; GetLastError says why.
FileHandle openFile(const std::string& path, DWORD access, DWORD disposition) {
    const DWORD share = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    HANDLE const handle =
        CreateFileA(path.c_str(), access, share, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
    return FileHandle(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
}

/// Writes, flushes and closes; 0 or the error code.
DWORD writeAndClose(FileHandle file, std::string_view bytes, bool flush) {
    while (!bytes.empty()) {
        const DWORD chunk = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), 1U << 20));
        DWORD written = 0;
        if (WriteFile(file.get(), bytes.data(), chunk, &written, nullptr) == 0)
            return GetLastError();
        if (written == 0)
            return ERROR_DISK_FULL;
        bytes.remove_prefix(written);
    }
    if (flush && FlushFileBuffers(file.get()) == 0)
        return GetLastError();
    return CloseHandle(file.release()) == 0 ? GetLastError() : 0;
}

/// A new empty file beside `path`.
std::string makeFileBeside(const std::string& path) {
    std::string folder = GetFilePath(path);
    if (folder.empty())
        folder = ".";
    std::array<char, MAX_PATH + 1> name{};
    if (GetTempFileNameA(folder.c_str(), "tav", 0, name.data()) == 0) {
        const DWORD code = GetLastError();
        const DWORD attributes = GetFileAttributesA(folder.c_str());
        fail(attributes == INVALID_FILE_ATTRIBUTES ? ERROR_PATH_NOT_FOUND : code, path);
    }
    return name.data();
}

/// A device such as NUL, or a name that stands for one, cannot be replaced by a file.
bool writeToDevice(const std::string& path, std::string_view bytes) {
    FileHandle file = openFile(path, GENERIC_WRITE, OPEN_EXISTING);
    if (!file || GetFileType(file.get()) == FILE_TYPE_DISK)
        return false;
    if (const DWORD code = writeAndClose(std::move(file), bytes, false); code != 0)
        fail(code, path);
    return true;
}

} // namespace

bool FileExists(const std::string& path) {
    return !path.empty() && openFile(path, GENERIC_READ, OPEN_EXISTING) != nullptr;
}

std::string readWholeFile(const std::string& path) {
    const FileHandle file = openFile(path, GENERIC_READ, OPEN_EXISTING);
    if (!file)
        fail(path.empty() ? ERROR_PATH_NOT_FOUND : GetLastError(), path);
    std::string bytes;
    std::array<char, 65536> buffer{};
    for (;;) {
        DWORD count = 0;
        if (ReadFile(file.get(), buffer.data(), static_cast<DWORD>(buffer.size()), &count, nullptr) == 0)
            fail(GetLastError(), path);
        if (count == 0)
            return bytes;
        bytes.append(buffer.data(), count);
    }
}

void writeWholeFile(const std::string& path, std::string_view bytes) {
    if (path.empty())
        throw RuntimeError(RuntimeErrorNumber::badFileNameOrNumber);
    const DWORD attributes = GetFileAttributesA(path.c_str());
    const bool exists = attributes != INVALID_FILE_ATTRIBUTES;
    // The rename below would replace a read-only file without a word.
    if (exists && (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY)) != 0)
        throw RuntimeError(RuntimeErrorNumber::pathFileAccessError, path);
    if (writeToDevice(path, bytes))
        return;
    const std::string fresh = makeFileBeside(path);
    FileHandle file = openFile(fresh, GENERIC_WRITE, OPEN_EXISTING);
    DWORD code = file ? writeAndClose(std::move(file), bytes, true) : GetLastError();
    if (code == 0 &&
        MoveFileExA(fresh.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) == 0)
        code = GetLastError();
    if (code != 0) {
        DeleteFileA(fresh.c_str());
        // A target that another program holds open answers "access denied" to the rename.
        fail(exists && code == ERROR_ACCESS_DENIED ? ERROR_SHARING_VIOLATION : code, path);
    }
}

void deleteFile(const std::string& path) {
    if (DeleteFileA(path.c_str()) == 0)
        fail(GetLastError(), path);
}

std::vector<FolderEntry> listFolder(const std::string& folder, const std::string& pattern) {
    std::vector<FolderEntry> entries;
    WIN32_FIND_DATAA data = {};
    HANDLE const search = FindFirstFileA((folder + pattern).c_str(), &data);
    if (search == INVALID_HANDLE_VALUE)
        return entries;
    do {
        const std::string name = &data.cFileName[0];
        if (name == "." || name == "..")
            continue;
        const bool isFolder = (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        const std::uint64_t size = (static_cast<std::uint64_t>(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
        entries.push_back({name, isFolder ? 0U : size, isFolder});
    } while (FindNextFileA(search, &data) != 0);
    FindClose(search);
    return entries;
}

} // namespace tavrel
