// openMSX as a child process, with its control connection.
#pragma once

#include "emulator/control.h"
#include "emulator/handle.h"

#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace emulator {

/// A running openMSX. It ends when this object, or the process that owns it, does.
class Process {
  public:
    /// A name for a pipe that no other process uses.
    static std::string newPipeName();

    /// Starts `commandLine` in `folder`; openMSX must be asked in it to connect to the pipe of this name.
    /// Comes back when it has connected or ended. Each time it says something, `message` is posted to
    /// `window`.
    /// @throws Failure when it cannot be started, or neither connects nor ends within half a minute
    Process(const std::string& commandLine, const std::string& folder, const std::string& pipeName,
            HWND window, UINT message);
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    HANDLE handle() const { return process_.get(); } ///< signalled when the process has ended
    bool ended() const;
    DWORD exitCode() const;

    /// Sends a command of openMSX's console. False when the connection is broken.
    bool send(const std::string& command);

    /// What it said since the last call.
    std::vector<Said> said();

    /// Waits until everything that an ended process has said is there.
    void readToEnd();

    /// Brings its window to the front.
    void show() const;

  private:
    void start(const std::string& commandLine, const std::string& folder, HANDLE output);
    void connect();
    void read(HWND window, UINT message);
    bool write(std::string_view text);

    Handle job_;
    Handle process_;
    Handle control_; ///< our end of the control pipe
    Handle done_;    ///< of the call that is under way on it
    Handle output_;
    std::thread reader_;
    std::mutex mutex_; ///< guards the rest
    OutputReader text_;
};

/// Starts a program of Unix under Wine, which cannot be waited for nor spoken with. @throws Failure
void startUnixProgram(const std::string& commandLine, const std::string& folder);

} // namespace emulator
