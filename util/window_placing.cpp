#include "util/window_placing.h"

#include <bit>

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

ScreenScale windowScale(HWND window) {
    using DpiFunction = UINT(WINAPI*)(HWND);
    static const auto dpiForWindow =
        std::bit_cast<DpiFunction>(GetProcAddress(GetModuleHandleA("user32.dll"), "GetDpiForWindow"));
    const UINT dpi = dpiForWindow != nullptr ? dpiForWindow(window) : 0;
    if (dpi == 0)
        return screenScale();
    return {static_cast<int>(dpi), static_cast<int>(dpi)};
}

HFONT messageFont(const ScreenScale& scale) {
    NONCLIENTMETRICSA metrics = {};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    LOGFONTA description = metrics.lfMessageFont; // at the scale of the first screen
    description.lfHeight =
        MulDiv(static_cast<int>(description.lfHeight), scale.pixelsPerInchY, screenScale().pixelsPerInchY);
    return CreateFontIndirectA(&description);
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
