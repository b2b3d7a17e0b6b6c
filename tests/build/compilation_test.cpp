#include "tests/build/build_fixture.h"
#include "tests/support/failing_files.h"
#include "util/runtime_error.h"

#include <array>
#include <gtest/gtest.h>

namespace tavrel {
namespace {

using test::Build;

TEST_F(Build, SuccessShowsTheSizeLines) {
    test.processes.work = [this] {
        EXPECT_EQ(test.folder.read("TP3.EXE"), "TP3.EXE");
        EXPECT_EQ(test.folder.read("turbopc.bat"),
                  compileScript(Output::com, "M", 0x2E9B, defaultEndAddress));
        EXPECT_TRUE(test.display.waitPointer);
        test.folder.write("result.txt", "Hi\r\nCode: 1\r\nData: 2\r\nFree: 3\r\n");
        test.folder.write("stdout.txt", "");
    };
    EXPECT_TRUE(build());
    EXPECT_EQ(progress.words,
              "Compiling Hello...\r\nNo errors - Sucessfully compiled\r\n\r\nCode: 1\r\nData: 2\r\nFree: 3");
    EXPECT_EQ(progress.images, (std::array<bool, 5>{false, false, false, false, true}));
    EXPECT_FALSE(progress.timer1);
    EXPECT_TRUE(kitIsGone());
    EXPECT_FALSE(test.folder.has("result.txt"));
    EXPECT_FALSE(test.folder.has("stdout.txt"));
    EXPECT_FALSE(test.display.waitPointer);
    ASSERT_EQ(test.processes.runs.size(), 1U);
    EXPECT_EQ(test.processes.runs[0].commandLine, test.program.path() + "compiler\\rundb.bat");
    EXPECT_FALSE(test.processes.runs[0].showWindow);
    EXPECT_TRUE(test.processes.runs[0].wait);
    EXPECT_EQ(test.program.read("compiler\\rundb.bat"),
              launchScript(test.program.path(), test.folder.path()));
}

TEST_F(Build, AnErrorMovesTheEditorToTheFailingLine) {
    test.processes.work = [this] { test.folder.write("errors.txt", "\"A.INC\",2,3,1,\"x\"\r\n"); };
    EXPECT_FALSE(build());
    EXPECT_EQ(progress.words, "file  : A.INC: line 2, column 3\r\nError : 1 - x\r\n");
    EXPECT_EQ(progress.images, (std::array<bool, 5>{false, false, false, true, false}));
    EXPECT_TRUE(progress.timer1);
    EXPECT_TRUE(progress.timer2);
    EXPECT_EQ(test.editor.content, "one\r\ntwo\r\nthree\r\n");
    EXPECT_EQ(test.editor.highlighted, 1);
    EXPECT_EQ(test.editor.caretPosition, (EditorPosition{1, 0}));
    EXPECT_EQ(test.workspace.tree.selected(), 3U);
    EXPECT_EQ(test.workspace.project.CurrentFile, 3U);
    EXPECT_FALSE(test.folder.has("errors.txt"));
    EXPECT_FALSE(test.display.waitPointer);
}

TEST_F(Build, AnErrorInTheWindowOfASuccessShowsOnlyTheErrorsPicture) {
    EXPECT_TRUE(build());
    test.processes.work = [this] { test.folder.write("errors.txt", "\"A.INC\",2,3,1,\"x\"\r\n"); };
    EXPECT_FALSE(build());
    EXPECT_EQ(progress.images, (std::array<bool, 5>{false, false, false, true, false}));
    EXPECT_TRUE(progress.timer2);
    test.processes.work = [] {};
    EXPECT_TRUE(build());
    EXPECT_EQ(progress.images, (std::array<bool, 5>{false, false, false, false, true}));
    EXPECT_FALSE(progress.timer2);
}

TEST_F(Build, AnErrorFileInAnotherCaseDoesNotSwitch) {
    test.processes.work = [this] { test.folder.write("errors.txt", "a.inc,1,1,1,x\r\n"); };
    EXPECT_FALSE(build());
    EXPECT_EQ(test.editor.content, "{$I A.INC}\r\n");
    EXPECT_EQ(test.editor.highlighted, 0) << "the line is marked in the file that is shown";
}

TEST_F(Build, CancelKeepsTheTextAndTheHourglass) {
    test.processes.work = [this] {
        test.folder.write("errors.txt", "A.INC,2,1,1,x\r\n");
        test.editor.setText("typed meanwhile");
    };
    test.messages.answers = {Answer::cancel};
    EXPECT_FALSE(build());
    EXPECT_EQ(test.editor.content, "typed meanwhile");
    EXPECT_EQ(test.workspace.tree.selected(), 2U);
    EXPECT_TRUE(test.display.waitPointer);
}

TEST_F(Build, WithoutAProjectThereIsAMessage) {
    test.workspace.tree.clear();
    test.editor.setHighlightedLine(4);
    test.display.waitPointer = true; // as a build that was cancelled leaves it
    EXPECT_TRUE(build());
    ASSERT_EQ(test.messages.shown.size(), 1U);
    EXPECT_EQ(test.messages.shown[0].text, "No project loaded!");
    EXPECT_EQ(test.messages.shown[0].title, "Error");
    EXPECT_EQ(test.messages.shown[0].icon, Icon::critical);
    EXPECT_EQ(test.messages.shown[0].buttons, Buttons::ok);
    EXPECT_TRUE(test.processes.runs.empty());
    EXPECT_TRUE(test.display.waitPointer) << "the pointer is left alone";
    EXPECT_EQ(test.editor.highlighted, -1);
    EXPECT_FALSE(progress.shown);
}

TEST_F(Build, AProjectWithoutANameIsNotTakenForTheFailingFile) {
    test.workspace.project.Name = "";
    LoadProject(test.workspace, test.folder.path() + "M.PAS");
    EXPECT_TRUE(build());
    EXPECT_EQ(test.workspace.tree.selected(), 2U);
    EXPECT_EQ(test.workspace.project.SelectedKey, "M.PAS0");
}

TEST_F(Build, WithoutSizeLinesOnlyTheSuccessIsTold) {
    EXPECT_TRUE(build());
    EXPECT_EQ(progress.words, "Compiling Hello...\r\nNo errors - Sucessfully compiled");
    progress = test::FakeProgress();
    test.processes.work = [this] { test.folder.write("result.txt", "code: 1\r\nno sizes\r\n"); };
    EXPECT_TRUE(build());
    EXPECT_EQ(progress.words, "Compiling Hello...\r\nNo errors - Sucessfully compiled");
    EXPECT_FALSE(test.folder.has("result.txt"));
    EXPECT_FALSE(test.display.waitPointer);
}

TEST_F(Build, AnyFailingWriteIsToldAndLeavesNoKitBehind) {
    unsigned attempts = 0;
    test::withEveryFailure([&](test::FailingFiles& files) {
        bool told = false;
        try {
            build();
        } catch (const RuntimeError&) {
            told = true;
        }
        EXPECT_EQ(told, files.hasFailed());
        EXPECT_TRUE(kitIsGone()) << "attempt " << attempts;
        EXPECT_FALSE(test.display.waitPointer);
        ++attempts;
    });
    EXPECT_GT(attempts, 60U) << "the script and four files of the kit, each call in several ways";
}

TEST_F(Build, TheKitIsLaidOutInFullWhileTheCompilerRuns) {
    test.folder.write("TP3.EXE", "an old one");
    test.processes.work = [this] {
        for (const char* const name : {"DOS2CASH.COM", "TP3.EXE", "RUNTIME.COM", "turbopc.bat"})
            EXPECT_EQ(test.folder.read(name), test.program.read(std::string("compiler\\") + name)) << name;
        for (const char* const name : {"stderr.txt", "stdout.txt"})
            test.folder.write(name, "x");
    };
    EXPECT_TRUE(build());
    EXPECT_TRUE(kitIsGone());
    EXPECT_FALSE(test.folder.has("stderr.txt"));
    EXPECT_FALSE(test.folder.has("stdout.txt"));
    EXPECT_TRUE(test.program.has("compiler\\turbopc.bat")) << "the scripts stay in the program folder";
    EXPECT_TRUE(test.program.has("compiler\\rundb.bat"));
}

TEST_F(Build, ExactlyADiskfulBuildsAndOneByteMoreIsRefused) {
    const auto used = GetFolderSize(test.folder.path(), "*.*", true);
    test.folder.write("BIG.DAT", std::string(static_cast<std::size_t>(737280 - used), 'x'));
    EXPECT_TRUE(build());
    EXPECT_EQ(test.processes.runs.size(), 1U);
    test.folder.write("MORE.DAT", "x");
    EXPECT_TRUE(build());
    EXPECT_EQ(test.processes.runs.size(), 1U);
    EXPECT_EQ(progress.words,
              "The project directory \r\n" + test.folder.path() + "\r\ncannot have more than 720kb of files");
    EXPECT_TRUE(progress.images[3]);
    EXPECT_TRUE(progress.timer2);
    EXPECT_FALSE(test.display.waitPointer);
}

TEST_F(Build, TheKitThatAKilledBuildLeftDoesNotCount) {
    const auto used = GetFolderSize(test.folder.path(), "*.*", true);
    test.folder.write("BIG.DAT", std::string(static_cast<std::size_t>(737280 - used), 'x'));
    for (const char* const name : {"Dos2cash.com", "tp3.exe", "RUNTIME.COM", "turbopc.bat"})
        test.folder.write(name, std::string(50'000, 'k'));
    EXPECT_TRUE(build());
    EXPECT_EQ(test.processes.runs.size(), 1U);
    EXPECT_TRUE(kitIsGone());
}

TEST_F(Build, OnlyTheOutputOfTheChosenKindIsDeleted) {
    test.folder.write("M.com", "c");
    test.folder.write("M.chn", "h");
    build(Output::chn);
    EXPECT_TRUE(test.folder.has("M.com"));
    EXPECT_FALSE(test.folder.has("M.chn"));
    test.folder.write("M.chn", "h");
    build(Output::com);
    EXPECT_FALSE(test.folder.has("M.com"));
    EXPECT_TRUE(test.folder.has("M.chn"));
}

TEST_F(Build, AMissingKitFileIsNamedAndNothingStaysBehind) {
    deleteFile(test.program.path() + "compiler\\RUNTIME.COM");
    try {
        build();
        FAIL() << "the kit is not whole";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.text(), "File not found");
        EXPECT_EQ(error.detail(), test.program.path() + "compiler\\RUNTIME.COM");
    }
    EXPECT_TRUE(kitIsGone());
    EXPECT_FALSE(progress.shown);
    EXPECT_FALSE(test.display.waitPointer);
}

TEST_F(Build, AnEmptyErrorFileDoesNotSpoilTheNextBuild) {
    test.processes.work = [this] { test.folder.write("errors.txt", ""); };
    EXPECT_THROW(build(), RuntimeError);
    test.processes.work = [] {};
    EXPECT_TRUE(build());
}

TEST_F(Build, TheCommandSavesModifiedTextFirst) {
    test.editor.setText("edited\r\n");
    compileCommand(test.workspace, tools, Output::com);
    EXPECT_EQ(test.folder.read("M.PAS"), "edited\r\n");
    EXPECT_TRUE(test.messages.shown.empty());
    test.workspace.tree.select(1); // the root: saved under the project's name, as it always was
    test.editor.setText("again\r\n");
    compileCommand(test.workspace, tools, Output::com);
    EXPECT_EQ(test.folder.read("Hello"), "again\r\n");
}

} // namespace
} // namespace tavrel
