// The calls of Windows.
#include "files/file_system.h"
#include "files/host_files.h"
#include "files/temporary_name.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <utility>
#include <windows.h>

namespace files {

namespace {

constexpr std::int64_t ticksPerSecond = 10'000'000;
constexpr std::int64_t secondsFrom1601To1970 = 11'644'473'600;

struct HandleCloser {
    using pointer = HANDLE;
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using FileHandle = std::unique_ptr<HANDLE, HandleCloser>;

Reason reasonOf(DWORD code) {
    switch (code) {
    case ERROR_FILE_NOT_FOUND:
        return Reason::fileNotFound;
    case ERROR_PATH_NOT_FOUND:
    case ERROR_BAD_PATHNAME:
    case ERROR_DIRECTORY:
    case ERROR_NOT_READY:
    case ERROR_INVALID_DRIVE:
        return Reason::folderNotFound;
    case ERROR_INVALID_NAME:
    case ERROR_FILENAME_EXCED_RANGE:
        return Reason::badName;
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
        return Reason::inUse;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
        return Reason::diskFull;
    case ERROR_CRC:
    case ERROR_IO_DEVICE:
    case ERROR_GEN_FAILURE:
    case ERROR_READ_FAULT:
    case ERROR_WRITE_FAULT:
        return Reason::device;
    default:
        return Reason::refused;
    }
}

[[noreturn]] void fail(DWORD code, const Path& path) {
    throw FileError(reasonOf(code), path, static_cast<int>(code));
}

/// An empty handle when the file cannot be opened; GetLastError says why.
FileHandle openFile(const Path& path, DWORD access, DWORD share, DWORD disposition) {
    HANDLE const handle =
        CreateFileW(path.c_str(), access, share, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
    return FileHandle(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
}

constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

/// Files that a cloud drive keeps elsewhere have a reparse point too, but are no links.
bool isLink(const Path& path) {
    WIN32_FIND_DATAW data = {};
    HANDLE const search = FindFirstFileW(path.c_str(), &data);
    if (search == INVALID_HANDLE_VALUE)
        return false;
    FindClose(search);
    return (data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
           data.dwReserved0 == IO_REPARSE_TAG_SYMLINK;
}

class WindowsOutput : public OutputFile {
  public:
    explicit WindowsOutput(Path path) : path_(std::move(path)) {}

    void take(FileHandle file) { file_ = std::move(file); }
    const Path& path() const override { return path_; }
    std::size_t write(std::string_view bytes) override {
        const DWORD chunk = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), 1U << 20));
        DWORD written = 0;
        if (WriteFile(file_.get(), bytes.data(), chunk, &written, nullptr) == 0)
            fail(GetLastError(), path_);
        if (written == 0)
            fail(ERROR_DISK_FULL, path_);
        return written;
    }
    void flush() override {
        if (FlushFileBuffers(file_.get()) == 0)
            fail(GetLastError(), path_);
    }
    void setTime(std::time_t time) override {
        const std::int64_t ticks = (static_cast<std::int64_t>(time) + secondsFrom1601To1970) * ticksPerSecond;
        const FILETIME written = {static_cast<DWORD>(ticks & 0xFFFFFFFF), static_cast<DWORD>(ticks >> 32)};
        if (SetFileTime(file_.get(), nullptr, nullptr, &written) == 0)
            fail(GetLastError(), path_);
    }
    void close() override {
        if (CloseHandle(file_.release()) == 0)
            fail(GetLastError(), path_);
    }

  private:
    FileHandle file_;
    Path path_;
};

class WindowsFiles : public FileSystem {
  public:
    TargetKind kindOf(const Path& path) override {
        const DWORD attributes = GetFileAttributesW(path.c_str());
        if (attributes != INVALID_FILE_ATTRIBUTES) {
            if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
                return TargetKind::folder;
            if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 && isLink(path))
                return TargetKind::link;
            if ((attributes & FILE_ATTRIBUTE_READONLY) != 0)
                return TargetKind::writeProtected;
        }
        // A device such as NUL, or a name that stands for one, has no attributes that tell it from a file.
        if (const FileHandle file = openFile(path, GENERIC_WRITE, shareAll, OPEN_EXISTING))
            return GetFileType(file.get()) == FILE_TYPE_DISK ? TargetKind::file : TargetKind::device;
        return attributes == INVALID_FILE_ATTRIBUTES ? TargetKind::missing : TargetKind::file;
    }

