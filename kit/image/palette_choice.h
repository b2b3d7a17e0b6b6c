// Choosing the colours for a picture.
#pragma once

#include "image/colour.h"
#include "image/screens.h"

#include <vector>

namespace image {

/// The `count` of the video processor's 512 colours that are nearest to the picture's in the mean, darkest
/// first. Fewer when the picture needs fewer; at least one.
std::vector<MsxColour> choosePalette(const Raster<Light>& picture, std::size_t count);

} // namespace image
