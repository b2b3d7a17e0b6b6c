// The palette converter's dialog `frmConvPal`.
#pragma once

#include "project/workspace.h"

#include <windows.h>

namespace tavrel {

/// Shows the dialog over the main window and waits for it. It inserts text into the workspace's editor.
void showPaletteConverter(HWND owner, Workspace& workspace);

} // namespace tavrel
