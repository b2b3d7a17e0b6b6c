// All user settings, one record, and its file "config.cfg".
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tavrel {

/// Stored booleans are 16-bit integers.
using StoredBoolean = std::int16_t;
constexpr StoredBoolean storedTrue = -1;
constexpr StoredBoolean storedFalse = 0;

constexpr std::size_t recentCount = 5;

/// Field order is file order.
struct Settings {
    std::string EmulatorPath;
    std::string EmulatorArgs;                    ///< %dsk stands for the disk image
    std::array<std::string, recentCount> Recent; ///< recently opened files, full paths, the newest first
    std::string DiskImageDir;
    StoredBoolean RegisterTpj = storedFalse;
    StoredBoolean AutoSave = storedFalse;
    StoredBoolean OpenNewProjectAtStart = storedFalse;
    StoredBoolean UseTooltips = storedFalse;
    std::int16_t FontSize = 0; ///< points
    std::string FontName;

    bool operator==(const Settings&) const = default;
};

/// The defaults. `AppDir` is the program folder with its trailing backslash.
Settings SetDefaultSettings(const std::string& AppDir);

/// The record's bytes: little-endian; a string is a 16-bit length and that many bytes (a longer one is cut).
std::string encodeSettings(const Settings& settings);

/// Reads a record. Fields that lie beyond the end are empty or zero; bytes behind the record are ignored.
Settings decodeSettings(std::string_view bytes);

/// Path of the settings file.
std::string settingsPath(const std::string& AppDir);

/// The settings of the program folder, or the defaults when there is no file (which is not made).
/// Throws RuntimeError when the file is there but cannot be read.
Settings readSettings(const std::string& AppDir);

/// What the settings file holds now; nothing when it is missing, cut short or cannot be read.
std::optional<Settings> readStoredSettings(const std::string& AppDir);

/// Writes the record over the start of the file: when the old file is longer, its tail stays.
/// Throws RuntimeError when the file cannot be written; the old one is then whole.
void writeSettings(const std::string& AppDir, const Settings& settings);

} // namespace tavrel
