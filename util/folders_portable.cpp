// Folders outside Windows, for tests of the pure code.
#include "util/folders.h"

#include <algorithm>
#include <filesystem>

namespace tavrel {

bool makeFolder(const std::string& path) {
    std::error_code error;
    std::string native = path;
    std::replace(native.begin(), native.end(), '\\', '/');
    std::filesystem::create_directory(native, error);
    return std::filesystem::is_directory(native, error);
}

} // namespace tavrel
