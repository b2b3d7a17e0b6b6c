// What a project from somebody else may not do: lead out of its folder, or keep the program busy without an
// end.
#include "project/include_files.h"
#include "project/new_project.h"
#include "project/project_commands.h"
#include "project/project_loading.h"
#include "tests/support/fakes.h"
#include "tests/support/folder_content.h"

#include <gtest/gtest.h>

namespace tavrel {
namespace {

using test::TestWorkspace;

/// A project in a folder beside another one, which has to stay as it is.
struct HarmlessProject : testing::Test {
    TestWorkspace test;
    Workspace& workspace = test.workspace;
    std::string folder = test.folder.makeFolder("project");

    HarmlessProject() {
        test.folder.makeFolder("VICTIM");
        test.folder.write("VICTIM\\X.PAS", "the victim's\r\n");
        test.folder.write("VICTIM\\X.COM", "the victim's program");
        test.folder.write("VICTIM\\X.INC", "the victim's include\r\n");
        test.folder.write("project\\X.PAS", "begin end.\r\n");
        victim_ = test::contentOf(test.folder.native() / "VICTIM");
    }
    ~HarmlessProject() override {
        EXPECT_EQ(test::contentOf(test.folder.native() / "VICTIM"), victim_);
        EXPECT_EQ(listFolder(test.folder.path(), "*").size(), 2U) << "nothing new beside the two folders";
    }
    HarmlessProject(const HarmlessProject&) = delete;
    HarmlessProject& operator=(const HarmlessProject&) = delete;

    bool open(const std::string& name, const std::string& mainFile) {
        return openProjectFile(workspace, test.folder.write("project\\A.tpj", name + "\r\n2E9B\r\nD200\r\n" +
                                                                                  mainFile + "\r\n"));
    }

