// Paths and folders outside Windows, for tests of the pure code.
#include "util/files.h"

#include "util/host_path.h"

#include <algorithm>
#include <dirent.h>
#include <fnmatch.h>
#include <memory>
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tavrel {

namespace {

struct FolderCloser {
    void operator()(DIR* folder) const { closedir(folder); }
};
using Folder = std::unique_ptr<DIR, FolderCloser>;

} // namespace

files::Path hostPath(const std::string& classicPath) {
    std::string path = classicPath;
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

std::vector<FolderEntry> listFolder(const std::string& folder, const std::string& pattern) {
    std::vector<FolderEntry> entries;
    const std::string base = hostPath(folder);
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
        struct stat own = {};
        const bool isLink = lstat((base + name).c_str(), &own) == 0 && S_ISLNK(own.st_mode);
        const bool isFolder = S_ISDIR(status.st_mode);
        const auto size = isFolder ? 0U : static_cast<std::uint64_t>(status.st_size);
        entries.push_back({name, size, isFolder, isLink});
    }
    return entries;
}

} // namespace tavrel
