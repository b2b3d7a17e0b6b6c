// The five most recently opened files.
#pragma once

#include "settings/settings.h"

#include <string>

namespace tavrel {

/// Puts a path at the head of the list, unless it is in the list already (compared without regard to case):
/// such a list keeps its order. True when the list changed.
bool addToRecentList(Settings& settings, const std::string& path);

/// Takes the entry with this index (from 0) out; later entries move up by one.
void removeFromRecentList(Settings& settings, std::size_t index);

} // namespace tavrel
