#include "app/preferences.h"
#include "util/runtime_error.h"

#include <gtest/gtest.h>

namespace tavrel {
namespace {

const std::string programFolder = "C:\\T\\";

TEST(Preferences, ShowTheSettings) {
    const Preferences shown = preferencesOf(SetDefaultSettings(programFolder));
    EXPECT_EQ(shown, (Preferences{"", "-diska %dsk -msx2", "C:\\T\\dsk\\", "11", false, false, false, true}));
}

TEST(Preferences, TheStartUpBoxIsTheOppositeOfWhatIsStored) {
    Settings settings = SetDefaultSettings(programFolder);
    Preferences shown = preferencesOf(settings);
    EXPECT_FALSE(shown.noNewProjectAtStart);
    shown.noNewProjectAtStart = true;
    storePreferences(shown, settings);
    EXPECT_EQ(settings.OpenNewProjectAtStart, storedFalse);
}

TEST(Preferences, TrueIsStoredAsMinusOne) {
    Settings settings;
    storePreferences({"C:\\e.exe", "a", "b", "20", true, true, false, true}, settings);
    EXPECT_EQ(settings.EmulatorPath, "C:\\e.exe");
    EXPECT_EQ(settings.EmulatorArgs, "a");
    EXPECT_EQ(settings.DiskImageDir, "b");
    EXPECT_EQ(settings.FontSize, 20);
    for (const StoredBoolean flag :
         {settings.RegisterTpj, settings.AutoSave, settings.OpenNewProjectAtStart, settings.UseTooltips})
        EXPECT_EQ(flag, -1);
}

TEST(Preferences, EmptiedFieldsGetTheirDefaultsBack) {
    Preferences entered{"", "", "", "11", false, false, false, false};
    refillEmptyFields(entered, programFolder);
    EXPECT_EQ(entered.emulatorPath, "");
    EXPECT_EQ(entered.emulatorArgs, "-diska %dsk -msx2");
    EXPECT_EQ(entered.diskImageDir, "C:\\T\\dsk\\");
    entered.emulatorArgs = " ";
    refillEmptyFields(entered, programFolder);
    EXPECT_EQ(entered.emulatorArgs, " ");
}

TEST(Preferences, AFontSizeThatIsNoNumberStopsBehindTheOtherFields) {
    Settings settings = SetDefaultSettings(programFolder);
    EXPECT_THROW(storePreferences({"new", "a", "b", "big", false, true, false, false}, settings),
                 RuntimeError);
    EXPECT_EQ(settings.EmulatorPath, "new");
    EXPECT_EQ(settings.AutoSave, storedTrue);
    EXPECT_EQ(settings.FontSize, 11);
}

TEST(Preferences, TheSearchForAnEmulatorBeginsWhereThereIsOne) {
    EXPECT_EQ(emulatorFolder("", "C:\\T\\"), "C:\\T\\emulator\\");
    EXPECT_EQ(emulatorFolder("emu.exe", "C:\\T\\"), "C:\\T\\emulator\\");
    EXPECT_EQ(emulatorFolder("D:\\emu\\emu.exe", "C:\\T\\"), "D:\\emu\\");
}

} // namespace
} // namespace tavrel
