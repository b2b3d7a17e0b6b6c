// The command line of msxrun.
#pragma once

#include "msxrun/machine.h"

#include <cstdint>
#include <limits>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

namespace msxrun {

/// What the user asked for.
struct CommandLine {
    bool help = false;
    std::string program;      ///< the .COM file
    std::string tail;         ///< the command tail, with its leading blank
    std::string folder = "."; ///< drive A:
    std::string printerFile;  ///< where printed characters go; empty: nowhere
    Settings settings;
    std::uint64_t limit = std::numeric_limits<std::uint64_t>::max(); ///< T-states
    std::uint64_t freeBytes = std::uint64_t{Disk::clusterCount} * Disk::clusterBytes;
    bool showTStates = false;
};

/// A command line that cannot be followed; what() is the message for the user.
class UsageError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// The text that --help prints.
extern const std::string_view helpText;

/// Reads the arguments (without the program's own name).
/// @throws UsageError
CommandLine parseCommandLine(std::span<const std::string> arguments);

} // namespace msxrun
