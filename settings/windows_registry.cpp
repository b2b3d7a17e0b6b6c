#include "settings/windows_registry.h"

#include <memory>
#include <type_traits>
#include <windows.h>

namespace tavrel {

namespace {

struct KeyCloser {
    void operator()(HKEY key) const { RegCloseKey(key); }
};
using Key = std::unique_ptr<std::remove_pointer_t<HKEY>, KeyCloser>;

Key createOrOpen(const std::string& name) {
    HKEY key = nullptr;
    return Key(RegCreateKeyA(HKEY_CLASSES_ROOT, name.c_str(), &key) == ERROR_SUCCESS ? key : nullptr);
}

} // namespace

std::string WindowsClassesRegistry::readText(const std::string& key, const std::string& valueName) {
    HKEY opened = nullptr;
    if (RegOpenKeyA(HKEY_CLASSES_ROOT, key.c_str(), &opened) != ERROR_SUCCESS)
        return {};
    const Key owned(opened);
    DWORD type = 0;
    DWORD size = 0;
    if (RegQueryValueExA(opened, valueName.c_str(), nullptr, &type, nullptr, &size) != ERROR_SUCCESS ||
        type != REG_SZ)
        return {};
    std::string text(size, '\0');
    auto* const bytes = static_cast<BYTE*>(static_cast<void*>(text.data()));
    if (RegQueryValueExA(opened, valueName.c_str(), nullptr, &type, bytes, &size) != ERROR_SUCCESS)
        return {};
    return text.substr(0, text.find('\0'));
}

bool WindowsClassesRegistry::createKey(const std::string& key) {
    return createOrOpen(key) != nullptr;
}

void WindowsClassesRegistry::writeText(const std::string& key, const std::string& valueName,
                                       const std::string& text) {
    const Key opened = createOrOpen(key);
    if (!opened)
        return;
    const auto* const bytes = static_cast<const BYTE*>(static_cast<const void*>(text.c_str()));
    RegSetValueExA(opened.get(), valueName.empty() ? nullptr : valueName.c_str(), 0, REG_SZ, bytes,
                   static_cast<DWORD>(text.size() + 1)); // the terminating zero counts
}

} // namespace tavrel
