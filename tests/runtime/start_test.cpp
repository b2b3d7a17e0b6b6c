// The start of a program: its memory, its place, its stack.
#include "library_machine.h"

#include <gtest/gtest.h>

using runtime_test::Image;
using runtime_test::LibraryMachine;
using runtime_test::Registers;
using tp3::RuntimeEntry;

namespace {

void expectRuns(const Image& image) {
    const std::vector<std::uint8_t> file = runtime_test::programFile(image);
    LibraryMachine machine(image);
    ASSERT_FALSE(machine.ended) << machine.output;
    EXPECT_EQ(machine.output, "");
    EXPECT_EQ(machine.programCounter, image.start);
    EXPECT_EQ(machine.startStack, image.stackTop);
    EXPECT_EQ(machine.text(image.start, image.length),
              std::string(file.begin() + tp3::runtimeSize, file.end()));
}

TEST(StartTest, TheLibraryIsTheOneOfTheHeader) {
    std::uint32_t checksum = 0x811C9DC5U;
    for (const std::uint8_t byte : runtime_test::libraryFile()) {
        checksum = (checksum ^ byte) * 0x01000193U;
    }
    EXPECT_EQ(runtime_test::libraryFile().size(), tp3::runtimeSize);
    EXPECT_EQ(checksum, tp3::runtimeChecksum);
}

TEST(StartTest, RunsAnImageWhereItWasLoaded) {
    expectRuns({});
    expectRuns({.length = 0x8000, .heapBottom = {}});
}

TEST(StartTest, MovesAnImageUp) {
    for (const unsigned start : {0x2E9CU, 0x2EDAU, 0x2EDBU, 0x2EDCU, 0x3000U, 0x4000U, 0x9000U, 0xB000U}) {
        for (const unsigned length : {18U, 0x40U, 0x1234U}) {
            expectRuns({.start = static_cast<std::uint16_t>(start),
                        .length = static_cast<std::uint16_t>(length),
                        .heapBottom = {}});
        }
    }
}

TEST(StartTest, TheStackMayLieWhereMsxDosHasItsOwn) {
    expectRuns({.start = 0xA000,
                .end = LibraryMachine::tpaTop,
                .stackTop = LibraryMachine::tpaTop,
                .heapBottom = {}});
}

TEST(StartTest, SaysWhenTheMachineHasTooLittleMemory) {
    const LibraryMachine machine({.end = 0xD607, .heapBottom = {}});
    EXPECT_TRUE(machine.ended);
    EXPECT_EQ(machine.output, "Not enough memory: D607 wanted, D606 available\r\n");
    const LibraryMachine largest({.end = 0xF93C, .heapBottom = {}});
    EXPECT_EQ(largest.output, "Not enough memory: F93C wanted, D606 available\r\n");
}

TEST(StartTest, SaysWhenThereIsNoRoomForTheStack) {
    const LibraryMachine machine({.stackTop = 0x9000, .heapBottom = 0x8F01});
    EXPECT_TRUE(machine.ended);
    EXPECT_EQ(machine.output, "Not enough memory: 9001 wanted, 9000 available\r\n");
    expectRuns({.stackTop = 0x9000, .heapBottom = 0x8F00});
    const LibraryMachine wrapped({.stackTop = 0x9000, .heapBottom = 0xFFF0});
    EXPECT_TRUE(wrapped.ended);
}

TEST(StartTest, SaysWhenThereIsNoProgram) {
    std::vector<std::uint8_t> file = runtime_test::libraryFile();
    file.push_back(0);
    const LibraryMachine machine(file);
    EXPECT_TRUE(machine.ended);
    EXPECT_EQ(machine.output, "No program behind the run-time library\r\n");
}

TEST(StartTest, StackLimitGivesNoCarryWhenTheStackIsTooLow) {
    const LibraryMachine machine({.heapBottom = 0x4321});
    const unsigned limit = machine.word(LibraryMachine::address(RuntimeEntry::stackLimit));
    EXPECT_EQ(limit + 0x4321 + 192, 0x10000U);
    EXPECT_GE(limit + 0x4321 + 192, 0x10000U);
    EXPECT_LT(limit + 0x4321 + 191, 0x10000U);
}

} // namespace
