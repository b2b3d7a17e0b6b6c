// Making folders.
#pragma once

#include <string>

namespace tavrel {

/// Makes a folder, whose parent must be there. True when it is there afterwards.
bool makeFolder(const std::string& path);

} // namespace tavrel
