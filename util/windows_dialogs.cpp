#include "util/windows_dialogs.h"

#include "util/late_function.h"
#include "util/paths.h"

#include <algorithm>
#include <array>
#include <commdlg.h>
#include <shlobj.h>

namespace tavrel {

namespace {

UINT iconFlag(Icon icon) {
    switch (icon) {
    case Icon::critical:
        return MB_ICONERROR;
    case Icon::question:
        return MB_ICONQUESTION;
    case Icon::information:
        return MB_ICONINFORMATION;
    case Icon::none:
        break;
    }
    return 0;
}

UINT buttonFlag(Buttons buttons) {
    switch (buttons) {
    case Buttons::yesNo:
        return MB_YESNO;
    case Buttons::yesNoCancel:
        return MB_YESNOCANCEL;
    case Buttons::ok:
        break;
    }
    return MB_OK;
}

/// While a dialog of ours is up the main window is disabled, and the dialog owns what is opened from it.
HWND ownerNow(HWND mainWindow) {
    return mainWindow != nullptr && IsWindowEnabled(mainWindow) == FALSE ? GetLastActivePopup(mainWindow)
                                                                         : mainWindow;
}

constexpr std::size_t bufferLength = 254; // blanks; the dialog is told one more

/// The record of the classic size (76 bytes on 32-bit Windows), filled as both dialogs share it.
OPENFILENAMEA dialogRecord(HWND owner, const std::string& filter, const std::string& title,
                           const std::string& initialFolder) {
    OPENFILENAMEA record = {};
    record.lStructSize = OPENFILENAME_SIZE_VERSION_400A;
    record.hwndOwner = owner;
    record.hInstance = GetModuleHandleA(nullptr);
    record.lpstrFilter = filter.c_str();
    record.lpstrTitle = title.c_str();
    record.lpstrInitialDir = initialFolder.c_str();
    return record;
}

} // namespace

Answer WindowsMessageBoxes::show(const std::string& text, const std::string& title, Icon icon,
                                 Buttons buttons) {
    switch (
        MessageBoxA(ownerNow(owner_), text.c_str(), title.c_str(), iconFlag(icon) | buttonFlag(buttons))) {
    case IDYES:
        return Answer::yes;
    case IDNO:
        return Answer::no;
    case IDCANCEL:
        return Answer::cancel;
    default:
        return Answer::ok;
    }
}

std::string WindowsFileDialogs::ShowOpenDialog(const OpenDialogRequest& request) {
    const std::string filter = systemFilter(request.filter);
    std::string file(bufferLength, ' ');
    std::string fileTitle(bufferLength, ' ');
    // A buffer that starts with blanks would come up as the name "   "; the dialog is given an empty name and
    // the blanks behind it.
    file[0] = '\0';
    OPENFILENAMEA record = dialogRecord(ownerNow(owner_), filter, request.title, request.initialFolder);
    record.lpstrFile = file.data();
    record.nMaxFile =
        static_cast<DWORD>(bufferLength + 1); // std::string keeps a zero behind its last character
    record.lpstrFileTitle = fileTitle.data();
    record.nMaxFileTitle = static_cast<DWORD>(bufferLength + 1);
    record.Flags = openDialogFlags(request.multipleSelection);
    if (lateFunction<decltype(GetOpenFileNameA)>("comdlg32.dll", "GetOpenFileNameA")(&record) == 0)
        return {};
    return pathFromDialogBuffer(file);
}

std::string WindowsFileDialogs::showSaveDialog(const SaveDialogRequest& request) {
    const std::string filter = systemFilter(request.filter);
    std::array<char, bufferLength + 1> file{};
    request.proposedPath.copy(file.data(), bufferLength);
    OPENFILENAMEA record = dialogRecord(ownerNow(owner_), filter, request.title, request.initialFolder);
    record.lpstrFile = file.data();
    record.nMaxFile = static_cast<DWORD>(file.size());
    record.lpstrDefExt = request.extension.empty() ? nullptr : request.extension.c_str();
    record.Flags = openDialogFlags(false) | OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST;
    if (lateFunction<decltype(GetSaveFileNameA)>("comdlg32.dll", "GetSaveFileNameA")(&record) == 0)
        return {};
    return file.data();
}

std::string WindowsFileDialogs::BrowseForFolder(const std::string& prompt) {
    BROWSEINFOA info = {};
    info.hwndOwner = ownerNow(owner_);
    info.lpszTitle = prompt.c_str();
    info.ulFlags = BIF_RETURNONLYFSDIRS;
    LPITEMIDLIST const chosen =
        lateFunction<decltype(SHBrowseForFolderA)>("shell32.dll", "SHBrowseForFolderA")(&info);
    if (chosen == nullptr)
        return {};
    std::array<char, 512> path{};
    const bool found = lateFunction<decltype(SHGetPathFromIDListA)>("shell32.dll", "SHGetPathFromIDListA")(
                           chosen, path.data()) != 0;
    CoTaskMemFree(chosen);
    return found ? std::string(path.data()) : std::string();
}

} // namespace tavrel
