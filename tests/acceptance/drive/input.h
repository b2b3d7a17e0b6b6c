// Keyboard and mouse, as if a user had them in hand: what is pressed goes to the window in front.
#pragma once

#include <string>
#include <windows.h>

namespace tavrel::drive {

/// Types characters of the keyboard.
int typeKeys(HWND form, const std::string& text);

/// Presses keys together, such as "Ctrl+Shift+Tab". Throws std::invalid_argument for a name that is no key's.
int pressChord(HWND form, const std::string& keys);

/// Presses and releases the right mouse button over a place in a window.
void clickRight(HWND window, POINT place);

/// The control of the other program that has its focus.
HWND focusOf(HWND form);

} // namespace tavrel::drive
