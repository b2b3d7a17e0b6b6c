// What the preferences dialog shows of the settings and takes back.
#pragma once

#include "settings/settings.h"

#include <string>

namespace tavrel {

/// The dialog's fields as the user sees them.
struct Preferences {
    std::string emulatorPath;
    std::string emulatorArgs;
    std::string diskImageDir;
    std::string fontSize;
    bool registerTpj = false;
    bool autoSave = false;
    bool noNewProjectAtStart = false; ///< the opposite of what is stored
    bool useTooltips = false;

    bool operator==(const Preferences&) const = default;
};

Preferences preferencesOf(const Settings& settings);

/// Puts the defaults back into emptied fields that are never stored empty.
void refillEmptyFields(Preferences& preferences, const std::string& AppDir);

/// Where the search for an emulator begins: beside the one that is set, or else where the one of the program
/// folder is.
std::string emulatorFolder(const std::string& emulatorPath, const std::string& AppDir);

/// Stores the fields. Throws RuntimeError 13 or 6 when the font size is no number or too large; all other
/// fields are stored by then.
void storePreferences(const Preferences& preferences, Settings& settings);

} // namespace tavrel
