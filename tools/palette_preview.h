// Rows of 16 coloured fields, in owner-drawn controls.
#pragma once

#include "tools/palette/msx_palette.h"

#include <optional>
#include <windows.h>

namespace tavrel {

/// The colours of a file, with their numbers. Empty fields without a palette.
void drawPaletteBefore(const DRAWITEMSTRUCT& item, const std::optional<RgbPalette>& palette);

/// The colours that the video processor shows, with their values of red, green and blue as three digits.
void drawPaletteAfter(const DRAWITEMSTRUCT& item, const std::optional<RgbPalette>& palette);

} // namespace tavrel
