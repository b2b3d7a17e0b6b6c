// Keys and mouse buttons of the editor's panes on their way to the main window.
#include "editor/code_editor.h"

#include <bit>
#include <commctrl.h>
#include <windowsx.h>

namespace tavrel {

namespace {

constexpr UINT_PTR subclassIdentifier = 1;
constexpr WPARAM firstPrintable = ' ';

int shiftStateNow() {
    const auto pressed = [](int key, int value) { return GetKeyState(key) < 0 ? value : 0; };
    return pressed(VK_SHIFT, shiftState::shift) + pressed(VK_CONTROL, shiftState::control) +
           pressed(VK_MENU, shiftState::alt);
}

} // namespace

void CodeEditor::listenTo(const ScintillaView& view) {
    SetWindowSubclass(view.window(), paneProcedure, subclassIdentifier, std::bit_cast<DWORD_PTR>(this));
}

LRESULT CodeEditor::handlePane(HWND pane, UINT message, WPARAM first, LPARAM second) {
    switch (message) {
    case WM_KEYDOWN:
        events_->editorKeyDown(static_cast<int>(first), shiftStateNow());
        break;
    case WM_CHAR: {
        const int shift = shiftStateNow();
        // Enter is one key whatever its character: the main window hears of a new line, which reads the
        // routines of the file again.
        constexpr WPARAM carriageReturn = '\r';
        constexpr int lineFeed = '\n';
        events_->editorKeyPress(first == carriageReturn ? lineFeed : static_cast<int>(first), shift);
        // Keys with Ctrl have done their work by now; their control characters do not belong into a source
        // text.
        if (first < firstPrintable && (shift & shiftState::control) != 0)
            return 0;
        break;
    }
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN: {
        const LRESULT result = DefSubclassProc(pane, message, first, second);
        events_->editorMouseDown(message == WM_RBUTTONDOWN ? MouseButton::right : MouseButton::left,
                                 shiftStateNow(), GET_X_LPARAM(second), GET_Y_LPARAM(second));
        return result;
    }
    case WM_DROPFILES:
        return SendMessageA(GetAncestor(window_, GA_ROOT), message, first, second);
    default:
        break;
    }
    return DefSubclassProc(pane, message, first, second);
}

LRESULT CALLBACK CodeEditor::paneProcedure(HWND pane, UINT message, WPARAM first, LPARAM second, UINT_PTR,
                                           DWORD_PTR editor) {
    if (message == WM_NCDESTROY)
        RemoveWindowSubclass(pane, paneProcedure, subclassIdentifier);
    auto* const owner = std::bit_cast<CodeEditor*>(editor);
    return message != WM_NCDESTROY && owner->events_ != nullptr
               ? owner->handlePane(pane, message, first, second)
               : DefSubclassProc(pane, message, first, second);
}

} // namespace tavrel
