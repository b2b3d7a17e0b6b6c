#include "about/form6.h"

#include "app/resource.h"
#include "util/window_placing.h"

#include <bit>
#include <utility>

#include <commctrl.h>

namespace tavrel {

namespace {

constexpr UINT mousePeriod = 100; // milliseconds

HFONT changedFont(HFONT base, bool underlined, LONG percent, LONG weight) {
    LOGFONTA description = {};
    GetObjectA(base, sizeof description, &description);
    description.lfUnderline = underlined ? TRUE : FALSE;
    description.lfHeight = description.lfHeight * percent / 100;
    description.lfWeight = weight;
    return CreateFontIndirectA(&description);
}

} // namespace

Form6::Form6(HWND owner, Shell& shell, std::function<void()> showHistory)
    : owner_(owner), shell_(shell), showHistory_(std::move(showHistory)) {}

Form6::~Form6() {
    if (window_ != nullptr)
        DestroyWindow(window_);
}

void Form6::show() {
    if (window_ == nullptr)
        CreateDialogParamA(GetModuleHandleA(nullptr), std::bit_cast<LPCSTR>(ULONG_PTR{Form6_Dialog}), owner_,
                           dialogProcedure, std::bit_cast<LPARAM>(this));
    ShowWindow(window_, SW_SHOW);
    SetForegroundWindow(window_);
}

void Form6::opened() {
    plainFont_ = std::bit_cast<HFONT>(SendMessageA(window_, WM_GETFONT, 0, 0));
    underlinedFont_ = changedFont(plainFont_, true, 100, FW_NORMAL);
    titleFont_ = changedFont(plainFont_, false, 200, FW_BOLD);
    SendDlgItemMessageA(window_, Form6_Label1, WM_SETFONT, std::bit_cast<WPARAM>(titleFont_), TRUE);
    HWND const Label2 = GetDlgItem(window_, Form6_Label2);
    SetWindowTextA(Label2, makersWebPage.c_str());
    SetWindowSubclass(Label2, linkProcedure, 1, std::bit_cast<DWORD_PTR>(this));
    setLinkLook(restColour, false);
    CenterForm(owner_, window_);
    SetTimer(window_, Form6_Timer1, mousePeriod, nullptr);
}

void Form6::unloaded() {
    KillTimer(window_, Form6_Timer1);
    window_ = nullptr;
    DeleteObject(underlinedFont_);
    DeleteObject(titleFont_);
}

void Form6::setLinkLook(COLORREF colour, bool underlined) {
    if (colour == linkColour_ && underlined == linkUnderlined_)
        return; // the timer would make it flicker
    linkColour_ = colour;
    linkUnderlined_ = underlined;
    HFONT const font = underlined ? underlinedFont_ : plainFont_;
    SendDlgItemMessageA(window_, Form6_Label2, WM_SETFONT, std::bit_cast<WPARAM>(font), TRUE);
    InvalidateRect(GetDlgItem(window_, Form6_Label2), nullptr, TRUE);
}

void Form6::checkMouse() {
    POINT mouse = {};
    GetCursorPos(&mouse);
    ScreenToClient(window_, &mouse);
    RECT label = {};
    GetWindowRect(GetDlgItem(window_, Form6_Label2), &label);
    MapWindowPoints(nullptr, window_, std::bit_cast<POINT*>(&label), 2);
    if (PtInRect(&label, mouse) == 0)
        setLinkLook(restColour, false);
}

LRESULT CALLBACK Form6::linkProcedure(HWND label, UINT message, WPARAM first, LPARAM second, UINT_PTR,
                                      DWORD_PTR data) {
    Form6& form = *std::bit_cast<Form6*>(data);
    switch (message) {
    case WM_NCHITTEST:
        return HTCLIENT; // a static control lets the mouse through otherwise
    case WM_SETCURSOR:
        SetCursor(LoadCursorA(nullptr, std::bit_cast<LPCSTR>(IDC_HAND)));
        return TRUE;
    case WM_MOUSEMOVE:
        form.setLinkLook(hoverColour, true);
        return 0;
    case WM_LBUTTONDOWN:
        if (form.linkColour_ == hoverColour)
            form.setLinkLook(pressedColour, form.linkUnderlined_);
        return 0;
    case WM_LBUTTONUP:
        form.shell_.execute(form.window_, ShellRequest{makersWebPage});
        return 0;
    case WM_NCDESTROY:
        RemoveWindowSubclass(label, linkProcedure, 1);
        break;
    default:
        break;
    }
    return DefSubclassProc(label, message, first, second);
}

INT_PTR Form6::colourOf(HDC context, HWND label) const {
    if (label != GetDlgItem(window_, Form6_Label2))
        return FALSE;
    SetTextColor(context, linkColour_);
    SetBkMode(context, TRANSPARENT);
    return std::bit_cast<INT_PTR>(GetSysColorBrush(COLOR_BTNFACE));
}

INT_PTR Form6::handle(UINT message, WPARAM first, LPARAM second) {
    switch (message) {
    case WM_CTLCOLORSTATIC:
        return colourOf(std::bit_cast<HDC>(first), std::bit_cast<HWND>(second));
    case WM_TIMER:
        checkMouse();
        return TRUE;
    case WM_COMMAND:
        if (LOWORD(first) == Form6_History)
            showHistory_();
        else if (LOWORD(first) == Form6_Label3 || LOWORD(first) == IDCANCEL)
            DestroyWindow(window_);
        return TRUE;
    case WM_CLOSE:
        DestroyWindow(window_);
        return TRUE;
    case WM_DESTROY:
        unloaded();
        return TRUE;
    default:
        return FALSE;
    }
}

bool Form6::handleFirst(MSG& message) {
    return window_ != nullptr && IsDialogMessageA(window_, &message) != 0;
}

INT_PTR CALLBACK Form6::dialogProcedure(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message == WM_INITDIALOG) {
        auto* const form = std::bit_cast<Form6*>(second);
        SetWindowLongPtrA(window, GWLP_USERDATA, second);
        form->window_ = window;
        form->opened();
        return TRUE;
    }
    auto* const form = std::bit_cast<Form6*>(GetWindowLongPtrA(window, GWLP_USERDATA));
    return form != nullptr && form->window_ != nullptr ? form->handle(message, first, second) : FALSE;
}

} // namespace tavrel
