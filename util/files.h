// Files, with failures as the classic runtime's errors. Paths are Windows paths in the ANSI code page;
// outside Windows (tests) a backslash in a path stands for the system's separator.
#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace tavrel {

/// True when the file can be opened for reading: a folder, a locked file and an empty path count as missing.
bool FileExists(const std::string& path);

/// All bytes of a file. Throws RuntimeError 53, 57, 70, 75 or 76.
std::string readWholeFile(const std::string& path);

/// Makes `bytes` the file's content, or leaves the old file as it was and throws RuntimeError (52, 57, 61,
/// 70, 75, 76): a new file is written beside it, flushed, closed, and then put in its place by one rename.
void writeWholeFile(const std::string& path, std::string_view bytes);

/// As writeWholeFile, but does not wait until the bytes are on the disk: for a file that is made anew
/// whenever it is needed, and whose loss in a power cut harms nobody.
void writeTemporaryFile(const std::string& path, std::string_view bytes);

/// Deletes a file. Throws RuntimeError 53, 70, 75 or 76.
void deleteFile(const std::string& path);

/// Deletes a file if that is possible; says nothing otherwise.
void deleteFileIfPossible(const std::string& path) noexcept;

/// Deletes the unfinished files in a folder that a save left there which was killed. One that another program
/// is writing just now stays.
void deleteUnfinishedFiles(const std::string& folder);

/// Copies a file over an existing one. Throws RuntimeError with the path that failed.
void copyFile(const std::string& from, const std::string& to);

struct FolderEntry {
    std::string name;
    std::uint64_t size = 0; ///< bytes; 0 for a folder
    bool isFolder = false;
    bool isLink = false; ///< what it leads to lies elsewhere, or is a folder above
};

/// The entries of a folder (which ends in a backslash) that match a pattern such as "*.*" or "*.pas", without
/// "." and ".."; hidden and system files count. A folder that cannot be listed has no entries.
std::vector<FolderEntry> listFolder(const std::string& folder, const std::string& pattern);

/// Total size in bytes of the files that match `pattern` in `folder`, with those of all folders below when
/// `recurse` is set. The folder may come without its final backslash. Links to folders are not followed. The
/// counting ends once the total is above `limit`.
std::uint64_t GetFolderSize(const std::string& folder, const std::string& pattern, bool recurse,
                            std::uint64_t limit = std::numeric_limits<std::uint64_t>::max());

} // namespace tavrel
