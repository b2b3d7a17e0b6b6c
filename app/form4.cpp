#include "app/form4.h"

#include "app/preferences.h"
#include "app/resource.h"
#include "project/unwritable_folder.h"
#include "util/paths.h"
#include "util/runtime_error.h"
#include "util/text.h"
#include "util/window_placing.h"

#include <bit>
#include <string>
#include <utility>

namespace tavrel {

namespace {

struct Dialog {
    HWND window = nullptr;
    Workspace& workspace;
    std::function<void()> applyFont;

    std::string text(int field) const {
        HWND const control = GetDlgItem(window, field);
        std::string text(static_cast<std::size_t>(GetWindowTextLengthA(control)) + 1, '\0');
        text.resize(
            static_cast<std::size_t>(GetWindowTextA(control, text.data(), static_cast<int>(text.size()))));
        return text;
    }
    void setText(int field, const std::string& text) const { SetDlgItemTextA(window, field, text.c_str()); }
    bool checked(int box) const { return IsDlgButtonChecked(window, box) == BST_CHECKED; }
    void check(int box, bool on) const { CheckDlgButton(window, box, on ? BST_CHECKED : BST_UNCHECKED); }
};

void opened(const Dialog& dialog) {
    const Preferences shown = preferencesOf(dialog.workspace.settings);
    for (const char* const size : {"8", "10", "11", "12", "14", "15", "16", "17", "18", "20"})
        SendDlgItemMessageA(dialog.window, Form4_cmbFontSize, CB_ADDSTRING, 0, std::bit_cast<LPARAM>(size));
    dialog.setText(Form4_Text1, shown.emulatorPath);
    dialog.setText(Form4_Text2, shown.emulatorArgs);
    dialog.setText(Form4_Text3, shown.diskImageDir);
    const LRESULT size =
        SendDlgItemMessageA(dialog.window, Form4_cmbFontSize, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                            std::bit_cast<LPARAM>(shown.fontSize.c_str()));
    SendDlgItemMessageA(dialog.window, Form4_cmbFontSize, CB_SETCURSEL, static_cast<WPARAM>(size), 0);
    dialog.setText(Form4_cmbFontSize, shown.fontSize); // also one that the list does not have
    dialog.check(Form4_Check1, shown.registerTpj);
    dialog.check(Form4_Check2, shown.autoSave);
    dialog.check(Form4_Check3, shown.noNewProjectAtStart);
    dialog.check(Form4_Chktooltip, shown.useTooltips);
    CenterForm(GetParent(dialog.window), dialog.window);
}

void fontSizeChanged(const Dialog& dialog, const std::string& text) {
    dialog.workspace.settings.FontSize = convertToInteger(text);
    dialog.applyFont();
}

void fontSizeClicked(const Dialog& dialog) {
    HWND const list = GetDlgItem(dialog.window, Form4_cmbFontSize);
    const LRESULT item = SendMessageA(list, CB_GETCURSEL, 0, 0);
    if (item == CB_ERR)
        return;
    std::string text(16, '\0');
    text.resize(static_cast<std::size_t>(
        SendMessageA(list, CB_GETLBTEXT, static_cast<WPARAM>(item), std::bit_cast<LPARAM>(text.data()))));
    fontSizeChanged(dialog, text);
}

void browseForEmulator(const Dialog& dialog) {
    OpenDialogRequest request;
    request.title = "Selectr emulator"; // the title that users know
    request.filter = "*.exe";
    request.initialFolder = emulatorFolder(dialog.text(Form4_Text1), dialog.workspace.AppDir);
    const std::string path = dialog.workspace.dialogs.ShowOpenDialog(request);
    if (!path.empty())
        dialog.setText(Form4_Text1, path);
}

void browseForDiskImage(const Dialog& dialog) {
    const std::string folder = dialog.workspace.dialogs.BrowseForFolder("Select Disk Image location");
    if (!folder.empty())
        dialog.setText(Form4_Text3, AddBackslash(folder));
}

void accept(const Dialog& dialog) {
    Preferences entered = {dialog.text(Form4_Text1),     dialog.text(Form4_Text2),
                           dialog.text(Form4_Text3),     dialog.text(Form4_cmbFontSize),
                           dialog.checked(Form4_Check1), dialog.checked(Form4_Check2),
                           dialog.checked(Form4_Check3), dialog.checked(Form4_Chktooltip)};
    refillEmptyFields(entered, dialog.workspace.AppDir);
    dialog.setText(Form4_Text2, entered.emulatorArgs);
    dialog.setText(Form4_Text3, entered.diskImageDir);
    Settings& settings = dialog.workspace.settings;
    const Settings former = settings;
    try {
        storePreferences(entered, settings);
        dialog.applyFont();
        SaveSettings(dialog.workspace);
    } catch (const RuntimeError&) {
        // Cancel may follow, and then the record is what it was. A font size is in force at once and stays.
        const std::int16_t size = settings.FontSize;
        settings = former;
        settings.FontSize = size;
        throw;
    }
    EndDialog(dialog.window, IDOK);
}

void handleCommand(const Dialog& dialog, WORD control, WORD notification) {
    switch (control) {
    case Form4_cmbFontSize:
        if (notification == CBN_EDITCHANGE)
            fontSizeChanged(dialog, dialog.text(Form4_cmbFontSize));
        else if (notification == CBN_SELCHANGE)
            fontSizeClicked(dialog);
        break;
    case Form4_Command3:
        browseForEmulator(dialog);
        break;
    case Form4_Command4:
        browseForDiskImage(dialog);
        break;
    case Form4_Command1:
    case IDOK:
        accept(dialog);
        break;
    case Form4_Command2:
    case IDCANCEL:
        EndDialog(dialog.window, IDCANCEL);
        break;
    default:
        break;
    }
}

INT_PTR CALLBACK dialogProcedure(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrA(window, GWLP_USERDATA, second);
        auto& dialog = *std::bit_cast<Dialog*>(second);
        dialog.window = window;
        opened(dialog);
        return TRUE;
    }
    if (message != WM_COMMAND)
        return FALSE;
    const auto& dialog = *std::bit_cast<const Dialog*>(GetWindowLongPtrA(window, GWLP_USERDATA));
    try {
        handleCommand(dialog, LOWORD(first), HIWORD(first));
    } catch (const RuntimeError& error) {
        dialog.workspace.messages.show(explainedMessage(dialog.workspace, error), "Tavrel", Icon::critical,
                                       Buttons::ok);
    }
    return TRUE;
}

} // namespace

void showPreferences(HWND owner, Workspace& workspace, std::function<void()> applyFont) {
    Dialog dialog{nullptr, workspace, std::move(applyFont)};
    DialogBoxParamA(GetModuleHandleA(nullptr), std::bit_cast<LPCSTR>(ULONG_PTR{Form4_Dialog}), owner,
                    dialogProcedure, std::bit_cast<LPARAM>(&dialog));
}

} // namespace tavrel
