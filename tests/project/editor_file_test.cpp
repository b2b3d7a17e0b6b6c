// The editor's text and its file: nothing is lost, whatever takes the text or replaces the file.
#include "project/editor_file.h"
#include "project/file_switching.h"
#include "project/include_files.h"
#include "project/new_project.h"
#include "project/project_commands.h"
#include "project/project_loading.h"
#include "tests/support/failing_files.h"
#include "tests/support/fakes.h"
#include "util/files.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <stdexcept>

namespace tavrel {
namespace {

struct EditorFileTest : testing::Test {
    test::TestWorkspace test;
    Workspace& workspace = test.workspace;
    const std::string mainText = "{$I A.INC}\r\n";

    EditorFileTest() {
        test.folder.write("A.INC", "include\r\n");
        LoadProject(workspace, test.folder.write("M.PAS", mainText));
    }
    void click(std::size_t node) {
        workspace.tree.selectedByUser(node);
        switchToNode(workspace, node);
    }
    /// The texts of the rescue copies whose names end so.
    std::vector<std::string> rescued(const std::string& fileName) {
        std::vector<std::string> texts;
        const std::string folder = workspace.AppDir + "rescued\\";
        for (const FolderEntry& entry : listFolder(folder, "*")) {
            if (entry.name.ends_with(" " + fileName))
                texts.push_back(readWholeFile(folder + entry.name));
        }
        return texts;
    }
    std::size_t rescuedCount() { return listFolder(workspace.AppDir + "rescued\\", "*").size(); }
    const std::string& message() { return test.display.panels[StatusPanel::message]; }
};

using Texts = std::vector<std::string>;

TEST_F(EditorFileTest, ALoadKeepsACopyOfUnsavedText) {
    test.editor.setText("unsaved");
    LoadProject(workspace, test.folder.path() + "M.PAS");
    EXPECT_EQ(rescued("M.PAS"), Texts{"unsaved"});
    EXPECT_NE(message().find("rescued\\"), std::string::npos) << message();
    EXPECT_EQ(test.editor.content, mainText);
}

TEST_F(EditorFileTest, TheCopyHasTheNameOfTheFileInTheEditor) {
    click(3);
    test.editor.setText("unsaved");
    openRecentEntry((workspace.settings.Recent[0] = test.folder.path() + "M.PAS", workspace), 0);
    EXPECT_EQ(rescued("A.INC"), Texts{"unsaved"});
}

TEST_F(EditorFileTest, TextWithoutAFileIsKeptToo) {
    test::TestWorkspace fresh;
    fresh.editor.setText("typed before any project");
    LoadProject(fresh.workspace, test.folder.path() + "M.PAS");
    const auto copies = listFolder(fresh.workspace.AppDir + "rescued\\", "*");
    ASSERT_EQ(copies.size(), 1U);
    EXPECT_TRUE(copies[0].name.ends_with(" Unnamed.pas")) << copies[0].name;
}

TEST_F(EditorFileTest, SavedOrEmptyTextNeedsNoCopy) {
    LoadProject(workspace, test.folder.path() + "M.PAS");
    test.editor.setText("saved");
    saveCurrentFile(workspace);
    LoadProject(workspace, test.folder.path() + "M.PAS");
    test.editor.setText("");
    LoadProject(workspace, test.folder.path() + "M.PAS");
    EXPECT_EQ(rescuedCount(), 0U);
}

TEST_F(EditorFileTest, ALoadThatCannotKeepTheTextDoesNotTakePlace) {
    test.program.write("rescued", "a file where the folder would be");
    test.editor.setText("unsaved");
    EXPECT_THROW(LoadProject(workspace, test.folder.path() + "M.PAS"), std::runtime_error);
    EXPECT_EQ(test.editor.content, "unsaved");
    EXPECT_TRUE(test.editor.modified());
}

TEST_F(EditorFileTest, ANewProjectKeepsACopy) {
    test.program.makeFolder("projects\\Game");
    test.program.write("projects\\Game\\Game.pas", "new\r\n");
    test.dialogs.answer = test.folder.path() + "NEW.PAS";
    test.editor.setText("unsaved");
    newProject(workspace, "0Game");
    EXPECT_EQ(rescued("M.PAS"), Texts{"unsaved"});
    EXPECT_EQ(test.editor.content, "new\r\n");
}

TEST_F(EditorFileTest, ATemplateThatReplacesAFileKeepsACopyOfIt) {
    test.program.makeFolder("projects\\Game");
    test.program.write("projects\\Game\\Game.pas", "new\r\n");
    test.program.write("projects\\Game\\A.INC", "template\r\n");
    test.dialogs.answer = test.folder.path() + "M.PAS";
    newProject(workspace, "0Game");
    EXPECT_EQ(rescued("M.PAS"), Texts{mainText});
    EXPECT_EQ(rescued("A.INC"), Texts{"include\r\n"});
}

TEST_F(EditorFileTest, NoDropsTheTextIntoACopy) {
    test.editor.setText("dropped");
    test.messages.answers = {Answer::no};
    click(3);
    EXPECT_EQ(rescued("M.PAS"), Texts{"dropped"});
}

TEST_F(EditorFileTest, ANewIncludeFileThatEmptiesAFileKeepsItsText) {
    test.dialogs.answer = test.folder.path() + "A.INC";
    test.messages.answers = {Answer::no};
    newIncludeFile(workspace);
    EXPECT_EQ(test.folder.read("A.INC"), "");
    EXPECT_EQ(rescued("A.INC"), Texts{"include\r\n"});
}

TEST_F(EditorFileTest, ACopiedIncludeFileThatReplacesAnotherKeepsItsText) {
    test::TemporaryFolder elsewhere;
    test.dialogs.answer = elsewhere.write("A.INC", "other\r\n");
    test.messages.answers = {Answer::yes, Answer::no};
    openIncludeFile(workspace);
    EXPECT_EQ(test.folder.read("A.INC"), "other\r\n");
    EXPECT_EQ(rescued("A.INC"), Texts{"include\r\n"});
}

TEST_F(EditorFileTest, ASaveSaysSo) {
    test.editor.setText("saved");
    saveCurrentFile(workspace);
    EXPECT_EQ(message(), "Saved M.PAS");
}

TEST_F(EditorFileTest, ASaveKeepsWhatAnotherProgramWrote) {
    test.folder.write("M.PAS", "from elsewhere");
    test.editor.setText("mine");
    saveCurrentFile(workspace);
    EXPECT_EQ(test.folder.read("M.PAS"), "mine");
    EXPECT_EQ(rescued("M.PAS"), Texts{"from elsewhere"});
    EXPECT_TRUE(message().starts_with("Saved M.PAS; what it held before is in ")) << message();
    test.editor.setText("mine again");
    saveCurrentFile(workspace);
    EXPECT_EQ(rescuedCount(), 1U) << "this time nobody else wrote";
}

TEST_F(EditorFileTest, ATextThatGoesIntoAnotherFileKeepsBoth) {
    click(2);
    click(3);
    click(2); // the current file is now 2, which among the project's files is the include
    test.editor.setText("main text");
    const auto former = std::filesystem::current_path(); // which Refresh saves into
    std::filesystem::current_path(test.folder.native());
    RefreshProject(workspace);
    std::filesystem::current_path(former);
    EXPECT_EQ(test.folder.read("A.INC"), "main text") << "the product's behaviour";
    EXPECT_EQ(rescued("A.INC"), Texts{"include\r\n"});
    EXPECT_EQ(rescued("M.PAS"), Texts{"main text"});
}

TEST_F(EditorFileTest, WithTheRootSelectedABuildWritesAFileOfItsNameAndACopyStays) {
    workspace.tree.selectedByUser(1);
    test.editor.setText("typed");
    saveModifiedText(workspace);
    EXPECT_EQ(test.folder.read("Project"), "typed") << "the product's behaviour";
    EXPECT_EQ(test.folder.read("M.PAS"), mainText);
    EXPECT_EQ(rescued("M.PAS"), Texts{"typed"});
}

TEST_F(EditorFileTest, WhatIsBeingTypedIsCopiedUntilItIsSaved) {
    test.editor.setText("ty");
    copyTypedText(workspace);
    test.editor.setText("typed");
    copyTypedText(workspace);
    EXPECT_EQ(rescued("M.PAS"), Texts{"typed"});
    saveCurrentFile(workspace);
    EXPECT_EQ(rescuedCount(), 0U);
}

TEST_F(EditorFileTest, TheTypingCopyIsReplacedByTheOneThatStays) {
    test.editor.setText("ty");
    copyTypedText(workspace);
    test.editor.setText("typed");
    LoadProject(workspace, test.folder.path() + "M.PAS");
    EXPECT_EQ(rescued("M.PAS"), Texts{"typed"});
}

TEST_F(EditorFileTest, AMainFileThatWasLocatedElsewhereIsSavedIntoTheProjectsFolder) {
    test::TemporaryFolder elsewhere;
    test.dialogs.answer = elsewhere.write("NO.PAS", "x\r\n");
    LoadProject(workspace, test.folder.path() + "NO.PAS");
    EXPECT_EQ(changeOnDisk(workspace), DiskChange::gone);
    test.editor.setText("mine");
    saveCurrentFile(workspace);
    EXPECT_EQ(test.folder.read("NO.PAS"), "mine");
    EXPECT_EQ(elsewhere.read("NO.PAS"), "x\r\n");
    EXPECT_EQ(rescuedCount(), 0U);
}

TEST_F(EditorFileTest, AChangeByAnotherProgramIsNoticed) {
    EXPECT_EQ(changeOnDisk(workspace), DiskChange::none);
    test.folder.write("M.PAS", mainText);
    EXPECT_EQ(changeOnDisk(workspace), DiskChange::none) << "written again, but the same";
    test.folder.write("M.PAS", "other");
    EXPECT_EQ(diskChangeNotice(workspace), "M.PAS was changed by another program; Ctrl+R loads it");
    deleteFile(test.folder.path() + "M.PAS");
    EXPECT_EQ(diskChangeNotice(workspace), "M.PAS is no longer on the disk; Ctrl+S writes it");
    saveCurrentFile(workspace);
    EXPECT_EQ(diskChangeNotice(workspace), "");
}

TEST_F(EditorFileTest, ReloadingTakesTheDisksVersionAndKeepsMine) {
    test.folder.write("M.PAS", "one\r\ntwo\r\nthree\r\n");
    test.editor.setText("mine");
    test.editor.setCaret({2, 1});
    reloadEditorFile(workspace);
    EXPECT_EQ(test.editor.content, "one\r\ntwo\r\nthree\r\n");
    EXPECT_EQ(test.editor.caretPosition, (EditorPosition{2, 1}));
    EXPECT_FALSE(test.editor.modified());
    EXPECT_EQ(rescued("M.PAS"), Texts{"mine"});
    EXPECT_EQ(workspace.project.CurrentFile, 1U);
    EXPECT_EQ(changeOnDisk(workspace), DiskChange::none);
}

TEST_F(EditorFileTest, ReloadingAFileThatIsGoneChangesNothing) {
    deleteFile(test.folder.path() + "M.PAS");
    test.editor.setText("mine");
    EXPECT_THROW(reloadEditorFile(workspace), RuntimeError);
    EXPECT_EQ(test.editor.content, "mine");
    EXPECT_TRUE(test.editor.modified());
}

TEST_F(EditorFileTest, ASaveThatFailsKeepsTextFlagAndTypingCopy) {
    test.editor.setText("typed");
    copyTypedText(workspace);
    test::FailingFiles files(1, true, test::FailingFiles::Failure::before);
    EXPECT_THROW(saveCurrentFile(workspace), RuntimeError);
    EXPECT_TRUE(test.editor.modified());
    EXPECT_EQ(rescued("M.PAS"), Texts{"typed"});
}

} // namespace
} // namespace tavrel
