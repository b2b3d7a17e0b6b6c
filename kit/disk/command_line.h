// The command line of dsktool.
#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace disk {

enum class Verb { help, add, list, extract, remove };

/// What the user asked for.
struct CommandLine {
    Verb verb = Verb::help;
    std::string image;
    std::vector<std::string> names; ///< files of the host for add, of the disk otherwise; may be patterns
    std::string folder = ".";       ///< where extracted files go
};

/// A command line that cannot be followed; what() is the message for the user.
class UsageError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// The text that --help prints.
extern const std::string_view helpText;

/// Tells whether a text names something that there is.
using Known = std::function<bool(const std::string&)>;

/// Puts paths with blanks together again that came without quotes and so in several words: a word that is not
/// known is tried together with those behind it, and stays as it is when that does not help.
std::vector<std::string> joinSplitPaths(const std::vector<std::string>& words, const Known& known);

/// Does the same for the image, which need not exist yet: words up to one that ends in ".dsk" belong together
/// when the blank lies in the folder, and `isFolder` knows that folder.
std::vector<std::string> joinSplitImage(const std::vector<std::string>& words, const Known& isFile,
                                        const Known& isFolder);

/// Reads the arguments (without the program's own name), looking at the host's files where a path may have
/// been split. @throws UsageError
CommandLine parseCommandLine(const std::vector<std::string>& arguments);

} // namespace disk
