#include "project/new_project.h"
#include "project/project_file.h"
#include "tests/support/fakes.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace tavrel {
namespace {

using test::TestWorkspace;

struct NewProject : testing::Test, TestWorkspace {
    NewProject() {
        program.makeFolder("projects\\DEMO");
        program.write("projects\\DEMO\\Demo.PAS", "program Demo;\r\n{$I DEMO.INC}\r\nbegin end.\r\n");
        program.write("projects\\DEMO\\DEMO.INC", "{ of the template }\r\n");
        workspace.settings.UseTooltips = storedFalse;
    }
    void create(const std::string& name, const std::string& result) {
        dialogs.answer = folder.path() + name;
        newProject(workspace, result);
    }
};

TEST_F(NewProject, TheMainFileTakesTheNewName) {
    create("game", "0DEMO");
    EXPECT_EQ(folder.read("game.pas"), "program Demo;\r\n{$I DEMO.INC}\r\nbegin end.\r\n");
    EXPECT_EQ(folder.read("DEMO.INC"), "{ of the template }\r\n");
    EXPECT_EQ(folder.read("game.tpj"), "game\r\n2E9B\r\nD200\r\n" + folder.path() + "game.pas\r\n");
    EXPECT_FALSE(folder.has("AUTOEXEC.BAT"));
    EXPECT_FALSE(folder.has("Demo.PAS"));
    EXPECT_EQ(workspace.tree.texts(), (std::vector<std::string>{"game", "GAME.PAS", "DEMO.INC"}))
        << "the root shows the new name";
    EXPECT_EQ(workspace.project.Name, "game");
    EXPECT_EQ(workspace.settings.Recent[0], folder.path() + "game.tpj");
    EXPECT_EQ(workspace.LastDir, folder.path());
    EXPECT_EQ(readProjectFile(folder.path() + "game.tpj").mainFile, folder.path() + "game.pas");
}

TEST_F(NewProject, TheSaveDialogIsWorded) {
    workspace.LastDir = folder.path();
    create("game", "0DEMO");
    ASSERT_EQ(dialogs.saved.size(), 1U);
    EXPECT_EQ(dialogs.saved[0].title, "New File");
    EXPECT_EQ(dialogs.saved[0].filter, "Pascal files (*.pas) | *.pas");
    EXPECT_EQ(dialogs.saved[0].initialFolder, folder.path());
}

TEST_F(NewProject, TheCheckBoxMakesAnAutoexec) {
    create("game", "1DEMO");
    EXPECT_EQ(folder.read("AUTOEXEC.BAT"), "SET EXPERT ON\r\r\nGAME\r\r\n");
}

TEST_F(NewProject, ANameThatEndsInPasKeepsIt) {
    create("GAME.PAS", "0DEMO");
    EXPECT_TRUE(folder.has("GAME.PAS"));
    EXPECT_EQ(folder.read("GAME.tpj").substr(0, 6), "GAME\r\n");
    EXPECT_EQ(newMainFile("C:\\a.Pas"), "C:\\a.Pas");
    EXPECT_EQ(newMainFile(" C:\\a.txt "), "C:\\a.txt.pas");
    EXPECT_EQ(newMainFile(std::string("C:\\a\0rest", 9)), "C:\\a.pas");
}

TEST_F(NewProject, ADoubleClickLosesTheFirstCharacterOfTheName) {
    EXPECT_EQ(newProjectChoice("DEMO"), (NewProjectChoice{false, "EMO"}));
    dialogs.saveAnswer = folder.path() + "game";
    newProject(workspace, "DEMO");
    // Nothing was copied, so the main file is asked for.
    ASSERT_EQ(dialogs.opened.size(), 1U);
    EXPECT_EQ(dialogs.opened[0].title, "Show where the file game.pas is");
    EXPECT_FALSE(folder.has("DEMO.INC"));
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(messages.shown[0].title, "Fatal Error");
}

TEST_F(NewProject, AnyDigitAboveZeroIsTheCheckBox) {
    EXPECT_EQ(newProjectChoice("1A"), (NewProjectChoice{true, "A"}));
    EXPECT_EQ(newProjectChoice("0A"), (NewProjectChoice{false, "A"}));
    EXPECT_EQ(newProjectChoice("3D"), (NewProjectChoice{true, "D"})) << "a double-clicked template";
    EXPECT_EQ(newProjectChoice("1"), (NewProjectChoice{true, ""}));
}

TEST_F(NewProject, CancelChangesNothing) {
    workspace.tree.add(0, "r", "Root", TreeImage::collapsed);
    editor.content = "text";
    newProject(workspace, "");
    EXPECT_TRUE(dialogs.saved.empty());
    dialogs.answer = "";
    newProject(workspace, "1DEMO");
    EXPECT_EQ(dialogs.saved.size(), 1U);
    EXPECT_EQ(workspace.tree.count(), 1U);
    EXPECT_EQ(editor.content, "text");
}

TEST_F(NewProject, ATemplateWithoutItsMainFileIsStillCopied) {
    program.makeFolder("projects\\ODD");
    program.write("projects\\ODD\\OTHER.INC", "x\r\n");
    dialogs.saveAnswer = folder.path() + "game";
    newProject(workspace, "0ODD");
    EXPECT_TRUE(folder.has("OTHER.INC"));
    EXPECT_EQ(dialogs.opened.size(), 1U);
}

TEST_F(NewProject, ExistingFilesAreOverwritten) {
    folder.write("DEMO.INC", "old");
    create("game", "0DEMO");
    EXPECT_EQ(folder.read("DEMO.INC"), "{ of the template }\r\n");
}

TEST_F(NewProject, TemplatesAreTheFoldersSorted) {
    program.makeFolder("projects\\ALPHA");
    program.makeFolder("projects\\zeta");
    program.makeFolder("projects\\Zulu");
    program.write("projects\\readme.txt", "no folder");
    EXPECT_EQ(templateNames(program.path()), (std::vector<std::string>{"ALPHA", "DEMO", "Zulu", "zeta"}));
    EXPECT_TRUE(templateNames(folder.path()).empty()) << "no projects folder";
}

TEST(SortNames, SortsByCharacterCodeInBothDirections) {
    for (const std::size_t count : {0U, 1U, 2U, 3U, 4U, 5U, 13U, 14U, 40U, 200U}) {
        std::vector<std::string> names;
        unsigned state = 12345;
        for (std::size_t i = 0; i < count; ++i) {
            state = state * 1103515245U + 12345U;
            names.push_back(std::string(1, static_cast<char>('A' + state / 65536 % 58)) +
                            std::to_string(state % 7));
        }
        std::vector<std::string> expected = names;
        std::sort(expected.begin(), expected.end());
        sortNames(names, false);
        EXPECT_EQ(names, expected) << count;
        std::reverse(expected.begin(), expected.end());
        sortNames(names, true);
        EXPECT_EQ(names, expected) << count;
    }
}

} // namespace
} // namespace tavrel
