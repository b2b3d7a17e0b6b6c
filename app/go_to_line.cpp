#include "app/go_to_line.h"

#include "app/resource.h"
#include "util/window_placing.h"

#include <algorithm>
#include <bit>
#include <string>

namespace tavrel {

namespace {

struct Question {
    long current;
    long last;
    long chosen = 0;
};

void opened(HWND dialog, const Question& question) {
    const std::string label = "Line number (1 - " + std::to_string(question.last) + "):";
    SetDlgItemTextA(dialog, GoToLine_Label, label.c_str());
    SetDlgItemTextA(dialog, GoToLine_Number, std::to_string(question.current).c_str());
    SendDlgItemMessageA(dialog, GoToLine_Number, EM_SETLIMITTEXT, 9, 0); // digits; any such number fits
    CenterForm(GetParent(dialog), dialog);
}

INT_PTR CALLBACK dialogProcedure(HWND dialog, UINT message, WPARAM first, LPARAM second) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrA(dialog, GWLP_USERDATA, second);
        opened(dialog, *std::bit_cast<const Question*>(second));
        return TRUE; // the number gets the focus, selected
    }
    if (message != WM_COMMAND || (LOWORD(first) != IDOK && LOWORD(first) != IDCANCEL))
        return FALSE;
    auto& question = *std::bit_cast<Question*>(GetWindowLongPtrA(dialog, GWLP_USERDATA));
    const UINT number = GetDlgItemInt(dialog, GoToLine_Number, nullptr, FALSE);
    question.chosen = static_cast<long>(number);
    EndDialog(dialog, LOWORD(first));
    return TRUE;
}

} // namespace

std::optional<long> askForLine(HWND owner, long current, long last) {
    Question question{current, last};
    const INT_PTR button =
        DialogBoxParamA(GetModuleHandleA(nullptr), std::bit_cast<LPCSTR>(ULONG_PTR{GoToLine_Dialog}), owner,
                        dialogProcedure, std::bit_cast<LPARAM>(&question));
    if (button != IDOK || question.chosen == 0) // an emptied field asks for nothing
        return std::nullopt;
    return std::min(question.chosen, last);
}

} // namespace tavrel
