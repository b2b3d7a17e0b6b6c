// Files outside Windows, for tests of the pure code.
#include "files/temporary_name.h"
#include "util/file_system.h"
#include "util/files.h"

#include "util/paths.h"
#include "util/runtime_error.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <fnmatch.h>
#include <memory>
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace tavrel {

namespace {

struct FolderCloser {
    void operator()(DIR* folder) const { closedir(folder); }
};
using Folder = std::unique_ptr<DIR, FolderCloser>;

/// The path with the system's separators. As Windows would, its last name is matched without regard to case
/// and blanks at its end do not count.
std::string systemPath(std::string path) {
    path.erase(path.find_last_not_of(' ') + 1);
    std::replace(path.begin(), path.end(), '\\', '/');
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos || access(path.c_str(), F_OK) == 0)
        return path;
    const std::string folder = path.substr(0, slash + 1);
    const Folder directory(opendir(folder.c_str()));
    if (directory == nullptr)
        return path;
    while (const dirent* const found = readdir(directory.get())) {
        if (strcasecmp(&found->d_name[0], path.c_str() + slash + 1) == 0) {
            path = folder + &found->d_name[0];
            break;
        }
    }
    return path;
}

RuntimeErrorNumber errorNumber(int code, const std::string& path) {
    switch (code) {
    case ENOENT: {
        const std::string folder = systemPath(GetFilePath(path));
        struct stat status = {};
        const bool folderThere = folder.empty() || stat(folder.c_str(), &status) == 0;
        return folderThere ? RuntimeErrorNumber::fileNotFound : RuntimeErrorNumber::pathNotFound;
    }
    case ENOTDIR:
        return RuntimeErrorNumber::pathNotFound;
    case ENOSPC:
    case EFBIG:
    case EDQUOT:
        return RuntimeErrorNumber::diskFull;
    case EIO:
        return RuntimeErrorNumber::deviceIoError;
    case ETXTBSY:
        return RuntimeErrorNumber::permissionDenied;
    default:
        return RuntimeErrorNumber::pathFileAccessError;
    }
}

/// The system would take the name up to the zero only, and so another file.
bool hasZero(const std::string& path) {
    return path.find('\0') != std::string::npos;
}

[[noreturn]] void fail(int code, const std::string& path) {
    throw RuntimeError(errorNumber(code, path), path);
}

class PortableOutput : public OutputFile {
  public:
    PortableOutput(int file, std::string path) : file_(file), path_(std::move(path)) {}
    ~PortableOutput() override {
        if (file_ >= 0)
            ::close(file_);
    }
    PortableOutput(const PortableOutput&) = delete;
    PortableOutput& operator=(const PortableOutput&) = delete;

    void take(int file) { file_ = file; }
    const std::string& path() const override { return path_; }
    std::size_t write(std::string_view bytes) override {
        const ssize_t count = ::write(file_, bytes.data(), bytes.size());
        if (count <= 0)
            fail(count < 0 ? errno : ENOSPC, path_);
        return static_cast<std::size_t>(count);
    }
    void flush() override {
        if (fsync(file_) != 0 && errno != EINVAL)
            fail(errno, path_);
    }
    void close() override {
        const int file = file_;
        file_ = -1;
        if (::close(file) != 0)
            fail(errno, path_);
    }

  private:
    int file_;
    std::string path_;
};

/// An open file that is closed at the end.
class InputFile {
  public:
    explicit InputFile(int number) : number_(number) {}
    ~InputFile() {
        if (number_ >= 0)
            ::close(number_);
    }
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;
    int number() const { return number_; }

  private:
    int number_;
};

class PortableFiles : public FileSystem {
  public:
    TargetKind kindOf(const std::string& path) override {
        struct stat status = {};
        if (stat(systemPath(path).c_str(), &status) != 0)
            return TargetKind::missing;
        if (S_ISDIR(status.st_mode))
            return TargetKind::folder;
        if (!S_ISREG(status.st_mode))
            return TargetKind::device;
        return (status.st_mode & S_IWUSR) == 0 ? TargetKind::readOnlyFile : TargetKind::file;
    }
    std::unique_ptr<OutputFile> createBeside(const std::string& path) override {
        static std::uint32_t count = static_cast<std::uint32_t>(getpid()) << 16;
        const std::string folder = systemPath(GetFilePath(path));
        for (;;) {
            // Complete except for the file, which would stay if memory ran out after it was made.
            auto fresh = std::make_unique<PortableOutput>(-1, folder + files::temporaryFileName(count++));
            const int file = open(fresh->path().c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
            if (file >= 0) {
                fresh->take(file);
                return fresh;
            }
            if (errno != EEXIST)
                fail(errno, path);
        }
    }
    std::unique_ptr<OutputFile> openDevice(const std::string& path) override {
        const int file = open(systemPath(path).c_str(), O_WRONLY | O_CLOEXEC | O_NONBLOCK);
        if (file < 0)
            fail(errno, path);
        return std::make_unique<PortableOutput>(file, path);
    }
    void replace(const std::string& fresh, const std::string& target) override {
        if (rename(systemPath(fresh).c_str(), systemPath(target).c_str()) != 0)
            fail(errno, target);
    }
    void remove(const std::string& path) override {
        // The name as it is needs no memory, which may be what the file is deleted for.
        if (unlink(path.c_str()) != 0 && unlink(systemPath(path).c_str()) != 0)
            fail(errno, path);
    }
};

} // namespace

FileSystem& systemFiles() {
    static PortableFiles files;
    return files;
}

bool FileExists(const std::string& path) {
    struct stat status = {};
    const std::string name = systemPath(path);
    if (name.empty() || hasZero(path) || stat(name.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
        return false;
    return access(name.c_str(), R_OK) == 0;
}

std::string readWholeFile(const std::string& path) {
    if (hasZero(path))
        throw RuntimeError(RuntimeErrorNumber::badFileNameOrNumber, path.c_str());
    const InputFile file(open(systemPath(path).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (file.number() < 0)
        fail(errno, path);
    struct stat status = {};
    if (fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode))
        fail(S_ISDIR(status.st_mode) ? EISDIR : EACCES, path);
    std::string bytes;
    std::array<char, 65536> buffer{};
    for (;;) {
        const ssize_t count = read(file.number(), buffer.data(), buffer.size());
        if (count < 0)
            fail(errno, path);
        if (count == 0)
            return bytes;
        bytes.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

void deleteFile(const std::string& path) {
    systemFiles().remove(path);
}

std::vector<FolderEntry> listFolder(const std::string& folder, const std::string& pattern) {
    std::vector<FolderEntry> entries;
    const std::string base = systemPath(folder);
    const Folder directory(opendir(base.c_str()));
    if (directory == nullptr)
        return entries;
    const std::string match = pattern == "*.*" ? "*" : pattern;
    while (const dirent* const found = readdir(directory.get())) {
        const std::string name = &found->d_name[0];
        struct stat status = {};
        if (name == "." || name == ".." || stat((base + name).c_str(), &status) != 0 ||
            fnmatch(match.c_str(), name.c_str(), FNM_CASEFOLD) != 0)
            continue;
        const bool isFolder = S_ISDIR(status.st_mode);
        entries.push_back({name, isFolder ? 0U : static_cast<std::uint64_t>(status.st_size), isFolder});
    }
    return entries;
}

} // namespace tavrel
