#include "util/files.h"

#include "files/temporary_name.h"
#include "util/file_system.h"
#include "util/paths.h"
#include "util/runtime_error.h"

#include <exception>
#include <memory>

namespace tavrel {

namespace {

FileSystem* replacement = nullptr;

void writeAndClose(OutputFile& file, std::string_view bytes, bool flush) {
    while (!bytes.empty())
        bytes.remove_prefix(file.write(bytes));
    if (flush)
        file.flush();
    file.close();
}

void removeIfPossible(FileSystem& system, const std::string& path) noexcept {
    try {
        system.remove(path);
    } catch (const std::exception&) {
        // The write has failed already; that is what the caller hears of.
    }
}

/// An open file cannot be removed under Windows.
void closeIfPossible(OutputFile& file) noexcept {
    try {
        file.close();
    } catch (...) { // it was closed before
    }
}

/// The new content lies whole beside the old one before it takes its place.
void replaceContent(FileSystem& system, const std::string& path, std::string_view bytes, bool flush) {
    const std::unique_ptr<OutputFile> fresh = system.createBeside(path);
    try {
        writeAndClose(*fresh, bytes, flush);
        system.replace(fresh->path(), path);
    } catch (...) { // memory may run out too
        closeIfPossible(*fresh);
        removeIfPossible(system, fresh->path());
        throw;
    }
}

void writeFile(const std::string& path, std::string_view bytes, bool flush) {
    if (path.empty() || path.find('\0') != std::string::npos)
        throw RuntimeError(RuntimeErrorNumber::badFileNameOrNumber, path.c_str());
    FileSystem& system = currentFileSystem();
    try {
        switch (system.kindOf(path)) {
        case TargetKind::folder:
        case TargetKind::readOnlyFile: // a rename would replace it without a word
            throw RuntimeError(RuntimeErrorNumber::pathFileAccessError);
        case TargetKind::device: // cannot be replaced by a file
            writeAndClose(*system.openDevice(path), bytes, false);
            break;
        case TargetKind::missing:
        case TargetKind::file:
            replaceContent(system, path, bytes, flush);
            break;
        }
    } catch (const RuntimeError& error) {
        throw RuntimeError(error.number(), path); // not the name of a file that the user does not know
    }
}

} // namespace

FileSystem& currentFileSystem() {
    return replacement == nullptr ? systemFiles() : *replacement;
}

void useFileSystem(FileSystem* other) noexcept {
    replacement = other;
}

void writeWholeFile(const std::string& path, std::string_view bytes) {
    writeFile(path, bytes, true);
}

void writeTemporaryFile(const std::string& path, std::string_view bytes) {
    writeFile(path, bytes, false);
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
