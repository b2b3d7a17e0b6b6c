#include "project/file_switching.h"

#include "util/files.h"
#include "util/paths.h"
#include "util/runtime_error.h"

namespace tavrel {

Answer askToSaveText(Workspace& workspace) {
    return workspace.messages.show("This file has changed. Save it?", "Save changes", Icon::question,
                                   Buttons::yesNoCancel);
}

void reselectNode(Workspace& workspace, const std::string& key) {
    workspace.project.SelectedKey = key;
    if (const std::size_t node = workspace.tree.find(key))
        workspace.tree.select(node);
}

void reselectCurrentFile(Workspace& workspace, const std::string& formerKey) {
    const Project& project = workspace.project;
    std::size_t node = workspace.tree.find(formerKey);
    // The current file is a tree index after a switch and may then name another entry of the list, or none.
    if (project.CurrentFile >= 1 && project.CurrentFile < project.Files.size())
        node = static_cast<std::size_t>(project.Files[project.CurrentFile].Index);
    if (node == 0 || node > workspace.tree.count())
        return;
    workspace.tree.select(node);
    workspace.project.SelectedKey = workspace.tree.node(node).key;
    // The window became active again behind the question, and then named the file that was clicked.
    showCurrentView(workspace, workspace.tree.node(node).text);
}

void showNodeFile(Workspace& workspace, std::size_t node, const std::string& path) {
    const std::string former = workspace.editor.text();
    const bool modified = workspace.editor.modified();
    workspace.editor.setText("");
    try {
        workspace.editor.insertFile(path, {0, 0});
    } catch (const RuntimeError&) {
        workspace.editor.setText(former);
        workspace.editor.setModified(modified);
        throw;
    }
    workspace.project.CurrentFile = node; // deliberately the tree index, not an index into the file list
    workspace.editor.setModified(false);
    showCurrentView(workspace, workspace.tree.node(node).text);
}

namespace {

/// Saves the text if the user wants that. False when the user cancelled.
bool saveBeforeLeaving(Workspace& workspace, std::size_t left) {
    if (!workspace.editor.modified())
        return true;
    const Answer answer = workspace.settings.AutoSave != storedFalse ? Answer::yes : askToSaveText(workspace);
    if (answer == Answer::yes && left != 0)
        workspace.editor.saveFile(AddBackslash(workspace.project.Folder) + workspace.tree.node(left).text,
                                  true);
    return answer != Answer::cancel;
}

} // namespace

void switchToNode(Workspace& workspace, std::size_t clicked) {
    Project& project = workspace.project;
    const std::size_t left = workspace.tree.find(project.SelectedKey);
    if (left < workspace.CaretPositions.size())
        workspace.CaretPositions[left] = workspace.editor.caret();
    const TreeNode target = workspace.tree.node(clicked);
    if (target.key == "r" || target.key == project.SelectedKey)
        return;
    const std::string formerKey = project.SelectedKey;
    project.SelectedKey = target.key;
    const std::size_t index = workspace.tree.find(target.key);
    const std::string path = AddBackslash(project.Folder) + target.text;
    if (!FileExists(path))
        return;
    try {
        if (!saveBeforeLeaving(workspace, left)) {
            reselectCurrentFile(workspace, formerKey);
            return;
        }
        showNodeFile(workspace, index, path);
    } catch (const RuntimeError&) {
        reselectNode(workspace, formerKey);
        throw;
    }
    workspace.editor.giveFocus();
    if (index < workspace.CaretPositions.size() && workspace.CaretPositions[index].line >= 0 &&
        workspace.CaretPositions[index].column >= 0)
        workspace.editor.setCaret(workspace.CaretPositions[index]);
}

} // namespace tavrel
