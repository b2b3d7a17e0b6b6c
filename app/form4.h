// The preferences dialog `Form4`.
#pragma once

#include "project/workspace.h"

#include <functional>
#include <windows.h>

namespace tavrel {

/// Shows the dialog over the main window and waits for it. `applyFont` is called whenever the font size of
/// the settings has changed, which a choice in the list does at once, Cancel or not.
void showPreferences(HWND owner, Workspace& workspace, std::function<void()> applyFont);

} // namespace tavrel
