#include "files/temporary_name.h"
#include "util/file_system.h"
#include "util/files.h"

#include "util/paths.h"
#include "util/runtime_error.h"

#include <algorithm>
#include <array>
#include <memory>
#include <utility>
#include <windows.h>

namespace tavrel {

namespace {

struct HandleCloser {
    using pointer = HANDLE;
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using FileHandle = std::unique_ptr<HANDLE, HandleCloser>;

struct SearchCloser {
    using pointer = HANDLE;
    void operator()(HANDLE search) const { FindClose(search); }
};
using SearchHandle = std::unique_ptr<HANDLE, SearchCloser>;

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

/// A device such as CON or COM1 is no file: reading one may never end. The system would also take a name with
/// a zero in it up to that only.
FileHandle openForReading(const std::string& path) {
    if (path.empty() || path.find('\0') != std::string::npos) {
        SetLastError(path.empty() ? ERROR_PATH_NOT_FOUND : ERROR_INVALID_NAME);
        return nullptr;
    }
    FileHandle file = openFile(path, GENERIC_READ, OPEN_EXISTING);
    if (file && GetFileType(file.get()) != FILE_TYPE_DISK) {
        SetLastError(ERROR_FILE_NOT_FOUND);
        return nullptr;
    }
    return file;
}

class WindowsOutput : public OutputFile {
  public:
    WindowsOutput(FileHandle file, std::string path) : file_(std::move(file)), path_(std::move(path)) {}

    void take(FileHandle file) { file_ = std::move(file); }
    const std::string& path() const override { return path_; }
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
    void close() override {
        if (CloseHandle(file_.release()) == 0)
            fail(GetLastError(), path_);
    }

  private:
    FileHandle file_;
    std::string path_;
};

class WindowsFiles : public FileSystem {
  public:
    TargetKind kindOf(const std::string& path) override {
        const DWORD attributes = GetFileAttributesA(path.c_str());
        if (attributes != INVALID_FILE_ATTRIBUTES) {
            if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
                return TargetKind::folder;
            if ((attributes & FILE_ATTRIBUTE_READONLY) != 0)
                return TargetKind::readOnlyFile;
        }
        // A device such as NUL, or a name that stands for one, has no attributes that tell it from a file.
        if (const FileHandle file = openFile(path, GENERIC_WRITE, OPEN_EXISTING))
            return GetFileType(file.get()) == FILE_TYPE_DISK ? TargetKind::file : TargetKind::device;
        return attributes == INVALID_FILE_ATTRIBUTES ? TargetKind::missing : TargetKind::file;
    }
    std::unique_ptr<OutputFile> createBeside(const std::string& path) override {
        std::string folder = GetFilePath(path);
        if (folder.empty())
            folder = ".";
        folder = AddBackslash(folder);
        static std::uint32_t count = static_cast<std::uint32_t>(GetCurrentProcessId()) << 16;
        for (;;) {
            // Complete but for the file, which memory that runs out now would leave behind.
            auto fresh = std::make_unique<WindowsOutput>(nullptr, folder + files::temporaryFileName(count++));
            // Nobody else may take it away as a leftover while it is written.
            HANDLE const handle = CreateFileA(fresh->path().c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                              CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
            if (handle != INVALID_HANDLE_VALUE) {
                fresh->take(FileHandle(handle));
                return fresh;
            }
            const DWORD code = GetLastError();
            if (code == ERROR_FILE_EXISTS || code == ERROR_ALREADY_EXISTS)
                continue;
            const DWORD attributes = GetFileAttributesA(folder.c_str());
            fail(attributes == INVALID_FILE_ATTRIBUTES ? ERROR_PATH_NOT_FOUND : code, path);
        }
    }
    std::unique_ptr<OutputFile> openDevice(const std::string& path) override {
        FileHandle file = openFile(path, GENERIC_WRITE, OPEN_EXISTING);
        if (!file)
            fail(GetLastError(), path);
        return std::make_unique<WindowsOutput>(std::move(file), path);
    }
    void replace(const std::string& fresh, const std::string& target) override {
        if (MoveFileExA(fresh.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) !=
            0)
            return;
        const DWORD code = GetLastError();
        // A target that another program holds open answers "access denied".
        const bool exists = GetFileAttributesA(target.c_str()) != INVALID_FILE_ATTRIBUTES;
        fail(exists && code == ERROR_ACCESS_DENIED ? ERROR_SHARING_VIOLATION : code, target);
    }
    void remove(const std::string& path) override {
        if (DeleteFileA(path.c_str()) == 0)
            fail(GetLastError(), path);
    }
};

} // namespace

FileSystem& systemFiles() {
    static WindowsFiles files;
    return files;
}

bool FileExists(const std::string& path) {
    return openForReading(path) != nullptr;
}

std::string readWholeFile(const std::string& path) {
    const FileHandle file = openForReading(path);
    if (!file)
        fail(GetLastError(), path);
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

void deleteFile(const std::string& path) {
    systemFiles().remove(path);
}

std::vector<FolderEntry> listFolder(const std::string& folder, const std::string& pattern) {
    std::vector<FolderEntry> entries;
    WIN32_FIND_DATAA data = {};
    HANDLE const first = FindFirstFileA((folder + pattern).c_str(), &data);
    if (first == INVALID_HANDLE_VALUE)
        return entries;
    const SearchHandle search(first);
    do {
        const std::string name = &data.cFileName[0];
        if (name == "." || name == "..")
            continue;
        const bool isFolder = (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        const std::uint64_t size = (static_cast<std::uint64_t>(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
        entries.push_back({name, isFolder ? 0U : size, isFolder});
    } while (FindNextFileA(search.get(), &data) != 0);
    return entries;
}

} // namespace tavrel
