#include "project/file_switching.h"
#include "project/project_commands.h"
#include "project/project_loading.h"
#include "tests/support/failing_files.h"
#include "tests/support/fakes.h"
#include "util/files.h"

#include <gtest/gtest.h>

namespace tavrel {
namespace {

struct TwoFiles : testing::Test {
    test::TestWorkspace test;
    Workspace& workspace = test.workspace;

    TwoFiles() {
        test.folder.write("A.INC", "include\r\n");
        LoadProject(workspace, test.folder.write("M.PAS", "{$I A.INC}\r\n"));
    }
    void click(std::size_t node) {
        workspace.tree.selectedByUser(node);
        switchToNode(workspace, node);
    }
};

TEST_F(TwoFiles, ClickingTheRootOrTheShownNodeDoesNothing) {
    test.editor.setText("edited");
    click(1);
    click(2);
    EXPECT_TRUE(test.messages.shown.empty());
    EXPECT_EQ(test.editor.content, "edited");
}

TEST_F(TwoFiles, TheCaretOfEachFileIsKept) {
    test.editor.caretPosition = {10, 4};
    click(3);
    EXPECT_EQ(test.editor.content, "include\r\n");
    EXPECT_EQ(workspace.project.CurrentFile, 3U);
    EXPECT_EQ(test.display.panels[StatusPanel::currentView], "Current View: A.INC");
    EXPECT_EQ(test.editor.caretPosition, (EditorPosition{0, 0}));
    click(2);
    EXPECT_EQ(test.editor.caretPosition, (EditorPosition{10, 4}));
    EXPECT_EQ(test.editor.focused, 2);
    LoadProject(workspace, test.folder.path() + "M.PAS");
    EXPECT_EQ(workspace.CaretPositions[2], (EditorPosition{0, 0}));
}

TEST_F(TwoFiles, YesSavesTheFileThatIsLeft) {
    test.editor.setText("edited");
    test.messages.answers = {Answer::yes};
    click(3);
    ASSERT_EQ(test.messages.shown.size(), 1U);
    EXPECT_EQ(test.messages.shown[0].text, "This file has changed. Save it?");
    EXPECT_EQ(test.messages.shown[0].title, "Save changes");
    EXPECT_EQ(test.folder.read("M.PAS"), "edited");
}

TEST_F(TwoFiles, NoDropsTheEdits) {
    test.editor.setText("edited");
    test.messages.answers = {Answer::no};
    click(3);
    click(2);
    EXPECT_EQ(test.editor.content, "{$I A.INC}\r\n");
}

TEST_F(TwoFiles, CancelGoesBackToTheFormerNode) {
    test.editor.setText("edited");
    test.messages.answers = {Answer::cancel};
    click(3);
    EXPECT_EQ(test.editor.content, "edited");
    EXPECT_EQ(workspace.tree.selected(), 2U);
    EXPECT_EQ(workspace.project.SelectedKey, "M.PAS0");
}

TEST_F(TwoFiles, AfterCancelTheStatusLineNamesTheFileInTheEditor) {
    test.editor.setText("edited");
    test.messages.answers = {Answer::cancel};
    test.display.panels[StatusPanel::currentView] = "what the window said while the question was up";
    click(3);
    EXPECT_EQ(test.display.panels[StatusPanel::currentView], "Current View: M.PAS");
}

TEST_F(TwoFiles, AutoSaveAsksNothing) {
    workspace.settings.AutoSave = storedTrue;
    test.editor.setText("edited");
    click(3);
    EXPECT_TRUE(test.messages.shown.empty());
    EXPECT_EQ(test.folder.read("M.PAS"), "edited");
}

TEST_F(TwoFiles, AFileThatIsGoneIsNotShown) {
    deleteFile(test.folder.path() + "A.INC");
    click(3);
    EXPECT_EQ(test.editor.content, "{$I A.INC}\r\n");
    EXPECT_TRUE(test.messages.shown.empty());
}

TEST_F(TwoFiles, AFileThatCannotBeSavedKeepsItsTextAndItsNode) {
    std::filesystem::permissions(test.folder.native() / "M.PAS", std::filesystem::perms::owner_read);
    workspace.settings.AutoSave = storedTrue;
    test.editor.setText("edited");
    EXPECT_THROW(click(3), RuntimeError);
    EXPECT_EQ(test.editor.content, "edited");
    EXPECT_TRUE(test.editor.modified());
    EXPECT_EQ(workspace.tree.selected(), 2U);
    EXPECT_EQ(workspace.project.SelectedKey, "M.PAS0");
    EXPECT_EQ(workspace.project.CurrentFile, 1U);
    std::filesystem::permissions(test.folder.native() / "M.PAS", std::filesystem::perms::owner_all);
    saveCurrentFile(workspace);
    EXPECT_EQ(test.folder.read("M.PAS"), "edited") << "and not into the file that was clicked";
    EXPECT_EQ(test.folder.read("A.INC"), "include\r\n");
}

TEST_F(TwoFiles, AfterCancelAmongThreeIncludesTheFormerFileIsTheCurrentOne) {
    test.folder.write("B.INC", "b\r\n");
    test.folder.write("C.INC", "c\r\n");
    LoadProject(workspace, test.folder.write("M.PAS", "{$I A.INC}\r\n{$I B.INC}\r\n{$I C.INC}\r\n"));
    click(4); // B.INC, the fourth node and the third entry of the list
    EXPECT_EQ(workspace.project.CurrentFile, 4U);
    EXPECT_EQ(workspace.project.Files[4].FileName, "C.INC");
    test.editor.setText("edited");
    test.messages.answers = {Answer::cancel};
    click(2);
    EXPECT_EQ(workspace.tree.selected(), 4U) << "and not the node of entry 4, which is another file";
    EXPECT_EQ(workspace.project.SelectedKey, "B.INC2");
    EXPECT_EQ(test.display.panels[StatusPanel::currentView], "Current View: B.INC");
    EXPECT_EQ(test.editor.content, "edited");
    saveCurrentFile(workspace);
    EXPECT_EQ(test.folder.read("B.INC"), "edited");
    EXPECT_EQ(test.folder.read("C.INC"), "c\r\n");
}

TEST_F(TwoFiles, AFileThatIsGoneLeavesKeyAndNodeWithTheEditorsFile) {
    deleteFile(test.folder.path() + "A.INC");
    click(3);
    EXPECT_EQ(workspace.tree.selected(), 2U);
    EXPECT_EQ(workspace.project.SelectedKey, "M.PAS0");
    EXPECT_EQ(test.display.panels[StatusPanel::currentView], "Current View: M.PAS");
    test.editor.setText("edited");
    saveCurrentFile(workspace);
    EXPECT_EQ(test.folder.read("M.PAS"), "edited");
    EXPECT_FALSE(test.folder.has("A.INC"));
}

TEST_F(TwoFiles, OnlyASaveThatLeavesTheFileClearsTheUndoHistory) {
    test.messages.answers = {Answer::yes};
    test.editor.setText("edited");
    click(3);
    EXPECT_EQ(test.editor.undoCleared, std::vector<bool>{true});
    test.editor.setText("edited");
    saveCurrentFile(workspace);
    test.editor.setText("edited");
    saveModifiedText(workspace);
    EXPECT_EQ(test.editor.undoCleared, (std::vector<bool>{true, false, false}));
}

TEST_F(TwoFiles, AnyFailingCallOfASaveKeepsTheText) {
    test::withEveryFailure([&](test::FailingFiles& files) {
        useFileSystem(nullptr);
        test.folder.write("M.PAS", "old");
        LoadProject(workspace, test.folder.path() + "M.PAS");
        test.editor.setText("new");
        useFileSystem(&files);
        try {
            saveCurrentFile(workspace);
            EXPECT_FALSE(test.editor.modified());
            EXPECT_EQ(test.folder.read("M.PAS"), "new");
        } catch (const RuntimeError&) {
            EXPECT_TRUE(test.editor.modified());
            const std::string found = test.folder.read("M.PAS");
            EXPECT_TRUE(found == "old" || found == "new") << found;
        }
        EXPECT_EQ(test.editor.content, "new");
    });
}

TEST(TreeImages, FoldersSwapAndFilesStay) {
    ProjectTree tree;
    tree.add(0, "r", "R", TreeImage::collapsed);
    tree.add(1, "i", "I", TreeImage::includeFile);
    tree.expand(1);
    tree.expand(2);
    EXPECT_EQ(tree.node(1).image, TreeImage::expanded);
    EXPECT_EQ(tree.node(2).image, TreeImage::includeFile);
    tree.collapse(1);
    tree.collapse(2);
    EXPECT_EQ(tree.node(1).image, TreeImage::collapsed);
    EXPECT_EQ(tree.node(2).image, TreeImage::includeFile);
}

} // namespace
} // namespace tavrel
