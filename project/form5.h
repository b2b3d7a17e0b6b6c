// The New Project dialog `Form5`.
#pragma once

#include <string>
#include <vector>
#include <windows.h>

namespace tavrel {

/// Shows the dialog with these templates over the main window and waits for it. Gives back "" after Cancel;
/// after "Open" the state of the check box as "1" or "0" and the template's name; after a double click the
/// name alone.
std::string showNewProjectDialog(HWND owner, const std::vector<std::string>& templates);

} // namespace tavrel
