#include "util/files.h"

#include "util/host_path.h"

#include <memory>
#include <windows.h>

namespace tavrel {

namespace {

struct SearchCloser {
    using pointer = HANDLE;
    void operator()(HANDLE search) const { FindClose(search); }
};
using SearchHandle = std::unique_ptr<HANDLE, SearchCloser>;

} // namespace

files::Path hostPath(const std::string& path) {
    const int size = static_cast<int>(path.size());
    const int length = MultiByteToWideChar(CP_ACP, 0, path.data(), size, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(CP_ACP, 0, path.data(), size, wide.data(), length);
    return wide;
}

std::vector<FolderEntry> listFolder(const std::string& folder, const std::string& pattern) {
    std::vector<FolderEntry> entries;
    WIN32_FIND_DATAA data = {};
    HANDLE const first = FindFirstFileA((folder + pattern).c_str(), &data);
    if (first == INVALID_HANDLE_VALUE)
        return entries;
    const SearchHandle search(first);
    do {
        const std::string name = &data.cFileName[0];
        if (name == "." || name == "..")
            continue;
        const bool isFolder = (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        const std::uint64_t size = (static_cast<std::uint64_t>(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
        const bool isLink = (data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
        entries.push_back({name, isFolder ? 0U : size, isFolder, isLink});
    } while (FindNextFileA(search.get(), &data) != 0);
    return entries;
}

} // namespace tavrel
