// The floor of the start: a window with nothing but Scintilla, a tree and a status bar.
#include <bit>
#include <windows.h>

#include <commctrl.h>
#include <Scintilla.h>

namespace {

LRESULT CALLBACK windowProcedure(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message == WM_DESTROY)
        PostQuitMessage(0);
    return DefWindowProcA(window, message, first, second);
}

HWND makeChild(HWND parent, const char* className, RECT place) {
    return CreateWindowExA(0, className, "", WS_CHILD | WS_VISIBLE, place.left, place.top,
                           place.right - place.left, place.bottom - place.top, parent, nullptr,
                           GetModuleHandleA(nullptr), nullptr);
}

} // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int) {
    constexpr INITCOMMONCONTROLSEX controls = {sizeof(INITCOMMONCONTROLSEX), ICC_WIN95_CLASSES};
    InitCommonControlsEx(&controls);
    Scintilla_RegisterClasses(instance);
    WNDCLASSA windowClass = {};
    windowClass.lpfnWndProc = windowProcedure;
    windowClass.hInstance = instance;
    windowClass.lpszClassName = "BareWindow";
    windowClass.hCursor = LoadCursorA(nullptr, std::bit_cast<LPCSTR>(IDC_ARROW));
    RegisterClassA(&windowClass);
    HWND const window =
        CreateWindowExA(0, "BareWindow", "Bare", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, CW_USEDEFAULT,
                        CW_USEDEFAULT, 920, 660, nullptr, nullptr, instance, nullptr);
    RECT client = {};
    GetClientRect(window, &client);
    makeChild(window, WC_TREEVIEWA, {0, 0, 160, client.bottom - 25});
    HWND const editor = makeChild(window, "Scintilla", {160, 0, client.right, client.bottom - 25});
    makeChild(window, STATUSCLASSNAMEA, {});
    ShowWindow(window, SW_SHOWNORMAL);
    UpdateWindow(window);
    SetFocus(editor);
    MSG message = {};
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    return 0;
}
