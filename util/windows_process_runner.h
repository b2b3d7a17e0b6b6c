#pragma once

#include "util/process_runner.h"

namespace tavrel {

/// Starts real processes; waits in slices of 300 ms and handles window messages in between.
class WindowsProcessRunner : public ProcessRunner {
  public:
    void ShellAndWait(const std::string& commandLine, bool showWindow, bool wait) override;
};

} // namespace tavrel
