// Running another program.
#pragma once

#include <string>

namespace tavrel {

/// The role of the process runner; a test stands in for the programs that would be started.
class ProcessRunner {
  public:
    virtual ~ProcessRunner() = default;
    /// Starts a command line, with its window hidden unless `showWindow`, and when `wait` is set comes back
    /// only after it has ended, the user interface staying alive meanwhile. A failed start is not reported.
    virtual void ShellAndWait(const std::string& commandLine, bool showWindow, bool wait) = 0;
};

} // namespace tavrel
