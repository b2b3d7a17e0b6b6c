#include "about/form7.h"

#include "app/resource.h"
#include "util/window_placing.h"

#include <bit>

namespace tavrel {

namespace {

INT_PTR CALLBACK dialogProcedure(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message == WM_INITDIALOG) {
        CenterForm(GetParent(window), window);
        HWND const Text1 = GetDlgItem(window, Form7_Text1);
        SetWindowTextA(Text1, std::bit_cast<const std::string*>(second)->c_str());
        SetFocus(Text1);
        SendMessageA(Text1, EM_SETSEL, 0, 0); // else all of it would come up selected
        return FALSE;
    }
    if (message != WM_COMMAND || (LOWORD(first) != IDCANCEL && LOWORD(first) != IDOK))
        return FALSE;
    EndDialog(window, 0);
    return TRUE;
}

} // namespace

void showHistoryWindow(HWND owner, const std::string& history) {
    DialogBoxParamA(GetModuleHandleA(nullptr), std::bit_cast<LPCSTR>(ULONG_PTR{Form7_Dialog}), owner,
                    dialogProcedure, std::bit_cast<LPARAM>(&history));
}

} // namespace tavrel
