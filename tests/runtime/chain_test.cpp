// Chain and Execute, the poll for ^C, the screen entries that do nothing, and the system's jump table.
#include "library_machine.h"

#include <gtest/gtest.h>

using runtime_test::Image;
using runtime_test::LibraryMachine;
using runtime_test::Registers;
using tp3::RuntimeEntry;

namespace {

constexpr std::uint16_t nameAddress = 0x9000;
constexpr std::uint16_t fileAddress = 0xA000;
constexpr std::uint16_t markAddress = 0x9900;

class ChainTest : public testing::Test {
  protected:
    void assign(const std::string& name) {
        machine.setString(nameAddress, name);
        Registers in;
        in.hl = fileAddress;
        in.de = nameAddress;
        machine.call(RuntimeEntry::fileAssignUntyped, in);
    }
    int run(RuntimeEntry entry) {
        Registers in;
        in.hl = fileAddress;
        machine.call(entry, in);
        return machine.ended ? -1 : machine.call(RuntimeEntry::ioResult).hl;
    }
    /// A chain image whose code stores 42 and the stack pointer and ends.
    static std::string image(const Image& what) {
        const std::vector<std::uint8_t> file = runtime_test::programFile(what);
        std::string bytes(file.begin() + 0x2D9B, file.end());
        const std::string code("\x3E\x2A\x32\x00\x99\xED\x73\x01\x99\xC3\x00\x00", 12);
        bytes.replace(15, code.size(), code);
        return bytes;
    }

    LibraryMachine machine;
};

TEST_F(ChainTest, RunsAChainImageWhereItBelongs) {
    for (const std::uint16_t start : {std::uint16_t{0x2E9B}, std::uint16_t{0x3456}}) {
        Image what;
        what.start = start;
        what.length = 0x300;
        what.stackTop = 0xC000;
        machine.files["NEXT.CHN"] = image(what);
        assign("NEXT.CHN");
        machine.setByte(markAddress, 0);
        EXPECT_EQ(run(RuntimeEntry::chain), -1);
        EXPECT_EQ(machine.byte(markAddress), 42);
        EXPECT_EQ(machine.word(markAddress + 1), 0xC000);
        EXPECT_EQ(machine.word(LibraryMachine::address(RuntimeEntry::heapPtr)), start + 0x300);
        EXPECT_EQ(machine.byte(static_cast<std::uint16_t>(start + 0x2FF)),
                  static_cast<std::uint8_t>(machine.files["NEXT.CHN"].back()));
        machine.ended = false;
    }
}

TEST_F(ChainTest, ComesBackWithoutAnImage) {
    assign("NONE.CHN");
    EXPECT_EQ(run(RuntimeEntry::chain), 1);
    EXPECT_EQ(run(RuntimeEntry::execute), 1);
    machine.files["TEXT"] = "no image at all, but some text";
    assign("TEXT");
    EXPECT_EQ(run(RuntimeEntry::chain), 1);
}

TEST_F(ChainTest, RefusesAnImageThatIsTooLarge) {
    Image what;
    what.end = 0xD700;
    machine.files["LARGE.CHN"] = image(what);
    assign("LARGE.CHN");
    EXPECT_EQ(run(RuntimeEntry::chain), -1);
    EXPECT_EQ(machine.output, "Not enough memory: D700 wanted, D606 available\r\n");
}

TEST_F(ChainTest, ExecutesAProgram) {
    // LD A,42 / LD (9900h),A / RET, and bytes up to nearly all of the memory
    for (const std::size_t length : {std::size_t{6}, std::size_t{0x3000}, std::size_t{0xD000}}) {
        std::string program("\x3E\x2A\x32\x00\x99\xC9", 6);
        program.resize(length, '.');
        machine.files["PROG.COM"] = program;
        machine.files["OPEN"] = "";
        LibraryMachine other;
        other.files = machine.files;
        other.setString(nameAddress, "PROG.COM");
        Registers in;
        in.hl = fileAddress;
        in.de = nameAddress;
        other.call(RuntimeEntry::fileAssignUntyped, in);
        other.setByte(markAddress, 0);
        other.call(RuntimeEntry::execute, in);
        EXPECT_TRUE(other.ended);
        EXPECT_EQ(other.byte(markAddress), 42);
        EXPECT_EQ(other.text(0x100, std::min<std::size_t>(length, 0x3000)), program.substr(0, 0x3000));
    }
    machine.files["PROG.COM"] = std::string(0xD600, '.');
    assign("PROG.COM");
    EXPECT_EQ(run(RuntimeEntry::execute), 0xF2);
}

TEST_F(ChainTest, PollsForABreakAndKeepsOtherKeys) {
    Registers in;
    in.a = 0x12;
    in.bc = 0x3456;
    in.de = 0x789A;
    in.hl = 0xBCDE;
    machine.keys = "ab";
    for (int round = 0; round < 3; ++round) {
        const Registers out = machine.call(RuntimeEntry::userBreakPoll, in);
        EXPECT_EQ(out.a, in.a);
        EXPECT_EQ(out.bc, in.bc);
        EXPECT_EQ(out.de, in.de);
        EXPECT_EQ(out.hl, in.hl);
        EXPECT_TRUE(machine.otherRegistersKept);
    }
    EXPECT_EQ(machine.keys, "b");
    EXPECT_EQ(machine.call(RuntimeEntry::keyPressed).a, 1);
    in.hl = LibraryMachine::address(RuntimeEntry::kbdFile);
    machine.call(RuntimeEntry::selectInput, in);
    std::string read;
    for (int round = 0; round < 2; ++round) {
        in.hl = markAddress;
        machine.call(RuntimeEntry::readChar, in);
        read += static_cast<char>(machine.byte(markAddress));
    }
    EXPECT_EQ(read, "ab");
    machine.keys = "\x03";
    machine.call(RuntimeEntry::userBreakPoll, in);
    EXPECT_TRUE(machine.ended);
    EXPECT_EQ(machine.output, "\r\nUser break, PC=8000\r\nProgram aborted\r\n");
}

TEST_F(ChainTest, LeavesTheScreenAlone) {
    for (const RuntimeEntry entry : {RuntimeEntry::lowVideo, RuntimeEntry::normVideo, RuntimeEntry::highVideo,
                                     RuntimeEntry::crtInit, RuntimeEntry::crtExit}) {
        machine.call(entry);
    }
    EXPECT_EQ(machine.output, "");
}

TEST_F(ChainTest, CallsTheJumpTable) {
    machine.setWord(1, 0x9703);
    machine.setText(0x9703 + 3 * 4, std::string("\x79\x26\x55\x2E\x66\xC9", 6)); // LD A,C / LD HL,5566h / RET
    Registers in;
    in.de = 4;
    in.bc = 0x0077;
    EXPECT_EQ(machine.call(RuntimeEntry::bios, in).hl, 0x77);
    EXPECT_EQ(machine.call(RuntimeEntry::biosHL, in).hl, 0x5566);
}

} // namespace
