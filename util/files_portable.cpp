// Files outside Windows, for tests of the pure code.
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
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tavrel {

namespace {

/// The path with the system's separators. As Windows would, its last name is matched without regard to case
/// and blanks at its end do not count.
std::string systemPath(std::string path) {
    path.erase(path.find_last_not_of(' ') + 1);
    std::replace(path.begin(), path.end(), '\\', '/');
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos || access(path.c_str(), F_OK) == 0)
        return path;
    const std::string folder = path.substr(0, slash + 1);
    DIR* const directory = opendir(folder.c_str());
    if (directory == nullptr)
        return path;
    while (const dirent* const found = readdir(directory)) {
        if (strcasecmp(&found->d_name[0], path.c_str() + slash + 1) == 0) {
            path = folder + &found->d_name[0];
            break;
        }
    }
    closedir(directory);
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

[[noreturn]] void fail(int code, const std::string& path) {
    throw RuntimeError(errorNumber(code, path), path);
}

/// Writes, flushes and closes; 0 or the error code. The descriptor is closed in any case.
int writeAndClose(int file, std::string_view bytes) {
    int error = 0;
    while (!bytes.empty() && error == 0) {
        const ssize_t count = write(file, bytes.data(), bytes.size());
        if (count < 0)
            error = errno;
        else
            bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    if (error == 0 && fsync(file) != 0 && errno != EINVAL)
        error = errno;
    if (close(file) != 0 && error == 0)
        error = errno;
    return error;
}

} // namespace

bool FileExists(const std::string& path) {
    struct stat status = {};
    const std::string name = systemPath(path);
    if (name.empty() || stat(name.c_str(), &status) != 0 || S_ISDIR(status.st_mode))
        return false;
    return access(name.c_str(), R_OK) == 0;
}

std::string readWholeFile(const std::string& path) {
    const int file = open(systemPath(path).c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0)
        fail(errno, path);
    std::string bytes;
    std::array<char, 65536> buffer{};
    for (;;) {
        const ssize_t count = read(file, buffer.data(), buffer.size());
        if (count < 0) {
            const int error = errno;
            close(file);
            fail(error, path);
        }
        if (count == 0)
            break;
        bytes.append(buffer.data(), static_cast<std::size_t>(count));
    }
    close(file);
    return bytes;
}

void writeWholeFile(const std::string& path, std::string_view bytes) {
    const std::string target = systemPath(path);
    struct stat status = {};
    const bool exists = stat(target.c_str(), &status) == 0;
    if (exists && S_ISDIR(status.st_mode))
        throw RuntimeError(RuntimeErrorNumber::pathFileAccessError, path);
    if (exists && !S_ISREG(status.st_mode)) { // a device cannot be replaced by a file
        const int device = open(target.c_str(), O_WRONLY | O_CLOEXEC);
        const int error = device < 0 ? errno : writeAndClose(device, bytes);
        if (error != 0)
            fail(error, path);
        return;
    }
    if (exists && (status.st_mode & S_IWUSR) == 0)
        throw RuntimeError(RuntimeErrorNumber::pathFileAccessError, path);
    std::string fresh = systemPath(GetFilePath(path)) + "~tavXXXXXX";
    const int file = mkstemp(fresh.data());
    if (file < 0)
        fail(errno, path);
    int error = writeAndClose(file, bytes);
    if (error == 0 && rename(fresh.c_str(), target.c_str()) != 0)
        error = errno;
    if (error != 0) {
        unlink(fresh.c_str());
        fail(error, path);
    }
}

void deleteFile(const std::string& path) {
    if (unlink(systemPath(path).c_str()) != 0)
        fail(errno, path);
}

std::vector<FolderEntry> listFolder(const std::string& folder, const std::string& pattern) {
    std::vector<FolderEntry> entries;
    const std::string base = systemPath(folder);
    DIR* const directory = opendir(base.c_str());
    if (directory == nullptr)
        return entries;
    const std::string match = pattern == "*.*" ? "*" : pattern;
    while (const dirent* const found = readdir(directory)) {
        const std::string name = &found->d_name[0];
        struct stat status = {};
        if (name == "." || name == ".." || stat((base + name).c_str(), &status) != 0 ||
            fnmatch(match.c_str(), name.c_str(), FNM_CASEFOLD) != 0)
            continue;
        const bool isFolder = S_ISDIR(status.st_mode);
        entries.push_back({name, isFolder ? 0U : static_cast<std::uint64_t>(status.st_size), isFolder});
    }
    closedir(directory);
    return entries;
}

} // namespace tavrel
