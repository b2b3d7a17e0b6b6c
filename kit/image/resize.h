// Bringing a picture to the size of a screen.
#pragma once

#include "image/colour.h"

namespace image {

enum class Resize {
    fit,     ///< all of the picture, black bars beside it
    fill,    ///< all of the screen, the picture's edges cut off
    stretch, ///< both, whatever becomes of circles
};

/// The picture in `width` times `height` pixels. `pixelAspect` is the width of a screen pixel divided by its
/// height. A picture without pixels becomes black.
Raster<Light> resized(const Picture& picture, int width, int height, double pixelAspect, Resize how);

} // namespace image
