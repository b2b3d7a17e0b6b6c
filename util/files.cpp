#include "util/files.h"

#include "files/file_system.h"
#include "files/host_files.h"
#include "files/temporary_name.h"
#include "util/host_path.h"
#include "util/paths.h"
#include "util/runtime_error.h"

#include <exception>

namespace tavrel {

namespace {

RuntimeErrorNumber numberOf(files::Reason reason) {
    switch (reason) {
    case files::Reason::badName:
        return RuntimeErrorNumber::badFileNameOrNumber;
    case files::Reason::fileNotFound:
        return RuntimeErrorNumber::fileNotFound;
    case files::Reason::folderNotFound:
        return RuntimeErrorNumber::pathNotFound;
    case files::Reason::inUse:
        return RuntimeErrorNumber::permissionDenied;
    case files::Reason::diskFull:
        return RuntimeErrorNumber::diskFull;
    case files::Reason::device:
        return RuntimeErrorNumber::deviceIoError;
    case files::Reason::folder:
    case files::Reason::link:
    case files::Reason::notAFile:
    case files::Reason::writeProtected:
    case files::Reason::tooLarge:
    case files::Reason::refused:
        break;
    }
    return RuntimeErrorNumber::pathFileAccessError;
}

/// Runs one operation of the library of host files; its failures become those of the classic runtime, with
/// the name that the user knows.
template <typename Operation> auto classically(const std::string& path, const Operation& operation) {
    try {
        return operation();
    } catch (const files::FileError& error) {
        throw RuntimeError(numberOf(error.reason()), path.c_str());
    }
}

void writeFile(const std::string& path, std::string_view bytes, bool flush) {
    classically(path, [&] { files::writeWholeFile(hostPath(path), bytes, {.flush = flush}); });
}

} // namespace

bool FileExists(const std::string& path) {
    return files::canBeRead(hostPath(path));
}

std::string readWholeFile(const std::string& path) {
    return classically(path, [&] { return files::readWholeFile(hostPath(path)); });
}

void writeWholeFile(const std::string& path, std::string_view bytes) {
    writeFile(path, bytes, true);
}

void writeTemporaryFile(const std::string& path, std::string_view bytes) {
    writeFile(path, bytes, false);
}

void deleteFile(const std::string& path) {
    classically(path, [&] { files::systemFiles().remove(hostPath(path)); });
}

void deleteFileIfPossible(const std::string& path) noexcept {
    try {
        deleteFile(path);
    } catch (const std::exception&) {
        // The caller asked for silence: the file is a left-over that does no harm.
    }
}

void deleteUnfinishedFiles(const std::string& folder) {
    const std::string base = AddBackslash(folder);
    for (const FolderEntry& entry : listFolder(base, std::string(files::temporaryFilePattern))) {
        if (!entry.isFolder && files::isTemporaryFileName(entry.name))
            deleteFileIfPossible(base + entry.name);
    }
}

void copyFile(const std::string& from, const std::string& to) {
    writeWholeFile(to, readWholeFile(from));
}

std::uint64_t GetFolderSize(const std::string& folder, const std::string& pattern, bool recurse,
                            std::uint64_t limit) {
    const std::string base = AddBackslash(folder);
    std::uint64_t total = 0;
    for (const FolderEntry& entry : listFolder(base, pattern)) {
        if (!entry.isFolder)
            total += entry.size;
    }
    if (!recurse)
        return total;
    for (const FolderEntry& entry : listFolder(base, "*")) {
        if (total > limit)
            break;
        if (entry.isFolder && !entry.isLink)
            total += GetFolderSize(base + entry.name, pattern, true, limit - total);
    }
    return total;
}

} // namespace tavrel
