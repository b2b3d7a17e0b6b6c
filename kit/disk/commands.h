// What dsktool does.
#pragma once

#include <string>
#include <vector>

namespace disk {

enum ExitCode : int { done = 0, failed = 1, wrongUse = 2, doneInPart = 3 };

/// What a command has to say.
struct Report {
    std::string output;
    std::string errors; ///< each line a complete message
};

/// Runs one command line (without the program's own name); paths are UTF-8 on Windows. Never throws for what
/// a user, a file or an image can do wrong.
ExitCode run(const std::vector<std::string>& arguments, Report& report);

} // namespace disk
