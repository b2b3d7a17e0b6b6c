#include "build/compilation.h"

#include "build/build_check.h"
#include "build/compiler_results.h"
#include "project/editor_file.h"
#include "project/file_switching.h"
#include "project/project_commands.h"
#include "util/code_page.h"
#include "util/files.h"
#include "util/paths.h"
#include "util/runtime_error.h"
#include "util/text.h"
#include "util/text_input.h"

#include <cmath>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace tavrel {

namespace {

void showErrorPicture(ProgressWindow& progress) {
    // Picture 4 may be there from a build before, whose window is still open.
    for (const int image : {0, 1, 2, 4})
        progress.setImageVisible(image, false);
    progress.setImageVisible(3, true);
    progress.enableTimer2(true);
}

void refuse(Workspace& workspace, ProgressWindow& progress, const std::string& why) {
    progress.show();
    showErrorPicture(progress);
    progress.setText(why);
    workspace.display.setWaitPointer(false);
}

/// The words of the window have always been these; the status line names the cause and the way out.
void refuseLargeFolder(Workspace& workspace, ProgressWindow& progress, const std::string& folder) {
    refuse(workspace, progress,
           "The project directory \r\n" + folder + "\r\ncannot have more than 720kb of files");
    const bool holdsTavrel = upperCase(workspace.AppDir).starts_with(upperCase(folder));
    workspace.display.setPanel(StatusPanel::message,
                               holdsTavrel
                                   ? "Tavrel itself lies in this folder: give the project a folder of its own"
                                   : "All files of the folder count: leave only the program's there");
}

constexpr const char* loader = "DOS2CASH.COM";
constexpr const char* compiler = "TP3.EXE";
constexpr const char* runtime = "RUNTIME.COM";
constexpr const char* script = "turbopc.bat";

/// Whether the folder holds more than a disk does. The kit does not count: a build that was killed may have
/// left it there, and this one will delete it.
bool isTooLarge(const std::string& folder) {
    std::uint64_t limit = largestProjectFolder;
    for (const char* const name : {loader, compiler, runtime, script})
        limit += GetFolderSize(folder, name, false);
    return GetFolderSize(folder, "*.*", true, limit) > limit;
}

/// The kit's files in the project folder. Whatever ends the build, they do not stay there.
class KitCopies {
  public:
    explicit KitCopies(const std::string& folder) : folder_(folder) {}
    ~KitCopies() {
        for (const std::string& path : present_)
            deleteFileIfPossible(path);
    }
    KitCopies(const KitCopies&) = delete;
    KitCopies& operator=(const KitCopies&) = delete;

    void add(const std::string& kit, const char* name) {
        const std::string bytes = readWholeFile(kit + name);
        present_.push_back(folder_ + name); // a write that fails may leave it there all the same
        writeTemporaryFile(present_.back(), bytes);
    }
    void remove(const char* name) {
        const std::string path = folder_ + name;
        try {
            deleteFile(path);
        } catch (const RuntimeError& error) {
            // A second build, started while this one waited, has taken its copies away, which were these.
            if (error.number() != RuntimeErrorNumber::fileNotFound)
                throw;
        }
        std::erase(present_, path);
    }

  private:
    std::string folder_;
    std::vector<std::string> present_; ///< paths
};

/// While a build runs, its launcher is held open. A second build of the same project needs the same words in
/// it.
void writeLauncher(const std::string& path, const std::string& ansiText) {
    const std::string text = oemText(ansiText).value_or(ansiText); // the command interpreter's code page
    if (!FileExists(path) || readWholeFile(path) != text)
        writeTemporaryFile(path, text);
}

/// Says in the status line that a build takes long and how it is ended, as long as it runs.
class LongBuildNotice {
  public:
    LongBuildNotice(MainWindowDisplay& display, ProcessRunner& processes)
        : display_(display), processes_(processes), former_(std::move(processes.waitIsLong)) {
        processes_.waitIsLong = [this] {
            shown_ = true;
            display_.setPanel(StatusPanel::message, "The build takes long. Ctrl+Break ends it.");
        };
    }
    ~LongBuildNotice() {
        processes_.waitIsLong = std::move(former_);
        if (shown_)
            display_.setPanel(StatusPanel::message, "");
    }
    LongBuildNotice(const LongBuildNotice&) = delete;
    LongBuildNotice& operator=(const LongBuildNotice&) = delete;

