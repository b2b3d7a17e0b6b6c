// bench_start ROUNDS FLOOR PROGRAM: starts two programs in turn and measures each from its start until its
// controls are painted on the screen.
#include "bench/figures.h"

#include <array>
#include <bit>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>

namespace {

using namespace tavrel::bench;

struct Search {
    DWORD process;
    HWND window;
};

BOOL CALLBACK lookAt(HWND window, LPARAM parameter) {
    auto& search = *std::bit_cast<Search*>(parameter);
    DWORD owner = 0;
    GetWindowThreadProcessId(window, &owner);
    if (owner != search.process || IsWindowVisible(window) == 0 || GetWindow(window, GW_OWNER) != nullptr)
        return TRUE;
    search.window = window;
    return FALSE;
}

HWND windowOf(DWORD process) {
    Search search{process, nullptr};
    EnumWindows(lookAt, std::bit_cast<LPARAM>(&search));
    return search.window;
}

struct ChildSearch {
    const char* className;
    HWND found;
};

BOOL CALLBACK lookAtChild(HWND window, LPARAM parameter) {
    auto& search = *std::bit_cast<ChildSearch*>(parameter);
    std::array<char, 64> name{};
    GetClassNameA(window, name.data(), static_cast<int>(name.size()));
    if (std::strcmp(name.data(), search.className) != 0)
        return TRUE;
    search.found = window;
    return FALSE;
}

/// The colour that the screen shows in the middle of a program's control; CLR_INVALID before it is there.
COLORREF middleOf(HWND program, const char* className) {
    ChildSearch search{className, nullptr};
    EnumChildWindows(program, lookAtChild, std::bit_cast<LPARAM>(&search));
    RECT place = {};
    if (search.found == nullptr || GetWindowRect(search.found, &place) == 0)
        return CLR_INVALID;
    HDC const screen = GetDC(nullptr);
    const COLORREF colour = GetPixel(screen, (place.left + place.right) / 2, (place.top + place.bottom) / 2);
    ReleaseDC(nullptr, screen);
    return colour;
}

bool isPainted(HWND program) {
    constexpr COLORREF white = RGB(255, 255, 255);
    return program != nullptr && middleOf(program, "Scintilla") == white &&
           middleOf(program, "SysTreeView32") == white &&
           middleOf(program, "msctls_statusbar32") == GetSysColor(COLOR_BTNFACE);
}

/// What the last program left on the screen must not be taken for the next one's window.
void coverScreen() {
    HWND const cover = CreateWindowExA(0, "STATIC", "", WS_POPUP | WS_VISIBLE | SS_BLACKRECT, 0, 0, 4000,
                                       3000, nullptr, nullptr, nullptr, nullptr);
    UpdateWindow(cover);
    DestroyWindow(cover);
}

double timeStart(std::string commandLine) {
    coverScreen();
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    const double start = now();
    if (CreateProcessA(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                       &process) == 0)
        throw std::runtime_error("cannot start " + commandLine);
    constexpr double longest = 30'000; // milliseconds
    while (!isPainted(windowOf(process.dwProcessId)) && now() - start < longest)
        Sleep(1);
    const double elapsed = now() - start;
    TerminateProcess(process.hProcess, 0);
    WaitForSingleObject(process.hProcess, INFINITE);
    CloseHandle(process.hProcess);
    CloseHandle(process.hThread);
    if (elapsed >= longest)
        throw std::runtime_error(commandLine + " shows no painted window");
    return elapsed;
}

} // namespace

int main(int count, char** arguments) {
    if (count != 4)
        return 3;
    try {
        const int rounds = std::atoi(arguments[1]);
        std::vector<double> floors;
        std::vector<double> programs;
        for (int round = 0; round <= rounds; ++round) {
            const double floor = timeStart(arguments[2]);
            const double program = timeStart(arguments[3]);
            if (round == 0)
                continue; // it fills the caches
            floors.push_back(floor);
            programs.push_back(program);
        }
        std::printf(
            "| start to painted window, medians of %d rounds | bare window %.0f ms | %.0f ms | %.2f |\n",
            rounds, median(floors), median(programs), medianRatio(programs, floors));
        // A machine that does other work as well slows single starts down, never up.
        const double floor = *std::min_element(floors.begin(), floors.end());
        const double program = *std::min_element(programs.begin(), programs.end());
        std::printf("| the fastest of them | bare window %.0f ms | %.0f ms | %.2f |\n", floor, program,
                    program / floor);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_start: %s\n", error.what());
        return 1;
    }
    return 0;
}
