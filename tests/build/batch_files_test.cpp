#include "build/batch_files.h"
#include "build/project_properties.h"

#include <gtest/gtest.h>

namespace tavrel {
namespace {

TEST(BatchFiles, ComScriptGluesTheRuntimeInFront) {
    EXPECT_EQ(compileScript(Output::com, "DEMO", 16384, -16384),
              "DOS2CASH\r\nTP3 DEMO /S4000 /EC000 /Rerrors.txt > result.txt\r\n"
              "copy runtime.com/b + DEMO.chn/b DEMO.com\r\n");
}

TEST(BatchFiles, ChnScriptHasNoCopyLine) {
    EXPECT_EQ(compileScript(Output::chn, "DEMO", 16384, -16384),
              "DOS2CASH\r\nTP3 DEMO /H /S4000 /EC000 /Rerrors.txt > result.txt\r\n");
}

TEST(BatchFiles, EveryPasEndingIsRemovedFromTheName) {
    EXPECT_EQ(mainProgramName("X.PAS.PAS"), "X");
    EXPECT_EQ(mainProgramName("game.Pas"), "game");
}

TEST(BatchFiles, LauncherKeepsItsDoubledBackslashes) {
    const std::string expected =
        "SET SDL_VIDEODRIVER=dummy\r\n"
        "C:\\T\\compiler\\DOSBox-0.74\\DOSBox.exe -conf C:\\T\\\\compiler\\temp.conf "
        "\"C:\\P\\\\turbopc.bat\" -noconsole -exit\r\n"
        "SET SDL_VIDEODRIVER=\r\n";
    EXPECT_EQ(launchScript("C:\\T\\", "C:\\P\\"), expected);
    EXPECT_EQ(launchScript("C:\\T", "C:\\P"), expected);
}

TEST(ProjectProperties, AddressesAreKeptWithinTheirLimits) {
    EXPECT_EQ(acceptedStartAddress("0100"), 0x2E9B);
    EXPECT_EQ(acceptedStartAddress("4000"), 0x4000);
    EXPECT_EQ(acceptedStartAddress("8000"), 0x2E9B);
    EXPECT_EQ(acceptedStartAddress("zz"), 0x2E9B);
    EXPECT_EQ(acceptedEndAddress("C000"), static_cast<std::int16_t>(0xC000));
    EXPECT_EQ(acceptedEndAddress("FFFF"), static_cast<std::int16_t>(0xF93C));
    EXPECT_EQ(acceptedEndAddress("7000"), static_cast<std::int16_t>(0xF93C));
    EXPECT_EQ(filledAddressField("100"), "1000");
}

} // namespace
} // namespace tavrel
