#include "project/form5.h"

#include "app/resource.h"
#include "util/window_placing.h"

#include <algorithm>
#include <array>
#include <bit>

#include <commctrl.h>

namespace tavrel {

namespace {

struct Dialog {
    const std::vector<std::string>& templates;
    std::string result;
};

Dialog& dialogOf(HWND window) {
    return *std::bit_cast<Dialog*>(GetWindowLongPtrA(window, GWLP_USERDATA));
}

HIMAGELIST makeImageList() {
    const int width = GetSystemMetrics(SM_CXICON);
    const int height = GetSystemMetrics(SM_CYICON);
    HIMAGELIST const ImageList1 = ImageList_Create(width, height, ILC_COLOR32 | ILC_MASK, 1, 0);
    HANDLE const icon = LoadImageA(GetModuleHandleA(nullptr), std::bit_cast<LPCSTR>(ULONG_PTR{Template_Icon}),
                                   IMAGE_ICON, width, height, 0);
    ImageList_ReplaceIcon(ImageList1, -1, static_cast<HICON>(icon));
    DestroyIcon(static_cast<HICON>(icon));
    return ImageList1;
}

/// Room for a name of some words under each picture, and as many columns as the list's width takes whole.
void spreadIcons(HWND LVProjects) {
    const ScreenScale scale = screenScale();
    const int desiredWidth = MulDiv(95, scale.pixelsPerInchX, 96);
    const int height = MulDiv(80, scale.pixelsPerInchY, 96);
    RECT client = {};
    GetClientRect(LVProjects, &client);
    const int room = static_cast<int>(client.right) - GetSystemMetrics(SM_CXVSCROLL);
    const int columns = std::max(room / desiredWidth, 1);
    SendMessageA(LVProjects, LVM_SETICONSPACING, 0, MAKELPARAM(room / columns, height));
}

void fillList(HWND LVProjects, const std::vector<std::string>& templates) {
    spreadIcons(LVProjects);
    // The list view owns its image list and frees it with itself.
    SendMessageA(LVProjects, LVM_SETIMAGELIST, LVSIL_NORMAL, std::bit_cast<LPARAM>(makeImageList()));
    for (std::size_t i = 0; i < templates.size(); ++i) {
        std::string text = templates[i];
        LVITEMA item = {};
        item.mask = LVIF_TEXT | LVIF_IMAGE;
        item.iItem = static_cast<int>(i);
        item.pszText = text.data();
        SendMessageA(LVProjects, LVM_INSERTITEMA, 0, std::bit_cast<LPARAM>(&item));
    }
    LVITEMA first = {};
    first.state = LVIS_SELECTED | LVIS_FOCUSED;
    first.stateMask = first.state;
    SendMessageA(LVProjects, LVM_SETITEMSTATE, 0, std::bit_cast<LPARAM>(&first));
}

int selectedItem(HWND window) {
    return static_cast<int>(SendDlgItemMessageA(window, Form5_LVProjects, LVM_GETNEXTITEM,
                                                static_cast<WPARAM>(-1), LVNI_SELECTED));
}

void enableOpen(HWND window) {
    EnableWindow(GetDlgItem(window, Form5_Command1), selectedItem(window) >= 0 ? TRUE : FALSE);
}

void opened(HWND window) {
    CenterForm(GetParent(window), window);
    HWND const LVProjects = GetDlgItem(window, Form5_LVProjects);
    fillList(LVProjects, dialogOf(window).templates);
    enableOpen(window);
    SetFocus(LVProjects);
}

void open(HWND window) {
    const int item = selectedItem(window);
    if (item < 0)
        return;
    const bool checked = IsDlgButtonChecked(window, Form5_Check1) == BST_CHECKED;
    Dialog& dialog = dialogOf(window);
    dialog.result = (checked ? "1" : "0") + dialog.templates.at(static_cast<std::size_t>(item));
    EndDialog(window, IDOK);
}

void notified(HWND window, const NMHDR& notification) {
    if (notification.idFrom != Form5_LVProjects)
        return;
    if (notification.code == LVN_ITEMCHANGED) {
        enableOpen(window);
    } else if (notification.code == NM_DBLCLK) {
        const int item = std::bit_cast<const NMITEMACTIVATE*>(&notification)->iItem;
        if (item < 0)
            return;
        Dialog& dialog = dialogOf(window);
        dialog.result =
            dialog.templates.at(static_cast<std::size_t>(item)); // no digit: it has never had one here
        EndDialog(window, IDOK);
    }
}

INT_PTR CALLBACK dialogProcedure(HWND window, UINT message, WPARAM first, LPARAM second) {
    switch (message) {
    case WM_INITDIALOG:
        SetWindowLongPtrA(window, GWLP_USERDATA, second);
        opened(window);
        return FALSE; // the focus is set
    case WM_NOTIFY:
        notified(window, *std::bit_cast<const NMHDR*>(second));
        return TRUE;
    case WM_COMMAND:
        if (LOWORD(first) == Form5_Command1 || LOWORD(first) == IDOK)
            open(window);
        else if (LOWORD(first) == Form5_Command2 || LOWORD(first) == IDCANCEL)
            EndDialog(window, IDCANCEL);
        return TRUE;
    default:
        return FALSE;
    }
}

} // namespace

std::string showNewProjectDialog(HWND owner, const std::vector<std::string>& templates) {
    Dialog dialog{templates, {}};
    DialogBoxParamA(GetModuleHandleA(nullptr), std::bit_cast<LPCSTR>(ULONG_PTR{Form5_Dialog}), owner,
                    dialogProcedure, std::bit_cast<LPARAM>(&dialog));
    return dialog.result;
}

} // namespace tavrel
