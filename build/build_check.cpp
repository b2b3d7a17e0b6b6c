#include "build/build_check.h"

#include "util/code_page.h"
#include "util/files.h"
#include "util/runtime_error.h"
#include "util/text.h"

#include <array>
#include <string_view>
#include <utility>
#include <vector>

namespace tavrel {

namespace {

/// The words of the compile script that are programs, each with the one file that they stand for.
struct ScriptWord {
    std::string_view word;
    std::string_view file;
};
constexpr std::array<ScriptWord, 2> scriptWords = {{{"DOS2CASH", "DOS2CASH.COM"}, {"TP3", "TP3.EXE"}}};
constexpr std::array<std::string_view, 3> programEndings = {".COM", ".EXE", ".BAT"};

/// Names of files that DOS would run in the place of the kit's.
std::vector<std::string> rivalsOfTheKit() {
    std::vector<std::string> names;
    for (const ScriptWord& word : scriptWords) {
        for (const std::string_view ending : programEndings) {
            std::string name = std::string(word.word) + std::string(ending);
            if (name != word.file)
                names.push_back(std::move(name));
        }
    }
    return names;
}

std::string folderProblem(const std::string& whose, const std::string& folder, const std::string& why,
                          const std::string& whatToDo) {
    return whose + " folder\r\n" + folder + "\r\n" + why + "\r\n" + whatToDo;
}

} // namespace

void requireCompiler(const std::string& programFolder) {
    for (const char* const name :
         {"DOS2CASH.COM", "TP3.EXE", "RUNTIME.COM", "temp.conf", "DOSBox-0.74\\DOSBox.exe"}) {
        const std::string path = programFolder + "compiler\\" + name;
        if (!FileExists(path))
            throw RuntimeError(RuntimeErrorNumber::fileNotFound, path);
    }
}

std::optional<std::string> whyFoldersAreRefused(const std::string& programFolder,
                                                const std::string& projectFolder) {
    // The program folder stands in the launcher without quotes.
    constexpr std::string_view parting = " \t&()^%,;=!";
    const std::string moveProgram =
        "The compiler cannot be started from there. Move Tavrel into another folder.";
    const std::string moveProject =
        "The compiler cannot be given such a name. Move the project into another folder.";
    if (programFolder.find_first_of(parting) != std::string::npos)
        return folderProblem("Tavrel's", programFolder,
                             "has a blank or one of & ( ) ^ % , ; = ! in its name.", moveProgram);
    if (!oemText(programFolder))
        return folderProblem("Tavrel's", programFolder, "has a letter in its name that DOS does not have.",
                             moveProgram);
    if (projectFolder.find('%') != std::string::npos)
        return folderProblem("The project's", projectFolder, "has a % in its name.", moveProject);
    if (!oemText(projectFolder))
        return folderProblem("The project's", projectFolder,
                             "has a letter in its name that DOS does not have.", moveProject);
    return std::nullopt;
}

std::optional<std::string> whyProjectIsRefused(const std::string& projectFolder,
                                               const std::string& programName) {
    for (const std::string& name : rivalsOfTheKit()) {
        if (!listFolder(projectFolder, name).empty())
            return "The project directory \r\n" + projectFolder + "\r\nholds the file " + name +
                   ", which DOS would run in the place of the compiler. Delete it, or give it another name, "
                   "before you compile.";
    }
    if (programName.find('%') !=
        std::string::npos) // a script's reader drops it, and then names another program
        return "A program cannot have a % in its name. Give the main file another name.";
    for (const char* const taken : {"DOS2CASH", "TP3", "RUNTIME"}) {
        if (upperCase(programName) == taken)
            return "A program cannot have the name " + std::string(taken) +
                   ": a part of the compiler has it. Give the main file another name.";
    }
    return std::nullopt;
}

} // namespace tavrel
