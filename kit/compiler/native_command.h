// The command tp3: the compiler on the developer's own machine.
#pragma once

#include <string>
#include <vector>

namespace tp3 {

/// What a command has to say.
struct Report {
    std::string output;
    std::string errors; ///< each line a complete message
};

/// Runs one command line (without the program's own name). Returns the exit code: 0, 1 when there is an error
/// in the program or a file cannot be read or written, 2 when the command line cannot be followed. What was
/// there before an error stays as it was.
int run(const std::vector<std::string>& words, Report& report);

} // namespace tp3
