#include "emulator/launch.h"

#include <gtest/gtest.h>

namespace emulator {
namespace {

using Words = std::vector<std::string>;

TEST(EmulatorLaunch, NamesMachineDiskDriveScriptAndImage) {
    const Request request = {"C:\\d.dsk", Machine::msx2plus, {"-carta", "x.rom"}};
    const Surroundings surroundings = {"C:\\e\\start.tcl", "pipe-1", "C:\\e\\data\\a.dsk"};
    EXPECT_EQ(openmsxArguments(request, {}, surroundings),
              (Words{"-machine", "C-BIOS_MSX2+", "-ext", "tavreldisk", "-control", "pipe:pipe-1", "-script",
                     "C:\\e\\start.tcl", "-diska", "C:\\e\\data\\a.dsk", "-carta", "x.rom"}));
}

TEST(EmulatorLaunch, TakesTheUsersMachineAndOptions) {
    StarterSettings settings;
    settings.machines[0] = "Mine";
    settings.disk = "";
    settings.options = {"-ext", "fmpac"};
    EXPECT_EQ(openmsxArguments({"", Machine::msx1, {}}, settings, {"s", "", ""}),
              (Words{"-machine", "Mine", "-script", "s", "-ext", "fmpac"}));
    EXPECT_EQ(openmsxArguments({"", Machine::msx1, {"-machine", "Other"}}, settings, {"s", "", ""}),
              (Words{"-script", "s", "-ext", "fmpac", "-machine", "Other"}));
}

TEST(EmulatorLaunch, QuotesSoThatTheCLibraryReadsItBack) {
    const Words words = {"", "a b", "C:\\x\\", "C:\\x y\\", "say \"hi\"", "\\\"", "\\\\\"\\", "\xC3\xBC"};
    EXPECT_EQ(argumentsOf(commandLine("C:\\My Tools\\openmsx.exe", words), "openmsx.exe"), words);
    EXPECT_EQ(commandLine("C:\\o.exe", {"a"}), "\"C:\\o.exe\" \"a\"");
}

TEST(EmulatorLaunch, FitsTheWindowToTheScreen) {
    EXPECT_EQ(scaleForScreen(640, 480), 2U);
    EXPECT_EQ(scaleForScreen(1024, 740), 2U);
    EXPECT_EQ(scaleForScreen(1280, 900), 3U);
    EXPECT_EQ(scaleForScreen(1920, 1040), 3U);
    EXPECT_EQ(scaleForScreen(1920, 1160), 4U);
    EXPECT_EQ(scaleForScreen(1200, 2000), 3U);
    EXPECT_EQ(scaleForScreen(7680, 4320), 4U);
    EXPECT_EQ(scaleForScreen(0, 0), 2U);
}

TEST(EmulatorLaunch, KnowsProgramsOfUnix) {
    EXPECT_TRUE(isUnixProgram("/usr/bin/openmsx"));
    EXPECT_TRUE(isUnixProgram("Z:\\usr\\bin.d\\openmsx"));
    EXPECT_FALSE(isUnixProgram("C:\\openmsx\\openmsx.exe"));
    EXPECT_FALSE(isUnixProgram("C:\\openmsx\\"));
    EXPECT_EQ(unixPath("Z:\\home\\me\\d.dsk"), "/home/me/d.dsk");
    EXPECT_EQ(unixPath("z:"), "");
    EXPECT_EQ(unixPath("C:\\d.dsk"), "C:\\d.dsk");
    EXPECT_EQ(unixPath("-diska"), "-diska");
}

} // namespace
} // namespace emulator
