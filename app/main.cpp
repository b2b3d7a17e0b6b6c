// Tavrel.exe.
#include "app/command_line.h"
#include "app/form1.h"
#include "editor/windows_printer.h"
#include "settings/windows_registry.h"
#include "util/paths.h"
#include "util/runtime_error.h"
#include "util/windows_dialogs.h"
#include "util/windows_process_runner.h"
#include "util/windows_shell.h"

#include <array>
#include <commctrl.h>

namespace {

/// Folder of the running program, with its trailing backslash.
std::string programFolder() {
    std::array<char, MAX_PATH + 1> path{};
    GetModuleFileNameA(nullptr, path.data(), MAX_PATH);
    return tavrel::AddBackslash(tavrel::GetFilePath(path.data()));
}

int runProgram(tavrel::WindowsMessageBoxes& messages) {
    tavrel::WindowsFileDialogs dialogs;
    tavrel::WindowsClassesRegistry registry;
    tavrel::WindowsProcessRunner processes;
    tavrel::WindowsShell shell;
    tavrel::WindowsPrinter printer;
    tavrel::Form1 form({messages, dialogs, registry, processes, shell, printer}, programFolder());
    messages.setOwner(form.window());
    dialogs.setOwner(form.window());
    form.load(tavrel::argumentText(GetCommandLineA()));
    return tavrel::runMessageLoop();
}

} // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
    constexpr INITCOMMONCONTROLSEX controls = {sizeof(INITCOMMONCONTROLSEX),
                                               ICC_WIN95_CLASSES | ICC_STANDARD_CLASSES};
    InitCommonControlsEx(&controls);
    tavrel::WindowsMessageBoxes messages;
    try {
        return runProgram(messages);
    } catch (const tavrel::RuntimeError& error) {
        messages.setOwner(nullptr);
        messages.show(error.message(), "Tavrel", tavrel::Icon::critical, tavrel::Buttons::ok);
    } catch (const std::exception& error) {
        messages.setOwner(nullptr);
        messages.show(error.what(), "Tavrel", tavrel::Icon::critical, tavrel::Buttons::ok);
    }
    return 1;
}
