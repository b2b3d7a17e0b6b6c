#include "project/file_switching.h"

#include "project/editor_file.h"
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
    const std::size_t node = workspace.tree.find(key);
    if (node == 0)
        return;
    workspace.tree.select(node);
    // While a question was up the window may have become active and named the file that was clicked.
    if (key != "r")
        showCurrentView(workspace, workspace.tree.node(node).text);
}

void showNodeFile(Workspace& workspace, std::size_t node, const std::string& path) {
    loadIntoEditor(workspace, path);
    workspace.project.CurrentFile = node; // deliberately the tree index, not an index into the file list
    showCurrentView(workspace, workspace.tree.node(node).text);
}

namespace {

/// Saves the text if the user wants that. False when the user cancelled.
bool saveBeforeLeaving(Workspace& workspace, std::size_t left) {
    if (!workspace.editor.modified())
        return true;
    const Answer answer = workspace.settings.AutoSave != storedFalse ? Answer::yes : askToSaveText(workspace);
    if (answer == Answer::yes && left != 0)
        saveEditorText(workspace, AddBackslash(workspace.project.Folder) + workspace.tree.node(left).text,
                       true);
    if (answer == Answer::no)
        rescueEditorText(workspace);
    return answer != Answer::cancel;
}

} // namespace

void switchToNode(Workspace& workspace, std::size_t clicked) {
    Project& project = workspace.project;
    const std::size_t left = workspace.tree.find(project.SelectedKey);
    if (left < workspace.CaretPositions.size())
        workspace.CaretPositions[left] = workspace.editor.caret();
    const TreeNode target = workspace.tree.node(clicked);
    // The root stays selected although no file is its own; the text goes on belonging to the former node. A
    // save then goes by the node that is selected, which "Save Current File" and the build have always done.
    if (target.key == "r" || target.key == project.SelectedKey)
        return;
    const std::string formerKey = project.SelectedKey;
    project.SelectedKey = target.key;
    const std::size_t index = workspace.tree.find(target.key);
    const std::string path = AddBackslash(project.Folder) + target.text;
    if (!FileExists(path)) {
        // Whatever is saved next goes into the file of the selected node, so that must be the editor's.
        reselectNode(workspace, formerKey);
        return;
    }
    try {
        if (!saveBeforeLeaving(workspace, left)) {
            reselectNode(workspace, formerKey);
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
