// The file association in the registry of Windows itself. Values that are there already are put back.
#include "settings/windows_registry.h"

#include <array>
#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>
#include <windows.h>

namespace tavrel {
namespace {

struct Value {
    DWORD type = 0;
    std::string bytes;
};

struct Place {
    const char* key;
    const char* valueName; ///< null for the default value
};

constexpr std::array places = {Place{".tpj", nullptr},
                               Place{".tpj", "Content Type"},
                               Place{"Tavrel.file", nullptr},
                               Place{"Wendrix.file\\DefaultIcon", nullptr},
                               Place{"Tavrel.file\\shell", nullptr},
                               Place{"Tavrel.file\\shell\\Open\\command", nullptr}};

std::optional<Value> valueAt(const Place& place) {
    HKEY key = nullptr;
    if (RegOpenKeyA(HKEY_CLASSES_ROOT, place.key, &key) != ERROR_SUCCESS)
        return std::nullopt;
    Value value;
    value.bytes.resize(1024);
    auto size = static_cast<DWORD>(value.bytes.size());
    const LSTATUS status =
        RegQueryValueExA(key, place.valueName, nullptr, &value.type,
                         static_cast<BYTE*>(static_cast<void*>(value.bytes.data())), &size);
    RegCloseKey(key);
    value.bytes.resize(size);
    return status == ERROR_SUCCESS ? std::optional(value) : std::nullopt;
}

void setValue(const char* keyName, const char* valueName, DWORD type, const std::string& bytes) {
    HKEY key = nullptr;
    RegCreateKeyA(HKEY_CLASSES_ROOT, keyName, &key);
    RegSetValueExA(key, valueName, 0, type, static_cast<const BYTE*>(static_cast<const void*>(bytes.data())),
                   static_cast<DWORD>(bytes.size()));
    RegCloseKey(key);
}

struct WindowsRegistry : testing::Test {
    std::vector<std::optional<Value>> before;
    WindowsClassesRegistry registry;
    Settings settings;

    WindowsRegistry() {
        for (const Place& place : places)
            before.push_back(valueAt(place));
        clear();
        settings.RegisterTpj = storedTrue;
    }
    ~WindowsRegistry() override {
        clear();
        for (std::size_t i = 0; i < places.size(); ++i) {
            if (before[i])
                setValue(places.at(i).key, places.at(i).valueName, before[i]->type, before[i]->bytes);
        }
    }
    static void clear() {
        for (const char* const key : {".tpj", "Tavrel.file", "Wendrix.file"})
            RegDeleteTreeA(HKEY_CLASSES_ROOT, key);
    }
    static std::string text(const char* content) { return std::string(content) + '\0'; }
};

TEST_F(WindowsRegistry, SixTextValuesAreWrittenWithTheirTerminatingZero) {
    RegisterFileType(registry, settings, "C:\\T\\");
    const std::array expected = {text("Tavrel.file"),       text("text"), text("Tavrel Turbo Pascal Project"),
                                 text("C:\\T\\tavrel.ico"), text("Open"), text("C:\\T\\Tavrel.exe %1")};
    for (std::size_t i = 0; i < places.size(); ++i) {
        const auto value = valueAt(places.at(i));
        ASSERT_TRUE(value) << places.at(i).key;
        EXPECT_EQ(value->type, static_cast<DWORD>(REG_SZ));
        EXPECT_EQ(value->bytes, expected.at(i));
    }
    HKEY key = nullptr;
    EXPECT_NE(RegOpenKeyA(HKEY_CLASSES_ROOT, "Tavrel.file\\DefaultIcon", &key), ERROR_SUCCESS)
        << "the icon lies under the other class only";
}

TEST_F(WindowsRegistry, EverySaveWritesThemAgain) {
    RegisterFileType(registry, settings, "C:\\T\\");
    setValue(".tpj", nullptr, REG_SZ, text("Other.file"));
    RegisterFileType(registry, settings, "C:\\T\\");
    EXPECT_EQ(registry.readText(".tpj", ""), "Tavrel.file");
}

TEST_F(WindowsRegistry, SwitchedOffAnOldAssociationStaysAsItIs) {
    setValue(".tpj", nullptr, REG_SZ, text("Other.file"));
    settings.RegisterTpj = storedFalse;
    RegisterFileType(registry, settings, "C:\\T\\");
    EXPECT_EQ(registry.readText(".tpj", ""), "Other.file");
    EXPECT_FALSE(valueAt(places[2]));
}

TEST_F(WindowsRegistry, OnlyTextsAreReadUpToTheirFirstZero) {
    setValue("Tavrel.file", nullptr, REG_SZ, std::string("one\0two\0", 8));
    EXPECT_EQ(registry.readText("Tavrel.file", ""), "one");
    setValue("Tavrel.file", "number", REG_DWORD, std::string("\1\0\0\0", 4));
    setValue("Tavrel.file", "expanded", REG_EXPAND_SZ, text("x"));
    setValue("Tavrel.file", "empty", REG_SZ, "");
    for (const char* const name : {"number", "expanded", "empty", "missing"})
        EXPECT_EQ(registry.readText("Tavrel.file", name), "") << name;
    EXPECT_EQ(registry.readText("No such key of Tavrel", ""), "");
}

} // namespace
} // namespace tavrel
