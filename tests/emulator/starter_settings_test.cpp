#include "emulator/starter_settings.h"

#include <gtest/gtest.h>

namespace emulator {
namespace {

std::string messageOf(std::string_view text) {
    try {
        parseStarterSettings(text);
    } catch (const SettingsError& error) {
        return error.what();
    }
    return "";
}

TEST(StarterSettingsFile, IsEmptyOrMissingByDefault) {
    EXPECT_EQ(parseStarterSettings(""), StarterSettings{});
    EXPECT_EQ(parseStarterSettings("\r\n; openmsx = x\r\n# scale = 3\n   \n"), StarterSettings{});
    EXPECT_EQ(StarterSettings{}.machines[1], "C-BIOS_MSX2");
}

TEST(StarterSettingsFile, NamesAnotherEmulatorAndMachines) {
    const StarterSettings settings =
        parseStarterSettings("\xEF\xBB\xBFopenmsx = C:\\Program Files\\openMSX\\openmsx.exe\r\n"
                             "msx1=One\n  msx2 =\tTwo A \r\nmsx2+ = Plus\r\n"
                             "disk = none\r\ndata = user\r\nscale = 3\r\n"
                             "option = -ext\r\noption = a = b");
    EXPECT_EQ(settings.openmsx, "C:\\Program Files\\openMSX\\openmsx.exe");
    EXPECT_EQ(settings.machines[0], "One");
    EXPECT_EQ(settings.machines[1], "Two A");
    EXPECT_EQ(settings.machines[2], "Plus");
    EXPECT_EQ(settings.disk, "");
    EXPECT_FALSE(settings.ownData);
    EXPECT_EQ(settings.scale, 3U);
    EXPECT_EQ(settings.options, (std::vector<std::string>{"-ext", "a = b"}));
    EXPECT_EQ(parseStarterSettings("disk=fdd").disk, "fdd");
    EXPECT_TRUE(parseStarterSettings("data = own\nscale = auto").ownData);
}

TEST(StarterSettingsFile, TellsTheLineOfAMistake) {
    EXPECT_EQ(messageOf("\n\nopenmsx\n"), "line 3: there is no '='");
    EXPECT_EQ(messageOf("scale = 2\nmsx2 ="), "line 2: there is nothing after the '='");
    EXPECT_EQ(messageOf("msx3 = x"), "line 1: the name 'msx3' is not known");
    EXPECT_EQ(messageOf("data = mine"), "line 1: data is own or user");
    for (const char* const scale : {"scale = 1", "scale = 9", "scale = 22", "scale = x"})
        EXPECT_EQ(messageOf(scale), "line 1: scale is auto or a number from 2 to 8") << scale;
    EXPECT_EQ(messageOf(std::string_view("msx1 = a\0b", 10)), "line 1: there is a NUL character");
}

} // namespace
} // namespace emulator
