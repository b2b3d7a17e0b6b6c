#include "util/files.h"

#include "util/paths.h"
#include "util/runtime_error.h"

namespace tavrel {

void deleteFileIfPossible(const std::string& path) noexcept {
    try {
        deleteFile(path);
    } catch (const RuntimeError&) {
        // The caller asked for silence: the file is a left-over that does no harm.
    }
}

void copyFile(const std::string& from, const std::string& to) {
    writeWholeFile(to, readWholeFile(from));
}

std::uint64_t GetFolderSize(const std::string& folder, const std::string& pattern, bool recurse) {
    const std::string base = AddBackslash(folder);
    std::uint64_t total = 0;
    for (const FolderEntry& entry : listFolder(base, pattern)) {
        if (!entry.isFolder)
            total += entry.size;
    }
    if (recurse) {
        for (const FolderEntry& entry : listFolder(base, "*")) {
            if (entry.isFolder)
                total += GetFolderSize(base + entry.name, pattern, true);
        }
    }
    return total;
}

} // namespace tavrel
