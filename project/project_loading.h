// Loading a project: from a main file to editor, tree and routine index.
#pragma once

#include "project/workspace.h"

#include <cstddef>
#include <string>

namespace tavrel {

/// A tree with more nodes is not a program's: includes beyond are left out, and a message says so.
constexpr std::size_t mostTreeNodes = 500;

/// Loads the main file at `path` (a full path) into the editor and rebuilds everything that hangs on it:
/// tree, file list, project commands, routine index. Name and addresses of the project are set before. A
/// missing main file is asked for; when the user cancels, a message says so and all but the editor's text
/// stays as it was. Throws RuntimeError when a file that is there cannot be read.
void LoadProject(Workspace& workspace, const std::string& path);

/// Saves the editor's text when it was modified and loads the project again from disk.
void RefreshProject(Workspace& workspace);

/// Reads a project file into the record and loads its main file, which always lies beside the project file. A
/// project file that cannot be read or is too short is reported and nothing changes: false is given back.
bool openProjectFile(Workspace& workspace, const std::string& path);

} // namespace tavrel
