// The File menu's commands that add an include file to the project.
#pragma once

#include "project/workspace.h"

#include <string>

namespace tavrel {

/// The directive that includes a file. A file's name comes without its folder.
std::string includeDirective(const std::string& fileName);

/// Puts the directive on a line of its own at the caret's line: an include is only found when its directive
/// stands alone. A line with text in it moves down.
void insertDirective(SourceEditor& editor, const std::string& directive);

/// Asks for the name of a new include file, creates it empty in the project's folder, offers to insert its
/// directive, loads the project again and shows the new file. Throws RuntimeError.
void newIncludeFile(Workspace& workspace);

/// Asks for an existing file, offers to copy it into the project's folder and to insert its directive, and
/// loads the project again. Throws RuntimeError.
void openIncludeFile(Workspace& workspace);

} // namespace tavrel
