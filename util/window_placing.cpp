#include "util/window_placing.h"

namespace tavrel {

namespace {

TwipsRectangle windowInTwips(HWND window, const ScreenScale& scale) {
    RECT pixels = {};
    GetWindowRect(window, &pixels);
    return {scale.toTwipsX(pixels.left), scale.toTwipsY(pixels.top),
            scale.toTwipsX(pixels.right - pixels.left), scale.toTwipsY(pixels.bottom - pixels.top)};
}

} // namespace

ScreenScale screenScale() {
    HDC const screen = GetDC(nullptr);
    ScreenScale scale;
    scale.pixelsPerInchX = GetDeviceCaps(screen, LOGPIXELSX);
    scale.pixelsPerInchY = GetDeviceCaps(screen, LOGPIXELSY);
    ReleaseDC(nullptr, screen);
    return scale;
}

void CenterForm(HWND owner, HWND dialog) {
    const ScreenScale scale = screenScale();
    const TwipsRectangle placed = centredOver(windowInTwips(owner, scale), windowInTwips(dialog, scale));
    SetWindowPos(dialog, nullptr, scale.toPixelsX(placed.left), scale.toPixelsY(placed.top), 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void SetTopMost(HWND window, bool on) {
    const ScreenScale scale = screenScale();
    const TwipsRectangle place = windowInTwips(window, scale);
    SetWindowPos(window, on ? HWND_TOPMOST : HWND_NOTOPMOST, scale.toPixelsX(place.left),
                 scale.toPixelsY(place.top), scale.toPixelsX(place.width), scale.toPixelsY(place.height), 0);
}

} // namespace tavrel
