#include "util/windows_shell.h"

#include "util/late_function.h"

#include <bit>
#include <windows.h>

#include <shellapi.h>

namespace tavrel {

void WindowsShell::execute(void* owner, const ShellRequest& request) {
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
