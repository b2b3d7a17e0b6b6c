#include "project/project_commands.h"
#include "project/project_loading.h"
#include "tests/support/fakes.h"

#include <gtest/gtest.h>

namespace tavrel {
namespace {

using test::TestWorkspace;

TEST(ProjectCommands, ANamedProjectIsSavedWithoutAsking) {
    TestWorkspace test;
    test.workspace.project.Name = "Demo";
    LoadProject(test.workspace, test.folder.write("Game.pas", "x\r\n"));
    saveProject(test.workspace);
    EXPECT_EQ(test.folder.read("Demo.tpj"), "Demo\r\n2E9B\r\nD200\r\nGAME.PAS\r\n");
    EXPECT_TRUE(test.dialogs.saved.empty());
    EXPECT_EQ(test.workspace.settings.Recent[0], test.folder.path() + "Demo.tpj");
}

TEST(ProjectCommands, AnUnnamedProjectProposesTheMainFilesName) {
    TestWorkspace test;
    LoadProject(test.workspace, test.folder.write("main.pas", "x\r\n"));
    test.workspace.tree.select(1);
    saveCurrentFile(test.workspace); // the root is selected, so this saves the project
    ASSERT_EQ(test.dialogs.saved.size(), 1U);
    EXPECT_EQ(test.dialogs.saved[0].proposedPath, test.folder.path() + "MAIN.tpj");
    EXPECT_EQ(test.dialogs.saved[0].title, "Save Project");
}

TEST(ProjectCommands, OpeningAProjectByDialogRemembersIt) {
    TestWorkspace test;
    test.folder.write("M.PAS", "x\r\n");
    test.dialogs.answer = test.folder.write("a.tpj", "A\r\n2E9B\r\nD200\r\nM.PAS\r\n");
    test.workspace.LastDir = "";
    openProject(test.workspace);
    EXPECT_EQ(test.dialogs.opened.at(0).filter, "Pascal File | *.tpj");
    EXPECT_EQ(test.dialogs.opened.at(0).initialFolder, "C:\\");
    EXPECT_EQ(test.workspace.settings.Recent[0], test.dialogs.answer);
    EXPECT_EQ(test.workspace.LastDir, test.folder.path());
}

TEST(ProjectCommands, AMissingRecentEntryIsReportedAndRemoved) {
    TestWorkspace test;
    test.workspace.settings.Recent = {"gone", "two", "", "", ""};
    openRecentEntry(test.workspace, 0);
    ASSERT_EQ(test.messages.shown.size(), 1U);
    EXPECT_EQ(test.messages.shown[0].text, "Tavrel cannot find this file!");
    EXPECT_EQ(test.messages.shown[0].title, "Error");
    EXPECT_EQ(readSettings(test.program.path()).Recent[0], "two");
}

TEST(ProjectCommands, ARecentPascalFileOpensInAnyCaseAndKeepsTheOrder) {
    TestWorkspace test;
    test.workspace.project.Name = "Old";
    test.workspace.settings.Recent = {"other", test.folder.write("M.PAS", "x\r\n"), "", "", ""};
    openRecentEntry(test.workspace, 1);
    EXPECT_EQ(test.editor.content, "x\r\n");
    EXPECT_EQ(test.workspace.project.Name, "Project");
    EXPECT_EQ(test.workspace.settings.Recent[0], "other");
}

} // namespace
} // namespace tavrel
