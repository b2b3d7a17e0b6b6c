#include "tests/acceptance/random/system_loss.h"

#include "tests/acceptance/random/program.h"

#include <array>
#include <bit>
#include <functional>

#include <commdlg.h>

namespace tavrel::random {

namespace {

constexpr int warmUps = 2;
constexpr int uses = 4;

void handlePending() {
    MSG message = {};
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
}

/// Rounded up: what is lost every other time counts as lost each time.
Counts perUse(const Counts& before, const Counts& after) {
    const auto share = [](int first, int last) {
        return last > first ? (last - first + uses - 1) / uses : 0;
    };
    return {share(before.windows, after.windows), share(before.gdi, after.gdi),
            share(before.user, after.user), share(before.handles, after.handles)};
}

Counts lossOf(const std::function<void()>& use) {
    for (int i = 0; i < warmUps; ++i)
        use();
    const Counts before = countResources(GetCurrentProcess());
    for (int i = 0; i < uses; ++i)
        use();
    return perUse(before, countResources(GetCurrentProcess()));
}

std::string chosenFile;

/// Runs in the dialog's own message loop.
void CALLBACK answerDialog(HWND, UINT, UINT_PTR, DWORD) {
    HWND const dialog = FindWindowA("#32770", "Loss");
    if (dialog == nullptr)
        return;
    for (const int identifier : {0x47C, 0x480}) { // cmb13 and edt1
        if (HWND const field = GetDlgItem(dialog, identifier)) {
            SetWindowTextA(field, chosenFile.c_str());
            PostMessageA(dialog, WM_COMMAND, IDOK, 0);
            return;
        }
    }
}

void chooseFile() {
    std::array<char, MAX_PATH> file{};
    OPENFILENAMEA request = {};
    request.lStructSize = OPENFILENAME_SIZE_VERSION_400A;
    request.lpstrFilter = "All files\0*.*\0";
    request.lpstrTitle = "Loss";
    request.lpstrFile = file.data();
    request.nMaxFile = static_cast<DWORD>(file.size());
    request.Flags = OFN_EXPLORER | OFN_HIDEREADONLY;
    const UINT_PTR timer = SetTimer(nullptr, 0, 50, answerDialog);
    GetOpenFileNameA(&request);
    KillTimer(nullptr, timer);
    handlePending();
}

void openHelp(const std::string& helpFile) {
    using HtmlHelpFunction = HWND(WINAPI*)(HWND caller, LPCSTR file, UINT command, DWORD_PTR data);
    static const HMODULE viewer = LoadLibraryA("hhctrl.ocx");
    if (viewer == nullptr)
        return;
    const auto htmlHelp = std::bit_cast<HtmlHelpFunction>(GetProcAddress(viewer, "HtmlHelpA"));
    htmlHelp(nullptr, helpFile.c_str(), 0, 0);
    handlePending();
    HWND window = nullptr;
    while ((window = FindWindowExA(nullptr, window, "HH Parent", nullptr)) != nullptr)
        SendMessageA(window, WM_CLOSE, 0, 0);
    handlePending();
}

} // namespace

SystemLoss measureSystemLoss(const std::string& file, const std::string& helpFile) {
    chosenFile = file;
    return {lossOf(chooseFile), lossOf([&] { openHelp(helpFile); })};
}

std::string describe(const SystemLoss& loss) {
    return "the system's own loss: per file dialog " + describe(loss.fileDialog) + "; per help window " +
           describe(loss.help);
}

} // namespace tavrel::random
