#include "build/disk_launch.h"

#include "tests/build/build_fixture.h"
#include "util/runtime_error.h"

#include <csignal>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <utility>

#ifndef _WIN32
#include <unistd.h>
#endif

namespace tavrel {
namespace {

TEST(Placeholder, IsReplacedWhateverItsCase) {
    EXPECT_EQ(replacePlaceholder("e -a %dsk -b %DSK", "%dsk", "X"), "e -a X -b X");
}

TEST(Placeholder, StaysAtTheVeryStartAndEndsTheReplacing) {
    EXPECT_EQ(replacePlaceholder("%1 and %1", "%1", "X"), "%1 and %1");
}

TEST(Placeholder, ThatCanBeReplacedNowhereLeavesTheTextAlone) {
    EXPECT_EQ(replacePlaceholder("e -a", "%1", "X"), "e -a");
    EXPECT_EQ(replacePlaceholder("", "%1", "X"), "");
}

TEST(Placeholder, IsSearchedAgainFromTheStart) {
    // What a replacement leaves behind together with the text around it counts as well.
    EXPECT_EQ(replacePlaceholder(" %%11", "%1", ""), " ");
    // A replacement may move the placeholder to the very start, where it stays.
    EXPECT_EQ(replacePlaceholder("%%11", "%1", ""), "%1");
}

#ifndef _WIN32
TEST(PlaceholderDeathTest, ThatItsReplacementHoldsIsReplacedForEver) {
    EXPECT_EXIT(
        {
            alarm(1);
            replacePlaceholder("e %1", "%1", "%1");
        },
        testing::KilledBySignal(SIGALRM), "");
}
#endif

Settings settingsWith(const std::string& path, const std::string& arguments, const std::string& folder) {
    Settings settings;
    settings.EmulatorPath = path;
    settings.EmulatorArgs = arguments;
    settings.DiskImageDir = folder;
    return settings;
}

TEST(EmulatorCommand, NamesTheDiskImage) {
    const std::string expected = "C:\\emu\\emu.exe -diska C:\\work\\dsk\\d.dsk -msx2";
    for (const char* const folder : {"C:\\work\\dsk", "C:\\work\\dsk\\"}) {
        for (const char* const arguments : {"-diska %dsk -msx2", "-diska %1 -msx2", "-diska %DSK -msx2"})
            EXPECT_EQ(emulatorCommand(settingsWith("C:\\emu\\emu.exe", arguments, folder)), expected);
    }
}

TEST(EmulatorCommand, NamesTheDiskImageWhereverThereIsAPlaceholder) {
    EXPECT_EQ(emulatorCommand(settingsWith("e", "%1%dsk %1", "D")), "e D\\d.dskD\\d.dsk D\\d.dsk");
}

TEST(EmulatorCommand, KeepsWhatAnEmptyPreferenceLeaves) {
    EXPECT_EQ(emulatorCommand(settingsWith("", "-a %1", "D")), " -a D\\d.dsk");
    EXPECT_EQ(emulatorCommand(settingsWith("e", "", "D")), "e ");
}

TEST(EmulatorCommand, LeavesAPlaceholderAtTheStartOfThePath) {
    EXPECT_EQ(emulatorCommand(settingsWith("%1", "%1 %dsk", "D")), "%1 %1 D\\d.dsk");
}

TEST(DiskToolCommand, NeedsNoFinalBackslashes) {
    const std::string expected = "C:\\T\\dsk\\dsktool.exe A C:\\D\\d.dsk C:\\P\\*.*";
    EXPECT_EQ(diskToolCommand("C:\\T", "C:\\D", "C:\\P"), expected);
    EXPECT_EQ(diskToolCommand("C:\\T\\", "C:\\D\\", "C:\\P\\"), expected);
}

struct CompileAndRun : test::Build {
    CompileAndRun() {
        test.program.makeFolder("dsk");
        test.program.write("dsk\\dsktool.exe", "dsktool.exe");
        test.workspace.settings.EmulatorPath = "C:\\emu\\emu.exe";
    }
    std::string image() const { return test.program.path() + "dsk\\d.dsk"; }
    void run() { compileAndRunCommand(test.workspace, tools); }
    /// Does something when the process of this number (from 1) is started.
    void atProcess(std::size_t number, std::function<void()> work) {
        test.processes.work = [this, number, work = std::move(work)] {
            if (test.processes.runs.size() == number)
                work();
        };
    }
    std::string& panel() { return test.display.panels[StatusPanel::message]; }
    /// The disk tool makes an image, and `more` comes after each process.
    void makesImage(std::function<void()> more = [] {}) {
        test.processes.work = [this, more = std::move(more)] {
            if (test.processes.runs.size() == 2)
                test.program.write("dsk\\d.dsk", "new");
            more();
        };
    }
    void expectDiskAndEmulator(std::size_t first) {
        ASSERT_EQ(test.processes.runs.size(), first + 2);
        const auto& disk = test.processes.runs[first];
        EXPECT_EQ(disk.commandLine,
                  test.program.path() + "dsk\\dsktool.exe A " + image() + " " + test.folder.path() + "*.*");
        EXPECT_FALSE(disk.showWindow);
        EXPECT_TRUE(disk.wait);
        const auto& emulator = test.processes.runs[first + 1];
        EXPECT_EQ(emulator.commandLine, "C:\\emu\\emu.exe -diska " + image() + " -msx2");
        EXPECT_TRUE(emulator.showWindow);
        EXPECT_FALSE(emulator.wait);
    }
};

TEST_F(CompileAndRun, BuildsPacksAndStarts) {
    run();
    expectDiskAndEmulator(1);
    EXPECT_EQ(test.processes.runs[0].commandLine, test.program.path() + "compiler\\rundb.bat");
    EXPECT_EQ(test.program.read("compiler\\turbopc.bat"),
              compileScript(Output::com, "M", defaultStartAddress, defaultEndAddress));
}

TEST_F(CompileAndRun, SavesModifiedTextFirst) {
    atProcess(1, [this] { EXPECT_EQ(test.folder.read("M.PAS"), "edited\r\n"); });
    test.editor.setText("edited\r\n");
    run();
    EXPECT_TRUE(test.messages.shown.empty());
    EXPECT_EQ(test.folder.read("M.PAS"), "edited\r\n");
}

TEST_F(CompileAndRun, StopsAtACompileErrorWithTheProgressWindowUp) {
    test.program.write("dsk\\d.dsk", "old");
    atProcess(1, [this] { test.folder.write("errors.txt", "\"A.INC\",2,3,1,\"x\"\r\n"); });
    run();
    EXPECT_EQ(test.processes.runs.size(), 1U);
    EXPECT_EQ(progress.words, "file  : A.INC: line 2, column 3\r\nError : 1 - x\r\n");
    EXPECT_FALSE(progress.closed);
    EXPECT_EQ(test.program.read("dsk\\d.dsk"), "old");
}

TEST_F(CompileAndRun, DeletesTheOldImageBeforeItPacks) {
    test.program.write("dsk\\d.dsk", "old");
    atProcess(2, [this] { EXPECT_FALSE(test.program.has("dsk\\d.dsk")); });
    run();
    expectDiskAndEmulator(1);
    EXPECT_FALSE(test.program.has("dsk\\d.dsk"));
}

TEST_F(CompileAndRun, ClosesTheProgressWindowBeforeItPacks) {
    atProcess(1, [this] { EXPECT_FALSE(progress.closed); });
    run();
    EXPECT_TRUE(progress.closed);
    progress.closed = false;
    atProcess(5, [this] { EXPECT_TRUE(progress.closed); }); // the second run's disk tool
    run();
    EXPECT_EQ(test.processes.runs.size(), 6U);
}

TEST_F(CompileAndRun, GoesOnAfterARefusedBuild) {
    test.folder.write("BIG.DAT", std::string(737281, 'x'));
    run();
    EXPECT_TRUE(progress.closed);
    expectDiskAndEmulator(0);
}

TEST_F(CompileAndRun, GoesOnWithoutAProject) {
    test.workspace.tree.clear();
    run();
    ASSERT_EQ(test.messages.shown.size(), 1U);
    EXPECT_EQ(test.messages.shown[0].text, "No project loaded!");
    expectDiskAndEmulator(0);
}

TEST_F(CompileAndRun, SaysNothingWhenAllIsWell) {
    panel() = "procedure P;";
    makesImage();
    run();
    expectDiskAndEmulator(1);
    EXPECT_EQ(panel(), "");
}

TEST_F(CompileAndRun, WithoutAnEmulatorStartsNothingAndSaysSo) {
    for (const char* const path : {"", "  "}) {
        test.workspace.settings.EmulatorPath = path;
        test.processes.runs.clear();
        makesImage();
        run();
        EXPECT_EQ(test.processes.runs.size(), 2U) << "the build and the disk tool";
        EXPECT_EQ(panel(), "No emulator is set: choose one in the preferences");
    }
}

TEST_F(CompileAndRun, AnEmulatorThatCannotBeStartedIsTold) {
    makesImage([this] { test.processes.starts = test.processes.runs.size() != 3; });
    run();
    expectDiskAndEmulator(1);
    EXPECT_EQ(panel(), "The emulator cannot be started: C:\\emu\\emu.exe");
}

TEST_F(CompileAndRun, FilesThatDoNotFitAreTold) {
    makesImage([this] {
        if (test.processes.runs.size() == 2)
            test.program.write("dsk\\d.dsk.txt", "Not on this disk image:\r\n");
    });
    run();
    expectDiskAndEmulator(1);
    EXPECT_EQ(panel(), "Not every file is on the disk image: see " + image() + ".txt");
}

TEST_F(CompileAndRun, AnImageThatWasNotMadeIsToldBesideTheRest) {
    test.workspace.settings.EmulatorPath = "";
    run();
    EXPECT_EQ(panel(), "There is no disk image: " + image() +
                           " cannot be written. No emulator is set: choose one in the preferences");
}

TEST_F(CompileAndRun, AnImageInUseIsToldAndNotRunAgain) {
    test.program.makeFolder(
        "dsk\\d.dsk"); // deleting a file does not delete it, as with one that is held open
    run();
    EXPECT_EQ(test.processes.runs.size(), 1U);
    EXPECT_EQ(panel(), "The disk image is in use: close the emulator that runs with " + image());
    EXPECT_TRUE(test.messages.shown.empty());
}

TEST_F(CompileAndRun, ABuildThatWasBrokenOffRunsNothing) {
    test.processes.work = [] { throw WaitBrokenOff(); };
    run();
    EXPECT_EQ(test.processes.runs.size(), 1U);
    EXPECT_FALSE(progress.closed) << "it says so";
    test.processes.work = [this] {
        if (test.processes.runs.size() == 3)
            throw WaitBrokenOff();
    };
    run();
    EXPECT_EQ(test.processes.runs.size(), 3U) << "no emulator after a disk tool that was ended";
    EXPECT_EQ(panel(), "The making of the disk image was broken off");
}

TEST_F(CompileAndRun, WithoutTheDiskToolItEnds) {
    deleteFile(test.program.path() + "dsk\\dsktool.exe");
    EXPECT_THROW(run(), RuntimeError); // waiting for it would not end
    EXPECT_EQ(test.processes.runs.size(), 1U);
}

TEST_F(CompileAndRun, AFailureOfTheBuildEndsIt) {
    deleteFile(test.program.path() + "compiler\\RUNTIME.COM");
    EXPECT_THROW(run(), RuntimeError);
    EXPECT_TRUE(test.processes.runs.empty());
}

} // namespace
} // namespace tavrel
