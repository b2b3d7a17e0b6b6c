#include "util/windows_shell.h"

#include "util/late_function.h"
#include "util/paths.h"

#include <array>
#include <bit>
#include <optional>
#include <string>
#include <windows.h>

#include <shellapi.h>

namespace tavrel {

namespace {

/// A program that is named without its folder is looked for in the current one, and below it in the working
/// folder: in a project, which may hold anything. As long as this lives the current folder is the system's.
class SystemFolderIsCurrent {
  public:
    SystemFolderIsCurrent() {
        std::array<wchar_t, MAX_PATH> system{};
        std::array<wchar_t, 32768> former{}; // as long as a path can be
        if (GetSystemDirectoryW(system.data(), static_cast<UINT>(system.size())) == 0)
            return;
        const DWORD length = GetCurrentDirectoryW(static_cast<DWORD>(former.size()), former.data());
        former_.assign(former.data(), length);
        SetCurrentDirectoryW(system.data());
    }
    ~SystemFolderIsCurrent() {
        if (!former_.empty())
            SetCurrentDirectoryW(former_.c_str());
    }
    SystemFolderIsCurrent(const SystemFolderIsCurrent&) = delete;
    SystemFolderIsCurrent& operator=(const SystemFolderIsCurrent&) = delete;

  private:
    std::wstring former_;
};

} // namespace

void WindowsShell::execute(void* owner, const ShellRequest& request) {
    std::optional<SystemFolderIsCurrent> guard;
    if (GetFilePath(request.file).empty())
        guard.emplace();
    lateFunction<decltype(ShellExecuteA)>("shell32.dll", "ShellExecuteA")(
        static_cast<HWND>(owner), request.operation.c_str(), request.file.c_str(), request.parameters.c_str(),
        request.workingFolder.c_str(), request.showState);
}

void WindowsShell::showHelp(const std::string& path) {
    using HtmlHelpFunction = HWND(WINAPI*)(HWND caller, LPCSTR file, UINT command, DWORD_PTR data);
    constexpr UINT displayTopic = 0;
    // Taken at run time and kept: the help window lives in this library. Without it there is no help, nothing
    // else.
    static const HMODULE viewer = LoadLibraryA("hhctrl.ocx");
    if (viewer == nullptr)
        return;
    if (const auto htmlHelp = std::bit_cast<HtmlHelpFunction>(GetProcAddress(viewer, "HtmlHelpA")))
        htmlHelp(nullptr, path.c_str(), displayTopic, 0);
}

} // namespace tavrel
