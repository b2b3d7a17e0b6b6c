// The colour table of a 16-colour BMP image.
#pragma once

#include "tools/palette/msx_palette.h"
#include "util/message_boxes.h"

#include <array>
#include <cstdint>
#include <string>

namespace tavrel {

/// A colour as a BMP file stores it.
struct RgbQuad {
    std::uint8_t blue = 0;
    std::uint8_t green = 0;
    std::uint8_t red = 0;
    std::uint8_t reserved = 0;
    bool operator==(const RgbQuad&) const = default;
};

using BmpPalette = std::array<RgbQuad, paletteSize>;

/// Reads the 16 colours behind a header of 40 bytes, whatever the header says but for the colour depth:
/// neither the type "BM", nor the header's size, nor the count of colours is looked at. True when `palette`
/// has been filled. An image of another depth is refused with a message; a file that is missing or too short
/// without one. `palette` is then as it was.
bool readBmpPalette(const std::string& path, BmpPalette& palette, MessageBoxes& messages);

} // namespace tavrel
