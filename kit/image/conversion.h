// A picture converted to a screen.
#pragma once

#include "image/encoder.h"
#include "image/resize.h"

#include <optional>

namespace image {

struct Options {
    int screen = 5; ///< one that findScreen knows
    Dither dither = Dither::errorDiffusion;
    Resize resize = Resize::fit;
    std::optional<MsxPalette> palette = {}; ///< the best colours are chosen when it is missing
};

struct Conversion {
    const Screen* screen = nullptr;
    MsxPalette palette = {};          ///< as far as the screen has one
    std::vector<std::uint8_t> memory; ///< the screen's memoryBytes
    Picture preview;                  ///< what the screen shows
    Raster<Light> wanted;             ///< the picture in the screen's size
};

/// Converts a picture. The preview is made from the memory, as the video processor would.
Conversion convert(const Picture& picture, const Options& options);

/// The same with a picture that has the screen's size.
Conversion convert(Raster<Light> wanted, const Options& options);

} // namespace image
