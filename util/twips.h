// Window positions are kept in twips (1440 to the inch) and shown in the screen's real pixels.
#pragma once

namespace tavrel {

/// The screen's pixels per inch in both directions.
struct ScreenScale {
    int pixelsPerInchX = 96;
    int pixelsPerInchY = 96;

    double twipsPerPixelX() const { return 1440.0 / pixelsPerInchX; }
    double twipsPerPixelY() const { return 1440.0 / pixelsPerInchY; }
    double toTwipsX(int pixels) const { return pixels * twipsPerPixelX(); }
    double toTwipsY(int pixels) const { return pixels * twipsPerPixelY(); }
    /// Nearest pixel, a half to the even one.
    int toPixelsX(double twips) const;
    int toPixelsY(double twips) const;
};

/// Left and top of a dialog centred over its owner, in twips; partly off screen when the owner is.
struct TwipsRectangle {
    double left = 0;
    double top = 0;
    double width = 0;
    double height = 0;
};
TwipsRectangle centredOver(const TwipsRectangle& owner, const TwipsRectangle& dialog);

} // namespace tavrel