    std::unique_ptr<OutputFile> createBeside(const Path& path) override {
        static std::uint32_t count = static_cast<std::uint32_t>(GetCurrentProcessId()) << 16;
        Path folder = path.parent_path();
        if (folder.empty())
            folder = ".";
        for (;;) {
            // Complete except for the file, which would stay if memory ran out after it was made.
            auto fresh = std::make_unique<WindowsOutput>(folder / temporaryFileName(count++));
            // Nobody may delete it as a leftover while it is written.
            FileHandle file = openFile(fresh->path(), GENERIC_WRITE, FILE_SHARE_READ, CREATE_NEW);
            if (file) {
                fresh->take(std::move(file));
                return fresh;
            }
            const DWORD code = GetLastError();
            if (code == ERROR_FILE_EXISTS || code == ERROR_ALREADY_EXISTS)
                continue;
            const DWORD attributes = GetFileAttributesW(folder.c_str());
            fail(attributes == INVALID_FILE_ATTRIBUTES ? ERROR_PATH_NOT_FOUND : code, path);
        }
    }

    std::unique_ptr<OutputFile> openDevice(const Path& path) override {
        auto device = std::make_unique<WindowsOutput>(path);
        FileHandle file = openFile(path, GENERIC_WRITE, shareAll, OPEN_EXISTING);
        if (!file)
            fail(GetLastError(), path);
        device->take(std::move(file));
        return device;
    }

    void replace(const Path& fresh, const Path& target) override {
        if (MoveFileExW(fresh.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) !=
            0)
            return;
        const DWORD code = GetLastError();
        // A target that another program holds open answers "access denied".
        const bool exists = GetFileAttributesW(target.c_str()) != INVALID_FILE_ATTRIBUTES;
        fail(exists && code == ERROR_ACCESS_DENIED ? ERROR_SHARING_VIOLATION : code, target);
    }

    void remove(const Path& path) override {
        if (DeleteFileW(path.c_str()) == 0)
            fail(GetLastError(), path);
    }
};

/// A device such as CON or COM1 is no file: reading one may never end. The system would also take a name with
/// a zero in it up to there only.
FileHandle openForReading(const Path& path) {
    if (path.empty())
        fail(ERROR_PATH_NOT_FOUND, path);
    if (path.native().find(L'\0') != std::wstring::npos)
        fail(ERROR_INVALID_NAME, path);
    FileHandle file = openFile(path, GENERIC_READ, shareAll, OPEN_EXISTING);
    if (!file)
        fail(GetLastError(), path);
    if (GetFileType(file.get()) != FILE_TYPE_DISK)
        throw FileError(Reason::notAFile, path);
    return file;
}

} // namespace

FileSystem& systemFiles() {
    static WindowsFiles files;
    return files;
}

bool canBeRead(const Path& path) {
    try {
        return openForReading(path) != nullptr;
    } catch (const FileError&) {
        return false;
    }
}

std::string readWholeFile(const Path& path, std::size_t atMost) {
    const FileHandle file = openForReading(path);
    std::string bytes;
    std::array<char, 65536> buffer{};
    for (;;) {
        DWORD count = 0;
        if (ReadFile(file.get(), buffer.data(), static_cast<DWORD>(buffer.size()), &count, nullptr) == 0)
            fail(GetLastError(), path);
        if (count == 0)
            return bytes;
        if (count > atMost - bytes.size())
            throw FileError(Reason::tooLarge, path);
        bytes.append(buffer.data(), count);
    }
}

std::time_t timeOf(const Path& path) {
    WIN32_FILE_ATTRIBUTE_DATA data = {};
    if (GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data) == 0)
        fail(GetLastError(), path);
    const std::int64_t ticks = static_cast<std::int64_t>(data.ftLastWriteTime.dwHighDateTime) << 32 |
                               data.ftLastWriteTime.dwLowDateTime;
    return static_cast<std::time_t>(ticks / ticksPerSecond - secondsFrom1601To1970);
}

} // namespace files
