// The calls of a POSIX system.
#include "files/file_system.h"
#include "files/host_files.h"
#include "files/temporary_name.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace files {

namespace {

constexpr mode_t rightsOfNewFiles = 0666; // less what the user's mask takes out
constexpr mode_t rightsMask = 0777;

Reason reasonOf(int code) {
    switch (code) {
    case ENOENT:
        return Reason::fileNotFound;
    case ENOTDIR:
        return Reason::folderNotFound;
    case EISDIR:
        return Reason::folder;
    case ENOSPC:
    case EFBIG:
    case EDQUOT:
        return Reason::diskFull;
    case EIO:
        return Reason::device;
    case ETXTBSY:
        return Reason::inUse;
    case ENAMETOOLONG:
        return Reason::badName;
    default:
        return Reason::refused;
    }
}

Path folderOf(const Path& path) {
    const Path folder = path.parent_path();
    return folder.empty() ? Path(".") : folder;
}

[[noreturn]] void fail(int code, const Path& path) {
    Reason reason = reasonOf(code);
    struct stat status = {};
    if (reason == Reason::fileNotFound && stat(folderOf(path).c_str(), &status) != 0)
        reason = Reason::folderNotFound;
    throw FileError(reason, path, code);
}

/// An open file that is closed at the end.
class OpenFile {
  public:
    explicit OpenFile(int number) : number_(number) {}
    ~OpenFile() {
        if (number_ >= 0)
            ::close(number_);
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    int number() const { return number_; }

  private:
    int number_;
};

class PosixOutput : public OutputFile {
  public:
    explicit PosixOutput(Path path) : path_(std::move(path)) {}
    ~PosixOutput() override {
        if (file_ >= 0)
            ::close(file_);
    }
    PosixOutput(const PosixOutput&) = delete;
    PosixOutput& operator=(const PosixOutput&) = delete;

    void take(int file) { file_ = file; }
    const Path& path() const override { return path_; }
    std::size_t write(std::string_view bytes) override {
        ssize_t count = 0;
        do {
            count = ::write(file_, bytes.data(), bytes.size());
        } while (count < 0 && errno == EINTR);
        if (count <= 0)
            fail(count < 0 ? errno : ENOSPC, path_);
        return static_cast<std::size_t>(count);
    }
    void flush() override {
        if (fsync(file_) != 0)
            fail(errno, path_);
    }
    void setTime(std::time_t time) override {
        const std::array<timespec, 2> times = {timespec{time, 0}, timespec{time, 0}};
        if (futimens(file_, times.data()) != 0)
            fail(errno, path_);
    }
    void close() override {
        if (::close(std::exchange(file_, -1)) != 0)
            fail(errno, path_);
    }

  private:
    int file_ = -1;
    Path path_;
};

TargetKind kindOfDevice(const struct stat& status) {
    return S_ISCHR(status.st_mode) || S_ISFIFO(status.st_mode) ? TargetKind::device : TargetKind::other;
}

/// A link such as /dev/stdout leads to where the user wants the bytes. One to a file, or to nothing yet, may
/// be somebody else's trap.
TargetKind kindOfLink(const Path& path) {
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0 || S_ISREG(status.st_mode))
        return TargetKind::link;
    return S_ISDIR(status.st_mode) ? TargetKind::folder : kindOfDevice(status);
}

class PosixFiles : public FileSystem {
  public:
    TargetKind kindOf(const Path& path) override {
        struct stat status = {};
        if (lstat(path.c_str(), &status) != 0) {
            if (errno != ENOENT) // a device, say, must not be taken for nothing and be replaced
                fail(errno, path);
            return TargetKind::missing;
        }
        if (S_ISLNK(status.st_mode))
            return kindOfLink(path);
        if (S_ISDIR(status.st_mode))
            return TargetKind::folder;
        if (!S_ISREG(status.st_mode))
            return kindOfDevice(status);
        return (status.st_mode & S_IWUSR) == 0 ? TargetKind::writeProtected : TargetKind::file;
    }

    std::unique_ptr<OutputFile> createBeside(const Path& path) override {
        static std::uint32_t count = static_cast<std::uint32_t>(getpid()) << 16;
        const Path folder = path.parent_path();
        for (;;) {
            // Complete except for the file, which would stay if memory ran out after it was made.
            auto fresh = std::make_unique<PosixOutput>(folder / temporaryFileName(count++));
            // A name that a link has counts as used.
            const int file =
                open(fresh->path().c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, rightsOfNewFiles);
            if (file >= 0) {
                fresh->take(file);
                struct stat status = {};
                if (lstat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode))
                    static_cast<void>(fchmod(file, status.st_mode & rightsMask)); // not all systems have them
                return fresh;
            }
            if (errno != EEXIST)
                fail(errno, path);
        }
    }

    std::unique_ptr<OutputFile> openDevice(const Path& path) override {
        auto device = std::make_unique<PosixOutput>(path);
        // A pipe that nobody reads answers at once; one that is read may take its time afterwards.
        const int file = open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
        if (file < 0)
            fail(errno, path);
        device->take(file);
        if (fcntl(file, F_SETFL, 0) != 0)
            fail(errno, path);
        return device;
    }

    void replace(const Path& fresh, const Path& target) override {
        if (rename(fresh.c_str(), target.c_str()) != 0)
            fail(errno, target);
    }

    void remove(const Path& path) override {
        if (unlink(path.c_str()) != 0)
            fail(errno, path);
    }
};

std::unique_ptr<OpenFile> openForReading(const Path& path) {
    if (path.native().find('\0') != std::string::npos) // the system would read the name up to there
        throw FileError(Reason::badName, path);
    auto file = std::make_unique<OpenFile>(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
    if (file->number() < 0)
        fail(errno, path);
    struct stat status = {};
    if (fstat(file->number(), &status) != 0)
        fail(errno, path);
    if (S_ISDIR(status.st_mode))
        throw FileError(Reason::folder, path);
    if (!S_ISREG(status.st_mode)) // a device may give bytes without end
        throw FileError(Reason::notAFile, path);
    return file;
}

} // namespace

FileSystem& systemFiles() {
    static PosixFiles files;
    return files;
}

bool canBeRead(const Path& path) {
    try {
        openForReading(path);
        return true;
    } catch (const FileError&) {
        return false;
    }
}

std::string readWholeFile(const Path& path, std::size_t atMost) {
    const std::unique_ptr<OpenFile> file = openForReading(path);
    std::string bytes;
    std::array<char, 65536> buffer{};
    for (;;) {
        const ssize_t count = read(file->number(), buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            fail(errno, path);
        if (count == 0)
            return bytes;
        if (static_cast<std::size_t>(count) > atMost - bytes.size())
            throw FileError(Reason::tooLarge, path);
        bytes.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

std::time_t timeOf(const Path& path) {
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0)
        fail(errno, path);
    return status.st_mtime;
}

} // namespace files