  private:
    test::FolderContent victim_;
};

TEST_F(HarmlessProject, ANameThatIsAPathBecomesNone) {
    for (const std::string name :
         {"..\\VICTIM\\evil.bat", "../VICTIM/evil.bat", "..\\VICTIM\\X.PAS", "NUL", "C:x", ""}) {
        ASSERT_TRUE(open(name, "X.PAS"));
        workspace.tree.select(1);
        test.editor.setText("start evil");
        const auto before = test::contentOf(test.folder.native() / "project");
        const auto refused = [&](const char* what) {
            ASSERT_EQ(test.messages.shown.size(), 1U) << what << " " << name;
            EXPECT_EQ(test.messages.shown[0].text.find('"' + name + "\" cannot be the name of a file"), 0U);
            EXPECT_EQ(test.messages.shown[0].icon, Icon::critical);
            EXPECT_EQ(test::contentOf(test.folder.native() / "project"), before) << what;
            EXPECT_TRUE(test.editor.modified()) << "the text is still to be saved";
            test.messages.shown.clear();
        };
        EXPECT_FALSE(saveModifiedText(workspace));
        refused("F6");
        saveCurrentFile(workspace);
        refused("Ctrl+S");
        saveProject(workspace);
        refused("Save Project");
        EXPECT_EQ(workspace.settings.Recent[0], "");
    }
    ASSERT_TRUE(open("evil & co", "X.PAS"));
    workspace.tree.select(1);
    test.editor.setText("harmless");
    EXPECT_TRUE(saveModifiedText(workspace));
    EXPECT_EQ(test.folder.read("project\\evil & co"), "harmless");
}

TEST_F(HarmlessProject, AnyFolderInLineFourIsDropped) {
    for (const char* const line :
         {"../VICTIM/X.PAS", "..\\VICTIM\\X.PAS", "..\\VICTIM/X.PAS", "C:X.PAS", "/X.PAS"}) {
        ASSERT_TRUE(open("Demo", line));
        EXPECT_EQ(test.editor.content, "begin end.\r\n") << line;
        EXPECT_EQ(workspace.tree.node(2).text, "X.PAS") << line;
        EXPECT_EQ(workspace.project.Folder, folder);
    }
}

TEST_F(HarmlessProject, AnIncludeFromElsewhereIsNotWrittenThere) {
    test.folder.write("project\\X.INC", "our include\r\n");
    for (const char* const name : {"..\\VICTIM\\X.INC", "../VICTIM/X.INC"}) {
        test.folder.write("project\\X.PAS", "{$I " + std::string(name) + "}\r\n");
        ASSERT_TRUE(open("Demo", "X.PAS"));
        ASSERT_EQ(workspace.tree.count(), 3U) << name;
        EXPECT_EQ(workspace.tree.node(3).text, "X.INC") << name;
        workspace.project.CurrentFile = 2;
        test.editor.setText("edited\r\n");
        const auto former = std::filesystem::current_path(); // which Refresh saves into
        std::filesystem::current_path(test.folder.native() / "project");
        RefreshProject(workspace);
        std::filesystem::current_path(former);
        EXPECT_EQ(test.folder.read("project\\X.INC"), "edited\r\n") << name;
    }
}

std::string repeated(const std::string& line, int times) {
    std::string text;
    for (int i = 0; i < times; ++i)
        text += line;
    return text;
}

TEST_F(HarmlessProject, AFewLinesCannotNameMillionsOfFiles) {
    test.folder.write("project\\X.PAS", repeated("{$I A.INC}\r\n", 2000));
    test.folder.write("project\\A.INC", repeated("{$I A.INC}\r\n", 2000));
    ASSERT_TRUE(open("Demo", "X.PAS"));
    EXPECT_EQ(workspace.tree.count(), mostTreeNodes);
    ASSERT_EQ(test.messages.shown.size(), 1U);
    EXPECT_EQ(test.messages.shown[0].text,
              "The project includes too many files. The tree shows the first of them only.");
    EXPECT_EQ(test.display.projectCommandsEnabled, 1) << "it is loaded all the same";
    test.messages.shown.clear();
    test.folder.write("project\\X.PAS", repeated("{$I A.INC}\r\n", 400)); // of which none is there
    test.folder.write("project\\A.INC", repeated("{$I NOWHERE.INC}\r\n", 2000));
    ASSERT_TRUE(open("Demo", "X.PAS"));
    EXPECT_EQ(workspace.tree.count(), 402U);
    EXPECT_EQ(test.messages.shown.size(), 1U) << "looking them all up has an end too";
    test.messages.shown.clear();
    test.folder.write("project\\X.PAS", repeated("{$I A.INC}\r\n", 498));
    test.folder.write("project\\A.INC", "x\r\n");
    ASSERT_TRUE(open("Demo", "X.PAS"));
    EXPECT_EQ(workspace.tree.count(), mostTreeNodes) << "as many as there may be";
    EXPECT_TRUE(test.messages.shown.empty());
}

TEST_F(HarmlessProject, TheFolderOfTheDialogsFollowsTheProject) {
    ASSERT_TRUE(open("Demo", "X.PAS"));
    workspace.LastDir = "C:\\elsewhere\\";
    saveProject(workspace);
    EXPECT_EQ(workspace.LastDir, folder);
    workspace.LastDir = "C:\\elsewhere\\";
    test.dialogs.answer = test.folder.path() + "VICTIM\\X.INC";
    test.messages.answers = {Answer::no, Answer::no};
    openIncludeFile(workspace);
    EXPECT_EQ(workspace.LastDir, folder) << "the refresh at the end loads the project";
    test.dialogs.answer = "";
    workspace.LastDir = "C:\\elsewhere\\";
    openIncludeFile(workspace);
    EXPECT_EQ(test.dialogs.opened.back().initialFolder, "C:\\elsewhere\\");
    EXPECT_EQ(workspace.LastDir, "C:\\elsewhere\\") << "Cancel changes nothing";
}

TEST_F(HarmlessProject, EverySaveDialogGivesItsEnding) {
    ASSERT_TRUE(open(unnamedProject, "X.PAS"));
    saveProject(workspace);
    newIncludeFile(workspace);
    newProject(workspace, "0HELLO");
    ASSERT_EQ(test.dialogs.saved.size(), 3U);
    EXPECT_EQ(test.dialogs.saved[0].extension, "tpj");
    EXPECT_EQ(test.dialogs.saved[1].extension, "inc");
    EXPECT_EQ(test.dialogs.saved[2].extension, "pas");
}

TEST_F(HarmlessProject, ANewProjectClearsTheTreeBeforeItLoads) {
    ASSERT_TRUE(open("Demo", "X.PAS"));
    // A template without a main file leads to the locate dialog, which is left: nothing of the old project
    // may stay.
    test.dialogs.saveAnswer = folder + "NEW.PAS";
    test.messages.answers = {Answer::ok};
    try {
        newProject(workspace, "0NOWHERE");
    } catch (const std::exception&) { // its project file names a main file that is not there
    }
    EXPECT_EQ(workspace.tree.count(), 0U);
    EXPECT_EQ(test.editor.content, "");
}

} // namespace
} // namespace tavrel
