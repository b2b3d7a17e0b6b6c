#include "files/host_files.h"

#include "files/file_system.h"

#include <exception>
#include <memory>

namespace files {

namespace {

FileSystem* replacement = nullptr;

void writeAndClose(OutputFile& file, std::string_view bytes, const WriteOptions& options) {
    while (!bytes.empty())
        bytes.remove_prefix(file.write(bytes));
    if (options.flush)
        file.flush();
    if (options.time)
        file.setTime(*options.time);
    file.close();
}

/// The write has failed already, and that is what the caller is to hear of. An open file cannot be deleted
/// under Windows.
void discard(FileSystem& system, OutputFile& file) noexcept {
    try {
        file.close();
    } catch (...) { // it was closed before
    }
    try {
        system.remove(file.path());
    } catch (...) { // it stays as a temporary file, which the next clean-up deletes
    }
}

/// The new content is complete in its own file before it takes the old one's place.
void replaceContent(FileSystem& system, const Path& path, std::string_view bytes,
                    const WriteOptions& options) {
    const std::unique_ptr<OutputFile> fresh = system.createBeside(path);
    try {
        writeAndClose(*fresh, bytes, options);
        system.replace(fresh->path(), path);
    } catch (...) { // memory may run out too
        discard(system, *fresh);
        throw;
    }
}

void writeToDevice(FileSystem& system, const Path& path, std::string_view bytes,
                   const WriteOptions& options) {
    if (!options.devices)
        throw FileError(Reason::notAFile, path);
    const std::unique_ptr<OutputFile> device = system.openDevice(path);
    writeAndClose(*device, bytes, {.flush = false});
}

} // namespace

FileSystem& currentFileSystem() {
    return replacement == nullptr ? systemFiles() : *replacement;
}

void useFileSystem(FileSystem* other) noexcept {
    replacement = other;
}

void writeWholeFile(const Path& path, std::string_view bytes, const WriteOptions& options) {
    if (path.empty() || path.native().find(Path::value_type{}) != Path::string_type::npos)
        throw FileError(Reason::badName, path);
    FileSystem& system = currentFileSystem();
    switch (system.kindOf(path)) {
    case TargetKind::missing:
    case TargetKind::file:
        return replaceContent(system, path, bytes, options);
    case TargetKind::device: // a file cannot take its place
        return writeToDevice(system, path, bytes, options);
    case TargetKind::writeProtected: // the rename would replace it without a word
        throw FileError(Reason::writeProtected, path);
    case TargetKind::folder:
        throw FileError(Reason::folder, path);
    case TargetKind::link: // neither written through nor replaced: both would surprise its owner
        throw FileError(Reason::link, path);
    case TargetKind::other:
        break;
    }
    throw FileError(Reason::notAFile, path);
}

void writeWholeFile(const Path& path, std::span<const std::uint8_t> bytes, const WriteOptions& options) {
    const char* const begin = bytes.empty() ? "" : reinterpret_cast<const char*>(bytes.data());
    writeWholeFile(path, std::string_view(begin, bytes.size()), options);
}

} // namespace files
