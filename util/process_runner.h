// Running another program.
#pragma once

#include <functional>
#include <string>

namespace tavrel {

/// Thrown out of a wait when the user ends the program that is waited for.
struct WaitBrokenOff {};

/// The role of the process runner; a test stands in for the programs that would be started.
class ProcessRunner {
  public:
    virtual ~ProcessRunner() = default;
    /// Starts a command line, with its window hidden unless `showWindow`, and when `wait` is set comes back
    /// only after it has ended, the user interface staying alive meanwhile. A failed start is not reported.
    /// What is waited for never outlives this program.
    virtual void ShellAndWait(const std::string& commandLine, bool showWindow, bool wait) = 0;
    /// Whether the last ShellAndWait could start its program.
    virtual bool started() const = 0;
    /// Ends whatever is waited for; each such wait then throws WaitBrokenOff.
    virtual void breakOff() = 0;

    /// Called when a wait has lasted long, and again each time it has lasted as long again.
    std::function<void()> waitIsLong = [] {};
};

} // namespace tavrel
