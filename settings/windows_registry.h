#pragma once

#include "settings/file_association.h"

namespace tavrel {

/// HKEY_CLASSES_ROOT of this machine.
class WindowsClassesRegistry : public ClassesRegistry {
  public:
    std::string readText(const std::string& key, const std::string& valueName) override;
    bool createKey(const std::string& key) override;
    void writeText(const std::string& key, const std::string& valueName, const std::string& text) override;
};

} // namespace tavrel
