// Pictures in owner-drawn controls.
#pragma once

#include "image/picture.h"

#include <windows.h>

namespace image {

/// Draws a picture as large as the control allows, by a whole factor when it is magnified, on black. An empty
/// picture leaves the control black. `pixelAspect` is the width of a pixel divided by its height.
void drawPicture(const DRAWITEMSTRUCT& item, const Picture& picture, double pixelAspect);

} // namespace image
