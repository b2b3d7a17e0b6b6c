#include "project/project_loading.h"

#include "project/editor_file.h"
#include "project/include_directive.h"
#include "project/project_file.h"
#include "util/files.h"
#include "util/paths.h"
#include "util/runtime_error.h"
#include "util/text.h"
#include "util/text_input.h"

#include <optional>

namespace tavrel {

namespace {

/// The file to load in place of a missing one; nothing when the user gave up.
std::optional<std::string> locateMainFile(Workspace& workspace, const std::string& path) {
    const std::string name = GetFileName(path);
    if (FileExists(workspace.project.Folder + name))
        return name;
    OpenDialogRequest request;
    request.filter = name;
    request.title = "Show where the file " + name + " is";
    request.initialFolder = GetFilePath(path);
    const std::string chosen = workspace.dialogs.ShowOpenDialog(request);
    if (!chosen.empty())
        return chosen;
    workspace.messages.show("Could not find the file " + name, "Fatal Error", Icon::critical, Buttons::ok);
    return std::nullopt;
}

void addRootAndMainFile(Workspace& workspace, const std::string& fileName) {
    Project& project = workspace.project;
    ProjectTree& tree = workspace.tree;
    tree.clear();
    const std::size_t root = tree.add(0, "r", project.Name, TreeImage::collapsed);
    project.SelectedKey = "r";
    tree.select(root);
    const std::size_t main = tree.add(root, fileName + "0", upperCase(fileName), TreeImage::collapsed);
    project.SelectedKey = tree.node(main).key;
    project.Files.assign(2, ProjectFileEntry());
    project.Files[1] = {fileName, tree.node(main).key, static_cast<std::int32_t>(main), {}};
    tree.select(main);
}

/// Finds include files. A few lines can name millions of them, so there is an end to nodes and to look-ups.
class IncludeSearch {
  public:
    explicit IncludeSearch(Workspace& workspace) : workspace_(workspace) {}

    /// The include file that a line names, if there is one.
    std::optional<std::string> find(std::string_view line) {
        std::optional<std::string> name = includeName(line);
        if (!name || exhausted_)
            return std::nullopt;
        if (workspace_.tree.count() >= mostTreeNodes || ++lookUps_ > mostLookUps) {
            exhausted_ = true;
            return std::nullopt;
        }
        return FileExists(workspace_.project.Folder + *name) ? name : std::nullopt;
    }
    bool exhausted() const { return exhausted_; }
    std::size_t counter = 1; ///< makes keys unique

  private:
    static constexpr std::size_t mostLookUps = 10'000;

