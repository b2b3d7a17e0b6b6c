#include "project/file_switching.h"
#include "project/include_files.h"
#include "project/project_loading.h"
#include "tests/support/fakes.h"

#include <gtest/gtest.h>

namespace tavrel {
namespace {

using test::TestWorkspace;

struct IncludeFiles : testing::Test, TestWorkspace {
    test::TemporaryFolder elsewhere;

    IncludeFiles() {
        folder.write("M.PAS", "program M;\r\n{$I A.INC}\r\nbegin\r\nend.\r\n");
        folder.write("A.INC", "{ a }\r\n");
        LoadProject(workspace, folder.path() + "M.PAS");
    }
    void answer(std::initializer_list<Answer> answers) { messages.answers = answers; }
};

TEST_F(IncludeFiles, AFileFromElsewhereIsCopiedAndIncluded) {
    dialogs.answer = elsewhere.write("demo.inc", "{ demo }\r\n");
    workspace.LastDir = elsewhere.path();
    editor.setCaret({1, 3});
    answer({Answer::yes, Answer::yes});
    openIncludeFile(workspace);
    EXPECT_EQ(dialogs.opened.at(0).title, "Open include file");
    EXPECT_EQ(dialogs.opened.at(0).filter,
              "Include files (*.inc, *.lib) | *.inc; *.lib | All files (*.*) | *.*");
    EXPECT_EQ(dialogs.opened.at(0).initialFolder, elsewhere.path());
    ASSERT_EQ(messages.shown.size(), 2U);
    EXPECT_EQ(messages.shown[0].text, "Files included must be on the same path as the PAS file\r\n"
                                      "Do you wish to copy this file to the project dir?");
    EXPECT_EQ(messages.shown[0].title, " Error");
    EXPECT_EQ(messages.shown[0].icon, Icon::question);
    EXPECT_EQ(messages.shown[1].text, "Insert {$i demo.inc} at the current cursor position?");
    EXPECT_EQ(messages.shown[1].title, "Tavrel");
    EXPECT_EQ(messages.shown[1].buttons, Buttons::yesNo);
    EXPECT_EQ(folder.read("demo.inc"), "{ demo }\r\n");
    EXPECT_EQ(folder.read("M.PAS"), "program M;\r\n{$i demo.inc }\r\n{$I A.INC}\r\nbegin\r\nend.\r\n");
    EXPECT_EQ(workspace.tree.texts(), (std::vector<std::string>{"Project", "M.PAS", "DEMO.INC", "A.INC"}));
}

TEST_F(IncludeFiles, WithoutTheCopyTheDirectiveFindsNothing) {
    dialogs.answer = elsewhere.write("demo.inc", "{ demo }\r\n");
    answer({Answer::no, Answer::yes});
    openIncludeFile(workspace);
    EXPECT_FALSE(folder.has("demo.inc"));
    EXPECT_EQ(workspace.tree.count(), 3U);
    EXPECT_EQ(folder.read("M.PAS").find("{$i demo.inc }\r\n"), 0U);
}

TEST_F(IncludeFiles, WithoutTheDirectiveTheFileIsStillSavedAndLoadedAgain) {
    dialogs.answer = folder.write("B.INC", "{ b }\r\n");
    editor.setText("program M;\r\n{$I B.INC}\r\n");
    answer({Answer::no});
    openIncludeFile(workspace);
    ASSERT_EQ(messages.shown.size(), 1U) << "it lies in the project's folder";
    EXPECT_EQ(folder.read("M.PAS"), "program M;\r\n{$I B.INC}\r\n");
    EXPECT_EQ(workspace.tree.texts().back(), "B.INC");
}

TEST_F(IncludeFiles, ANewFileIsEmptyIncludedAndShown) {
    dialogs.answer = folder.write("new.inc", "old content");
    answer({Answer::yes});
    newIncludeFile(workspace);
    EXPECT_EQ(dialogs.saved.at(0).title, "New Include file");
    EXPECT_EQ(dialogs.saved.at(0).filter, "Include files (*.inc, *.lib) | *.inc; *.lib");
    EXPECT_EQ(folder.read("new.inc"), "");
    EXPECT_EQ(folder.read("M.PAS").find("{$i new.inc }\r\nprogram M;"), 0U);
    EXPECT_EQ(editor.content, "");
    EXPECT_EQ(display.panels[StatusPanel::currentView], "Current View: NEW.INC");
    EXPECT_EQ(workspace.tree.selectedText(), "NEW.INC");
    EXPECT_EQ(messages.shown.size(), 1U);
}

TEST_F(IncludeFiles, AnIncludeIsInsertedIntoTheIncludeInTheEditor) {
    workspace.tree.selectedByUser(3);
    switchToNode(workspace, 3);
    editor.setCaret({0, 2});
    dialogs.answer = folder.path() + "new.inc";
    answer({Answer::yes});
    newIncludeFile(workspace);
    EXPECT_EQ(folder.read("A.INC"), "{$i new.inc }\r\n{ a }\r\n");
    EXPECT_EQ(folder.read("M.PAS"), "program M;\r\n{$I A.INC}\r\nbegin\r\nend.\r\n");
    EXPECT_EQ(workspace.tree.texts(), (std::vector<std::string>{"Project", "M.PAS", "A.INC", "NEW.INC"}));
    EXPECT_EQ(workspace.tree.node(4).parent, 3U) << "one level down";
    EXPECT_EQ(workspace.tree.selectedText(), "NEW.INC");
    EXPECT_EQ(editor.undoCleared, std::vector<bool>{false})
        << "the history goes with the load, not with the save";
}

TEST_F(IncludeFiles, ANewFileAlwaysLiesInTheProjectsFolder) {
    dialogs.answer = elsewhere.path() + "new.inc";
    workspace.LastDir = elsewhere.path();
    answer({Answer::no});
    newIncludeFile(workspace);
    EXPECT_TRUE(folder.has("new.inc"));
    EXPECT_FALSE(elsewhere.has("new.inc"));
    EXPECT_EQ(workspace.LastDir, folder.path());
    EXPECT_EQ(workspace.tree.count(), 3U) << "nothing includes it";
    EXPECT_EQ(display.panels[StatusPanel::currentView], "Current View: M.PAS");
}

TEST_F(IncludeFiles, CancelChangesNothing) {
    editor.changed = true;
    newIncludeFile(workspace);
    openIncludeFile(workspace);
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_TRUE(editor.changed);
}

TEST_F(IncludeFiles, TheDirectiveTakesABlankLineOrMovesTheLineDown) {
    editor.setText("a\n\nb");
    editor.setCaret({1, 0});
    insertDirective(editor, includeDirective("X.INC"));
    EXPECT_EQ(editor.content, "a\n{$i X.INC }\nb");
    editor.setCaret({2, 1});
    insertDirective(editor, includeDirective("Y.INC"));
    EXPECT_EQ(editor.content, "a\n{$i X.INC }\n{$i Y.INC }\nb");
    editor.setText("");
    insertDirective(editor, includeDirective("X.INC"));
    EXPECT_EQ(editor.content, "{$i X.INC }");
}

TEST_F(IncludeFiles, WithTheRootSelectedTheTextGoesIntoItsOwnFile) {
    workspace.tree.selectedByUser(1);
    editor.setText("kept");
    dialogs.answer = folder.path() + "A.INC";
    answer({Answer::no});
    openIncludeFile(workspace);
    EXPECT_EQ(folder.read("M.PAS"), "kept");
    EXPECT_FALSE(folder.has("Project"));
}

} // namespace
} // namespace tavrel
