// The user's own settings of the starter: another openMSX, other machines.
#pragma once

#include "emulator/request.h"

#include <array>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace emulator {

struct StarterSettings {
    std::string openmsx; ///< path of the program; empty for the one that comes along
    std::array<std::string, machineCount> machines = {"C-BIOS_MSX1", "C-BIOS_MSX2", "C-BIOS_MSX2+"};
    std::string disk = "tavreldisk"; ///< the extension with the disk drive; empty when the machines have one
    bool ownData = true;             ///< whether openMSX keeps its files in the starter's folder
    unsigned scale = 0;              ///< window: so many times 320 by 240 pixels; 0 for what suits the screen
    std::vector<std::string> options; ///< further ones for every start

    bool operator==(const StarterSettings&) const = default;
};

/// What is wrong with the file, for the user, with the number of the line.
class SettingsError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Reads the file's text, in UTF-8: lines "NAME = VALUE"; empty lines and those that begin with ";" or "#"
/// say nothing. Names: openmsx, msx1, msx2, msx2+, disk (a name or "none"), data ("own" or "user"), scale
/// ("auto" or 2 to 8), option (may come several times; each is one word). @throws SettingsError
StarterSettings parseStarterSettings(std::string_view text);

} // namespace emulator
