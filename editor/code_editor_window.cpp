// The window side of the editor control: its two panes and the splitter between them.
#include "editor/code_editor.h"

#include <algorithm>
#include <bit>
#include <stdexcept>

#include <ole2.h>
#include <windowsx.h>

namespace tavrel {

namespace {
constexpr const char* className = "TavrelCodeEditor";
constexpr int splitterHeight = 6; // pixels
constexpr int smallestPane = 20;
constexpr COLORREF errorBackground = RGB(255, 210, 205);
} // namespace

CodeEditor::CodeEditor(HWND parent, int controlIdentifier) {
    WNDCLASSA windowClass = {};
    windowClass.lpfnWndProc = windowProcedure;
    windowClass.hInstance = GetModuleHandleA(nullptr);
    windowClass.lpszClassName = className;
    windowClass.hCursor = LoadCursorA(nullptr, std::bit_cast<LPCSTR>(IDC_SIZENS));
    windowClass.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
    RegisterClassA(&windowClass); // fails when it is registered already, which is as good
    // Its text is shown nowhere; it is the name that a screen reader says.
    window_ = CreateWindowExA(
        WS_EX_CLIENTEDGE, className, "Source", WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN, 0, 0, 0, 0, parent,
        std::bit_cast<HMENU>(static_cast<INT_PTR>(controlIdentifier)), GetModuleHandleA(nullptr), this);
    if (window_ == nullptr)
        throw std::runtime_error("The editor window cannot be made.");
    upper_ = std::make_unique<ScintillaView>(window_);
    setUp(*upper_);
    listenTo(*upper_);
}

CodeEditor::~CodeEditor() {
    if (IsWindow(window_) != 0) {
        SetWindowLongPtrA(window_, GWLP_USERDATA, 0);
        DestroyWindow(window_);
    }
}

ScintillaView& CodeEditor::active() const {
    return activePane_ == 1 && lower_ ? *lower_ : *upper_;
}

void CodeEditor::setUp(const ScintillaView& view) const {
    view.call(SCI_SETTECHNOLOGY, SC_TECHNOLOGY_DEFAULT);
    view.call(SCI_SETCODEPAGE, 0); // one byte, one character
    view.call(SCI_SETTABWIDTH, indentWidth);
    view.call(SCI_SETUSETABS, 0);
    view.call(SCI_SETTABINDENTS, 1);
    view.call(SCI_SETBACKSPACEUNINDENTS, 1);
    view.call(SCI_SETSCROLLWIDTH, 1);
    view.call(SCI_SETSCROLLWIDTHTRACKING, 1);
    view.call(SCI_SETCARETPERIOD, 500);
    view.call(SCI_USEPOPUP, SC_POPUP_NEVER);
    view.call(SCI_MARKERDEFINE, 0, sptr_t{SC_MARK_BACKGROUND});
    // Over the colour of the current line, which the line with the error usually is.
    view.call(SCI_MARKERSETALPHA, 0, sptr_t{SC_ALPHA_OPAQUE});
    view.call(SCI_MARKERSETBACK, 0, static_cast<sptr_t>(errorBackground));
    view.call(SCI_MARKERSETLAYER, 0, sptr_t{SC_LAYER_UNDER_TEXT});
    view.call(SCI_SETCARETLINEVISIBLE, 1);
    view.call(SCI_SETCARETLINEVISIBLEALWAYS, 1);
    view.call(SCI_SETMARGINTYPEN, 0, sptr_t{SC_MARGIN_NUMBER});
    view.call(SCI_SETMARGINTYPEN, 1, sptr_t{SC_MARGIN_SYMBOL});
    // The error's marker must stay in its mask too: one that is in no margin's is not drawn at all.
    view.call(SCI_SETMARGINMASKN, 1, static_cast<sptr_t>(~static_cast<unsigned>(SC_MASK_FOLDERS)));
    view.call(SCI_SETCHANGEHISTORY, showChanges);
    // A folded block has a line below it; what is typed or searched in it comes into sight again.
    view.call(SCI_SETFOLDFLAGS, SC_FOLDFLAG_LINEAFTER_CONTRACTED);
    view.call(SCI_SETAUTOMATICFOLD, SC_AUTOMATICFOLD_SHOW | SC_AUTOMATICFOLD_CHANGE);
    // Keys without a command would put control characters into the text. Ctrl+Z has none here: the main
    // window undoes, under a rule of its own.
    for (int key = 'A'; key <= 'Z'; ++key) {
        const auto control = static_cast<uptr_t>(key | (SCMOD_CTRL << 16));
        if (std::string_view("ACVXYLTU").find(static_cast<char>(key)) == std::string_view::npos)
            view.call(SCI_ASSIGNCMDKEY, control, sptr_t{SCI_NULL});
        view.call(SCI_ASSIGNCMDKEY, static_cast<uptr_t>(key | ((SCMOD_CTRL | SCMOD_SHIFT) << 16)),
                  sptr_t{SCI_NULL});
    }
    view.call(SCI_ASSIGNCMDKEY, static_cast<uptr_t>(SCK_BACK | (SCMOD_ALT << 16)),
              sptr_t{SCI_NULL}); // undoes too
    view.call(SCI_ASSIGNCMDKEY, static_cast<uptr_t>(SCK_RETURN | (SCMOD_CTRL << 16)), sptr_t{SCI_NEWLINE});
    if (!font_.face.empty())
        applyPascalStyle(view, font_, size_);
    // The pane must not refuse files that are dropped on it; they are the main window's to open.
    RevokeDragDrop(view.window());
    SetWindowLongPtrA(view.window(), GWL_EXSTYLE,
                      GetWindowLongPtrA(view.window(), GWL_EXSTYLE) | WS_EX_ACCEPTFILES);
}

void CodeEditor::setSplit(bool split) {
    if (split == this->split())
        return;
    if (split) {
        lower_ = std::make_unique<ScintillaView>(window_);
        setUp(*lower_);
        listenTo(*lower_);
        lower_->call(SCI_SETDOCPOINTER, 0, upper_->call(SCI_GETDOCPOINTER));
        lower_->call(SCI_SETCHANGEHISTORY, showChanges);
        zoomAs(*upper_);
    } else {
        const bool focused = lower_->hasFocus();
        if (activePane_ == 1)
            takePlaceOf(*lower_);
        activePane_ = 0;
        DestroyWindow(lower_->window());
        lower_.reset();
        if (focused)
            giveFocus();
    }
    placePanes();
}

/// The pane that stays shows what the other one showed, with its selection.
void CodeEditor::takePlaceOf(const ScintillaView& pane) {
    const sptr_t anchor = pane.call(SCI_GETANCHOR);
    const sptr_t caret = pane.call(SCI_GETCURRENTPOS);
    upper_->call(SCI_SETSEL, static_cast<uptr_t>(anchor), caret);
    upper_->call(SCI_SETFIRSTVISIBLELINE, static_cast<uptr_t>(pane.call(SCI_GETFIRSTVISIBLELINE)));
}

void CodeEditor::setSplitterPosition(int pixels) {
    splitterPosition_ = pixels;
    placePanes();
}

void CodeEditor::setActivePane(int pane) {
    activePane_ = std::clamp(pane, 0, paneCount() - 1);
    giveFocus();
}

void CodeEditor::placePanes() {
    RECT client = {};
    GetClientRect(window_, &client);
    const int upperHeight =
        lower_ ? std::clamp(splitterPosition_, 0, std::max<int>(client.bottom - splitterHeight, 0))
               : client.bottom;
    MoveWindow(upper_->window(), 0, 0, client.right, upperHeight, TRUE);
    if (lower_) {
        const int top = upperHeight + splitterHeight;
        const RECT bar = {0, upperHeight, client.right, top};
        InvalidateRect(window_, &bar, TRUE);
        MoveWindow(lower_->window(), 0, top, client.right, std::max<int>(client.bottom - top, 0), TRUE);
    }
}

/// All that shows between the panes is the splitter.
void CodeEditor::paintSplitter() {
    PAINTSTRUCT paint = {};
    HDC const device = BeginPaint(window_, &paint);
    if (lower_) {
        RECT bar = {};
        GetClientRect(window_, &bar);
        RECT upper = {};
        GetClientRect(upper_->window(), &upper);
        bar.top = upper.bottom;
        bar.bottom = bar.top + splitterHeight;
        DrawEdge(device, &bar, EDGE_RAISED, BF_RECT | BF_MIDDLE);
    }
    EndPaint(window_, &paint);
}

void CodeEditor::dragSplitter(int y) {
    RECT client = {};
    GetClientRect(window_, &client);
    setSplitterPosition(
        std::clamp(y, smallestPane, std::max<int>(client.bottom - smallestPane, smallestPane)));
}

LRESULT CodeEditor::handle(UINT message, WPARAM first, LPARAM second) {
    switch (message) {
    case WM_SIZE:
        if (upper_)
            placePanes();
        return 0;
    case WM_PAINT:
        paintSplitter();
        return 0;
    case WM_SETFOCUS:
        if (upper_)
            giveFocus();
        return 0;
    case WM_LBUTTONDOWN:
        if (lower_)
            SetCapture(window_);
        return 0;
    case WM_MOUSEMOVE:
        if (GetCapture() == window_)
            dragSplitter(GET_Y_LPARAM(second));
        return 0;
    case WM_LBUTTONUP:
        ReleaseCapture();
        return 0;
    case WM_NOTIFY:
        if (upper_)
            handleNotification(*std::bit_cast<const SCNotification*>(second));
        return 0;
    case WM_COMMAND:
        if (HIWORD(first) == SCEN_SETFOCUS)
            activePane_ = lower_ && std::bit_cast<HWND>(second) == lower_->window() ? 1 : 0;
        return 0;
    default:
        return DefWindowProcA(window_, message, first, second);
    }
}

LRESULT CALLBACK CodeEditor::windowProcedure(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message == WM_NCCREATE) {
        auto* const creation = std::bit_cast<CREATESTRUCTA*>(second);
        static_cast<CodeEditor*>(creation->lpCreateParams)->window_ = window;
        SetWindowLongPtrA(window, GWLP_USERDATA, std::bit_cast<LONG_PTR>(creation->lpCreateParams));
    }
    auto* const editor = std::bit_cast<CodeEditor*>(GetWindowLongPtrA(window, GWLP_USERDATA));
    return editor != nullptr ? editor->handle(message, first, second)
                             : DefWindowProcA(window, message, first, second);
}

} // namespace tavrel
