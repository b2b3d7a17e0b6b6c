// The association of .tpj files with the program in the Windows registry.
#pragma once

#include "settings/settings.h"

#include <string>

namespace tavrel {

/// The role of the registry below HKEY_CLASSES_ROOT; a test keeps the values in memory.
class ClassesRegistry {
  public:
    virtual ~ClassesRegistry() = default;
    /// A text value, or "" when it is missing or of another type. An empty value name is the default value.
    virtual std::string readText(const std::string& key, const std::string& valueName) = 0;
    /// Creates or opens a key; false when that fails.
    virtual bool createKey(const std::string& key) = 0;
    /// Creates the key when it is missing and writes a text value. Failures are ignored.
    virtual void writeText(const std::string& key, const std::string& valueName, const std::string& text) = 0;
};

/// Writes the association when the setting RegisterTpj is on. Never removes anything.
/// `AppDir` is the program folder with its trailing backslash.
void RegisterFileType(ClassesRegistry& registry, const Settings& settings, const std::string& AppDir);

} // namespace tavrel
