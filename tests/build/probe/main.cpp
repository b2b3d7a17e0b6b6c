// A program with a window, for tests of how programs are started. Its window comes up as the one who started
// it wants (hidden or not) and stays for the number of seconds in the argument.
#include <cstdlib>
#include <windows.h>

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR arguments, int show) {
    constexpr const char* className = "TavrelProbe";
    WNDCLASSA windowClass = {};
    windowClass.lpfnWndProc = DefWindowProcA;
    windowClass.hInstance = instance;
    windowClass.lpszClassName = className;
    RegisterClassA(&windowClass);
    HWND const window = CreateWindowExA(0, className, className, WS_OVERLAPPEDWINDOW, 0, 0, 200, 100, nullptr,
                                        nullptr, instance, nullptr);
    ShowWindow(window, show);
    const ULONGLONG end = GetTickCount64() + 1000ULL * static_cast<unsigned>(std::atoi(arguments));
    while (GetTickCount64() < end) {
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 50, QS_ALLINPUT);
        MSG message;
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE) != 0)
            DispatchMessageA(&message);
    }
    return 0;
}
