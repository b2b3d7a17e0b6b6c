// Names of the host's files and their names on an MSX disk.
#pragma once

#include "msxrun/name83.h"

#include <optional>
#include <string>
#include <string_view>

namespace disk {

using msxrun::Name83;

/// What becomes of a host file's name on the disk.
struct MsxName {
    std::optional<Name83> name; ///< nothing when the disk cannot hold such a name
    bool cut = false;           ///< not all of the host's name is left
    std::string problem;        ///< why there is no name, in words
};

/// The DOS way: in capitals, cut to eight and three characters, without what follows a second point.
MsxName msxNameOf(std::string_view hostName);

/// The name for messages: characters beyond ASCII as '?'.
std::string displayName(const Name83& name);

/// A name under which any host can keep the file: characters that some host does not allow become '_', and
/// names that Windows keeps for devices get one in front.
std::string safeHostName(const Name83& name);

} // namespace disk
