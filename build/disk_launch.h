// Compile and Run: the project folder on a disk image, and the emulator with that disk.
#pragma once

#include "build/compilation.h"

#include <string>
#include <string_view>

namespace tavrel {

/// Replaces occurrences of `placeholder`, compared without regard to case, one at a time, searching again
/// from the start after each. The first one found at the very start of the text ends the replacing and stays.
/// A replacement that holds the placeholder is replaced for ever: this then never comes back.
std::string replacePlaceholder(std::string text, std::string_view placeholder, std::string_view replacement);

/// Path of the disk image in the folder that the preferences name.
std::string diskImagePath(const std::string& diskImageFolder);

/// Path of the text in which the disk tool writes what it had to leave out of the image.
std::string leftOutPath(const std::string& diskImageFolder);

/// The command line that puts every file of the project folder onto the disk image. The folders may come with
/// or without their final backslash. Nothing is quoted: the disk tool puts paths with blanks together itself.
std::string diskToolCommand(const std::string& programFolder, const std::string& diskImageFolder,
                            const std::string& projectFolder);

/// The command line that starts the emulator, with the image's path for "%1" and "%dsk" in its arguments.
std::string emulatorCommand(const Settings& settings);

/// Saves modified text, builds the .COM program, puts the project folder onto the disk image and starts the
/// emulator. A compile error ends it with the progress window up; a build refused for its size does not.
/// Status panel 3 says when the image lacks files or could not be made, and when the emulator does not run.
/// Throws RuntimeError as DoCompilation does, and when there is no disk tool.
void compileAndRunCommand(Workspace& workspace, const BuildTools& tools);

} // namespace tavrel
