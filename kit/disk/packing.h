// What goes onto a disk that does not take everything.
#pragma once

#include "disk/disk_image.h"

#include <ctime>
#include <string>
#include <vector>

namespace disk {

/// A file of the host, read and named for the disk.
struct PackedFile {
    NewFile file;
    std::string path;        ///< on the host, for messages
    bool named = false;      ///< by the user, and not found by a pattern
    std::time_t written = 0; ///< on the host
};

struct LeftOut {
    std::string path;
    std::string reason;
};

/// Adds the files that the disk takes. Those that were named come first, and all of them; then the system's
/// files, AUTOEXEC.BAT and the newest program; then other programs and batch files, data, and sources; small
/// files before large ones. @return the others
/// @throws DiskError, and adds nothing, when the disk is damaged or does not take the files that were named,
/// or none at all
std::vector<LeftOut> addWhatFits(DiskImage& image, std::vector<PackedFile> files);

} // namespace disk