    Workspace& workspace_;
    std::size_t lookUps_ = 0;
    bool exhausted_ = false;
};

/// Includes named in the main file, as it stands in the editor.
void addDirectIncludes(Workspace& workspace, IncludeSearch& search) {
    Project& project = workspace.project;
    const long lines = workspace.editor.lineCount();
    for (long line = 0; line < lines && !search.exhausted(); ++line) {
        const std::optional<std::string> name = search.find(workspace.editor.lineText(line));
        if (!name)
            continue;
        const std::string key = *name + std::to_string(search.counter++);
        const std::size_t node = workspace.tree.add(2, key, bareFileName(*name), TreeImage::includeFile);
        project.Files.push_back({*name, key, static_cast<std::int32_t>(node), {}});
    }
}

void addIncludesOfNode(Workspace& workspace, std::size_t node, IncludeSearch& search) {
    TextInput file = TextInput::open(workspace.project.Folder + workspace.tree.node(node).text);
    while (!file.atEnd() && !search.exhausted()) {
        const std::optional<std::string> name = search.find(file.line());
        if (!name)
            continue;
        workspace.tree.setImage(node, TreeImage::expanded);
        workspace.tree.add(node, *name + std::to_string(++search.counter), bareFileName(*name),
                           TreeImage::includeFile);
    }
}

/// Includes named in include files: one further level only, since the nodes added here are not scanned.
void addNestedIncludes(Workspace& workspace, IncludeSearch& search) {
    const std::size_t count = workspace.tree.count();
    for (std::size_t node = 3; node <= count && !search.exhausted(); ++node) {
        try {
            addIncludesOfNode(workspace, node, search);
        } catch (const RuntimeError& error) {
            workspace.messages.show("The include file " + workspace.tree.node(node).text +
                                        " cannot be read: " + std::string(error.text()),
                                    "Tavrel", Icon::critical, Buttons::ok);
        }
    }
}

/// A file that has just been created is empty, which is no reason to stop: it has no routines yet. Nor is one
/// that is not there: a main file that was located elsewhere does not lie in the project's folder.
void indexRoutines(Workspace& workspace, std::size_t node) {
    try {
        GetFileFunctions(workspace.FileRoutineLists, node - 2,
                         AddBackslash(workspace.project.Folder) + workspace.tree.node(node).text);
    } catch (const RuntimeError& error) {
        if (error.number() != RuntimeErrorNumber::inputPastEndOfFile &&
            error.number() != RuntimeErrorNumber::fileNotFound &&
            error.number() != RuntimeErrorNumber::pathNotFound)
            throw;
    }
}

void rebuildRoutineIndex(Workspace& workspace) {
    const std::size_t count = workspace.tree.count();
    workspace.CaretPositions.assign(count + 1, EditorPosition());
    if (count >= 2 && workspace.settings.UseTooltips != storedFalse) {
        workspace.FileRoutineLists.assign(count, FileRoutineList());
        for (std::size_t node = 2; node <= count; ++node)
            indexRoutines(workspace, node);
    }
    RefreshTooltips(workspace);
}

} // namespace

void LoadProject(Workspace& workspace, const std::string& path) {
    rescueEditorTextOrStop(workspace);
    leaveEditorFile(workspace); // should the load end early, the empty text may go into no file
    workspace.LastDir = AddBackslash(GetFilePath(path));
    workspace.project.Folder = workspace.LastDir;
    deleteUnfinishedFiles(workspace.project.Folder);
    std::string mainFile = path;
    if (!FileExists(path)) {
        const std::optional<std::string> located = locateMainFile(workspace, path);
        // The tree and the record go on showing the former project, over an empty editor, as they always
        // have. What is typed then goes into the file of the selected node, whose text becomes a rescue copy.
        if (!located)
            return;
        mainFile = *located; // the folder stays: includes are looked for where the project was said to be
    }
    loadIntoEditor(workspace, mainFile);
    // Where a save goes to, even if the file was located elsewhere.
    workspace.editorFile.path = workspace.project.Folder + GetFileName(mainFile);
    addRootAndMainFile(workspace, GetFileName(mainFile));
    IncludeSearch search(workspace);
    addDirectIncludes(workspace, search);
    if (workspace.tree.count() >= 3)
        addNestedIncludes(workspace, search);
    if (search.exhausted())
        workspace.messages.show("The project includes too many files. The tree shows the first of them only.",
                                "Tavrel", Icon::information, Buttons::ok);
    workspace.project.CurrentFile = 1;
    workspace.editor.setModified(false);
    workspace.tree.select(2);
    showCurrentView(workspace, workspace.tree.node(2).text);
    workspace.display.enableProjectCommands();
    rebuildRoutineIndex(workspace);
}

void RefreshProject(Workspace& workspace) {
    const Project& project = workspace.project;
    if (workspace.tree.count() < 2)
        return;
    if (workspace.editor.modified() && !project.Files.empty()) {
        if (project.CurrentFile >= project.Files.size())
            throw RuntimeError(RuntimeErrorNumber::subscriptOutOfRange);
        // A bare file name, taken from the process's current folder, and after a switch the entry of another
        // file. Both have always been so. When the current folder is the project's, the text of one file
        // therefore goes into another; rescue copies of both are kept.
        saveEditorText(workspace, bareFileName(project.Files[project.CurrentFile].FileName), false);
    }
    LoadProject(workspace, project.Folder + workspace.tree.node(2).text);
}

bool openProjectFile(Workspace& workspace, const std::string& path) {
    ProjectFileContent content;
    try {
        content = readProjectFile(path);
    } catch (const RuntimeError& error) {
        const bool tooShort = error.number() == RuntimeErrorNumber::inputPastEndOfFile;
        workspace.messages.show("The project file " + path +
                                    (tooShort ? " has fewer than four lines." : " cannot be read.") + "\r\n" +
                                    std::string(error.text()),
                                "Tavrel", Icon::critical, Buttons::ok);
        return false;
    }
    workspace.project.Name = content.name;
    workspace.project.StartAddress = content.startAddress;
    workspace.project.EndAddress = content.endAddress;
    LoadProject(workspace, AddBackslash(GetFilePath(path)) + bareFileName(content.mainFile));
    return true;
}

} // namespace tavrel
