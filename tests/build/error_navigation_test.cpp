// Where the editor goes after a build with an error, and builds inside builds.
#include "build/compilation.h"
#include "project/file_switching.h"
#include "project/project_loading.h"
#include "tests/build/build_fixture.h"
#include "util/files.h"
#include "util/runtime_error.h"

#include <gtest/gtest.h>
#include <string>

namespace tavrel {
namespace {

struct ErrorNavigation : test::Build {
    ErrorNavigation() {
        test.folder.write("A.INC", "{$I B.INC}\r\ntwo\r\nthree\r\n");
        test.folder.write("B.INC", "b one\r\nb two");
        test.folder.write("OTHER.INC", "other\r\n");
        LoadProject(test.workspace, test.folder.write("M.PAS", "{$I A.INC}\r\nlast line"));
    }
    bool buildWithError(const std::string& record) {
        test.processes.work = [this, record] { test.folder.write("errors.txt", record); };
        return build();
    }
    void expectShown(const std::string& fileName, std::size_t node, long line) {
        EXPECT_EQ(test.editor.content, test.folder.read(fileName));
        EXPECT_EQ(test.workspace.tree.selected(), node);
        EXPECT_EQ(test.workspace.project.SelectedKey, test.workspace.tree.node(node).key);
        EXPECT_EQ(test.display.panels[StatusPanel::currentView], "Current View: " + fileName);
        EXPECT_EQ(test.editor.highlighted, line);
        EXPECT_EQ(test.editor.caretPosition, (EditorPosition{line, 0}));
        EXPECT_FALSE(test.editor.modified());
        EXPECT_FALSE(test.display.waitPointer);
    }
};

TEST_F(ErrorNavigation, InTheFirstLineOfTheMainFile) {
    EXPECT_FALSE(buildWithError("\"M.PAS\",1,9,41,\"x\"\r\n"));
    expectShown("M.PAS", 2, 0);
}

TEST_F(ErrorNavigation, InTheLastLineOfTheMainFile) {
    EXPECT_FALSE(buildWithError("\"M.PAS\",2,1,41,\"x\"\r\n"));
    expectShown("M.PAS", 2, 1);
}

TEST_F(ErrorNavigation, InAnInclude) {
    EXPECT_FALSE(buildWithError("\"A.INC\",3,1,41,\"x\"\r\n"));
    expectShown("A.INC", 3, 2);
}

TEST_F(ErrorNavigation, InAnIncludeOfAnInclude) {
    EXPECT_FALSE(buildWithError("\"B.INC\",2,1,41,\"x\"\r\n"));
    expectShown("B.INC", 4, 1);
}

TEST_F(ErrorNavigation, InAFileThatIsNotInTheTreeTheShownOneIsMarked) {
    EXPECT_FALSE(buildWithError("\"OTHER.INC\",2,1,41,\"x\"\r\n"));
    expectShown("M.PAS", 2, 1);
    EXPECT_EQ(progress.words, "file  : OTHER.INC: line 2, column 1\r\nError : 41 - x\r\n");
}

TEST_F(ErrorNavigation, InAFileThatIsGoneTheShownFileIsMarkedAndStaysSelected) {
    test.processes.work = [this] {
        deleteFile(test.folder.path() + "B.INC");
        test.folder.write("errors.txt", "\"B.INC\",1,1,41,\"x\"\r\n");
    };
    EXPECT_FALSE(build());
    EXPECT_EQ(test.editor.content, "{$I A.INC}\r\nlast line");
    EXPECT_EQ(test.workspace.tree.selected(), 2U) << "a save must go into the editor's file";
    EXPECT_EQ(test.workspace.project.SelectedKey, "M.PAS0");
    EXPECT_EQ(test.editor.highlighted, 0);
}

TEST_F(ErrorNavigation, WithoutALineNothingIsMarked) {
    for (const char* const line : {"0", "-3", "", "abc"}) {
        test.editor.setCaret({1, 4});
        EXPECT_FALSE(buildWithError("\"NO.INC\"," + std::string(line) + ",1,41,\"x\"\r\n")) << line;
        EXPECT_EQ(test.editor.highlighted, -1) << line;
        EXPECT_EQ(test.editor.caretPosition, (EditorPosition{1, 4})) << line;
    }
}

TEST_F(ErrorNavigation, TextTypedDuringTheBuildIsSavedUnderTheCurrentFile) {
    test.processes.work = [this] {
        test.editor.setText("typed");
        test.folder.write("errors.txt", "\"A.INC\",1,1,41,\"x\"\r\n");
    };
    test.messages.answers = {Answer::yes};
    EXPECT_FALSE(build());
    ASSERT_EQ(test.messages.shown.size(), 1U);
    EXPECT_EQ(test.messages.shown[0].text, "This file has changed. Save it?");
    EXPECT_EQ(test.messages.shown[0].title, "Save changes");
    EXPECT_EQ(test.messages.shown[0].buttons, Buttons::yesNoCancel);
    EXPECT_EQ(test.messages.shown[0].icon, Icon::question);
    EXPECT_EQ(test.folder.read("M.PAS"), "typed");
    EXPECT_EQ(test.editor.undoCleared, std::vector<bool>{false});
    expectShown("A.INC", 3, 0);
}

TEST_F(ErrorNavigation, NoDropsTheTextTypedDuringTheBuild) {
    test.processes.work = [this] {
        test.editor.setText("typed");
        test.folder.write("errors.txt", "\"A.INC\",1,1,41,\"x\"\r\n");
    };
    test.messages.answers = {Answer::no};
    EXPECT_FALSE(build());
    EXPECT_EQ(test.folder.read("M.PAS"), "{$I A.INC}\r\nlast line");
    expectShown("A.INC", 3, 0);
}

TEST_F(ErrorNavigation, TextThatCannotBeSavedStaysWithItsFile) {
    test.processes.work = [this] {
        test.editor.setText("typed");
        test.folder.write("errors.txt", "\"A.INC\",1,1,41,\"x\"\r\n");
        std::filesystem::permissions(test.folder.native() / "M.PAS", std::filesystem::perms::owner_read);
    };
    test.messages.answers = {Answer::yes};
    EXPECT_THROW(build(), RuntimeError);
    EXPECT_EQ(test.editor.content, "typed");
    EXPECT_TRUE(test.editor.modified());
    EXPECT_EQ(test.workspace.tree.selected(), 2U) << "the next save goes into the file of this text";
    EXPECT_FALSE(test.display.waitPointer);
    std::filesystem::permissions(test.folder.native() / "M.PAS", std::filesystem::perms::owner_all);
}

struct BuildInABuild : ErrorNavigation {
    /// Runs `outer` in the first compiler run, in which a second build starts whose run is `inner`.
    bool buildTwice(std::function<void()> outer, std::function<void()> inner) {
        test.processes.work = [this, outer = std::move(outer), inner = std::move(inner)] {
            if (test.processes.runs.size() == 2) {
                inner();
                return;
            }
            outer();
            innerResult = build();
        };
        return build();
    }
    bool innerResult = true;
};

TEST_F(BuildInABuild, BothSucceedAndTheSuccessIsToldOnce) {
    EXPECT_TRUE(
        buildTwice([] {}, [this] { test.folder.write("result.txt", "Code: 1\r\nData: 2\r\nFree: 3\r\n"); }));
    EXPECT_TRUE(innerResult);
    EXPECT_EQ(progress.words,
              "Compiling Hello...\r\nNo errors - Sucessfully compiled\r\n\r\nCode: 1\r\nData: 2\r\nFree: 3");
    EXPECT_TRUE(kitIsGone());
    EXPECT_FALSE(test.display.waitPointer);
    EXPECT_TRUE(test.messages.shown.empty());
}

TEST_F(BuildInABuild, AnErrorIsNotFollowedByTheNewsOfASuccess) {
    EXPECT_FALSE(buildTwice([] {}, [this] { test.folder.write("errors.txt", "\"A.INC\",2,3,1,\"x\"\r\n"); }));
    EXPECT_FALSE(innerResult);
    EXPECT_EQ(progress.words, "file  : A.INC: line 2, column 3\r\nError : 1 - x\r\n");
    EXPECT_TRUE(progress.images[3]);
    EXPECT_FALSE(progress.images[4]);
    expectShown("A.INC", 3, 1);
    EXPECT_TRUE(kitIsGone());
}

TEST_F(BuildInABuild, OneThatIsRefusedLeavesTheFirstItsResult) {
    EXPECT_FALSE(buildTwice(
        [this] {
            test.folder.write("errors.txt", "\"A.INC\",2,3,1,\"x\"\r\n");
            test.folder.write("BIG.DAT", std::string(737'281, 'x'));
        },
        [] { ADD_FAILURE() << "the folder is too large"; }));
    EXPECT_TRUE(innerResult);
    EXPECT_EQ(progress.words, "file  : A.INC: line 2, column 3\r\nError : 1 - x\r\n");
}

TEST_F(BuildInABuild, OneOfAnotherProjectLeavesTheFirstItsResult) {
    const test::TemporaryFolder other;
    other.write("N.PAS", "begin end.\r\n");
    EXPECT_FALSE(buildTwice(
        [&] {
            test.folder.write("errors.txt", "\"A.INC\",2,3,1,\"x\"\r\n");
            LoadProject(test.workspace, other.path() + "N.PAS");
        },
        [] {}));
    EXPECT_TRUE(innerResult);
    EXPECT_EQ(progress.words, "file  : A.INC: line 2, column 3\r\nError : 1 - x\r\n");
    EXPECT_TRUE(kitIsGone());
}

TEST_F(BuildInABuild, OneThatFailsOnTheKitLeavesTheFirstItsResult) {
    test.processes.work = [this] {
        deleteFile(test.program.path() + "compiler\\TP3.EXE");
        EXPECT_THROW(build(), RuntimeError);
        test.folder.write("result.txt", "Code: 1\r\nData: 2\r\nFree: 3\r\n");
    };
    EXPECT_TRUE(build());
    EXPECT_NE(progress.words.find("No errors - Sucessfully compiled\r\n\r\nCode: 1"), std::string::npos);
    EXPECT_TRUE(kitIsGone());
}

} // namespace
} // namespace tavrel
