#include "util/windows_process_runner.h"

#include "util/message_pump.h"

#include <memory>
#include <windows.h>

namespace tavrel {

namespace {

constexpr DWORD slice = 300; // milliseconds

struct HandleCloser {
    using pointer = HANDLE;
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using Handle = std::unique_ptr<HANDLE, HandleCloser>;

/// A process and all that it starts. They end together, at the latest when this goes or this program ends.
/// Inside a job of somebody else's an old Windows allows no other: then only the process itself is held.
class Job {
  public:
    void hold(HANDLE process) {
        job_.reset(CreateJobObjectA(nullptr, nullptr));
        JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits = {};
        limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
        if (!job_ ||
            SetInformationJobObject(job_.get(), JobObjectExtendedLimitInformation, &limits, sizeof limits) ==
                0 ||
            AssignProcessToJobObject(job_.get(), process) == 0)
            job_.reset();
    }
    /// Comes back when the processes are gone, so that what they held open can be deleted.
    void end(HANDLE process) const {
        if (job_)
            TerminateJobObject(job_.get(), 1);
        else
            TerminateProcess(process, 1);
        constexpr DWORD patience = 5000; // milliseconds
        const ULONGLONG start = GetTickCount64();
        while (isActive(process) && GetTickCount64() - start < patience)
            Sleep(10);
    }

  private:
    bool isActive(HANDLE process) const {
        JOBOBJECT_BASIC_ACCOUNTING_INFORMATION counts = {};
        if (job_ && QueryInformationJobObject(job_.get(), JobObjectBasicAccountingInformation, &counts,
                                              sizeof counts, nullptr) != 0)
            return counts.ActiveProcesses != 0;
        return WaitForSingleObject(process, 0) == WAIT_TIMEOUT;
    }

    Handle job_;
};

} // namespace

/// A process that is waited for, or the lack of one: such a wait has no end of its own.
class WaitedProcess {
  public:
    WaitedProcess(HANDLE process, std::vector<WaitedProcess*>& all) : process_(process), all_(all) {
        if (process_ != nullptr)
            job_.hold(process_);
        all_.push_back(this);
    }
    ~WaitedProcess() {
        std::erase(all_, this);
        if (process_ != nullptr && !ended_)
            job_.end(process_);
    }
    WaitedProcess(const WaitedProcess&) = delete;
    WaitedProcess& operator=(const WaitedProcess&) = delete;

    void breakOff() {
        brokenOff_ = true;
        if (process_ != nullptr)
            job_.end(process_);
    }
    bool brokenOff() const { return brokenOff_; }

    /// Comes back true when the process has ended, or false after a slice or as soon as a window message
    /// waits, so that windows stay live.
    bool endedWithinSlice() {
        if (process_ != nullptr && WaitForSingleObject(process_, 0) == WAIT_OBJECT_0)
            return ended_ = true;
        const DWORD count = process_ == nullptr ? 0 : 1;
        const DWORD result = MsgWaitForMultipleObjects(count, &process_, FALSE, slice, QS_ALLINPUT);
        return ended_ = count == 1 && result == WAIT_OBJECT_0;
    }

  private:
    HANDLE process_;
    std::vector<WaitedProcess*>& all_;
    Job job_;
    bool ended_ = false;
    bool brokenOff_ = false;
};

void WindowsProcessRunner::ShellAndWait(const std::string& commandLine, bool showWindow, bool wait) {
    STARTUPINFOA startUp = {};
    startUp.cb = 65; // the packed length of the record, which every Windows accepts
    if (!showWindow) {
        startUp.dwFlags = STARTF_USESHOWWINDOW;
        startUp.wShowWindow = SW_HIDE;
    }
    PROCESS_INFORMATION information = {};
    std::vector<char> command(commandLine.begin(), commandLine.end());
    command.push_back('\0'); // the call may write into its command line
    started_ = CreateProcessA(nullptr, command.data(), nullptr, nullptr, TRUE, NORMAL_PRIORITY_CLASS, nullptr,
                              nullptr, &startUp, &information) != 0;
    const Handle closer(information.hProcess); // the thread's handle stays open until this program ends
    if (!wait)
        return;
    WaitedProcess process(information.hProcess, waited_);
    ULONGLONG told = GetTickCount64();
    while (!process.endedWithinSlice()) {
        pumpPendingMessages();
        if (process.brokenOff())
            break;
        if (GetTickCount64() - told >= longWait_) {
            told = GetTickCount64();
            waitIsLong();
        }
    }
    if (process.brokenOff())
        throw WaitBrokenOff();
}

void WindowsProcessRunner::breakOff() {
    for (WaitedProcess* const process : waited_)
        process->breakOff();
}

} // namespace tavrel
