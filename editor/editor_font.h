// Which installed font stands in for the one of the settings.
#pragma once

#include <string>

namespace tavrel {

struct EditorFont {
    std::string face;
    int characterSet = 0; ///< OEM where the face has it, for the frames and accents of DOS sources
    bool raster = false;  ///< drawn dot by dot: its bold is wider, and columns would break
    bool operator==(const EditorFont&) const = default;
};

/// The wanted font when it is installed, else a fixed-pitch one that is.
EditorFont installedEditorFont(const std::string& wanted);

} // namespace tavrel
