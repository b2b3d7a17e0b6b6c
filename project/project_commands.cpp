#include "project/project_commands.h"

#include "project/editor_file.h"
#include "project/project_file.h"
#include "project/project_loading.h"
#include "settings/recent_list.h"
#include "util/files.h"
#include "util/paths.h"
#include "util/runtime_error.h"
#include "util/text.h"

#include <optional>

namespace tavrel {

namespace {

std::string askForFile(Workspace& workspace, const std::string& filter) {
    if (workspace.LastDir.empty())
        workspace.LastDir = "C:\\";
    OpenDialogRequest request;
    request.filter = filter;
    request.title = "Open File";
    request.initialFolder = workspace.LastDir;
    return workspace.dialogs.ShowOpenDialog(request);
}

/// A project's name comes from a file that somebody else may have written. One that leads out of the folder
/// becomes no path.
bool canNameFile(Workspace& workspace, const std::string& name) {
    if (isFileName(name))
        return true;
    workspace.messages.show("\"" + name +
                                "\" cannot be the name of a file. Nothing was written.\r\n"
                                "Give the project another name in Project Properties.",
                            "Tavrel", Icon::critical, Buttons::ok);
    return false;
}

/// Where the project is saved; "" when there is no name for it.
std::string projectTarget(Workspace& workspace) {
    const Project& project = workspace.project;
    if (project.Name != unnamedProject)
        return canNameFile(workspace, project.Name) ? project.Folder + project.Name + ".tpj" : "";
    SaveDialogRequest request;
    request.title = "Save Project";
    request.filter = "Turbo Pascal Projects (*.tpj) | *.tpj";
    request.initialFolder = project.Folder;
    request.extension = "tpj";
    request.proposedPath =
        project.Folder + replaceIgnoringCase(workspace.tree.node(2).text, ".pas", "") + ".tpj";
    return workspace.dialogs.showSaveDialog(request);
}

} // namespace

void openProject(Workspace& workspace) {
    const std::string path = askForFile(workspace, "Pascal File | *.tpj");
    if (!path.empty())
        openProjectNamed(workspace, path);
}

void openProjectNamed(Workspace& workspace, const std::string& path) {
    if (!openProjectFile(workspace, path))
        return;
    AddRecentFile(workspace, path);
    workspace.LastDir = GetFilePath(path);
}

void openPascalFile(Workspace& workspace) {
    const std::string path = askForFile(workspace, "Pascal File | *.pas");
    if (!path.empty())
        openPascalFileNamed(workspace, path);
}

void openPascalFileNamed(Workspace& workspace, const std::string& path) {
    std::optional<RuntimeError> failure;
    try {
        AddRecentFile(workspace, path);
    } catch (const RuntimeError& error) {
        failure = error; // the file can be read all the same
    }
    workspace.project.Name = unnamedProject;
    LoadProject(workspace, path);
    workspace.LastDir = GetFilePath(path);
    if (failure)
        throw RuntimeError(*failure);
}

void saveProject(Workspace& workspace) {
    if (workspace.tree.count() < 2)
        return;
    const std::string target = projectTarget(workspace);
    if (target.empty())
        return;
    const Project& project = workspace.project;
    writeProjectFile(target,
                     {project.Name, project.StartAddress, project.EndAddress, workspace.tree.node(2).text});
    workspace.LastDir = GetFilePath(target);
    AddRecentFile(workspace, target);
}

void saveCurrentFile(Workspace& workspace) {
    if (workspace.tree.count() < 2)
        return;
    if (workspace.tree.selectedText() != workspace.tree.node(1).text)
        saveEditorText(workspace, workspace.project.Folder + workspace.tree.selectedText(), false);
    else
        saveProject(workspace);
}

void openRecentEntry(Workspace& workspace, std::size_t index) {
    const std::string path = workspace.settings.Recent.at(index);
    if (!FileExists(path)) {
        workspace.messages.show("Tavrel cannot find this file!", "Error", Icon::critical, Buttons::ok);
        removeFromRecentList(workspace.settings, index);
        workspace.display.showRecentFiles();
        SaveSettings(workspace);
        return;
    }
    const std::string ending = lowerCase(lastCharacters(path, 3));
    if (ending == "tpj") {
        openProjectFile(workspace, path);
    } else if (ending == "pas") {
        workspace.project.Name = unnamedProject;
        LoadProject(workspace, path);
    }
}

/// With the root selected the text goes into a file of the project's name, as it always has; a rescue copy of
/// it is kept, since its own file does not get it.
bool saveModifiedText(Workspace& workspace) {
    if (!workspace.editor.modified() || workspace.tree.count() == 0)
        return true;
    if (!canNameFile(workspace, workspace.tree.selectedText()))
        return false;
    saveEditorText(workspace, workspace.project.Folder + workspace.tree.selectedText(), false);
    return true;
}

} // namespace tavrel
