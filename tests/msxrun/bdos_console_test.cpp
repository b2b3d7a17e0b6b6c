#include "support.h"

#include <gtest/gtest.h>

namespace msxrun::test {
namespace {

TEST(BdosConsole, WritesCharacterAndText) {
    BdosBench bench;
    bench.putText(0x9000, "text$not this");
    bench.call(0x02, 'A');
    bench.call(0x06, 'B');
    bench.call(0x09, 0x9000);
    EXPECT_EQ(bench.console.screen, "ABtext");
}

TEST(BdosConsole, TextWithoutItsEndMarkEnds) {
    BdosBench bench;
    bench.call(0x09, 0x9000);
    EXPECT_EQ(bench.console.screen.size(), 65536U);
}

TEST(BdosConsole, EchoesKeyOnlyWhereDocumented) {
    BdosBench bench("abc");
    EXPECT_EQ(bench.a(0x01), 'a');
    EXPECT_EQ(bench.a(0x07), 'b');
    EXPECT_EQ(bench.a(0x08), 'c');
    EXPECT_EQ(bench.console.screen, "a");
}

TEST(BdosConsole, ControlCEndsProgramExceptAtRawInput) {
    EXPECT_TRUE(BdosBench("\x03").call(0x01).endsProgram);
    EXPECT_TRUE(BdosBench("\x03").call(0x08).endsProgram);
    EXPECT_EQ(BdosBench("\x03").a(0x07), 3);
    EXPECT_EQ(BdosBench("\x03").a(0x06, 0xFF), 3);
}

TEST(BdosConsole, OutputHeedsPersonButLeavesScriptAlone) {
    EXPECT_TRUE(BdosBench("\x03", true).call(0x02, 'A').endsProgram);
    BdosBench script("\x03");
    EXPECT_FALSE(script.call(0x02, 'A').endsProgram);
    EXPECT_EQ(script.a(0x07), 3);
}

TEST(BdosConsole, ControlSHoldsOutputUntilNextKey) {
    BdosBench bench("\x13qz", true);
    bench.call(0x02, 'A');
    EXPECT_EQ(bench.console.screen, "A");
    EXPECT_EQ(bench.a(0x07), 'z');
}

TEST(BdosConsole, ControlPPrintsWhatIsShown) {
    BdosBench bench("\x10\x0E", true);
    bench.call(0x02, 'A');
    bench.call(0x02, 'B');
    EXPECT_EQ(bench.console.paper, "A");
    EXPECT_EQ(bench.console.screen, "AB");
}

TEST(BdosConsole, EndOfScriptIsControlZ) {
    BdosBench bench;
    EXPECT_EQ(bench.a(0x0B), 0xFF);
    EXPECT_EQ(bench.a(0x01), 0x1A);
    EXPECT_EQ(bench.a(0x0B), 0);
    EXPECT_EQ(bench.a(0x06, 0xFF), 0x1A);
}

TEST(BdosConsole, LineInputStopsAtReturn) {
    BdosBench bench("hallo\rrest");
    bench.memory.setByte(0x9000, 20);
    bench.call(0x0A, 0x9000);
    EXPECT_EQ(bench.memory.byte(0x9001), 5);
    EXPECT_EQ(bench.text(0x9002, 6), "hallo\r");
    EXPECT_EQ(bench.console.screen, "hallo\r");
    EXPECT_EQ(bench.a(0x07), 'r');
}

TEST(BdosConsole, LineInputEdits) {
    BdosBench bench("wrong\x18"
                    "ax\x08"
                    "b\x7F"
                    "c\r");
    bench.memory.setByte(0x9000, 20);
    bench.call(0x0A, 0x9000);
    EXPECT_EQ(bench.text(0x9001, 3), "\x02"
                                     "ac");
}

TEST(BdosConsole, LineInputKeepsWithinItsRoom) {
    BdosBench bench("abcdef\r");
    bench.memory.setByte(0x9000, 3);
    bench.memory.setByte(0x9005, 0x55);
    bench.call(0x0A, 0x9000);
    EXPECT_EQ(bench.text(0x9001, 4), "\x03"
                                     "abc");
    EXPECT_EQ(bench.memory.byte(0x9005), 0x55);
}

TEST(BdosConsole, LineInputAtEndOfScript) {
    BdosBench bench("ab");
    bench.memory.setByte(0x9000, 20);
    bench.call(0x0A, 0x9000);
    EXPECT_EQ(bench.text(0x9001, 3), "\x02"
                                     "ab");
    bench.call(0x0A, 0x9000);
    EXPECT_EQ(bench.text(0x9001, 2), "\x01\x1A");
}

TEST(BdosConsole, Prints) {
    BdosBench bench;
    bench.call(0x05, 'P');
    EXPECT_EQ(bench.console.paper, "P");
    EXPECT_EQ(bench.console.screen, "");
}

TEST(BdosSystem, VersionAndDrives) {
    BdosBench bench;
    EXPECT_EQ(bench.call(0x0C).hl, 0x0022);
    EXPECT_EQ(bench.call(0x18).hl, 1);
    EXPECT_EQ(bench.a(0x19), 0);
    EXPECT_TRUE(bench.call(0x00).endsProgram);
    EXPECT_EQ(bench.a(0x1C), 0);
}

TEST(BdosSystem, UndefinedFunctionIsNoticed) {
    BdosBench bench;
    EXPECT_EQ(bench.a(0x55), -1);
    EXPECT_EQ(bench.notices.size(), 1U);
}

TEST(BdosSystem, SetsItsOwnClockOnly) {
    BdosBench bench;
    EXPECT_EQ(bench.a(0x2B, 0x021D, 2024), 0); // the 29th of February
    EXPECT_EQ(bench.a(0x2D, 0x0A00, 0x0D2F), 0);
    const BdosAnswer date = bench.call(0x2A);
    EXPECT_EQ(date.hl, 2024);
    EXPECT_EQ(date.de, 0x021D);
    EXPECT_EQ(date.a, 4); // a Thursday
    const BdosAnswer time = bench.call(0x2C);
    EXPECT_EQ(time.hl, 0x0D2F);
    EXPECT_GE(time.de.value_or(0), 0x0A00); // not a second before what was set
}

TEST(BdosSystem, RefusesImpossibleDates) {
    BdosBench bench;
    EXPECT_EQ(bench.a(0x2B, 0x021D, 2023), 0xFF);
    EXPECT_EQ(bench.a(0x2B, 0x0D01, 2024), 0xFF);
    EXPECT_EQ(bench.a(0x2B, 0x0101, 1979), 0xFF);
    EXPECT_EQ(bench.a(0x2D, 0, 0x1800), 0xFF);
    EXPECT_EQ(bench.a(0x2D, 0x3C00, 0), 0xFF);
}

TEST(BdosSystem, TellsTheDiskItStandsFor) {
    BdosBench bench("", false, 5000);
    const BdosAnswer answer = bench.call(0x1B, 0);
    EXPECT_EQ(answer.a, 2);
    EXPECT_EQ(answer.bc, 512);
    EXPECT_EQ(answer.de, 713);
    EXPECT_EQ(answer.hl, 4);
    EXPECT_EQ(bench.a(0x1B, 2), 0xFF);
}

} // namespace
} // namespace msxrun::test