  private:
    MainWindowDisplay& display_;
    ProcessRunner& processes_;
    std::function<void()> former_; ///< of a build that this one was started in
    bool shown_ = false;
};

/// Puts the kit into the project folder, runs the compiler, and deletes the kit again.
void runCompiler(const Workspace& workspace, ProcessRunner& processes, const std::string& folder) {
    const std::string kit = workspace.AppDir + "compiler\\";
    KitCopies copies(folder);
    for (const char* const name : {loader, compiler, runtime, script})
        copies.add(kit, name);
    writeLauncher(kit + "rundb.bat", launchScript(workspace.AppDir, folder));
    {
        const LongBuildNotice notice(workspace.display, processes);
        processes.ShellAndWait(kit + "rundb.bat", false, true);
    }
    for (const char* const name : {compiler, loader, runtime, script})
        copies.remove(name);
    for (const char* const name : {"stderr.txt", "stdout.txt"})
        deleteFileIfPossible(folder + name);
}

/// None when the file cannot be read: the program has been compiled all the same.
std::vector<std::string> sizeLinesIn(const std::string& resultPath) {
    try {
        TextInput result = TextInput::open(resultPath);
        return readSizeLines(result);
    } catch (const RuntimeError&) {
        return {};
    }
}

void showSuccess(const std::string& folder, ProgressWindow& progress) {
    for (const int image : {0, 1, 2, 3})
        progress.setImageVisible(image, false);
    progress.setImageVisible(4, true);
    progress.enableTimer1(false);
    progress.enableTimer2(false);
    progress.setText(progress.text() + "\r\nNo errors - Sucessfully compiled");
    const std::string resultPath = folder + "result.txt";
    if (!FileExists(resultPath))
        return;
    std::string separator = "\r\n\r\n";
    for (const std::string& line : sizeLinesIn(resultPath)) {
        progress.setText(progress.text() + separator + line);
        separator = "\r\n";
    }
    deleteFileIfPossible(resultPath);
}

CompilerError showFailure(const std::string& errorsPath, ProgressWindow& progress) {
    progress.setText("");
    showErrorPicture(progress);
    TextInput file = TextInput::open(errorsPath);
    CompilerError error;
    try {
        error = readCompilerErrors(file);
    } catch (const RuntimeError& failure) {
        // Left in place it would turn the next build, however good, into a failure.
        deleteFileIfPossible(errorsPath);
        throw RuntimeError(failure.number(), errorsPath);
    }
    progress.setText(error.text);
    deleteFile(errorsPath);
    return error;
}

/// Asks about text that was typed during the build. False when the user cancelled.
bool saveTypedText(Workspace& workspace) {
    if (!workspace.editor.modified())
        return true;
    const Answer answer = askToSaveText(workspace);
    if (answer == Answer::yes) {
        const Project& project = workspace.project;
        if (project.CurrentFile >= project.Files.size())
            throw RuntimeError(RuntimeErrorNumber::subscriptOutOfRange);
        // After a switch the current file is a tree index and may name the entry of another file, which then
        // gets the text. It has always been so; rescue copies of both are kept.
        saveEditorText(workspace, project.Folder + bareFileName(project.Files[project.CurrentFile].FileName),
                       false);
    }
    if (answer == Answer::no)
        rescueEditorText(workspace);
    return answer != Answer::cancel;
}

/// Shows the failing file in the editor. False when the user cancelled, which ends the navigation.
bool showFailingFile(Workspace& workspace, const std::string& fileName) {
    Project& project = workspace.project;
    if (fileName.empty()) // no error, which a project without a name must not be taken for
        return true;
    for (std::size_t node = 1; node <= workspace.tree.count(); ++node) {
        if (workspace.tree.node(node).text != fileName)
            continue;
        const std::string formerKey = project.SelectedKey;
        workspace.tree.select(node);
        project.SelectedKey = workspace.tree.node(node).key;
        const std::string path = project.Folder + workspace.tree.node(node).text;
        if (!FileExists(path)) {
            reselectNode(workspace, formerKey); // the editor stays on its file, and so must a save
            continue;
        }
        try {
            if (!saveTypedText(workspace)) {
                reselectNode(workspace, formerKey);
                return false;
            }
            showNodeFile(workspace, node, path);
        } catch (const RuntimeError&) {
            reselectNode(workspace, formerKey);
            throw;
        }
    }
    return true;
}

void navigateToError(Workspace& workspace, const CompilerError& error) {
    if (!showFailingFile(workspace, error.file))
        return;                         // the hourglass stays, as it always has after Cancel
    constexpr double largestLine = 1e9; // beyond any text; the editor takes its last line
    if (error.line > 0) {
        const long line = std::lround(std::fmin(error.line, largestLine)) - 1;
        workspace.editor.setHighlightedLine(line);
        workspace.editor.setCaret({line, 0});
    }
    workspace.display.setWaitPointer(false);
}

void deleteOldOutput(const Workspace& workspace, const std::string& programName, Output output) {
    const std::string path =
        workspace.project.Folder + programName + (output == Output::chn ? ".chn" : ".com");
    if (FileExists(path))
        deleteFile(path);
}

/// Reads and shows what the compiler left in the folder. True when there is no error.
bool reportResults(Workspace& workspace, ProgressWindow& progress, const std::string& folder) {
    workspace.editor.setHighlightedLine(-1);
    CompilerError error;
    const bool failed = FileExists(folder + "errors.txt");
    if (failed)
        error = showFailure(folder + "errors.txt", progress);
    else
        showSuccess(folder, progress);
    workspace.lastBuild = {workspace.lastBuild.number + 1, folder, !failed};
    navigateToError(workspace, error);
    return !failed;
}

/// The user ended the build. What it left half-way is no program, and no error of the source.
void reportBrokenOff(Workspace& workspace, ProgressWindow& progress, const std::string& folder,
                     const std::string& program) {
    for (const std::string& name :
         {program, std::string("errors.txt"), std::string("result.txt"), std::string("TP3OUT.$$$"),
          std::string("stderr.txt"), std::string("stdout.txt")})
        deleteFileIfPossible(folder + name);
    refuse(workspace, progress, "The build was broken off. No program was made.");
    workspace.lastBuild = {workspace.lastBuild.number + 1, folder, false};
}

bool compileAndReport(Workspace& workspace, const BuildTools& tools, Output output) {
    const Project& project = workspace.project;
    const std::string folder = project.Folder; // the user may open another project while the compiler runs
    const std::string programName = mainProgramName(workspace.tree.node(2).text);
    requireCompiler(workspace.AppDir);
    if (const auto why = whyFoldersAreRefused(workspace.AppDir, folder)) {
        workspace.messages.show(*why, "Tavrel", Icon::critical, Buttons::ok);
        return false;
    }
    workspace.display.setWaitPointer(true);
    if (const auto why = whyProjectIsRefused(folder, programName)) {
        refuse(workspace, tools.progress, *why);
        return false;
    }
    deleteOldOutput(workspace, programName, output);
    if (isTooLarge(folder)) {
        refuseLargeFolder(workspace, tools.progress, folder);
        return true;
    }
    tools.progress.show();
    const unsigned buildsBefore = workspace.lastBuild.number;
    try {
        writeTemporaryFile(workspace.AppDir + "compiler\\turbopc.bat",
                           compileScript(output, programName, project.StartAddress, project.EndAddress));
        runCompiler(workspace, tools.processes, folder);
    } catch (const RuntimeError&) {
        tools.progress.close(); // it would go on telling of a compilation that is over
        throw;
    } catch (const WaitBrokenOff&) {
        reportBrokenOff(workspace, tools.progress, folder,
                        programName + (output == Output::chn ? ".chn" : ".com"));
        return false;
    }
    // A build of the same project, started while this one waited, has shown what the compiler left and taken
    // it away; without it an error would now be followed by the news of a success.
    if (workspace.lastBuild.number != buildsBefore && workspace.lastBuild.folder == folder) {
        workspace.display.setWaitPointer(false);
        return workspace.lastBuild.succeeded;
    }
    return reportResults(workspace, tools.progress, folder);
}

} // namespace

bool DoCompilation(Workspace& workspace, const BuildTools& tools, Output output) {
    workspace.editor.setHighlightedLine(-1);
    if (workspace.tree.count() == 0) {
        workspace.messages.show("No project loaded!", "Error", Icon::critical, Buttons::ok);
        return true;
    }
    try {
        return compileAndReport(workspace, tools, output);
    } catch (const RuntimeError&) {
        workspace.display.setWaitPointer(false);
        throw;
    }
}

void compileCommand(Workspace& workspace, const BuildTools& tools, Output output) {
    if (saveModifiedText(workspace))
        DoCompilation(workspace, tools, output);
}

} // namespace tavrel
