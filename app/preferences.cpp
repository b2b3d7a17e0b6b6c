#include "app/preferences.h"

#include "util/paths.h"
#include "util/text.h"

namespace tavrel {

namespace {
StoredBoolean stored(bool value) {
    return value ? storedTrue : storedFalse;
}
} // namespace

Preferences preferencesOf(const Settings& settings) {
    return {settings.EmulatorPath,
            settings.EmulatorArgs,
            settings.DiskImageDir,
            std::to_string(settings.FontSize),
            settings.RegisterTpj != storedFalse,
            settings.AutoSave != storedFalse,
            settings.OpenNewProjectAtStart == storedFalse,
            settings.UseTooltips != storedFalse};
}

void refillEmptyFields(Preferences& preferences, const std::string& AppDir) {
    const Settings defaults = SetDefaultSettings(AppDir);
    if (preferences.emulatorArgs.empty())
        preferences.emulatorArgs = defaults.EmulatorArgs;
    if (preferences.diskImageDir.empty())
        preferences.diskImageDir = defaults.DiskImageDir;
}

std::string emulatorFolder(const std::string& emulatorPath, const std::string& AppDir) {
    const std::string folder = GetFilePath(emulatorPath);
    return folder.empty() ? AppDir + "emulator\\" : folder;
}

void storePreferences(const Preferences& preferences, Settings& settings) {
    settings.RegisterTpj = stored(preferences.registerTpj);
    settings.AutoSave = stored(preferences.autoSave);
    settings.OpenNewProjectAtStart = stored(!preferences.noNewProjectAtStart);
    settings.UseTooltips = stored(preferences.useTooltips);
    settings.EmulatorPath = preferences.emulatorPath;
    settings.EmulatorArgs = preferences.emulatorArgs;
    settings.DiskImageDir = preferences.diskImageDir;
    settings.FontSize = convertToInteger(preferences.fontSize);
}

} // namespace tavrel
