// Tavrel.exe.
#include "app/command_line.h"
#include "app/form1.h"
#include "app/program_folder.h"
#include "editor/windows_printer.h"
#include "settings/windows_registry.h"
#include "util/runtime_error.h"
#include "util/windows_dialogs.h"
#include "util/windows_process_runner.h"
#include "util/windows_shell.h"

#include <commctrl.h>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

/// Where copies of unsaved texts go: beside the settings, or with the user's own data when the program folder
/// cannot be written.
std::vector<std::string> rescueFolders(const std::string& AppDir) {
    std::vector<std::string> folders = {AppDir + "rescued\\"};
    if (const std::string own = tavrel::userDataFolder(); !own.empty())
        folders.push_back(own + "Tavrel\\rescued\\");
    return folders;
}

int runProgram(tavrel::WindowsMessageBoxes& messages) {
    const auto AppDir = tavrel::programFolder();
    if (!AppDir)
        throw std::runtime_error(
            "The name of Tavrel's folder has characters that Turbo Pascal's programs cannot "
            "have in a path.\r\nMove Tavrel to a folder of plain letters, C:\\Tavrel for "
            "example.");
    tavrel::WindowsFileDialogs dialogs;
    tavrel::WindowsClassesRegistry registry;
    tavrel::WindowsProcessRunner processes;
    tavrel::WindowsShell shell;
    tavrel::WindowsPrinter printer;
    tavrel::Form1 form({messages, dialogs, registry, processes, shell, printer}, *AppDir);
    form.workspace().rescue.setFolders(rescueFolders(*AppDir));
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
