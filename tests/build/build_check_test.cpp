// Builds that are not begun, and why.
#include "build/build_check.h"

#include "tests/build/build_fixture.h"
#include "util/runtime_error.h"
#include "util/text.h"

#include <gtest/gtest.h>
#include <string>

namespace tavrel {
namespace {

using test::Build;

bool holds(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

/// Nothing was run, nothing shown as a success, and the old program is still there.
struct RefusedBuild : Build {
    RefusedBuild() { test.folder.write("M.com", "old"); }
    void expectNothingDone() {
        EXPECT_TRUE(test.processes.runs.empty());
        EXPECT_EQ(test.folder.read("M.com"), "old");
        EXPECT_TRUE(kitIsGone());
        EXPECT_FALSE(test.display.waitPointer);
        EXPECT_FALSE(progress.images[4]);
    }
};

TEST_F(RefusedBuild, WithoutAPartOfTheCompiler) {
    for (const std::string name :
         {"DOS2CASH.COM", "TP3.EXE", "RUNTIME.COM", "temp.conf", "DOSBox-0.74\\DOSBox.exe"}) {
        const std::string path = test.program.path() + "compiler\\" + name;
        deleteFile(path);
        try {
            build();
            ADD_FAILURE() << name;
        } catch (const RuntimeError& error) {
            EXPECT_EQ(error.message(), "File not found\r\n" + path);
        }
        expectNothingDone();
        EXPECT_FALSE(progress.shown);
        test.program.write("compiler\\" + name, name);
    }
}

TEST_F(RefusedBuild, WithAFileThatDosWouldRunInTheCompilersPlace) {
    for (const char* const name :
         {"TP3.COM", "TP3.BAT", "tp3.com", "Tp3.Bat", "DOS2CASH.EXE", "dos2cash.bat"}) {
        test.folder.write(name, "echo evil");
        EXPECT_FALSE(build()) << name;
        EXPECT_TRUE(holds(progress.words, upperCase(name))) << progress.words;
        EXPECT_TRUE(holds(progress.words, test.folder.path()));
        EXPECT_TRUE(progress.images[3]);
        expectNothingDone();
        EXPECT_EQ(test.folder.read(name), "echo evil") << "it may be the user's work";
        deleteFile(test.folder.path() + name);
    }
    for (const char* const name : {"TP3.PAS", "TP3.TXT", "XTP3.COM", "TP3A.BAT", "DOS2CASH.PAS", "COPY.COM"})
        test.folder.write(name, "x");
    EXPECT_TRUE(build());
    EXPECT_EQ(test.processes.runs.size(), 1U);
}

TEST_F(RefusedBuild, OfAProgramThatIsNamedAsAPartOfTheCompiler) {
    for (const char* const name : {"RUNTIME", "DOS2CASH", "TP3"}) {
        LoadProject(test.workspace, test.folder.write(std::string(name) + ".pas", "begin end.\r\n"));
        EXPECT_FALSE(build());
        EXPECT_TRUE(holds(progress.words, name)) << progress.words;
        expectNothingDone();
    }
}

TEST_F(RefusedBuild, OfAProgramThatAScriptWouldTakeForAnother) {
    test.folder.write("M.PAS", "begin end.\r\n");
    LoadProject(test.workspace, test.folder.write("M%.PAS", "begin end.\r\n"));
    EXPECT_FALSE(build());
    EXPECT_TRUE(holds(progress.words, "a % in its name")) << progress.words;
    expectNothingDone();
}

TEST(FolderCheck, TheProgramFolderStandsInACommandWithoutQuotes) {
    EXPECT_FALSE(whyFoldersAreRefused("C:\\Tavrel\\", "C:\\My programs & (games)\\"));
    for (const char* const folder : {"C:\\Program Files\\", "C:\\a&b\\", "C:\\50%\\", "C:\\a(1)\\",
                                     "C:\\a^b\\", "C:\\a,b\\", "C:\\a;b\\", "C:\\a=b\\", "C:\\a!b\\"}) {
        const auto why = whyFoldersAreRefused(folder, "C:\\P\\");
        ASSERT_TRUE(why) << folder;
        EXPECT_TRUE(holds(*why, folder)) << *why;
        EXPECT_TRUE(holds(*why, "Move Tavrel into another folder")) << *why;
    }
}

TEST(FolderCheck, AProjectFolderMustReachDos) {
    const auto why = whyFoldersAreRefused("C:\\Tavrel\\", "C:\\50%off\\");
    ASSERT_TRUE(why);
    EXPECT_TRUE(holds(*why, "C:\\50%off\\") && holds(*why, "Move the project into another folder")) << *why;
#ifdef _WIN32
    EXPECT_FALSE(whyFoldersAreRefused("C:\\T\\", "C:\\J\xFCrgen\\T\xF6ne\\")) << "DOS has these letters";
    EXPECT_TRUE(whyFoldersAreRefused("C:\\T\\", "C:\\5\x80\\")) << "and no euro sign";
    EXPECT_TRUE(whyFoldersAreRefused("C:\\5\x80\\", "C:\\P\\"));
#endif
}

TEST_F(RefusedBuild, ForItsFolderIsToldInAMessageBox) {
    const std::string folder = test.folder.makeFolder("50%off");
    test.folder.write("50%off\\M.PAS", "begin end.\r\n");
    LoadProject(test.workspace, folder + "M.PAS");
    EXPECT_FALSE(build());
    ASSERT_EQ(test.messages.shown.size(), 1U);
    EXPECT_EQ(test.messages.shown[0].text, whyFoldersAreRefused(test.program.path(), folder));
    EXPECT_EQ(test.messages.shown[0].title, "Tavrel");
    EXPECT_FALSE(progress.shown);
    expectNothingDone();
}

TEST_F(Build, ARefusalForItsSizeIsExplainedInTheStatusLine) {
    test.folder.write("BIG.DAT", std::string(737281, 'x'));
    EXPECT_TRUE(build());
    EXPECT_TRUE(holds(test.display.panels[StatusPanel::message], "All files of the folder count"));
    test.workspace.AppDir = test.folder.makeFolder("Tavrel"); // as when a project is made where Tavrel lies
    test.folder.makeFolder("Tavrel\\compiler\\DOSBox-0.74");
    for (const char* const name :
         {"DOS2CASH.COM", "TP3.EXE", "RUNTIME.COM", "temp.conf", "DOSBox-0.74\\DOSBox.exe"})
        test.folder.write(std::string("Tavrel\\compiler\\") + name, name);
    EXPECT_TRUE(build());
    EXPECT_TRUE(holds(test.display.panels[StatusPanel::message], "Tavrel itself lies in this folder"));
}

#ifdef _WIN32
TEST_F(Build, TheLauncherIsInTheInterpretersCodePage) {
    const std::string folder = test.folder.makeFolder("T\xF6ne"); // ö in the ANSI code page
    test.folder.write("T\xF6ne\\M.PAS", "begin end.\r\n");
    LoadProject(test.workspace, folder + "M.PAS");
    EXPECT_TRUE(build());
    EXPECT_TRUE(holds(test.program.read("compiler\\rundb.bat"), "T\x94ne\\\\turbopc.bat"))
        << "ö in the OEM one";
}
#endif

// A build that the user ends, and one that takes long.

TEST_F(Build, BrokenOffIsNeitherASuccessNorAnErrorOfTheSource) {
    test.processes.work = [this] {
        for (const char* const name : {"M.com", "TP3OUT.$$$", "errors.txt", "result.txt", "stdout.txt"})
            test.folder.write(name, "half");
        throw WaitBrokenOff();
    };
    EXPECT_FALSE(build());
    EXPECT_EQ(progress.words, "The build was broken off. No program was made.");
    EXPECT_EQ(progress.images, (std::array<bool, 5>{false, false, false, true, false}));
    for (const char* const name : {"M.com", "TP3OUT.$$$", "errors.txt", "result.txt", "stdout.txt"})
        EXPECT_FALSE(test.folder.has(name)) << name;
    EXPECT_TRUE(kitIsGone());
    EXPECT_FALSE(test.display.waitPointer);
    EXPECT_EQ(test.editor.highlighted, -1);
    test.processes.work = [] {};
    EXPECT_TRUE(build()) << "the next one is a new one";
}

TEST_F(Build, BrokenOffInsideAnotherBuildEndsBoth) {
    test.processes.work = [this] {
        if (test.processes.runs.size() > 1)
            throw WaitBrokenOff();
        EXPECT_FALSE(build());
        EXPECT_EQ(progress.words, "The build was broken off. No program was made.");
        // and the outer one's program has ended by itself just before
    };
    EXPECT_FALSE(build()) << "what the inner one deleted is no success of the outer one";
    EXPECT_EQ(progress.words, "The build was broken off. No program was made.");
}

TEST_F(Build, ThatTakesLongNamesTheKeyAsLongAsItRuns) {
    const std::string notice = "The build takes long. Ctrl+Break ends it.";
    auto& panel = test.display.panels[StatusPanel::message];
    panel = "procedure P;";
    test.processes.work = [&] {
        EXPECT_EQ(panel, "procedure P;");
        test.processes.waitIsLong();
        EXPECT_EQ(panel, notice);
    };
    EXPECT_TRUE(build());
    EXPECT_EQ(panel, "");
    panel = "procedure Q;";
    test.processes.work = [] {};
    EXPECT_TRUE(build());
    EXPECT_EQ(panel, "procedure Q;") << "a short build leaves the line alone";
    test.processes.waitIsLong();
    EXPECT_EQ(panel, "procedure Q;") << "nor does a wait for something else";
}

TEST_F(Build, AKitFileThatCannotBeDeletedIsTold) {
    test.processes.work = [this] {
        deleteFile(test.folder.path() + "TP3.EXE");
        test.folder.makeFolder("TP3.EXE"); // which deleting a file does not delete
    };
    try {
        build();
        FAIL() << "the copy is still there";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.detail(), test.folder.path() + "TP3.EXE");
    }
    EXPECT_TRUE(progress.closed);
    EXPECT_FALSE(test.display.waitPointer);
    for (const char* const name : {"DOS2CASH.COM", "RUNTIME.COM", "turbopc.bat"})
        EXPECT_FALSE(test.folder.has(name)) << name;
}

} // namespace
} // namespace tavrel
