// Creating a project from a template.
#pragma once

#include "project/workspace.h"

#include <string>
#include <vector>

namespace tavrel {

/// Sorts names by character code with Shell's method; the names are moved, not copied.
void sortNames(std::vector<std::string>& names, bool descending);

/// Names of the templates, sorted: the folders in "projects\" of the program folder.
std::vector<std::string> templateNames(const std::string& AppDir);

/// What the New Project dialog gives back: "" after Cancel, otherwise a digit for the AUTOEXEC check box and
/// the template's name. A double click gives the name alone.
struct NewProjectChoice {
    bool makeAutoexec = false;
    std::string templateName;
    bool operator==(const NewProjectChoice&) const = default;
};

/// Takes a result that is not empty apart: the first character is always taken as the check box.
NewProjectChoice newProjectChoice(const std::string& dialogResult);

/// The main file's path for what the save dialog gave back: cut at the first zero character, blanks trimmed,
/// ".pas" put behind it unless it ends so in any letter case.
std::string newMainFile(const std::string& chosen);

/// Content of the AUTOEXEC.BAT that starts the program of this main file.
std::string autoexecText(const std::string& mainFile);

/// Creates and loads a project as the dialog's result says, asking for the main file's name. Throws
/// RuntimeError when a file cannot be copied or written.
void newProject(Workspace& workspace, const std::string& dialogResult);

} // namespace tavrel
