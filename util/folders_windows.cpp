#include "util/folders.h"

#include <windows.h>

namespace tavrel {

bool makeFolder(const std::string& path) {
    if (CreateDirectoryA(path.c_str(), nullptr) != 0)
        return true;
    const DWORD attributes = GetFileAttributesA(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

} // namespace tavrel
