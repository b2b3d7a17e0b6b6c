// A build: from the project in the editor through DOSBox to its outcome.
#pragma once

#include "build/batch_files.h"
#include "build/progress_window.h"
#include "project/workspace.h"
#include "util/process_runner.h"

namespace tavrel {

/// What a build needs beside the main window's records.
struct BuildTools {
    ProgressWindow& progress;
    ProcessRunner& processes;
};

/// Largest project folder that can be built: it must fit on one MSX disk.
constexpr unsigned long largestProjectFolder = 720UL * 1024;

/// Builds the project. False when the compiler reported an error, when the build was not begun because it
/// could not end well (build_check.h), and when the user broke it off. A build refused for want of a project
/// or for a folder that is too large gives true. Throws RuntimeError when a file of the kit or of the
/// project folder cannot be copied or deleted; what had been copied into the project folder is then removed
/// again.
bool DoCompilation(Workspace& workspace, const BuildTools& tools, Output output);

/// The compile commands: saves modified text, then builds.
void compileCommand(Workspace& workspace, const BuildTools& tools, Output output);

} // namespace tavrel
