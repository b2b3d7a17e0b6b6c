#include "util/windows_process_runner.h"

#include "util/message_pump.h"

#include <vector>
#include <windows.h>

namespace tavrel {

namespace {

constexpr DWORD slice = 300; // milliseconds

/// Closes the process handle however the wait ends.
class ProcessHandle {
  public:
    explicit ProcessHandle(HANDLE handle) : handle_(handle) {}
    ~ProcessHandle() {
        if (handle_ != nullptr)
            CloseHandle(handle_);
    }
    ProcessHandle(const ProcessHandle&) = delete;
    ProcessHandle& operator=(const ProcessHandle&) = delete;

    /// Comes back true when the process has ended, or false after a slice or as soon as a window message
    /// waits, so that windows stay live. Without a process it only passes the time: such a wait has no end.
    bool endedWithinSlice() const {
        if (handle_ != nullptr && WaitForSingleObject(handle_, 0) == WAIT_OBJECT_0)
            return true;
        const DWORD count = handle_ == nullptr ? 0 : 1;
        const DWORD result = MsgWaitForMultipleObjects(count, &handle_, FALSE, slice, QS_ALLINPUT);
        return count == 1 && result == WAIT_OBJECT_0;
    }

  private:
    HANDLE handle_;
};

} // namespace

void WindowsProcessRunner::ShellAndWait(const std::string& commandLine, bool showWindow, bool wait) {
    STARTUPINFOA startUp = {};
    startUp.cb = 65; // the packed length of the record, which every Windows accepts
    if (!showWindow) {
        startUp.dwFlags = STARTF_USESHOWWINDOW;
        startUp.wShowWindow = SW_HIDE;
    }
    PROCESS_INFORMATION started = {};
    std::vector<char> command(commandLine.begin(), commandLine.end());
    command.push_back('\0'); // the call may write into its command line
    CreateProcessA(nullptr, command.data(), nullptr, nullptr, TRUE, NORMAL_PRIORITY_CLASS, nullptr, nullptr,
                   &startUp, &started);
    const ProcessHandle process(started.hProcess); // the thread's handle stays open until this program ends
    if (!wait)
        return;
    while (!process.endedWithinSlice())
        pumpPendingMessages();
}

} // namespace tavrel
