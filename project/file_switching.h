// Switching the editor between the project's files.
#pragma once

#include "project/workspace.h"

#include <cstddef>

namespace tavrel {

/// The user chose a tree node: the editor's text is saved or dropped and the node's file loaded.
/// Throws RuntimeError when a file cannot be written or read.
void switchToNode(Workspace& workspace, std::size_t clicked);

/// Asks whether the modified text is to be saved.
Answer askToSaveText(Workspace& workspace);

/// After Cancel: selects the node of the file that the record holds as current again.
void reselectCurrentFile(Workspace& workspace, const std::string& formerKey);

/// Puts the file of a node into the editor: text, modified flag, current file, status panel 2.
void showNodeFile(Workspace& workspace, std::size_t node, const std::string& path);

} // namespace tavrel
