#include "disk/host_files.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace disk {

namespace {

[[noreturn]] void fail(const Path& path, int error) {
    throw HostError(textOf(path) + ": " + std::generic_category().message(error));
}

/// 0 or the error number.
int writeAll(int file, const Bytes& content) {
    std::size_t done = 0;
    while (done < content.size()) {
        const ssize_t count = write(file, content.data() + done, content.size() - done);
        if (count < 0 && errno != EINTR)
            return errno;
        done += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    return 0;
}

/// Writes, flushes and closes; 0 or the error number.
int complete(int file, const Bytes& content, std::optional<std::time_t> time) {
    int error = writeAll(file, content);
    if (error == 0 && fsync(file) != 0)
        error = errno;
    if (error == 0 && time) {
        const std::array<timespec, 2> times = {timespec{*time, 0}, timespec{*time, 0}};
        if (futimens(file, times.data()) != 0)
            error = errno;
    }
    if (close(file) != 0 && error == 0)
        error = errno;
    return error;
}

} // namespace

std::time_t timeOf(const Path& path) {
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0)
        fail(path, errno);
    return status.st_mtime;
}

void writeFileSafely(const Path& path, const Bytes& content, std::optional<std::time_t> time) {
    std::error_code ignored;
    const Path resolved = std::filesystem::canonical(path, ignored); // else a link would be replaced
    const Path target = resolved.empty() ? path : resolved;
    struct stat status = {};
    const bool exists = stat(target.c_str(), &status) == 0;
    if (!exists && errno != ENOENT) // a device might be taken for no file, and replaced
        fail(path, errno);
    if (exists && !S_ISREG(status.st_mode))
        throw HostError(textOf(path) + ": this is not an ordinary file");
    if (exists && (status.st_mode & S_IWUSR) == 0)
        throw HostError(textOf(path) + ": the file is write-protected");
    Path fresh;
    int file = -1;
    for (int attempt = 0; file < 0; ++attempt) {
        fresh = target;
        fresh += "." + std::to_string(getpid()) + "-" + std::to_string(attempt) + ".new";
        file = open(fresh.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (file < 0 && errno != EEXIST)
            fail(path, errno);
    }
    if (exists)
        static_cast<void>(fchmod(file, status.st_mode & 0777)); // not every file system has modes
    int error = complete(file, content, time);
    if (error == 0 && rename(fresh.c_str(), target.c_str()) != 0)
        error = errno;
    if (error != 0) {
        unlink(fresh.c_str());
        fail(path, error);
    }
}

} // namespace disk
