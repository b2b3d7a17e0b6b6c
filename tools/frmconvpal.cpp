#include "tools/frmconvpal.h"

#include "app/resource.h"
#include "tools/palette/palette_commands.h"
#include "tools/palette/palette_source.h"
#include "tools/palette_preview.h"
#include "util/clipboard.h"
#include "util/paths.h"
#include "util/runtime_error.h"
#include "util/window_placing.h"

#include <bit>
#include <optional>
#include <string>

namespace tavrel {

namespace {

/// The preview reads the file without a word; errors are told when the user asks for an output.
struct SilentMessages : MessageBoxes {
    Answer show(const std::string&, const std::string&, Icon, Buttons) override { return Answer::ok; }
};

struct Dialog {
    HWND window = nullptr;
    Workspace& workspace;
    std::optional<RgbPalette> preview = {};

    std::string text(int field) const {
        HWND const control = GetDlgItem(window, field);
        std::string text(static_cast<std::size_t>(GetWindowTextLengthA(control)) + 1, '\0');
        text.resize(
            static_cast<std::size_t>(GetWindowTextA(control, text.data(), static_cast<int>(text.size()))));
        return text;
    }
    void setText(int field, const std::string& text) const { SetDlgItemTextA(window, field, text.c_str()); }
};

void opened(const Dialog& dialog) {
    SendDlgItemMessageA(dialog.window, frmConvPal_Text2, EM_SETLIMITTEXT, 0, 0);
    CenterForm(GetParent(dialog.window), dialog.window);
}

void refreshPreview(Dialog& dialog) {
    SilentMessages nobody;
    try {
        dialog.preview = readPaletteSource(dialog.text(frmConvPal_Text1), nobody);
    } catch (const RuntimeError&) {
        dialog.preview.reset();
    }
    dialog.setText(frmConvPal_Hint, dialog.preview || dialog.text(frmConvPal_Text1).empty()
                                        ? ""
                                        : "This file holds no palette of 16 colours.");
    InvalidateRect(GetDlgItem(dialog.window, frmConvPal_Before), nullptr, FALSE);
    InvalidateRect(GetDlgItem(dialog.window, frmConvPal_After), nullptr, FALSE);
}

void browse(const Dialog& dialog) {
    const std::string path =
        dialog.workspace.dialogs.ShowOpenDialog(paletteSourceRequest(dialog.workspace.LastDir));
    if (!path.empty())
        dialog.setText(frmConvPal_Text1, path);
}

void convert(const Dialog& dialog) {
    const std::string lines = paletteAsPascal(dialog.text(frmConvPal_Text1), dialog.workspace.messages);
    if (lines.empty())
        return;
    dialog.setText(frmConvPal_Text2, dialog.text(frmConvPal_Text2) + lines);
    HWND const Text2 = GetDlgItem(dialog.window, frmConvPal_Text2);
    SendMessageA(Text2, EM_LINESCROLL, 0, SendMessageA(Text2, EM_GETLINECOUNT, 0, 0));
}

void insertOnCode(const Dialog& dialog) {
    SourceEditor& Code1 = dialog.workspace.editor;
    Code1.insertText(dialog.text(frmConvPal_Text2), Code1.selection().start);
}

void handleCommand(Dialog& dialog, WORD control, WORD notification) {
    switch (control) {
    case frmConvPal_Text1:
        if (notification == EN_CHANGE)
            refreshPreview(dialog);
        break;
    case frmConvPal_Command1:
        browse(dialog);
        break;
    case frmConvPal_Command2:
        convert(dialog);
        break;
    case frmConvPal_Command3:
        if (!putTextOnClipboard(dialog.window, dialog.text(frmConvPal_Text2)))
            dialog.workspace.messages.show("Another program holds the clipboard.", "Tavrel", Icon::critical,
                                           Buttons::ok);
        break;
    case frmConvPal_Command4:
        insertOnCode(dialog);
        break;
    case frmConvPal_Command5:
        savePaletteFile(dialog.text(frmConvPal_Text1), dialog.workspace.LastDir, dialog.workspace.dialogs,
                        dialog.workspace.messages);
        break;
    case IDCANCEL:
        EndDialog(dialog.window, IDCANCEL);
        break;
    default:
        break;
    }
}

void draw(const Dialog& dialog, const DRAWITEMSTRUCT& item) {
    if (item.CtlID == frmConvPal_Before)
        drawPaletteBefore(item, dialog.preview);
    else
        drawPaletteAfter(item, dialog.preview);
}

INT_PTR CALLBACK dialogProcedure(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrA(window, GWLP_USERDATA, second);
        auto& dialog = *std::bit_cast<Dialog*>(second);
        dialog.window = window;
        opened(dialog);
        return TRUE;
    }
    auto* const dialog = std::bit_cast<Dialog*>(GetWindowLongPtrA(window, GWLP_USERDATA));
    if (dialog == nullptr)
        return FALSE;
    if (message == WM_DRAWITEM) {
        draw(*dialog, *std::bit_cast<const DRAWITEMSTRUCT*>(second));
        return TRUE;
    }
    if (message != WM_COMMAND)
        return FALSE;
    try {
        handleCommand(*dialog, LOWORD(first), HIWORD(first));
    } catch (const RuntimeError& error) {
        dialog->workspace.messages.show(error.message(), "Tavrel", Icon::critical, Buttons::ok);
    }
    return TRUE;
}

} // namespace

void showPaletteConverter(HWND owner, Workspace& workspace) {
    Dialog dialog{nullptr, workspace};
    DialogBoxParamA(GetModuleHandleA(nullptr), std::bit_cast<LPCSTR>(ULONG_PTR{frmConvPal_Dialog}), owner,
                    dialogProcedure, std::bit_cast<LPARAM>(&dialog));
}

} // namespace tavrel
