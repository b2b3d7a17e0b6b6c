#include "tests/acceptance/random/program.h"

#include "app/resource.h"

#include <array>
#include <bit>
#include <cstdio>

namespace tavrel::random {

namespace {

struct WindowSearch {
    DWORD process;
    std::vector<HWND> found;
};

BOOL CALLBACK collectWindow(HWND window, LPARAM parameter) {
    auto& search = *std::bit_cast<WindowSearch*>(parameter);
    DWORD owner = 0;
    GetWindowThreadProcessId(window, &owner);
    if (owner == search.process && IsWindowVisible(window) != FALSE)
        search.found.push_back(window);
    return TRUE;
}

} // namespace

std::size_t Choices::below(std::size_t count) {
    constexpr std::uint64_t multiplier = 6364136223846793005; // of Knuth's MMIX generator, with its increment
    constexpr std::uint64_t increment = 1442695040888963407;
    state_ = state_ * multiplier + increment;
    return static_cast<std::size_t>((state_ >> 33) % count);
}

std::string className(HWND window) {
    std::array<char, 128> name{};
    GetClassNameA(window, name.data(), static_cast<int>(name.size()));
    return name.data();
}

Program::Program(const std::string& executable, const std::string& argument) {
    std::string command = executable + (argument.empty() ? "" : " " + argument);
    SECURITY_ATTRIBUTES inherited = {sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    HANDLE const nowhere = // what batch files echo is not part of the play's record
        CreateFileA("NUL", GENERIC_WRITE, FILE_SHARE_WRITE, &inherited, OPEN_EXISTING, 0, nullptr);
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = nowhere;
    startup.hStdError = nowhere;
    PROCESS_INFORMATION started = {};
    const BOOL done = CreateProcessA(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                                     &startup, &started);
    CloseHandle(nowhere);
    if (done == 0)
        throw std::runtime_error("cannot start " + command);
    CloseHandle(started.hThread);
    process_ = started.hProcess;
    identifier_ = started.dwProcessId;
    await("the main window", [this] {
        for (HWND const window : visibleWindows()) {
            if (className(window) == "TavrelForm1")
                form_ = window;
        }
        return form_ != nullptr;
    });
    requireAnswer();
}

Program::~Program() {
    if (alive()) // only after a defect
        TerminateProcess(process_, 1);
    CloseHandle(process_);
}

std::vector<HWND> Program::panes() const {
    std::vector<HWND> panes;
    HWND pane = nullptr;
    while ((pane = FindWindowExA(GetDlgItem(form_, Form1_Code1), pane, "Scintilla", nullptr)) != nullptr)
        panes.push_back(pane);
    return panes;
}

HWND Program::editor() const {
    const std::vector<HWND> all = panes();
    return all.empty() ? nullptr : all.front();
}

HWND Program::tree() const {
    return GetDlgItem(form_, Form1_TV);
}

void Program::requireGoodEnd() const {
    await("the program's end", [this] { return !alive(); });
    DWORD code = 0;
    GetExitCodeProcess(process_, &code);
    if (code != 0) {
        std::array<char, 32> text{};
        std::snprintf(text.data(), text.size(), "%#lx", code);
        throw Defect(std::string("the program has ended with code ") + text.data());
    }
}

void Program::requireAnswer() const {
    constexpr UINT patience = 120'000; // milliseconds
    DWORD_PTR answer = 0;
    SetLastError(0);
    if (SendMessageTimeoutA(form_, WM_NULL, 0, 0, SMTO_NORMAL, patience, &answer) != 0)
        return;
    if (alive() && IsWindow(form_) != FALSE)
        throw Defect("the program hangs");
}

std::vector<HWND> Program::visibleWindows() const {
    WindowSearch search{identifier_, {}};
    EnumWindows(collectWindow, std::bit_cast<LPARAM>(&search));
    return search.found;
}

std::vector<HWND> Program::dialogs() const {
    std::vector<HWND> dialogs;
    HWND const building = progress();
    for (HWND const window : visibleWindows()) {
        const std::string name = className(window);
        const bool takesInput = name == "#32770" || name == "HH Parent";
        if (takesInput && window != building && IsWindowEnabled(window) != FALSE)
            dialogs.push_back(window);
    }
    return dialogs;
}

HWND Program::progress() const {
    HWND const window = FindWindowA("#32770", "Compilation");
    return window != nullptr && IsWindowVisible(window) != FALSE ? window : nullptr;
}

} // namespace tavrel::random
