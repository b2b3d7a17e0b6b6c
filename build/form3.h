// The project properties dialog `Form3`.
#pragma once

#include "project/workspace.h"

#include <windows.h>

namespace tavrel {

/// Shows the dialog over the main window and waits for it; "Ok" changes the project record and the root node.
void showProjectProperties(HWND owner, Workspace& workspace);

} // namespace tavrel
