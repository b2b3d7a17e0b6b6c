#include "emulator/process.h"

#include "emulator/wide_text.h"

#include <array>
#include <bit>

namespace emulator {

namespace {

constexpr DWORD connectLimit = 30'000; // milliseconds
constexpr DWORD writeLimit = 5'000;

Handle newEvent() {
    return Handle(CreateEventW(nullptr, TRUE, FALSE, nullptr));
}

/// All that the starter leaves to a child is the end of one pipe.
class InheritedHandle {
  public:
    explicit InheritedHandle(HANDLE handle) : handle_(handle) {
        SIZE_T size = 0;
        InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
        memory_.resize(size);
        list_ = std::bit_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(memory_.data());
        if (InitializeProcThreadAttributeList(list_, 1, 0, &size) == 0 ||
            UpdateProcThreadAttribute(list_, 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, &handle_, sizeof handle_,
                                      nullptr, nullptr) == 0)
            failWithLastError("The emulator cannot be started");
    }
    ~InheritedHandle() { DeleteProcThreadAttributeList(list_); }
    InheritedHandle(const InheritedHandle&) = delete;
    InheritedHandle& operator=(const InheritedHandle&) = delete;

    LPPROC_THREAD_ATTRIBUTE_LIST list() const { return list_; }

  private:
    HANDLE handle_;
    std::vector<char> memory_;
    LPPROC_THREAD_ATTRIBUTE_LIST list_ = nullptr;
};

/// A job takes its processes with it when its last handle is closed, as the system does when this program is
/// killed.
Handle newJob() {
    Handle job(CreateJobObjectW(nullptr, nullptr));
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits = {};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    SetInformationJobObject(job.get(), JobObjectExtendedLimitInformation, &limits, sizeof limits);
    return job;
}

struct WindowSearch {
    DWORD process;
    HWND found;
};

BOOL CALLBACK isWindowOfProcess(HWND window, LPARAM parameter) {
    auto& search = *std::bit_cast<WindowSearch*>(parameter);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process != search.process || IsWindowVisible(window) == 0 || GetWindow(window, GW_OWNER) != nullptr)
        return TRUE;
    search.found = window;
    return FALSE;
}

} // namespace

std::string Process::newPipeName() {
    static unsigned number = 0;
    return "tavrel-emulator-" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(++number);
}

Process::Process(const std::string& commandLine, const std::string& folder, const std::string& pipeName,
                 HWND window, UINT message)
    : job_(newJob()), done_(newEvent()) {
    HANDLE const pipe = CreateNamedPipeW(wide("\\\\.\\pipe\\" + pipeName).c_str(),
                                         PIPE_ACCESS_OUTBOUND | FILE_FLAG_OVERLAPPED, PIPE_TYPE_BYTE, 1,
                                         65536, 0, 0, nullptr);
    if (pipe == INVALID_HANDLE_VALUE)
        failWithLastError("The emulator cannot be spoken with");
    control_.reset(pipe);
    HANDLE ourEnd = nullptr;
    HANDLE itsEnd = nullptr;
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    if (CreatePipe(&ourEnd, &itsEnd, &inherited, 0) == 0)
        failWithLastError("The emulator cannot be spoken with");
    output_.reset(ourEnd);
    SetHandleInformation(ourEnd, HANDLE_FLAG_INHERIT, 0);
    const Handle childOutput(itsEnd);
    start(commandLine, folder, itsEnd);
    reader_ = std::thread([this, window, message] { read(window, message); });
    connect();
}

Process::~Process() {
    job_.reset();                        // which ends the process, and so the reader's pipe
    TerminateProcess(process_.get(), 1); // where it could not be put into the job
    if (reader_.joinable())
        reader_.join();
}

