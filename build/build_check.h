// What is checked before a build, so that none begins that cannot end well.
#pragma once

#include <optional>
#include <string>

namespace tavrel {

/// Throws RuntimeError 53 with the path of the first part of the compiler that the program folder lacks.
void requireCompiler(const std::string& programFolder);

/// Why the compiler cannot be started from this program folder for a project in this folder; nothing when it
/// can. Both go through the command interpreter and then through DOSBox.
std::optional<std::string> whyFoldersAreRefused(const std::string& programFolder,
                                                const std::string& projectFolder);

/// Why a project is not built whose files would get in the compiler's way; nothing when there are none. DOS
/// would run TP3.COM or TP3.BAT in the place of TP3.EXE, with everything that it may do.
std::optional<std::string> whyProjectIsRefused(const std::string& projectFolder,
                                               const std::string& programName);

} // namespace tavrel
