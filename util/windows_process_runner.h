#pragma once

#include "util/process_runner.h"

#include <vector>

namespace tavrel {

class WaitedProcess;

/// Starts real processes; waits in slices of 300 ms and handles window messages in between.
class WindowsProcessRunner : public ProcessRunner {
  public:
    /// `longWait` in milliseconds.
    explicit WindowsProcessRunner(unsigned longWait = 20'000) : longWait_(longWait) {}

    void ShellAndWait(const std::string& commandLine, bool showWindow, bool wait) override;
    bool started() const override { return started_; }
    void breakOff() override;

  private:
    unsigned longWait_;
    bool started_ = false;
    std::vector<WaitedProcess*> waited_; ///< the innermost last
};

} // namespace tavrel
