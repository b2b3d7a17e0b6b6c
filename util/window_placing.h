// Placing windows over each other.
#pragma once

#include "util/twips.h"

#include <windows.h>

namespace tavrel {

/// The pixels per inch of the screen.
ScreenScale screenScale();

/// The pixels per inch of the screen that a window is on; before Windows 10 all screens have the same.
ScreenScale windowScale(HWND window);

/// The font of Windows' own messages at this scale. The caller owns it.
HFONT messageFont(const ScreenScale& scale);

/// Moves a dialog to the middle of its owner, even when it then lies partly off screen.
void CenterForm(HWND owner, HWND dialog);

/// Keeps a window above all others, or ends that.
void SetTopMost(HWND window, bool on);

} // namespace tavrel
