#include "msxrun/machine.h"
#include "support.h"

#include <gtest/gtest.h>

namespace msxrun::test {
namespace {

/// A machine with a program of a few hand-assembled bytes.
class Bench {
  public:
    explicit Bench(const std::vector<std::uint8_t>& program, const Settings& settings = {})
        : disk(folder.path, 100000),
          machine(console, disk, settings, [this](const std::string& line) { notices.push_back(line); }) {
        machine.load(program);
    }
    TemporaryFolder folder;
    ScriptedConsole console{"k"};
    Disk disk;
    std::vector<std::string> notices;
    Machine machine;
};

TEST(Machine, EndsByReturnJumpAndCall) {
    EXPECT_EQ(Bench({0xC9}).machine.run(1000), Ending::finished);
    EXPECT_EQ(Bench({0xC3, 0x00, 0x00}).machine.run(1000), Ending::finished);
    EXPECT_EQ(Bench({0x0E, 0x00, 0xCD, 0x05, 0x00}).machine.run(1000), Ending::finished);
}

TEST(Machine, CountsTStatesOfPlainProcessor) {
    // LD B,0 (7); DJNZ (255 x 13 + 8); RET (10); JP WBOOT (10); OUT (11)
    Bench bench({0x06, 0x00, 0x10, 0xFE, 0xC9});
    EXPECT_EQ(bench.machine.run(), Ending::finished);
    EXPECT_EQ(bench.machine.tStates(), 7U + 255 * 13 + 8 + 10 + 10 + 11);
}

TEST(Machine, CountsPrefixedInstructions) {
    // LD BC,3 (10); LDIR (21 + 21 + 16); RES 0,(IX+5) (23); RET, JP, OUT
    Bench bench({0x01, 0x03, 0x00, 0x21, 0x00, 0x90, 0x11, 0x00, 0xA0, 0xED,
                 0xB0, 0xDD, 0x21, 0x00, 0x90, 0xDD, 0xCB, 0x05, 0x86, 0xC9});
    EXPECT_EQ(bench.machine.run(), Ending::finished);
    EXPECT_EQ(bench.machine.tStates(), 10U + 10 + 10 + 58 + 14 + 23 + 10 + 10 + 11);
}

TEST(Machine, MsxWaitsAddOnePerFetch) {
    Settings settings;
    settings.msxWaits = true;
    Bench bench({0xDD, 0xCB, 0x05, 0x46, 0xC9}, settings); // BIT 0,(IX+5): two fetches
    EXPECT_EQ(bench.machine.run(), Ending::finished);
    EXPECT_EQ(bench.machine.tStates(), 20U + 2 + 10 + 1 + 10 + 1 + 11 + 1);
}

TEST(Machine, StopsAtTheLimit) {
    Bench bench({0x18, 0xFE});
    EXPECT_EQ(bench.machine.run(100000), Ending::limit);
    EXPECT_GE(bench.machine.tStates(), 100000U);
    EXPECT_LT(bench.machine.tStates(), 100012U);
}

TEST(Machine, JiffyFollowsTheClock) {
    Bench bench({0x18, 0xFE});
    bench.machine.memory().setWord(0xFC9E, 0xFFF0);
    bench.machine.run(3579545 / 2 + 12);
    EXPECT_EQ(bench.machine.memory().word(0xFC9E), 14); // half a second is 30 frames
}

TEST(Machine, HaltWaitsForTheFrame) {
    Bench bench({0x76, 0x76, 0xC9});
    EXPECT_EQ(bench.machine.run(), Ending::finished);
    EXPECT_EQ(bench.machine.memory().word(0xFC9E), 2);
    EXPECT_EQ(Bench({0xF3, 0x76}).machine.run(), Ending::hung);
}

TEST(Machine, TellsWhatMachineItIs) {
    // LD A,FF; LD HL,002B; CALL RDSLT; LD (9000),A; RET
    Bench bench({0x3E, 0xFF, 0x21, 0x2B, 0x00, 0xCD, 0x0C, 0x00, 0x32, 0x00, 0x90, 0xC9});
    EXPECT_EQ(bench.machine.run(), Ending::finished);
    EXPECT_EQ(bench.machine.memory().byte(0x9000), 0);
    EXPECT_TRUE(bench.notices.empty());
    Bench other({0x3E, 0x00, 0x21, 0x2E, 0x00, 0xCD, 0x0C, 0x00, 0xC9});
    EXPECT_EQ(other.machine.run(), Ending::finished);
    EXPECT_EQ(other.notices, std::vector<std::string>{"RDSLT is not available"});
    // After the call interrupts are off: a HALT waits for ever.
    EXPECT_EQ(Bench({0x21, 0x2B, 0x00, 0xCD, 0x0C, 0x00, 0x76}).machine.run(), Ending::hung);
}

TEST(Machine, TopOfTheTpaAndStack) {
    Settings settings;
    settings.tpaTop = 0xC123;
    // LD HL,(6); LD (9000),HL; LD (9002),SP; RET
    Bench bench({0x2A, 0x06, 0x00, 0x22, 0x00, 0x90, 0xED, 0x73, 0x02, 0x90, 0xC9}, settings);
    EXPECT_EQ(bench.machine.run(), Ending::finished);
    EXPECT_EQ(bench.machine.memory().word(0x9000), 0xC123);
    EXPECT_EQ(bench.machine.memory().word(0x9002), 0xC121);
}

TEST(Machine, RefusesProgramThatDoesNotFit) {
    Bench bench({0xC9});
    EXPECT_EQ(bench.machine.room(), 0xD606U - 0x100U);
    EXPECT_NO_THROW(bench.machine.load(std::vector<std::uint8_t>(bench.machine.room(), 0)));
    EXPECT_THROW(bench.machine.load(std::vector<std::uint8_t>(bench.machine.room() + 1, 0)),
                 std::length_error);
    EXPECT_THROW(bench.machine.load({}), std::length_error);
}

TEST(Machine, BdosKeepsNothingButItsResults) {
    // LD DE,1234; LD HL,5678; LD IX,1111; LD C,8; CALL 5; LD (9000),DE; LD (9002),HL; LD (9004),IX; LD
    // (9006),A
    Bench bench({0x11, 0x34, 0x12, 0x21, 0x78, 0x56, 0xDD, 0x21, 0x11, 0x11, 0x0E, 0x08, 0xCD, 0x05, 0x00,
                 0xED, 0x53, 0x00, 0x90, 0x22, 0x02, 0x90, 0xDD, 0x22, 0x04, 0x90, 0x32, 0x06, 0x90, 0xC9});
    EXPECT_EQ(bench.machine.run(), Ending::finished);
    EXPECT_NE(bench.machine.memory().word(0x9000), 0x1234);
    EXPECT_NE(bench.machine.memory().word(0x9002), 0x5678);
    EXPECT_NE(bench.machine.memory().word(0x9004), 0x1111);
    EXPECT_EQ(bench.machine.memory().byte(0x9006), 'k');
}

TEST(Machine, BiosTableStandsBehindAddressOne) {
    // LD HL,(1); LD L,0Ch (CONOUT); LD C,'!'; LD DE,0107h+3 as return; PUSH DE; JP (HL); RET
    Bench bench({0x2A, 0x01, 0x00, 0x2E, 0x0C, 0x0E, '!', 0x11, 0x0C, 0x01, 0xD5, 0xE9, 0xC9});
    EXPECT_EQ(bench.machine.run(10000), Ending::finished);
    EXPECT_EQ(bench.console.screen, "!");
}

TEST(Machine, SlotCallIsNoticedOnce) {
    // LD IX,005Fh; CALL 001Ch; CALL 001Ch; RET
    Bench bench({0xDD, 0x21, 0x5F, 0x00, 0xCD, 0x1C, 0x00, 0xCD, 0x1C, 0x00, 0xC9});
    EXPECT_EQ(bench.machine.run(10000), Ending::finished);
    EXPECT_EQ(bench.notices, std::vector<std::string>{"CALSLT is not available: routine 005Fh"});
}

TEST(Machine, ProgramsOwnOutIsNoCall) {
    // OUT (2Eh),A; RET
    Bench bench({0xD3, 0x2E, 0xC9});
    EXPECT_EQ(bench.machine.run(10000), Ending::finished);
    EXPECT_TRUE(bench.notices.empty());
}

TEST(Machine, CommandTail) {
    Bench bench({0xC9});
    bench.machine.setCommandTail(" b:one.x t*");
    const Memory& memory = bench.machine.memory();
    EXPECT_EQ(memory.byte(0x80), 11);
    EXPECT_EQ(memory.byte(0x82), 'B');
    EXPECT_EQ(memory.byte(0x5C), 2);
    EXPECT_EQ(memory.byte(0x5D), 'O');
    EXPECT_EQ(memory.byte(0x65), 'X');
    EXPECT_EQ(memory.byte(0x6D), 'T');
    EXPECT_EQ(memory.byte(0x6E), '?');
    EXPECT_THROW(bench.machine.setCommandTail(std::string(128, 'x')), std::length_error);
}

} // namespace
} // namespace msxrun::test
