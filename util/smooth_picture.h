// Small pictures with smooth edges, drawn when they are needed and at the size that the screen asks for.
#pragma once

#include <functional>
#include <windows.h>

namespace tavrel {

/// Calls `draw` with a device context `side` * smoothPictureScale pixels wide and high, filled with
/// `background`, and gives back what it drew, shrunk to `side` pixels: each pixel is the mean of those that
/// it stands for. The caller owns the bitmap; null when there is no memory for it.
HBITMAP makeSmoothPicture(int side, COLORREF background, const std::function<void(HDC)>& draw);

constexpr int smoothPictureScale = 4;

} // namespace tavrel
