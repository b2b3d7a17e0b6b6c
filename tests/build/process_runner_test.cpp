// Real processes, started hidden or shown, waited for or not.
#include "tests/build/probe_program.h"
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

/// What was seen of the probe's window while something waited for it.
struct Seen {
    bool window = false;
    bool visible = false;
} seen;
void CALLBACK lookForProbe(HWND, UINT, UINT_PTR, DWORD) {
    if (HWND const window = test::probeWindow()) {
        seen.window = true;
        seen.visible = seen.visible || IsWindowVisible(window) != 0;
    }
}

TEST_F(Runner, AWindowIsHiddenOrShownAsWanted) {
    for (const bool shown : {false, true}) {
        seen = {};
        const UINT_PTR timer = SetTimer(nullptr, 0, 50, lookForProbe);
        runner.ShellAndWait(test::probePath() + " 2", shown, true);
        KillTimer(nullptr, timer);
        EXPECT_TRUE(seen.window) << "it must have been there";
        EXPECT_EQ(seen.visible, shown);
    }
}

/// The runner whose wait is to be broken off, from a timer that runs as soon as the probe does.
WindowsProcessRunner* waiting = nullptr;
void CALLBACK breakOffAtOnce(HWND, UINT, UINT_PTR timer, DWORD) {
    KillTimer(nullptr, timer);
    waiting->breakOff();
}
void CALLBACK breakOff(HWND, UINT, UINT_PTR timer, DWORD) {
    if (test::probeWindow() == nullptr)
        return;
    KillTimer(nullptr, timer);
    waiting->breakOff();
}
void CALLBACK endProgramOnceTheProbeRuns(HWND, UINT, UINT_PTR timer, DWORD) {
    if (test::probeWindow() == nullptr)
        return;
    KillTimer(nullptr, timer);
    PostQuitMessage(0);
}
bool noProbe() {
    return test::probeWindow() == nullptr;
}

TEST_F(Runner, AWaitThatIsBrokenOffEndsWithAllThatWasStarted) {
    waiting = &runner;
    SetTimer(nullptr, 0, 50, breakOff);
    const ULONGLONG start = GetTickCount64();
    EXPECT_THROW(
        runner.ShellAndWait(batch("@" + test::probePath() + " 60\r\n@echo on> on.txt\r\n"), false, true),
        WaitBrokenOff);
    EXPECT_LT(GetTickCount64() - start, 40'000U);
    EXPECT_TRUE(test::comes(noProbe)) << "what the batch file started ends with it";
    EXPECT_FALSE(folder.has("on.txt"));
    runner.breakOff(); // nothing is waited for
    runner.ShellAndWait("cmd /c exit", false, true);
}

TEST_F(Runner, EvenAWaitForNothingCanBeBrokenOff) {
    waiting = &runner;
    SetTimer(nullptr, 0, 500, breakOffAtOnce);
    EXPECT_THROW(runner.ShellAndWait("C:\\no\\such.exe", false, true), WaitBrokenOff);
}

TEST_F(Runner, WhatIsWaitedForEndsWithThisProgram) {
    SetTimer(nullptr, 0, 50, endProgramOnceTheProbeRuns);
    EXPECT_THROW(runner.ShellAndWait(batch("@" + test::probePath() + " 60\r\n"), false, true), ProgramEnds);
    MSG message;
    PeekMessageA(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);
    EXPECT_TRUE(test::comes(noProbe));
}

TEST_F(Runner, WhatIsNotWaitedForLivesOn) {
    runner.ShellAndWait(test::probePath() + " 3", true, false);
    EXPECT_TRUE(runner.started());
    runner.breakOff();
    EXPECT_TRUE(test::comes([] { return test::probeWindow() != nullptr; }));
    EXPECT_TRUE(test::comes(noProbe)) << "until it ends by itself";
}

TEST_F(Runner, TellsWhetherTheProgramCouldBeStarted) {
    runner.ShellAndWait("C:\\no\\such.exe", true, false);
    EXPECT_FALSE(runner.started());
    runner.ShellAndWait("cmd /c exit", false, true);
    EXPECT_TRUE(runner.started());
}

TEST_F(Runner, ALongWaitIsToldAgainAndAgain) {
    WindowsProcessRunner impatient(400);
    int told = 0;
    impatient.waitIsLong = [&told] { ++told; };
    impatient.ShellAndWait(test::probePath() + " 2", false, true);
    EXPECT_GE(told, 2);
    EXPECT_LE(told, 20) << "not with every look";
    told = 0;
    WindowsProcessRunner patient;
    patient.waitIsLong = [&told] { ++told; };
    patient.ShellAndWait("cmd /c exit", false, true);
    EXPECT_EQ(told, 0);
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
