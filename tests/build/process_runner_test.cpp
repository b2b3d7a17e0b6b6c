// Real processes, started hidden or shown, waited for or not.
#include "tests/support/temporary_folder.h"
#include "util/message_pump.h"
#include "util/windows_process_runner.h"

#include <gtest/gtest.h>
#include <string>
#include <windows.h>

namespace tavrel {
namespace {

struct Runner : testing::Test {
    test::TemporaryFolder folder;
    WindowsProcessRunner runner;

    std::string batch(const std::string& lines) { return folder.write("run.bat", lines); }
};

/// Counts the ticks of a timer while something waits.
int ticks = 0;
void CALLBACK countTick(HWND, UINT, UINT_PTR, DWORD) {
    ++ticks;
}
/// Ends the program, as the user does who closes the main window.
void CALLBACK endProgram(HWND, UINT, UINT_PTR timer, DWORD) {
    KillTimer(nullptr, timer);
    PostQuitMessage(0);
}

TEST_F(Runner, WaitsForTheEndAndHandlesMessagesMeanwhile) {
    const std::string path =
        batch("@ping -n 2 127.0.0.1 > NUL\r\n@echo done> \"" + folder.path() + "out.txt\"\r\n");
    ticks = 0;
    const UINT_PTR timer = SetTimer(nullptr, 0, 20, countTick);
    runner.ShellAndWait(path, false, true);
    KillTimer(nullptr, timer);
    EXPECT_EQ(folder.read("out.txt"), "done\r\n");
    EXPECT_GT(ticks, 3);
}

TEST_F(Runner, DoesNotWaitWhenToldSo) {
    const ULONGLONG start = GetTickCount64();
    runner.ShellAndWait(
        batch("@ping -n 3 127.0.0.1 > NUL\r\n@echo done> \"" + folder.path() + "out.txt\"\r\n"), true, false);
    EXPECT_FALSE(folder.has("out.txt"));
    while (!folder.has("out.txt") && GetTickCount64() - start < 20'000)
        Sleep(20);
    EXPECT_TRUE(folder.has("out.txt")) << "it goes on by itself";
}

TEST_F(Runner, AProgramThatCannotBeStartedIsSilent) {
    const ULONGLONG start = GetTickCount64();
    for (const char* const command : {"C:\\no\\such.exe -a", " -diska x", ""})
        runner.ShellAndWait(command, true, false);
    EXPECT_LT(GetTickCount64() - start, 5000U);
}

TEST_F(Runner, WaitingForAProgramThatCannotBeStartedEndsOnlyWithThisOne) {
    ticks = 0;
    const UINT_PTR timer = SetTimer(nullptr, 0, 20, countTick);
    SetTimer(nullptr, 0, 1500, endProgram);
    const ULONGLONG start = GetTickCount64();
    EXPECT_THROW(runner.ShellAndWait("C:\\no\\such.exe", false, true), ProgramEnds);
    EXPECT_GE(GetTickCount64() - start, 1000U);
    KillTimer(nullptr, timer);
    EXPECT_GT(ticks, 3) << "windows stay live";
    MSG message;
    EXPECT_TRUE(PeekMessageA(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE))
        << "for the loop above this one";
}

/// Looks for a visible console while the program runs.
bool consoleSeen = false;
void CALLBACK lookForConsole(HWND, UINT, UINT_PTR, DWORD) {
    for (HWND window = FindWindowExA(nullptr, nullptr, nullptr, nullptr); window != nullptr;
         window = FindWindowExA(nullptr, window, nullptr, nullptr)) {
        std::string name(100, '\0');
        name.resize(static_cast<std::size_t>(GetClassNameA(window, name.data(), 100)));
        if (IsWindowVisible(window) != 0 && name.find("onsole") != std::string::npos)
            consoleSeen = true;
    }
}

TEST_F(Runner, AHiddenConsoleProgramHasNoVisibleWindow) {
    consoleSeen = false;
    const UINT_PTR timer = SetTimer(nullptr, 0, 50, lookForConsole);
    runner.ShellAndWait(batch("@ping -n 2 127.0.0.1 > NUL\r\n"), false, true);
    KillTimer(nullptr, timer);
    EXPECT_FALSE(consoleSeen);
}

TEST_F(Runner, TheCurrentFolderIsInherited) {
    const auto former = std::filesystem::current_path();
    std::filesystem::current_path(folder.native());
    runner.ShellAndWait("cmd /c echo here> where.txt", false, true);
    std::filesystem::current_path(former);
    EXPECT_EQ(folder.read("where.txt"), "here\r\n");
}

} // namespace
} // namespace tavrel
