#include "project/new_project.h"

#include "project/editor_file.h"
#include "project/project_file.h"
#include "project/project_loading.h"
#include "util/files.h"
#include "util/paths.h"
#include "util/text.h"

#include <utility>

namespace tavrel {

namespace {

std::string withoutExtension(const std::string& path) {
    return path.substr(0, path.size() - 4); // ".pas" in some letter case
}

void copyTemplate(Workspace& workspace, const std::string& templateFolder, const std::string& templateName,
                  const std::string& mainFile) {
    const std::string templateMain = upperCase(templateName + ".pas");
    for (const FolderEntry& entry : listFolder(templateFolder, "*.*")) {
        if (entry.isFolder)
            continue;
        const bool isMain = upperCase(entry.name) == templateMain;
        replaceFile(workspace, isMain ? mainFile : GetFilePath(mainFile) + entry.name,
                    readWholeFile(templateFolder + entry.name));
    }
}

} // namespace

void sortNames(std::vector<std::string>& names, bool descending) {
    const auto before = [descending](const std::string& a, const std::string& b) {
        return descending ? b < a : a < b;
    };
    std::size_t gap = 1;
    while (3 * gap + 1 <= names.size())
        gap = 3 * gap + 1;
    for (; gap >= 1; gap /= 3) {
        for (std::size_t i = gap; i < names.size(); ++i) {
            std::string moved = std::move(names[i]);
            std::size_t place = i;
            for (; place >= gap && before(moved, names[place - gap]); place -= gap)
                names[place] = std::move(names[place - gap]);
            names[place] = std::move(moved);
        }
    }
}

std::vector<std::string> templateNames(const std::string& AppDir) {
    std::vector<std::string> names;
    for (FolderEntry& entry : listFolder(AppDir + "projects\\", "*.*")) {
        if (entry.isFolder)
            names.push_back(std::move(entry.name));
    }
    sortNames(names, false);
    return names;
}

NewProjectChoice newProjectChoice(const std::string& dialogResult) {
    return {numericValue(dialogResult.substr(0, 1)) > 0, dialogResult.substr(1)};
}

std::string newMainFile(const std::string& chosen) {
    const std::string path = trimBlanks(chosen.substr(0, chosen.find('\0')));
    return upperCase(lastCharacters(path, 4)) == ".PAS" ? path : path + ".pas";
}

std::string autoexecText(const std::string& mainFile) {
    const std::string program = upperCase(replaceIgnoringCase(GetFileName(mainFile), ".PAS", ""));
    // Each line has a CR of its own before its line end; programs have been started by such files ever since.
    return "SET EXPERT ON\r\r\n" + program + "\r\r\n";
}

void newProject(Workspace& workspace, const std::string& dialogResult) {
    if (dialogResult.empty())
        return;
    const NewProjectChoice choice = newProjectChoice(dialogResult);
    SaveDialogRequest request;
    request.title = "New File";
    request.filter = "Pascal files (*.pas) | *.pas";
    request.initialFolder = workspace.LastDir;
    request.extension = "pas";
    const std::string chosen = workspace.dialogs.showSaveDialog(request);
    if (chosen.empty())
        return;
    rescueEditorTextOrStop(workspace);
    workspace.LastDir = GetFilePath(chosen);
    workspace.tree.clear();
    leaveEditorFile(workspace);
    const std::string mainFile = newMainFile(chosen);
    copyTemplate(workspace, workspace.AppDir + "projects\\" + choice.templateName + "\\", choice.templateName,
                 mainFile);
    LoadProject(workspace, mainFile);
    const std::string projectPath = withoutExtension(mainFile) + ".tpj";
    Project& project = workspace.project;
    project.Name = GetFileName(withoutExtension(mainFile));
    if (workspace.tree.count() > 0) // the load named the root before the project had its name
        workspace.tree.setText(1, project.Name);
    writeProjectFile(projectPath, {project.Name, project.StartAddress, project.EndAddress, mainFile});
    if (choice.makeAutoexec)
        writeWholeFile(GetFilePath(mainFile) + "AUTOEXEC.BAT", autoexecText(mainFile));
    AddRecentFile(workspace, projectPath);
}

} // namespace tavrel
