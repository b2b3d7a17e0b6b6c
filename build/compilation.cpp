#include "build/compilation.h"

#include "build/compiler_results.h"
#include "project/file_switching.h"
#include "project/project_commands.h"
#include "util/files.h"
#include "util/paths.h"
#include "util/runtime_error.h"
#include "util/text_input.h"

#include <array>
#include <cmath>
#include <string>

namespace tavrel {

namespace {

constexpr std::array<const char*, 4> copiedFiles = {"DOS2CASH.COM", "TP3.EXE", "RUNTIME.COM", "turbopc.bat"};

void showErrorPicture(ProgressWindow& progress) {
    for (const int image : {0, 1, 2})
        progress.setImageVisible(image, false);
    progress.setImageVisible(3, true);
    progress.enableTimer2(true);
}

void refuseLargeFolder(Workspace& workspace, ProgressWindow& progress) {
    progress.show();
    showErrorPicture(progress);
    progress.setText("The project directory \r\n" + workspace.project.Folder +
                     "\r\ncannot have more than 720kb of files");
    workspace.display.setWaitPointer(false);
}

/// Puts the kit into the project folder, runs the compiler, and takes the kit out again.
void runCompiler(const Workspace& workspace, const BuildTools& tools) {
    const std::string& folder = workspace.project.Folder;
    const std::string kit = workspace.AppDir + "compiler\\";
    for (const char* const name : copiedFiles)
        copyFile(kit + name, folder + name);
    writeWholeFile(kit + "rundb.bat", launchScript(workspace.AppDir, folder));
    tools.processes.ShellAndWait(kit + "rundb.bat", false, true);
    for (const char* const name : {"TP3.EXE", "DOS2CASH.COM", "RUNTIME.COM", "turbopc.bat"})
        deleteFile(folder + name);
    for (const char* const name : {"stderr.txt", "stdout.txt"})
        deleteFileIfPossible(folder + name);
}

void showSuccess(const Workspace& workspace, ProgressWindow& progress) {
    for (const int image : {0, 1, 2, 3})
        progress.setImageVisible(image, false);
    progress.setImageVisible(4, true);
    progress.enableTimer1(false);
    progress.enableTimer2(false);
    progress.setText(progress.text() + "\r\nNo errors - Sucessfully compiled");
    const std::string resultPath = workspace.project.Folder + "result.txt";
    if (!FileExists(resultPath))
        return;
    TextInput result = TextInput::open(resultPath);
    if (const auto lines = readSizeLines(result))
        progress.setText(progress.text() + "\r\n\r\n" + lines->at(0) + "\r\n" + lines->at(1) + "\r\n" +
                         lines->at(2));
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

/// Shows the failing file in the editor. False when the user cancelled, which ends the navigation.
bool showFailingFile(Workspace& workspace, const std::string& fileName) {
    Project& project = workspace.project;
    for (std::size_t node = 1; node <= workspace.tree.count(); ++node) {
        if (workspace.tree.node(node).text != fileName)
            continue;
        const std::string formerKey = project.SelectedKey;
        workspace.tree.select(node);
        project.SelectedKey = workspace.tree.node(node).key;
        const std::string path = project.Folder + workspace.tree.node(node).text;
        if (!FileExists(path))
            continue;
        if (workspace.editor.modified()) {
            const Answer answer = askToSaveText(workspace);
            if (answer == Answer::cancel) {
                reselectCurrentFile(workspace, formerKey);
                return false;
            }
            if (answer == Answer::yes) {
                if (project.CurrentFile >= project.Files.size())
                    throw RuntimeError(RuntimeErrorNumber::subscriptOutOfRange);
                workspace.editor.saveFile(project.Folder + project.Files[project.CurrentFile].FileName, false);
            }
        }
        showNodeFile(workspace, node, path);
    }
    return true;
}

void navigateToError(Workspace& workspace, const CompilerError& error) {
    if (!showFailingFile(workspace, error.file))
        return; // the hourglass stays, as it always has after Cancel
    constexpr double largestLine = 1e9; // beyond any text; the editor takes its last line
    if (error.line > 0) {
        const long line = std::lround(std::fmin(error.line, largestLine)) - 1;
        workspace.editor.setHighlightedLine(line);
        workspace.editor.setCaret({line, 0});
    }
    workspace.display.setWaitPointer(false);
}

void deleteOldOutput(const Workspace& workspace, const std::string& programName, Output output) {
    const std::string path = workspace.project.Folder + programName + (output == Output::chn ? ".chn" : ".com");
    if (FileExists(path))
        deleteFile(path);
}

bool compileAndReport(Workspace& workspace, const BuildTools& tools, Output output) {
    const Project& project = workspace.project;
    const std::string programName = mainProgramName(workspace.tree.node(2).text);
    workspace.display.setWaitPointer(true);
    deleteOldOutput(workspace, programName, output);
    if (GetFolderSize(project.Folder, "*.*", true) > largestProjectFolder) {
        refuseLargeFolder(workspace, tools.progress);
        return true;
    }
    tools.progress.show();
    writeWholeFile(workspace.AppDir + "compiler\\turbopc.bat",
                   compileScript(output, programName, project.StartAddress, project.EndAddress));
    runCompiler(workspace, tools);
    workspace.editor.setHighlightedLine(-1);
    CompilerError error;
    const std::string errorsPath = project.Folder + "errors.txt";
    const bool failed = FileExists(errorsPath);
    if (failed)
        error = showFailure(errorsPath, tools.progress);
    else
        showSuccess(workspace, tools.progress);
    navigateToError(workspace, error);
    return !failed;
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
        // A window that goes on telling of a compilation would be a lie; the message box says what happened.
        for (const char* const name : copiedFiles)
            deleteFileIfPossible(workspace.project.Folder + name);
        tools.progress.close();
        workspace.display.setWaitPointer(false);
        throw;
    }
}

void compileCommand(Workspace& workspace, const BuildTools& tools, Output output) {
    saveModifiedText(workspace);
    DoCompilation(workspace, tools, output);
}

} // namespace tavrel