void Process::start(const std::string& commandLine, const std::string& folder, HANDLE output) {
    const InheritedHandle inherited(output);
    STARTUPINFOEXW startUp = {};
    startUp.StartupInfo.cb = sizeof startUp;
    startUp.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
    startUp.StartupInfo.hStdOutput = output;
    startUp.StartupInfo.hStdError = output;
    startUp.lpAttributeList = inherited.list();
    std::wstring command = wide(commandLine); // the call may write into it
    PROCESS_INFORMATION started = {};
    if (CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE,
                       CREATE_SUSPENDED | EXTENDED_STARTUPINFO_PRESENT, nullptr, wide(folder).c_str(),
                       &startUp.StartupInfo, &started) == 0)
        failWithLastError("The emulator cannot be started (" + commandLine + ")");
    process_.reset(started.hProcess);
    const Handle thread(started.hThread);
    AssignProcessToJobObject(job_.get(), started.hProcess);
    ResumeThread(thread.get());
}

void Process::connect() {
    OVERLAPPED call = {};
    call.hEvent = done_.get();
    if (ConnectNamedPipe(control_.get(), &call) == 0 && GetLastError() == ERROR_IO_PENDING) {
        const std::array<HANDLE, 2> either = {done_.get(), process_.get()};
        const DWORD result = WaitForMultipleObjects(2, either.data(), FALSE, connectLimit);
        if (result != WAIT_OBJECT_0) {
            CancelIo(control_.get());
            DWORD ignored = 0;
            GetOverlappedResult(control_.get(), &call, &ignored, TRUE);
        }
        if (result == WAIT_TIMEOUT) {
            TerminateProcess(process_.get(), 1);
            reader_.join();
            throw Failure("The emulator was started, but does not answer.");
        }
    }
    if (!ended())
        write(controlStart);
}

void Process::read(HWND window, UINT message) {
    std::array<char, 4096> buffer;
    DWORD count = 0;
    while (ReadFile(output_.get(), buffer.data(), buffer.size(), &count, nullptr) != 0 && count != 0) {
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            text_.add({buffer.data(), count});
        }
        PostMessageW(window, message, 0, 0);
    }
    const std::lock_guard<std::mutex> lock(mutex_);
    text_.add("\n"); // ends the last line
}

bool Process::ended() const {
    return WaitForSingleObject(process_.get(), 0) == WAIT_OBJECT_0;
}

DWORD Process::exitCode() const {
    DWORD code = 0;
    GetExitCodeProcess(process_.get(), &code);
    return code;
}

bool Process::write(std::string_view text) {
    OVERLAPPED call = {};
    call.hEvent = done_.get();
    ResetEvent(done_.get());
    DWORD count = 0;
    if (WriteFile(control_.get(), text.data(), static_cast<DWORD>(text.size()), nullptr, &call) == 0 &&
        GetLastError() != ERROR_IO_PENDING)
        return false;
    if (WaitForSingleObject(done_.get(), writeLimit) != WAIT_OBJECT_0)
        CancelIo(control_.get());
    return GetOverlappedResult(control_.get(), &call, &count, TRUE) != 0 && count == text.size();
}

bool Process::send(const std::string& command) {
    return write(controlCommand(command));
}

std::vector<Said> Process::said() {
    const std::lock_guard<std::mutex> lock(mutex_);
    std::vector<Said> result;
    while (std::optional<Said> one = text_.next())
        result.push_back(std::move(*one));
    return result;
}

void Process::readToEnd() {
    if (reader_.joinable())
        reader_.join();
}

void Process::show() const {
    WindowSearch search = {GetProcessId(process_.get()), nullptr};
    EnumWindows(isWindowOfProcess, std::bit_cast<LPARAM>(&search));
    if (search.found == nullptr)
        return;
    if (IsIconic(search.found) != 0)
        ShowWindow(search.found, SW_RESTORE);
    SetForegroundWindow(search.found);
}

void startUnixProgram(const std::string& commandLine, const std::string& folder) {
    STARTUPINFOW startUp = {};
    startUp.cb = sizeof startUp;
    std::wstring command = wide(commandLine);
    PROCESS_INFORMATION started = {};
    if (CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, wide(folder).c_str(),
                       &startUp, &started) == 0)
        failWithLastError("The emulator cannot be started (" + commandLine + ")");
    const Handle process(started.hProcess);
    const Handle thread(started.hThread);
}

} // namespace emulator
