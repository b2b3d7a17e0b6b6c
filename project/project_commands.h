// The File menu's commands that open and save.
#pragma once

#include "project/workspace.h"

#include <cstddef>
#include <string>

namespace tavrel {

void openProject(Workspace& workspace);
void openPascalFile(Workspace& workspace);
/// The same for a file that has been chosen in another way.
void openProjectNamed(Workspace& workspace, const std::string& path);
void openPascalFileNamed(Workspace& workspace, const std::string& path);
void saveProject(Workspace& workspace);
/// Saves the file in the editor; with the root node selected, the project instead.
void saveCurrentFile(Workspace& workspace);
/// Opens the entry `index` (0 to 4) of the recent list.
void openRecentEntry(Workspace& workspace, std::size_t index);
/// What every compile command does first: modified text is saved, without asking, under the selected node's
/// text. False when that cannot be the name of a file: a message says so and nothing is written.
bool saveModifiedText(Workspace& workspace);

} // namespace tavrel
