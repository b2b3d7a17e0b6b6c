#include "build/form2.h"

#include "app/resource.h"
#include "util/window_placing.h"

#include <bit>
#include <stdexcept>
#include <utility>

namespace tavrel {

namespace {
constexpr UINT blinkPeriod = 300; // milliseconds
constexpr int pictureSide = 52;   // pixels at 96 to the inch

/// Whether a text box holds more lines than it shows.
bool hasHiddenLines(HWND box) {
    RECT shown = {};
    SendMessageA(box, EM_GETRECT, 0, std::bit_cast<LPARAM>(&shown));
    HDC const context = GetDC(box);
    HGDIOBJ const old = SelectObject(context, std::bit_cast<HGDIOBJ>(SendMessageA(box, WM_GETFONT, 0, 0)));
    TEXTMETRICA font = {};
    GetTextMetricsA(context, &font);
    SelectObject(context, old);
    ReleaseDC(box, context);
    return SendMessageA(box, EM_GETLINECOUNT, 0, 0) * font.tmHeight > shown.bottom - shown.top;
}

} // namespace

Form2::Form2(HWND owner, std::function<std::string()> projectName)
    : owner_(owner), projectName_(std::move(projectName)) {}

Form2::~Form2() {
    close();
}

void Form2::open() {
    if (window_ != nullptr)
        return;
    CreateDialogParamA(GetModuleHandleA(nullptr), std::bit_cast<LPCSTR>(ULONG_PTR{Form2_Dialog}), owner_,
                       dialogProcedure, std::bit_cast<LPARAM>(this));
    if (window_ == nullptr)
        throw std::runtime_error("The progress window cannot be made.");
}

void Form2::opened() {
    const int side = MulDiv(pictureSide, screenScale().pixelsPerInchX, 96);
    for (int image = 0; image < imageCount; ++image) {
        HBITMAP const picture = makeProgressPicture(image, side, GetSysColor(COLOR_BTNFACE));
        pictures_.at(static_cast<std::size_t>(image)) = picture;
        SendMessageA(control(Form2_Image1_0 + image), STM_SETIMAGE, IMAGE_BITMAP,
                     std::bit_cast<LPARAM>(picture));
    }
    CenterForm(owner_, window_);
    SetTopMost(window_, true);
    setText("Compiling " + projectName_() + "...");
    for (int image = 0; image < imageCount; ++image)
        setImageVisible(image, image == 0);
    enableTimer1(true);
    enableTimer2(false);
    ShowWindow(window_, SW_SHOW);
    SetFocus(control(Form2_Text1));
    SendMessageA(control(Form2_Text1), EM_SETSEL, 0, 0); // a dialog would show all of the text selected
    UpdateWindow(window_);
}

void Form2::unloaded() {
    SetTopMost(window_, false);
    enableTimer(Form2_Timer1, false);
    enableTimer(Form2_Timer2, false);
    window_ = nullptr;
    for (HBITMAP& picture : pictures_) {
        DeleteObject(picture);
        picture = nullptr;
    }
}

void Form2::show() {
    open();
    ShowWindow(window_, SW_SHOW);
    UpdateWindow(window_);
}

void Form2::close() {
    if (window_ != nullptr)
        DestroyWindow(window_);
}

std::string Form2::text() {
    open();
    HWND const box = control(Form2_Text1);
    std::string text(static_cast<std::size_t>(GetWindowTextLengthA(box)) + 1, '\0');
    const int length = GetWindowTextA(box, text.data(), static_cast<int>(text.size()));
    text.resize(static_cast<std::size_t>(length));
    return text;
}

void Form2::setText(const std::string& text) {
    open();
    HWND const box = control(Form2_Text1);
    ShowScrollBar(box, SB_VERT, FALSE);
    SetWindowTextA(box, text.c_str());
    if (hasHiddenLines(box))
        ShowScrollBar(box, SB_VERT, TRUE);
}

void Form2::setImageVisible(int image, bool visible) {
    open();
    visible_.at(static_cast<std::size_t>(image)) = visible;
    ShowWindow(control(Form2_Image1_0 + image), visible ? SW_SHOW : SW_HIDE);
}

bool Form2::imageVisible(int image) const {
    return window_ != nullptr && visible_.at(static_cast<std::size_t>(image));
}

void Form2::enableTimer(UINT_PTR timer, bool enabled) {
    if (enabled)
        SetTimer(window_, timer, blinkPeriod, nullptr);
    else
        KillTimer(window_, timer);
}

void Form2::enableTimer1(bool enabled) {
    open();
    timer1_ = enabled;
    enableTimer(Form2_Timer1, enabled);
}

void Form2::enableTimer2(bool enabled) {
    open();
    timer2_ = enabled;
    enableTimer(Form2_Timer2, enabled);
}

void Form2::blink(int firstImage, int secondImage) {
    for (const int image : {firstImage, secondImage})
        setImageVisible(image, !imageVisible(image));
    UpdateWindow(window_);
}

bool Form2::handleFirst(MSG& message) {
    if (window_ == nullptr || (message.hwnd != window_ && IsChild(window_, message.hwnd) == 0))
        return false;
    if (message.message == WM_KEYDOWN && message.wParam == VK_ESCAPE) {
        close();
        return true;
    }
    return IsDialogMessageA(window_, &message) != 0;
}

bool Form2::handle(UINT message, WPARAM first) {
    switch (message) {
    case WM_TIMER:
        if (first == Form2_Timer1)
            blink(1, 0);
        else
            blink(2, 3);
        return true;
    case WM_COMMAND:
        if (LOWORD(first) == IDCANCEL)
            close();
        else if (HIWORD(first) == EN_SETFOCUS)
            HideCaret(control(Form2_Text1)); // nothing can be typed, and it would lie over the first letter
        return true;
    case WM_CLOSE:
        close();
        return true;
    case WM_DESTROY:
        unloaded();
        return true;
    default:
        return false;
    }
}

INT_PTR CALLBACK Form2::dialogProcedure(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message == WM_INITDIALOG) {
        auto* const form = std::bit_cast<Form2*>(second);
        SetWindowLongPtrA(window, GWLP_USERDATA, second);
        form->window_ = window;
        form->opened();
        return FALSE; // the focus is set
    }
    auto* const form = std::bit_cast<Form2*>(GetWindowLongPtrA(window, GWLP_USERDATA));
    return form != nullptr && form->handle(message, first) ? TRUE : FALSE;
}

} // namespace tavrel
