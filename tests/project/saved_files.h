// Everything that the program saves, as cases for tests in which saving fails.
#pragma once

#include "project/new_project.h"
#include "project/project_commands.h"
#include "project/project_loading.h"
#include "tests/support/fakes.h"
#include "tests/support/folder_content.h"
#include "tools/palette/palette_commands.h"

#include <functional>
#include <string>
#include <vector>

namespace tavrel::test {

/// A kind of file, with what has to happen before it is saved.
struct SavedFile {
    const char* name;
    std::function<void(TestWorkspace&)> prepare;
    std::function<void(TestWorkspace&)> save;
};

inline void loadSmallProject(TestWorkspace& test) {
    test.folder.write("A.INC", "procedure A;\r\n");
    LoadProject(test.workspace, test.folder.write("M.PAS", "{$I A.INC}\r\n"));
}

inline void writePalette(TestWorkspace& test) {
    std::string palette = "JASC-PAL\r\n0100\r\n16\r\n";
    for (int i = 0; i < 16; ++i)
        palette += "255 0 " + std::to_string(i) + "\r\n";
    test.folder.write("P.PAL", palette);
    test.folder.write("P.PL5", "an old palette");
    test.dialogs.answer = test.folder.path() + "P.PL5";
}

inline const std::vector<SavedFile>& savedFiles() {
    static const std::vector<SavedFile> files = {
        {"source",
         [](TestWorkspace& test) {
             loadSmallProject(test);
             test.editor.setText(std::string(20'000, 'x'));
         },
         [](TestWorkspace& test) { saveCurrentFile(test.workspace); }},
        {"source before a build",
         [](TestWorkspace& test) {
             loadSmallProject(test);
             test.editor.setText("begin end.\r\n");
         },
         [](TestWorkspace& test) { saveModifiedText(test.workspace); }},
        {"settings",
         [](TestWorkspace& test) {
             writeSettings(test.program.path(), test.workspace.settings);
             test.workspace.settings.FontName = "Courier New";
         },
         [](TestWorkspace& test) { SaveSettings(test.workspace); }},
        {"project file",
         [](TestWorkspace& test) {
             loadSmallProject(test);
             test.workspace.project.Name = "Game";
             test.folder.write("Game.tpj", "Game\r\n2E9B\r\nC000\r\nM.PAS\r\n");
         },
         [](TestWorkspace& test) { saveProject(test.workspace); }},
        {"palette", writePalette,
         [](TestWorkspace& test) {
             savePaletteFile(test.folder.path() + "P.PAL", test.folder.path(), test.dialogs, test.messages);
         }},
        {"new project",
         [](TestWorkspace& test) {
             test.program.makeFolder("projects\\Game");
             test.program.write("projects\\Game\\Game.pas", "begin end.\r\n");
             test.program.write("projects\\Game\\LIB.INC", "{ }\r\n");
             test.dialogs.answer = test.folder.path() + "NEW.PAS";
         },
         [](TestWorkspace& test) { newProject(test.workspace, "1Game"); }},
    };
    return files;
}

/// One case with its workspace: what was there, and what has to be there once it is saved.
class SavingAttempt {
  public:
    explicit SavingAttempt(const SavedFile& file) {
        {
            TestWorkspace other;
            file.prepare(other);
            file.save(other);
            whole_ = content(other);
            modified_ = other.editor.modified();
        }
        file.prepare(test);
        before_ = content(test);
    }

    TestWorkspace test;

    /// `told`: whether an error came out.
    void check(bool told, bool othersMayStay) {
        const FolderContent found = content(test);
        expectOldOrNew(found, before_, whole_, othersMayStay);
        if (!told) {
            EXPECT_TRUE(found == whole_) << "done is done";
            EXPECT_EQ(test.editor.modified(), modified_);
        }
    }

  private:
    /// Paths of the folders, which differ, stand in some of the files.
    static FolderContent content(const TestWorkspace& place) {
        FolderContent all;
        for (const auto& [prefix, folder] :
             {std::pair<const char*, const TemporaryFolder*>{"p/", &place.program}, {"f/", &place.folder}}) {
            for (auto [name, bytes] : contentOf(folder->native())) {
                bytes = replaced(bytes, place.program.path(), "<program>");
                all[prefix + name] = replaced(bytes, place.folder.path(), "<folder>");
            }
        }
        return all;
    }
    static std::string replaced(std::string text, const std::string& part, const std::string& other) {
        for (std::size_t at = text.find(part); at != std::string::npos;
             at = text.find(part, at + other.size()))
            text.replace(at, part.size(), other);
        return text;
    }

    FolderContent before_;
    FolderContent whole_;
    bool modified_ = false;
};

} // namespace tavrel::test
