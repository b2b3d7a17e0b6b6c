// Placing windows over each other.
#pragma once

#include "util/twips.h"

#include <windows.h>

namespace tavrel {

/// The pixels per inch of the screen.
ScreenScale screenScale();

/// Moves a dialog to the middle of its owner, even when it then lies partly off screen.
void CenterForm(HWND owner, HWND dialog);

/// Keeps a window above all others, or ends that.
void SetTopMost(HWND window, bool on);

} // namespace tavrel
