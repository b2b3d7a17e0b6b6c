#include "about/form7.h"

#include "app/resource.h"
#include "util/window_placing.h"

#include <bit>

namespace tavrel {

Form7::~Form7() {
    if (window_ != nullptr)
        DestroyWindow(window_);
}

void Form7::show(HWND owner, const std::string& history) {
    if (window_ == nullptr) {
        CreateDialogParamA(GetModuleHandleA(nullptr), std::bit_cast<LPCSTR>(ULONG_PTR{Form7_Dialog}), owner,
                           dialogProcedure, std::bit_cast<LPARAM>(this));
        opened(history);
    }
    ShowWindow(window_, SW_SHOW);
    SetForegroundWindow(window_);
}

void Form7::opened(const std::string& history) const {
    CenterForm(GetWindow(window_, GW_OWNER), window_);
    HWND const Text1 = GetDlgItem(window_, Form7_Text1);
    SetWindowTextA(Text1, history.c_str());
    SetFocus(Text1);
    SendMessageA(Text1, EM_SETSEL, 0, 0); // else all of it would come up selected
}

bool Form7::handleFirst(MSG& message) {
    return window_ != nullptr && IsDialogMessageA(window_, &message) != 0;
}

INT_PTR CALLBACK Form7::dialogProcedure(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrA(window, GWLP_USERDATA, second);
        std::bit_cast<Form7*>(second)->window_ = window;
        return FALSE; // the focus is set once the text is there
    }
    auto* const form = std::bit_cast<Form7*>(GetWindowLongPtrA(window, GWLP_USERDATA));
    if (form == nullptr)
        return FALSE;
    const bool closes = message == WM_CLOSE ||
                        (message == WM_COMMAND && (LOWORD(first) == IDCANCEL || LOWORD(first) == IDOK));
    if (closes)
        DestroyWindow(window);
    else if (message == WM_DESTROY)
        form->window_ = nullptr;
    return closes || message == WM_DESTROY ? TRUE : FALSE;
}

} // namespace tavrel
