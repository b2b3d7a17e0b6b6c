#include "settings/recent_list.h"
#include "settings/settings.h"
#include "tests/support/fakes.h"

#include <gtest/gtest.h>
#include <random>

namespace tavrel {
namespace {

using namespace std::string_literals;

TEST(Settings, DefaultsAreStoredToTheByte) {
    const std::string expected = "\0\0"s + "\x11\0-diska %dsk -msx2"s + std::string(10, '\0') +
                                 "\x09\0C:\\T\\dsk\\"s + "\0\0\0\0\xFF\xFF\xFF\xFF"s + "\x0B\0"s +
                                 "\x08\0Terminal"s;
    EXPECT_EQ(encodeSettings(SetDefaultSettings("C:\\T\\")), expected);
}

TEST(Settings, EveryFieldComesBack) {
    Settings settings;
    settings.EmulatorPath = "C:\\emu\\emu.exe";
    settings.EmulatorArgs = "%1";
    settings.Recent = {"a", "b", "c", "d", "e"};
    settings.DiskImageDir = "D:\\";
    settings.RegisterTpj = -1;
    settings.AutoSave = -1;
    settings.UseTooltips = -1;
    settings.FontSize = -300;
    settings.FontName = "Courier";
    EXPECT_EQ(decodeSettings(encodeSettings(settings)), settings);
}

TEST(Settings, FieldsBeyondTheEndAreEmptyOrZero) {
    EXPECT_EQ(decodeSettings(""), Settings());
    const std::string whole = encodeSettings(SetDefaultSettings("C:\\T\\"));
    const Settings cut = decodeSettings(std::string_view(whole).substr(0, whole.size() - 12));
    EXPECT_EQ(cut.EmulatorArgs, "-diska %dsk -msx2");
    EXPECT_EQ(cut.UseTooltips, -1);
    EXPECT_EQ(cut.FontSize, 0);
    EXPECT_EQ(cut.FontName, "");
}

TEST(Settings, MissingFileGivesDefaultsAndIsNotMade) {
    const test::TemporaryFolder folder;
    EXPECT_EQ(readSettings(folder.path()), SetDefaultSettings(folder.path()));
    EXPECT_FALSE(folder.has("config.cfg"));
}

TEST(Settings, ALongerOldFileKeepsItsTail) {
    const test::TemporaryFolder folder;
    folder.write("config.cfg", std::string(500, 'x'));
    const Settings settings = SetDefaultSettings(folder.path());
    writeSettings(folder.path(), settings);
    const std::string bytes = folder.read("config.cfg");
    const std::string record = encodeSettings(settings);
    EXPECT_EQ(bytes, record + std::string(500 - record.size(), 'x'));
    EXPECT_EQ(readSettings(folder.path()), settings);
}

TEST(Settings, AMovedProgramKeepsTheOldDiskFolder) {
    const test::TemporaryFolder folder;
    folder.write("config.cfg", encodeSettings(SetDefaultSettings("C:\\OLD\\")));
    EXPECT_EQ(readSettings(folder.path()).DiskImageDir, "C:\\OLD\\dsk\\");
}

TEST(Settings, RandomBytesNeverHarmTheReader) {
    std::mt19937 random(1); // the same bytes on every run
    for (int round = 0; round < 5000; ++round) {
        std::string bytes(random() % 200, '\0');
        for (char& c : bytes)
            c = static_cast<char>(random() % 4 == 0 ? random() : random() % 3);
        const Settings settings = decodeSettings(bytes);
        ASSERT_EQ(decodeSettings(encodeSettings(settings)), settings);
    }
}

TEST(RecentList, AKnownPathChangesNothing) {
    Settings settings;
    EXPECT_TRUE(addToRecentList(settings, "C:\\B.TPJ"));
    EXPECT_TRUE(addToRecentList(settings, "C:\\A.TPJ"));
    EXPECT_FALSE(addToRecentList(settings, "c:\\b.tpj"));
    EXPECT_EQ(settings.Recent[0], "C:\\A.TPJ");
    EXPECT_EQ(settings.Recent[1], "C:\\B.TPJ");
}

TEST(RecentList, TheSixthPushesTheOldestOut) {
    Settings settings;
    for (const char* const path : {"1", "2", "3", "4", "5", "6"})
        addToRecentList(settings, path);
    EXPECT_EQ(settings.Recent, (std::array<std::string, 5>{"6", "5", "4", "3", "2"}));
    removeFromRecentList(settings, 1);
    EXPECT_EQ(settings.Recent, (std::array<std::string, 5>{"6", "4", "3", "2", ""}));
}

TEST(RecentList, EveryEntryIsKnownAndCanBeRemoved) {
    for (std::size_t entry = 0; entry < 5; ++entry) {
        Settings settings;
        settings.Recent = {"C:\\1.TPJ", "C:\\2.TPJ", "C:\\3.TPJ", "C:\\4.TPJ", "C:\\5.TPJ"};
        const Settings before = settings;
        EXPECT_FALSE(addToRecentList(settings, "c:\\" + std::to_string(entry + 1) + ".tpj")) << entry;
        EXPECT_EQ(settings, before) << entry;
        std::vector<std::string> expected(before.Recent.begin(), before.Recent.end());
        expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(entry));
        expected.emplace_back();
        removeFromRecentList(settings, entry);
        EXPECT_EQ(std::vector<std::string>(settings.Recent.begin(), settings.Recent.end()), expected)
            << entry;
    }
    Settings settings;
    settings.Recent = {"1", "2", "3", "4", "5"};
    const Settings before = settings;
    removeFromRecentList(settings, 5);
    EXPECT_EQ(settings, before) << "there is no sixth";
}

TEST(RecentList, IsStoredAndShownWhenItChanges) {
    test::TestWorkspace test;
    AddRecentFile(test.workspace, "C:\\A.TPJ");
    EXPECT_EQ(readSettings(test.program.path()).Recent[0], "C:\\A.TPJ");
    AddRecentFile(test.workspace, "C:\\a.tpj");
    EXPECT_EQ(test.display.recentFilesShown, 1);
}

TEST(FileAssociation, SwitchedOffTouchesNothing) {
    test::TestWorkspace test;
    LoadSettings(test.workspace);
    SaveSettings(test.workspace);
    EXPECT_TRUE(test.registry.written.empty());
}

TEST(FileAssociation, EverySaveWritesTheSameSixValues) {
    test::FakeRegistry registry;
    Settings settings;
    settings.RegisterTpj = storedTrue;
    RegisterFileType(registry, settings, "C:\\T\\");
    const std::vector<test::FakeRegistry::Written> expected = {
        {".tpj", "", "Tavrel.file"},
        {".tpj", "Content Type", "text"},
        {"Tavrel.file", "", "Tavrel Turbo Pascal Project"},
        {"Wendrix.file\\DefaultIcon", "", "C:\\T\\tavrel.ico"},
        {"Tavrel.file\\shell", "", "Open"},
        {"Tavrel.file\\shell\\Open\\command", "", "C:\\T\\Tavrel.exe %1"},
    };
    EXPECT_EQ(registry.written, expected);
}

TEST(FileAssociation, OnlyTheStoredTrueSwitchesItOn) {
    for (const int value : {1, 2, -2, 255, 256, -256, 32767, -32768}) {
        test::FakeRegistry registry;
        Settings settings;
        settings.RegisterTpj = static_cast<std::int16_t>(value);
        RegisterFileType(registry, settings, "C:\\T\\");
        EXPECT_TRUE(registry.written.empty()) << value;
    }
}

TEST(FileAssociation, ARegistryThatRefusesIsLeftAlone) {
    test::FakeRegistry registry;
    registry.refuses = true;
    Settings settings;
    settings.RegisterTpj = storedTrue;
    RegisterFileType(registry, settings, "C:\\T\\");
    EXPECT_TRUE(registry.written.empty());
}

} // namespace
} // namespace tavrel
