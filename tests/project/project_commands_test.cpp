#include "project/include_files.h"
#include "project/project_commands.h"
#include "project/project_loading.h"
#include "project/unwritable_folder.h"
#include "tests/support/fakes.h"
#include "util/files.h"
#include "util/runtime_error.h"

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

TEST(ProjectCommands, OpeningAPascalFileForgetsTheNameButKeepsTheAddresses) {
    TestWorkspace test;
    test.workspace.project.Name = "Old";
    test.workspace.project.StartAddress = 0x4000;
    test.workspace.LastDir = "";
    test.dialogs.answer = test.folder.write("m.pas", "x\r\n");
    openPascalFile(test.workspace);
    EXPECT_EQ(test.dialogs.opened.at(0).title, "Open File");
    EXPECT_EQ(test.dialogs.opened.at(0).filter, "Pascal File | *.pas");
    EXPECT_EQ(test.dialogs.opened.at(0).initialFolder, "C:\\");
    EXPECT_EQ(test.workspace.project.Name, "Project");
    EXPECT_EQ(test.workspace.project.StartAddress, 0x4000);
    EXPECT_EQ(test.workspace.settings.Recent[0], test.dialogs.answer);
    EXPECT_EQ(test.workspace.LastDir, test.folder.path());
    EXPECT_EQ(test.workspace.tree.texts(), (std::vector<std::string>{"Project", "M.PAS"}));
}

TEST(ProjectCommands, APascalFileThatIsNotThereIsRememberedAndAskedFor) {
    TestWorkspace test;
    openPascalFileNamed(test.workspace, test.folder.path() + "no.pas");
    ASSERT_EQ(test.messages.shown.size(), 1U);
    EXPECT_EQ(test.messages.shown[0].title, "Fatal Error");
    EXPECT_EQ(test.workspace.settings.Recent[0], test.folder.path() + "no.pas");
    EXPECT_EQ(test.display.projectCommandsEnabled, 0);
    newIncludeFile(test.workspace); // for which there is no project
    openIncludeFile(test.workspace);
    EXPECT_TRUE(test.dialogs.saved.empty());
    EXPECT_EQ(test.dialogs.opened.size(), 1U) << "the one for the missing file";
    EXPECT_EQ(test.messages.shown.size(), 1U);
}

TEST(ProjectCommands, CancellingADialogDoesNothing) {
    TestWorkspace test;
    LoadProject(test.workspace, test.folder.write("m.pas", "x\r\n"));
    test.editor.setText("edited");
    openProject(test.workspace);
    openPascalFile(test.workspace);
    saveProject(test.workspace);
    EXPECT_EQ(test.editor.content, "edited");
    EXPECT_TRUE(test.editor.modified());
    EXPECT_EQ(test.workspace.settings.Recent[0], "");
    EXPECT_EQ(listFolder(test.folder.path(), "*.tpj").size(), 0U);
}

TEST(ProjectCommands, SavingAnUnnamedProjectLeavesItUnnamed) {
    TestWorkspace test;
    LoadProject(test.workspace, test.folder.write("main.pas", "x\r\n"));
    test.dialogs.answer = test.folder.path() + "Other.tpj";
    saveProject(test.workspace);
    EXPECT_EQ(test.dialogs.saved.at(0).filter, "Turbo Pascal Projects (*.tpj) | *.tpj");
    EXPECT_EQ(test.folder.read("Other.tpj"), "Project\r\n2E9B\r\nD200\r\nMAIN.PAS\r\n");
    EXPECT_EQ(test.workspace.project.Name, "Project");
    EXPECT_EQ(test.workspace.settings.Recent[0], test.dialogs.answer);
}

TEST(ProjectCommands, ARecentProjectKeepsItsPlaceInTheList) {
    TestWorkspace test;
    test.folder.write("M.PAS", "x\r\n");
    const std::string path = test.folder.write("a.TPJ", "A\r\n4000\r\nC000\r\nQ:\\M.PAS\r\n");
    test.workspace.settings.Recent = {"other", path, "", "", ""};
    openRecentEntry(test.workspace, 1);
    EXPECT_EQ(test.workspace.project.Name, "A");
    EXPECT_EQ(test.editor.content, "x\r\n");
    EXPECT_EQ(test.workspace.settings.Recent[0], "other");
}

