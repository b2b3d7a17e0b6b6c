// The Windows clipboard.
#pragma once

#include <string>
#include <windows.h>

namespace tavrel {

/// Clears the clipboard and puts a text on it. `owner` is the window that does so. False when another program
/// holds the clipboard.
bool putTextOnClipboard(HWND owner, const std::string& text);

} // namespace tavrel
