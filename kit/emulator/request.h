// What the starter is asked for on its command line.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace emulator {

/// The kinds of machine that have an option of their own.
enum class Machine { msx1, msx2, msx2plus };
constexpr std::size_t machineCount = 3;

/// "-msx1", "-msx2" and "-msx2+", in the order of Machine.
extern const std::array<std::string_view, machineCount> machineOptions;

struct Request {
    std::string image; ///< the disk in drive A; empty for none
    Machine machine = Machine::msx2;
    std::vector<std::string> rest; ///< for the emulator, as it came

    bool operator==(const Request&) const = default;
};

/// Tells whether a text names a file or folder that there is.
using IsFile = std::function<bool(const std::string&)>;

/// The words of a Windows command line after the program's name. `programName` is the file name of this
/// program
/// ("msx.exe"): a path with blanks may come without quotes, and then ends with that name. Quotes and
/// backslashes count as in CommandLineToArgvW.
std::vector<std::string> argumentsOf(std::string_view commandLine, std::string_view programName);

/// Reads the arguments. The image may hold blanks without quotes: it is the shortest run of words that names
/// a file, or, when none does, all words up to the next one that begins with "-". The last machine counts.
Request parseRequest(const std::vector<std::string>& arguments, const IsFile& isFile);

/// A request as one text, for a starter that runs already, and back. A text of another form gives a request
/// without image and words.
std::string encodeRequest(const Request& request);
Request decodeRequest(std::string_view text);

} // namespace emulator
