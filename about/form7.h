// The history window `Form7`.
#pragma once

#include <string>
#include <windows.h>

namespace tavrel {

/// Shows a text over its owner and waits until the window is closed.
void showHistoryWindow(HWND owner, const std::string& history);

} // namespace tavrel
