// Two running programs share one settings file.
#pragma once

#include "settings/settings.h"

namespace tavrel {

/// What is to be stored when this program has changed its settings from `former` (as it last read or stored
/// them) to `mine`, and the file now holds `stored`: each field that this program changed is its own, every
/// other one is the file's. Recent files that it added come before the file's; one that it removed goes.
Settings mergeSettings(const Settings& former, const Settings& mine, const Settings& stored);

} // namespace tavrel
