#include "settings/file_association.h"

namespace tavrel {

void RegisterFileType(ClassesRegistry& registry, const Settings& settings, const std::string& AppDir) {
    registry.readText(".tpj", ""); // what it says changes nothing
    if (settings.RegisterTpj != storedTrue || !registry.createKey(".tpj"))
        return;
    const std::string folder = AppDir.substr(0, AppDir.rfind('\\'));
    registry.writeText(".tpj", "", "Tavrel.file");
    registry.writeText(".tpj", "Content Type", "text");
    registry.writeText("Tavrel.file", "", "Tavrel Turbo Pascal Project");
    // The icon has always been written under this other class; installations rely on it by now.
    registry.writeText("Wendrix.file\\DefaultIcon", "", folder + "\\tavrel.ico");
    registry.writeText("Tavrel.file\\shell", "", "Open");
    // No quotes: start-up looks at the last three characters of the raw argument.
    registry.writeText("Tavrel.file\\shell\\Open\\command", "", folder + "\\Tavrel.exe %1");
}

} // namespace tavrel