TEST(ProjectCommands, ARecentEntryOfAnotherKindDoesNothing) {
    TestWorkspace test;
    test.workspace.settings.Recent = {test.folder.write("a.inc", "x\r\n"), "", "", "", ""};
    openRecentEntry(test.workspace, 0);
    EXPECT_EQ(test.workspace.tree.count(), 0U);
    EXPECT_TRUE(test.messages.shown.empty());
}

TEST(ProjectCommands, AProjectThatCannotBeSavedKeepsItsOldFile) {
    TestWorkspace test;
    test.workspace.project.Name = "Demo";
    LoadProject(test.workspace, test.folder.write("m.pas", "x\r\n"));
    test.folder.write("Demo.tpj", "old");
    std::filesystem::permissions(test.folder.native() / "Demo.tpj", std::filesystem::perms::owner_read);
    EXPECT_THROW(saveProject(test.workspace), RuntimeError);
    EXPECT_EQ(test.folder.read("Demo.tpj"), "old");
    EXPECT_EQ(test.workspace.settings.Recent[0], "");
    std::filesystem::permissions(test.folder.native() / "Demo.tpj", std::filesystem::perms::owner_all);
}

TEST(TwoPrograms, DoNotUndoEachOthersSettings) {
    TestWorkspace test;
    TestWorkspace other;
    other.workspace.AppDir = test.program.path(); // the same program folder
    writeSettings(test.program.path(), SetDefaultSettings(test.program.path()));
    LoadSettings(test.workspace);
    LoadSettings(other.workspace);
    test.workspace.settings.EmulatorPath = "C:\\emu.exe";
    SaveSettings(test.workspace);
    AddRecentFile(other.workspace, "C:\\A.TPJ");
    const Settings stored = readSettings(test.program.path());
    EXPECT_EQ(stored.EmulatorPath, "C:\\emu.exe");
    EXPECT_EQ(stored.Recent[0], "C:\\A.TPJ");
    EXPECT_EQ(other.workspace.settings, stored) << "and the program goes on with them";
}

TEST(TwoPrograms, ASettingsFileThatWasCutShortIsWrittenWhole) {
    TestWorkspace test;
    writeSettings(test.program.path(), SetDefaultSettings(test.program.path()));
    LoadSettings(test.workspace);
    test.program.write("config.cfg", std::string(6, '\0'));
    AddRecentFile(test.workspace, "C:\\A.TPJ");
    EXPECT_EQ(readSettings(test.program.path()).FontName, "Terminal");
}

TEST(ReadOnlyProgramFolder, APascalFileOpensAllTheSameAndItIsToldOnce) {
    TestWorkspace test;
    const std::string path = test.folder.write("M.PAS", "m\r\n");
    writeSettings(test.program.path(), test.workspace.settings);
    std::filesystem::permissions(test.program.native() / "config.cfg", std::filesystem::perms::owner_read);
    try {
        openPascalFileNamed(test.workspace, path);
        ADD_FAILURE() << "the first time is told";
    } catch (const RuntimeError& error) {
        EXPECT_TRUE(isUnwritableProgramFolder(test.workspace, error));
        EXPECT_NE(explainedMessage(test.workspace, error).find("folder of your own"), std::string::npos);
        EXPECT_EQ(explainedMessage(test.workspace, error), error.message()) << "the way out is said once";
    }
    EXPECT_EQ(test.editor.content, "m\r\n");
    EXPECT_EQ(test.workspace.LastDir, test.folder.path());
    openPascalFileNamed(test.workspace, test.folder.write("N.PAS", "n\r\n"));
    EXPECT_EQ(test.editor.content, "n\r\n");
}

TEST(ReadOnlyProgramFolder, OtherFailuresAreNotItsOwn) {
    TestWorkspace test;
    const auto is = [&](RuntimeErrorNumber number, const std::string& path) {
        return isUnwritableProgramFolder(test.workspace, RuntimeError(number, path));
    };
    EXPECT_TRUE(is(RuntimeErrorNumber::pathFileAccessError, test.program.path() + "compiler\\turbopc.bat"));
    EXPECT_FALSE(is(RuntimeErrorNumber::permissionDenied, test.program.path() + "dsk\\d.dsk"));
    EXPECT_FALSE(is(RuntimeErrorNumber::diskFull, test.program.path() + "config.cfg"));
    EXPECT_FALSE(is(RuntimeErrorNumber::pathFileAccessError, test.folder.path() + "M.PAS"));
}

} // namespace
} // namespace tavrel
