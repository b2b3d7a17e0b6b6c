#include "disk/command_line.h"

#include "disk/host_files.h"
#include "msxrun/name83.h"

#include <algorithm>
#include <system_error>

namespace disk {

const std::string_view helpText =
    "dsktool: MSX disk images\n"
    "\n"
    "  dsktool A IMAGE FILES...           adds files, in place of those of the same name;\n"
    "                                     makes a disk of 720 kB when there is no IMAGE\n"
    "  dsktool L IMAGE                    lists the files\n"
    "  dsktool E IMAGE [NAMES...] [-o FOLDER]\n"
    "                                     extracts all files, or those named, into FOLDER\n"
    "                                     (the current one), over files of the same names\n"
    "  dsktool D IMAGE NAMES...           deletes files\n"
    "  dsktool --help                     prints this text\n"
    "\n"
    "FILES and NAMES may hold * and ?; *.* means all files. Folders are passed over, and the image\n"
    "itself when it lies among the files. Names on the disk have at most eight and three characters:\n"
    "longer ones are cut, and told. A file that cannot get a name of its own is left out when it was\n"
    "found by * or ?, and is an error when it was named. Paths with blanks may come without quotes.\n"
    "A disk that would get too full is not changed at all.\n"
    "\n"
    "Exit code: 0 done, 1 failed and nothing changed, 2 wrong use, 3 done but for what was told.\n";

namespace {

constexpr std::string_view separators = "/\\:";

bool endsInDsk(const std::string& word) {
    constexpr std::string_view ending = ".dsk";
    return word.size() >= ending.size() &&
           fitsPattern(std::string_view(word).substr(word.size() - ending.size()), ending);
}

Verb verbOf(const std::string& word) {
    static constexpr std::string_view letters = "ALED";
    static constexpr Verb verbs[] = {Verb::add, Verb::list, Verb::extract, Verb::remove};
    const std::size_t place = word.size() == 1 ? letters.find(msxrun::upperCase(word[0])) : letters.npos;
    if (place == letters.npos)
        throw UsageError("'" + word + "' is none of A, L, E, D");
    return verbs[place];
}

bool isFolder(const std::string& text) {
    std::error_code ignored;
    return std::filesystem::is_directory(pathOf(text), ignored);
}

/// Takes "-o FOLDER" out of the words.
std::string takeFolder(std::vector<std::string>& words) {
    const auto option = std::find(words.begin(), words.end(), "-o");
    if (option == words.end())
        return ".";
    if (option + 1 == words.end())
        throw UsageError("-o needs a folder");
    std::string folder = *(option + 1);
    words.erase(option, option + 2);
    return folder;
}

} // namespace

std::vector<std::string> joinSplitPaths(const std::vector<std::string>& words, const Known& known) {
    std::vector<std::string> paths;
    for (std::size_t i = 0; i < words.size(); ++i) {
        std::string path = words[i];
        std::size_t last = i;
        while (!known(path) && last + 1 < words.size())
            path += " " + words[++last];
        if (known(path))
            i = last;
        else
            path = words[i];
        paths.push_back(path);
    }
    return paths;
}

std::vector<std::string> joinSplitImage(const std::vector<std::string>& words, const Known& isFile,
                                        const Known& isKnownFolder) {
    if (words.empty() || endsInDsk(words[0]) || isFile(words[0]))
        return words;
    std::string path = words[0];
    for (std::size_t i = 1; i < words.size(); ++i) {
        path += " " + words[i];
        if (!endsInDsk(words[i]))
            continue;
        if (words[i].find_first_of(separators) == std::string::npos ||
            !isKnownFolder(path.substr(0, path.find_last_of(separators) + 1)))
            return words;
        std::vector<std::string> joined = {path};
        joined.insert(joined.end(), words.begin() + static_cast<std::ptrdiff_t>(i) + 1, words.end());
        return joined;
    }
    return words;
}

CommandLine parseCommandLine(const std::vector<std::string>& arguments) {
    CommandLine line;
    if (std::find(arguments.begin(), arguments.end(), "--help") != arguments.end())
        return line;
    if (arguments.empty())
        throw UsageError("A, L, E or D? (--help tells more)");
    line.verb = verbOf(arguments[0]);
    std::vector<std::string> words(arguments.begin() + 1, arguments.end());
    if (line.verb == Verb::extract)
        line.folder = takeFolder(words);
    words = joinSplitImage(words, namesFiles, isFolder);
    if (words.empty() || words[0].empty())
        throw UsageError("which image?");
    line.image = words[0];
    words.erase(words.begin());
    if (line.verb == Verb::list && !words.empty())
        throw UsageError("L takes nothing but the image");
    if ((line.verb == Verb::add || line.verb == Verb::remove) && words.empty())
        throw UsageError("which files?");
    line.names = line.verb == Verb::add ? joinSplitPaths(words, namesFiles) : words;
    return line;
}

} // namespace disk
