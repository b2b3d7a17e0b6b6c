#include "project/project_commands.h"
#include "project/project_loading.h"
#include "tests/support/fakes.h"
#include "util/runtime_error.h"

#include <gtest/gtest.h>

namespace tavrel {
namespace {

using test::TestWorkspace;

TEST(ProjectLoading, AMainFileWithoutDirectivesGivesTwoNodes) {
    TestWorkspace test;
    LoadProject(test.workspace, test.folder.write("main.pas", "begin\r\nend.\r\n"));
    const ProjectTree& tree = test.workspace.tree;
    ASSERT_EQ(tree.count(), 2U);
    EXPECT_EQ(tree.node(1).key, "r");
    EXPECT_EQ(tree.node(1).text, "Project");
    EXPECT_EQ(tree.node(2).key, "main.pas0");
    EXPECT_EQ(tree.node(2).text, "MAIN.PAS");
    EXPECT_EQ(tree.selected(), 2U);
    EXPECT_EQ(test.workspace.project.SelectedKey, "main.pas0");
    EXPECT_EQ(test.workspace.project.CurrentFile, 1U);
    EXPECT_EQ(test.workspace.project.Folder, test.folder.path());
    EXPECT_EQ(test.editor.content, "begin\r\nend.\r\n");
    EXPECT_FALSE(test.editor.modified());
    EXPECT_EQ(test.display.panels[StatusPanel::currentView], "Current View: MAIN.PAS");
    EXPECT_EQ(test.display.projectCommandsEnabled, 1);
}

TEST(ProjectLoading, WhatAKilledSaveLeftIsTakenAway) {
    TestWorkspace test;
    test.folder.write("~tavrel-00050001.tmp", "begi");
    LoadProject(test.workspace, test.folder.write("M.PAS", "begin\r\nend.\r\n"));
    EXPECT_FALSE(test.folder.has("~tavrel-00050001.tmp"));
    EXPECT_EQ(test.editor.content, "begin\r\nend.\r\n");
}

TEST(ProjectLoading, TheSameIncludeTwiceGivesTwoNodesAndEntries) {
    TestWorkspace test;
    test.folder.write("X.INC", "procedure P;\r\n");
    LoadProject(test.workspace, test.folder.write("M.PAS", "{$I x.inc}\r\n{$i X.INC }\r\n{$I no.inc}\r\n"));
    ASSERT_EQ(test.workspace.tree.count(), 4U);
    EXPECT_EQ(test.workspace.tree.node(3).key, "X.INC1");
    EXPECT_EQ(test.workspace.tree.node(4).key, "X.INC2");
    EXPECT_EQ(test.workspace.tree.node(4).image, TreeImage::includeFile);
    ASSERT_EQ(test.workspace.project.Files.size(), 4U);
    EXPECT_EQ(test.workspace.project.Files[3].Index, 4);
    EXPECT_EQ(test.workspace.FileRoutineLists.at(1).Headers, std::vector<std::string>{"P;"});
}

TEST(ProjectLoading, IncludesAreFollowedOneFurtherLevelOnly) {
    TestWorkspace test;
    test.folder.write("A.INC", "{$I B.INC}\r\n");
    test.folder.write("B.INC", "{$I C.INC}\r\n");
    test.folder.write("C.INC", "x\r\n");
    LoadProject(test.workspace, test.folder.write("M.PAS", "{$I A.INC}\r\n"));
    ASSERT_EQ(test.workspace.tree.count(), 4U);
    EXPECT_EQ(test.workspace.tree.node(3).image, TreeImage::expanded);
    EXPECT_EQ(test.workspace.tree.node(4).text, "B.INC");
    EXPECT_EQ(test.workspace.tree.node(4).parent, 3U);
    EXPECT_EQ(test.workspace.tree.node(4).key, "B.INC3") << "the counter goes up before it is used here";
    EXPECT_EQ(test.workspace.project.Files.size(), 3U) << "a nested include has no entry";
}

TEST(ProjectLoading, AnIncludeThatIncludesItselfEnds) {
    TestWorkspace test;
    test.folder.write("A.INC", "{$I A.INC}\r\n");
    LoadProject(test.workspace, test.folder.write("M.PAS", "{$I A.INC}\r\n{$I M.PAS}\r\n"));
    EXPECT_EQ(test.workspace.tree.count(), 7U);
}

TEST(ProjectLoading, AnIncludeThatCannotBeReadIsSkippedWithAMessage) {
    TestWorkspace test;
    test.workspace.settings.UseTooltips = storedFalse;
    test.folder.makeFolder("SUB");
    test.folder.write("SUB\\X.INC",
                      "y\r\n"); // the node's text drops the folder, so the second look misses it
    LoadProject(test.workspace, test.folder.write("M.PAS", "{$I sub\\x.inc}\r\n"));
    ASSERT_EQ(test.messages.shown.size(), 1U);
    EXPECT_NE(test.messages.shown[0].text.find("X.INC"), std::string::npos);
    EXPECT_EQ(test.display.projectCommandsEnabled, 1);
}

TEST(ProjectLoading, CancellingTheLocateDialogIsFatalToTheLoadOnly) {
    TestWorkspace test;
    LoadProject(test.workspace, test.folder.write("M.PAS", "begin end.\r\n"));
    LoadProject(test.workspace, test.folder.path() + "NO.PAS");
    ASSERT_EQ(test.dialogs.opened.size(), 1U);
    EXPECT_EQ(test.dialogs.opened[0].title, "Show where the file NO.PAS is");
    EXPECT_EQ(test.dialogs.opened[0].filter, "NO.PAS");
    ASSERT_EQ(test.messages.shown.size(), 1U);
    EXPECT_EQ(test.messages.shown[0].text, "Could not find the file NO.PAS");
    EXPECT_EQ(test.messages.shown[0].title, "Fatal Error");
    EXPECT_EQ(test.messages.shown[0].icon, Icon::critical);
    EXPECT_EQ(test.messages.shown[0].buttons, Buttons::ok);
    EXPECT_EQ(test.dialogs.opened[0].initialFolder, test.folder.path());
    EXPECT_EQ(test.editor.content, "");
    EXPECT_EQ(test.workspace.tree.node(2).text, "M.PAS");
}

TEST(ProjectLoading, AFatalErrorLeavesNothingToBeSaved) {
    TestWorkspace test;
    test.workspace.settings.UseTooltips = storedFalse;
    LoadProject(test.workspace, test.folder.write("M.PAS", "begin end.\r\n"));
    LoadProject(test.workspace, test.folder.path() + "NO.PAS");
    EXPECT_EQ(test.editor.content, "");
    EXPECT_FALSE(test.editor.modified());
    saveModifiedText(test.workspace); // as a build does first
    EXPECT_EQ(test.folder.read("M.PAS"), "begin end.\r\n");
    EXPECT_EQ(test.workspace.project.Files.size(), 2U);
    EXPECT_EQ(test.workspace.project.SelectedKey, "M.PAS0");
}

TEST(ProjectLoading, ADirectiveInACommentOrAStringCounts) {
    TestWorkspace test;
    test.workspace.settings.UseTooltips = storedFalse;
    for (const char* const name : {"A.INC", "B.INC", "WRITELN(' A.INC');"})
        test.folder.write(name, "x\r\n");
    LoadProject(test.workspace,
                test.folder.write("M.PAS", "(* {$I a.inc} *)\r\n{{$I B.INC}}\r\nwriteln('{$I a.inc}');\r\n"));
    // What else stands on the line is part of the name: the first is "(*  A.INC *)", the second "{ B.INC".
    EXPECT_EQ(test.workspace.tree.texts(),
              (std::vector<std::string>{"Project", "M.PAS", "WRITELN(' A.INC');"}));
}

TEST(ProjectLoading, AnIncludeOfAnIncludeHasNoEntry) {
    TestWorkspace test;
    test.folder.write("A.INC", "{$I B.INC}\r\n");
    test.folder.write("B.INC", "procedure B;\r\n");
    test.folder.write("C.INC", "procedure C;\r\n");
    LoadProject(test.workspace, test.folder.write("M.PAS", "{$I A.INC}\r\n{$I C.INC}\r\n"));
    const auto& project = test.workspace.project;
    ASSERT_EQ(project.Files.size(), 4U);
    EXPECT_EQ(project.Files[1].FileName, "M.PAS");
    EXPECT_EQ(project.Files[2].FileName, "A.INC");
    EXPECT_EQ(project.Files[3].FileName, "C.INC");
    EXPECT_EQ(test.workspace.tree.texts(),
              (std::vector<std::string>{"Project", "M.PAS", "A.INC", "C.INC", "B.INC"}));
    EXPECT_EQ(test.workspace.tree.node(4).key, "C.INC2");
    EXPECT_EQ(test.workspace.tree.node(5).key, "B.INC4");
    EXPECT_EQ(test.workspace.tree.node(5).parent, 3U);
    EXPECT_EQ(test.workspace.tree.node(3).image, TreeImage::expanded);
    EXPECT_EQ(test.workspace.tree.node(4).image, TreeImage::includeFile);
    EXPECT_EQ(test.workspace.FileRoutineLists.at(3).Headers, std::vector<std::string>{"B;"});
}

TEST(ProjectLoading, AMissingProjectFileIsReportedAndChangesNothing) {
    TestWorkspace test;
    LoadProject(test.workspace, test.folder.write("M.PAS", "m\r\n"));
    EXPECT_FALSE(openProjectFile(test.workspace, test.folder.path() + "no.tpj"));
    ASSERT_EQ(test.messages.shown.size(), 1U);
    EXPECT_EQ(test.messages.shown[0].text,
              "The project file " + test.folder.path() + "no.tpj cannot be read.\r\nFile not found");
    EXPECT_EQ(test.editor.content, "m\r\n");
    EXPECT_EQ(test.workspace.tree.node(2).text, "M.PAS");
}

TEST(ProjectLoading, RefreshWithoutAProjectSavesNothing) {
    TestWorkspace test;
    test.editor.setText("typed");
    RefreshProject(test.workspace);
    EXPECT_EQ(test.editor.content, "typed");
    EXPECT_TRUE(test.editor.modified());
}

TEST(ProjectLoading, RefreshSavesUnderTheBareNameAndReadsTheProjectAgain) {
    TestWorkspace test;
    LoadProject(test.workspace, test.folder.write("M.PAS", "m\r\n"));
    const auto former = std::filesystem::current_path();
    std::filesystem::current_path(test.folder.native());
    test.folder.write("A.INC", "a\r\n");
    test.editor.setText("{$I A.INC}\r\n");
    RefreshProject(test.workspace);
    std::filesystem::current_path(former);
    EXPECT_EQ(test.folder.read("M.PAS"), "{$I A.INC}\r\n");
    EXPECT_EQ(test.workspace.tree.texts(), (std::vector<std::string>{"Project", "M.PAS", "A.INC"}));
}

TEST(ProjectLoading, ALocatedFileIsLoadedButTheFolderStays) {
    TestWorkspace test;
    test.folder.makeFolder("else");
    test.dialogs.answer = test.folder.write("else\\NO.PAS", "x\r\n");
    // The routine index looks in the folder only, where the file is not.
    LoadProject(test.workspace, test.folder.path() + "NO.PAS");
    EXPECT_TRUE(test.messages.shown.empty());
    EXPECT_EQ(test.display.projectCommandsEnabled, 1);
    EXPECT_EQ(test.workspace.CaretPositions.size(), 3U) << "the load came to its end";
    EXPECT_EQ(test.editor.content, "x\r\n");
    EXPECT_EQ(test.workspace.project.Folder, test.folder.path());
    EXPECT_EQ(test.workspace.tree.count(), 2U);
}

TEST(ProjectLoading, TheMainFileLiesBesideTheProjectFile) {
    TestWorkspace test;
    test.workspace.settings.UseTooltips = storedFalse;
    test.folder.write("MAIN.PAS", "m\r\n");
    const std::string path = test.folder.write("a.tpj", "Game\r\n4000\r\nC000\r\nD:\\other\\MAIN.PAS\r\n");
    EXPECT_TRUE(openProjectFile(test.workspace, path));
    EXPECT_EQ(test.editor.content, "m\r\n");
    EXPECT_EQ(test.workspace.project.StartAddress, 0x4000);
    EXPECT_EQ(test.workspace.project.EndAddress, -0x4000);
    EXPECT_EQ(test.workspace.tree.node(1).text, "Game");
}

TEST(ProjectLoading, AShortProjectFileIsReportedAndChangesNothing) {
    TestWorkspace test;
    LoadProject(test.workspace, test.folder.write("M.PAS", "m\r\n"));
    EXPECT_FALSE(openProjectFile(test.workspace, test.folder.write("a.tpj", "Other\r\n1\r\n2\r\n")));
    ASSERT_EQ(test.messages.shown.size(), 1U);
    EXPECT_NE(test.messages.shown[0].text.find("fewer than four lines"), std::string::npos);
    EXPECT_EQ(test.workspace.project.Name, "Project");
    EXPECT_EQ(test.workspace.project.StartAddress, 0x2E9B);
    EXPECT_EQ(test.editor.content, "m\r\n");
}

TEST(ProjectLoading, WithTooltipsOffTheIndexIsUntouched) {
    TestWorkspace test;
    test.workspace.settings.UseTooltips = storedFalse;
    test.workspace.FileRoutineLists.resize(1);
    appendHeader(test.workspace.FileRoutineLists[0], "kept");
    LoadProject(test.workspace, test.folder.write("M.PAS", "function A: byte;\r\n"));
    EXPECT_EQ(test.workspace.FileRoutineLists[0].Headers, std::vector<std::string>{"kept"});
    EXPECT_TRUE(test.messages.shown.empty());
}

TEST(ProjectLoading, RefreshOfAnUnknownCurrentFileKeepsTheText) {
    TestWorkspace test;
    LoadProject(test.workspace, test.folder.write("M.PAS", "m\r\n"));
    test.workspace.project.CurrentFile = 9;
    test.editor.setText("edited");
    EXPECT_THROW(RefreshProject(test.workspace), RuntimeError);
    EXPECT_EQ(test.editor.content, "edited");
}

} // namespace
} // namespace tavrel
