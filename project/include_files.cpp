#include "project/include_files.h"

#include "project/editor_file.h"
#include "project/file_switching.h"
#include "project/project_loading.h"
#include "util/files.h"
#include "util/paths.h"
#include "util/text.h"

namespace tavrel {

namespace {

bool liesInProjectFolder(const Workspace& workspace, const std::string& path) {
    return upperCase(GetFilePath(path)) == upperCase(workspace.project.Folder);
}

void offerDirective(Workspace& workspace, const std::string& fileName) {
    const Answer answer =
        workspace.messages.show("Insert {$i " + fileName + "} at the current cursor position?", "Tavrel",
                                Icon::question, Buttons::yesNo);
    if (answer == Answer::yes)
        insertDirective(workspace.editor, includeDirective(fileName));
}

void saveEditedFile(Workspace& workspace) {
    const ProjectTree& tree = workspace.tree;
    std::size_t node = tree.selected();
    // The root may be selected while a file is in the editor; its text belongs into that file.
    if (node <= 1)
        node = tree.find(workspace.project.SelectedKey);
    if (node > 1)
        saveEditorText(workspace, workspace.project.Folder + tree.node(node).text, false);
}

void showFileNamed(Workspace& workspace, const std::string& text) {
    for (std::size_t node = 1; node <= workspace.tree.count(); ++node) {
        if (workspace.tree.node(node).text != text)
            continue;
        workspace.tree.select(node);
        switchToNode(workspace, node);
        return;
    }
}

std::string lineEndOf(const std::string& text) {
    const std::size_t first = text.find_first_of("\r\n");
    if (first == std::string::npos || text.compare(first, 2, "\r\n") == 0)
        return "\r\n";
    return text.substr(first, 1);
}

} // namespace

std::string includeDirective(const std::string& fileName) {
    return "{$i " + fileName + " }";
}

void insertDirective(SourceEditor& editor, const std::string& directive) {
    const long line = editor.caret().line;
    const bool blank = trimBlanks(editor.lineText(line)).empty();
    editor.insertText(blank ? directive : directive + lineEndOf(editor.text()), {line, 0});
}

void newIncludeFile(Workspace& workspace) {
    if (workspace.tree.count() < 2)
        return;
    SaveDialogRequest request;
    request.title = "New Include file";
    request.filter = "Include files (*.inc, *.lib) | *.inc; *.lib";
    request.initialFolder = workspace.project.Folder;
    request.extension = "inc";
    const std::string chosen = workspace.dialogs.showSaveDialog(request);
    if (chosen.empty())
        return;
    workspace.LastDir = workspace.project.Folder;
    const std::string name = GetFileName(chosen);
    replaceFile(workspace, workspace.project.Folder + name, "");
    offerDirective(workspace, name);
    saveEditedFile(workspace);
    LoadProject(workspace, workspace.project.Folder + workspace.tree.node(2).text);
    showFileNamed(workspace, upperCase(name));
}

void openIncludeFile(Workspace& workspace) {
    if (workspace.tree.count() < 2)
        return;
    OpenDialogRequest request;
    request.title = "Open include file";
    request.filter = "Include files (*.inc, *.lib) | *.inc; *.lib | All files (*.*) | *.*";
    request.initialFolder = workspace.LastDir;
    const std::string chosen = workspace.dialogs.ShowOpenDialog(request);
    if (chosen.empty())
        return;
    workspace.LastDir = GetFilePath(chosen);
    const std::string name = GetFileName(chosen);
    if (!liesInProjectFolder(workspace, chosen)) {
        const Answer answer =
            workspace.messages.show("Files included must be on the same path as the PAS file\r\n"
                                    "Do you wish to copy this file to the project dir?",
                                    " Error", Icon::question, Buttons::yesNo);
        if (answer == Answer::yes)
            replaceFile(workspace, workspace.project.Folder + name, readWholeFile(chosen));
    }
    offerDirective(workspace, name);
    saveEditedFile(workspace);
    RefreshProject(workspace);
}

} // namespace tavrel
