#include "image/views.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace image {

void drawPicture(const DRAWITEMSTRUCT& item, const Picture& picture, double pixelAspect) {
    HDC const context = item.hDC;
    const RECT& area = item.rcItem;
    FillRect(context, &area, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
    if (picture.width == 0 || picture.height == 0)
        return;
    const double naturalWidth = picture.width * pixelAspect;
    double scale = std::min((area.right - area.left) / naturalWidth,
                            static_cast<double>(area.bottom - area.top) / picture.height);
    if (scale > 1)
        scale = std::floor(scale);
    const int width = std::max(1, static_cast<int>(naturalWidth * scale));
    const int height = std::max(1, static_cast<int>(picture.height * scale));
    std::vector<DWORD> pixels;
    pixels.reserve(picture.pixels.size());
    for (const Rgb& colour : picture.pixels)
        pixels.push_back(static_cast<DWORD>(colour.red << 16 | colour.green << 8 | colour.blue));
    BITMAPINFO format = {};
    format.bmiHeader.biSize = sizeof format.bmiHeader;
    format.bmiHeader.biWidth = picture.width;
    format.bmiHeader.biHeight = -picture.height; // the uppermost row first
    format.bmiHeader.biPlanes = 1;
    format.bmiHeader.biBitCount = 32;
    const bool shrinks = width < picture.width || height < picture.height;
    SetStretchBltMode(context, shrinks ? HALFTONE : COLORONCOLOR);
    SetBrushOrgEx(context, 0, 0, nullptr); // the half-tone mode asks for it
    StretchDIBits(context, (area.left + area.right - width) / 2, (area.top + area.bottom - height) / 2, width,
                  height, 0, 0, picture.width, picture.height, pixels.data(), &format, DIB_RGB_COLORS,
                  SRCCOPY);
}

} // namespace image
