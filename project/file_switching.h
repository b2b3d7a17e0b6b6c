// Switching the editor between the project's files.
#pragma once

#include "project/workspace.h"

#include <cstddef>

namespace tavrel {

/// The user chose a tree node: the editor's text is saved or dropped and the node's file loaded.
/// Throws RuntimeError when a file cannot be written or read; the former file is then selected again with its
/// text as it was.
void switchToNode(Workspace& workspace, std::size_t clicked);

/// Asks whether the modified text is to be saved.
Answer askToSaveText(Workspace& workspace);

/// Selects the node with this key, which is the one whose text the editor holds, and names it in status panel
/// 2: whatever is saved next goes into that file.
void reselectNode(Workspace& workspace, const std::string& key);

/// Puts the file of a node into the editor: text, modified flag, current file, status panel 2. Throws
/// RuntimeError when it cannot be read; the editor then holds what it held before.
void showNodeFile(Workspace& workspace, std::size_t node, const std::string& path);

} // namespace tavrel
