// Choosing the colours for a picture.
#pragma once

#include "image/colour.h"
#include "image/screens.h"

#include <vector>

namespace image {

/// The `count` of the video processor's 512 colours that are nearest to the picture's in the mean, darkest
/// first. Fewer when the picture needs fewer; at least one. `spread` moves the picture's colours away from
/// their mean before: mixtures lie between the colours that are mixed, so for dithering these must lie
/// further out.
std::vector<MsxColour> choosePalette(const Raster<Light>& picture, std::size_t count, float spread = 1);

} // namespace image
