#include "support.h"

#include <gtest/gtest.h>

namespace msxrun::test {
namespace {

constexpr unsigned fcb = 0x8000;
constexpr unsigned dma = 0x9000;

TEST(BdosFiles, OpenFindsAnyCaseAndFillsOnlyWhatItKnows) {
    BdosBench bench;
    bench.folder.put("Data.txt", "hello");
    bench.putFcb(fcb, "DATA    TXT");
    for (const unsigned offset : {12U, 13U, 14U, 15U, 32U, 33U, 34U, 35U, 36U}) {
        bench.memory.setByte(fcb + offset, 0x77);
    }
    EXPECT_EQ(bench.a(0x0F, fcb), 0);
    EXPECT_EQ(bench.memory.doubleWord(fcb + 16), 5U);
    for (const unsigned offset : {12U, 13U, 14U, 15U, 32U, 33U, 34U, 35U, 36U}) {
        EXPECT_EQ(bench.memory.byte(fcb + offset), 0x77) << offset;
    }
    bench.putFcb(fcb, "NONE    TXT");
    EXPECT_EQ(bench.a(0x0F, fcb), 0xFF);
    bench.putFcb(fcb, "DATA    TXT");
    bench.memory.setByte(fcb, 2); // there is no drive B:
    EXPECT_EQ(bench.a(0x0F, fcb), 0xFF);
}

TEST(BdosFiles, ProtectedDiskCanOnlyBeRead) {
    BdosBench bench;
    bench.folder.put("A.DAT", "text");
    bench.bdos.setFaults({.readOnly = true, .removedAfter = {}});
    bench.putFcb(fcb, "A       DAT");
    bench.call(0x1A, dma);
    EXPECT_EQ(bench.a(0x0F, fcb), 0);
    bench.memory.setWord(fcb + 14, 1);
    EXPECT_EQ(bench.call(0x27, fcb, 4).hl, 4);
    EXPECT_EQ(bench.text(dma, 4), "text");
    EXPECT_EQ(bench.a(0x26, fcb, 1), 1);
    EXPECT_EQ(bench.a(0x10, fcb), 0);
    for (const unsigned function : {0x13U, 0x16U, 0x17U}) {
        EXPECT_EQ(bench.a(function, fcb), 0xFF);
    }
    EXPECT_EQ(bench.folder.get("A.DAT"), "text");
}

TEST(BdosFiles, RemovedDiskFailsAtEveryCall) {
    BdosBench bench;
    bench.bdos.setFaults({.readOnly = false, .removedAfter = 2});
    bench.putFcb(fcb, "A       DAT");
    bench.call(0x1A, dma);
    EXPECT_EQ(bench.a(0x16, fcb), 0);
    bench.memory.setWord(fcb + 14, 1);
    EXPECT_EQ(bench.a(0x26, fcb, 3), 0);
    EXPECT_EQ(bench.a(0x26, fcb, 3), 1);
    EXPECT_EQ(bench.call(0x27, fcb, 3).hl, 0);
    EXPECT_EQ(bench.a(0x10, fcb), 0xFF);
    EXPECT_EQ(bench.a(0x0F, fcb), 0xFF);
    bench.putFcb(fcb, "CON        "); // what is no disk stays
    EXPECT_EQ(bench.a(0x0F, fcb), 0);
}

TEST(BdosFiles, SequentialReadPadsLastRecordThenEnds) {
    BdosBench bench;
    bench.folder.put("A.DAT", std::string(128, 'x') + "yz");
    bench.putFcb(fcb, "A       DAT");
    bench.call(0x1A, dma);
    ASSERT_EQ(bench.a(0x0F, fcb), 0);
    EXPECT_EQ(bench.a(0x14, fcb), 0);
    EXPECT_EQ(bench.text(dma, 128), std::string(128, 'x'));
    EXPECT_EQ(bench.a(0x14, fcb), 0);
    EXPECT_EQ(bench.text(dma, 128), "yz" + std::string(126, '\0'));
    EXPECT_EQ(bench.a(0x14, fcb), 1);
    EXPECT_EQ(bench.memory.byte(fcb + 32), 2);
}

TEST(BdosFiles, SequentialRecordCarriesIntoTheBlock) {
    BdosBench bench;
    bench.putFcb(fcb, "A       DAT");
    bench.call(0x1A, dma);
    ASSERT_EQ(bench.a(0x16, fcb), 0);
    bench.memory.setByte(fcb + 32, 127);
    EXPECT_EQ(bench.a(0x15, fcb), 0);
    EXPECT_EQ(bench.memory.word(fcb + 12), 1);
    EXPECT_EQ(bench.memory.byte(fcb + 32), 0);
    EXPECT_EQ(bench.call(0x24, fcb).endsProgram, false);
    EXPECT_EQ(bench.memory.doubleWord(fcb + 33), 128U);
}

TEST(BdosFiles, BlockReadOfAnyRecordSize) {
    BdosBench bench;
    bench.folder.put("A.TXT", "0123456789");
    bench.putFcb(fcb, "A       TXT");
    bench.call(0x1A, dma);
    ASSERT_EQ(bench.a(0x0F, fcb), 0);
    bench.memory.setWord(fcb + 14, 4);
    const BdosAnswer two = bench.call(0x27, fcb, 2);
    EXPECT_EQ(two.a, 0);
    EXPECT_EQ(two.hl, 2);
    EXPECT_EQ(bench.text(dma, 8), "01234567");
    const BdosAnswer rest = bench.call(0x27, fcb, 2);
    EXPECT_EQ(rest.a, 1);
    EXPECT_EQ(rest.hl, 1); // the last part counts, filled up with zeros
    EXPECT_EQ(bench.text(dma, 4), std::string("89\0\0", 4));
    EXPECT_EQ(bench.memory.doubleWord(fcb + 33), 3U);
    EXPECT_EQ(bench.call(0x27, fcb, 2).hl, 0);
}

TEST(BdosFiles, BlockAccessNeedsItsRecordSize) {
    BdosBench bench;
    bench.folder.put("A.TXT", "0123");
    bench.putFcb(fcb, "A       TXT");
    ASSERT_EQ(bench.a(0x0F, fcb), 0);
    EXPECT_EQ(bench.a(0x27, fcb, 1), 1);
    EXPECT_EQ(bench.notices.size(), 1U);
}

TEST(BdosFiles, BlockRecordHasFourBytesOnlyForSmallRecords) {
    BdosBench bench;
    bench.putFcb(fcb, "A       DAT");
    ASSERT_EQ(bench.a(0x16, fcb), 0);
    bench.memory.setByte(fcb + 36, 0x11);
    bench.memory.setWord(fcb + 14, 64);
    bench.memory.setWord(fcb + 33, 0);
    EXPECT_EQ(bench.a(0x26, fcb, 1), 0); // the fourth byte is not part of the number
    EXPECT_EQ(bench.memory.byte(fcb + 36), 0x11);
    bench.memory.setWord(fcb + 14, 1);
    EXPECT_EQ(bench.a(0x26, fcb, 1), 1); // now it is, and the disk has no room for so much
}

TEST(BdosFiles, BlockWriteOfNothingSetsTheLength) {
    BdosBench bench;
    bench.folder.put("A.TXT", "0123456789");
    bench.putFcb(fcb, "A       TXT");
    ASSERT_EQ(bench.a(0x0F, fcb), 0);
    bench.memory.setWord(fcb + 14, 1);
    bench.memory.setByte(fcb + 33, 3);
    EXPECT_EQ(bench.a(0x26, fcb, 0), 0);
    EXPECT_EQ(bench.a(0x10, fcb), 0);
    EXPECT_EQ(bench.folder.get("A.TXT"), "012");
    bench.memory.setByte(fcb + 33, 6);
    EXPECT_EQ(bench.a(0x26, fcb, 0), 0);
    EXPECT_EQ(bench.a(0x10, fcb), 0);
    EXPECT_EQ(bench.folder.get("A.TXT").size(), 6U);
}

TEST(BdosFiles, GapIsZeroOnlyWithTheCallThatSaysSo) {
    BdosBench bench;
    bench.call(0x1A, dma);
    bench.putText(dma, std::string(128, 'x'));
    for (const auto& [function, byte] : {std::pair{0x22U, 0xE5}, std::pair{0x28U, 0}}) {
        bench.putFcb(fcb, "A       DAT");
        ASSERT_EQ(bench.a(0x16, fcb), 0);
        bench.memory.setByte(fcb + 33, 1);
        EXPECT_EQ(bench.a(function, fcb), 0);
        EXPECT_EQ(bench.a(0x10, fcb), 0);
        EXPECT_EQ(bench.folder.get("A.DAT"),
                  std::string(128, static_cast<char>(byte)) + std::string(128, 'x'));
    }
}

TEST(BdosFiles, RandomReadStaysAndLeadsSequentialReads) {
    BdosBench bench;
    bench.folder.put("A.DAT", std::string(128, 'a') + std::string(128, 'b'));
    bench.putFcb(fcb, "A       DAT");
    bench.call(0x1A, dma);
    ASSERT_EQ(bench.a(0x0F, fcb), 0);
    bench.memory.setByte(fcb + 33, 1);
    EXPECT_EQ(bench.a(0x21, fcb), 0);
    EXPECT_EQ(bench.memory.byte(dma), 'b');
    EXPECT_EQ(bench.memory.byte(fcb + 33), 1);
    EXPECT_EQ(bench.a(0x14, fcb), 0);
    EXPECT_EQ(bench.memory.byte(dma), 'b');
    bench.memory.setByte(fcb + 33, 2);
    EXPECT_EQ(bench.a(0x21, fcb), 1);
}

TEST(BdosFiles, UnclosedFileLosesWhatItGained) {
    BdosBench bench;
    bench.putFcb(fcb, "NEW     DAT");
    ASSERT_EQ(bench.a(0x16, fcb), 0);
    EXPECT_EQ(bench.a(0x15, fcb), 0);
    EXPECT_EQ(bench.disk.settle(), std::vector<std::string>{"NEW.DAT"});
    EXPECT_EQ(bench.folder.get("NEW.DAT"), "");
}

TEST(BdosFiles, ClosedFileKeepsEverything) {
    BdosBench bench;
    bench.putFcb(fcb, "NEW     DAT");
    ASSERT_EQ(bench.a(0x16, fcb), 0);
    EXPECT_EQ(bench.a(0x15, fcb), 0);
    EXPECT_EQ(bench.a(0x10, fcb), 0);
    EXPECT_TRUE(bench.disk.settle().empty());
    EXPECT_EQ(bench.folder.get("NEW.DAT").size(), 128U);
}

TEST(BdosFiles, DirectoryShowsLengthOfLastClose) {
    BdosBench bench;
    bench.putFcb(fcb, "NEW     DAT");
    ASSERT_EQ(bench.a(0x16, fcb), 0);
    EXPECT_EQ(bench.a(0x15, fcb), 0);
    bench.putFcb(fcb + 0x100, "NEW     DAT");
    ASSERT_EQ(bench.a(0x0F, fcb + 0x100), 0);
    EXPECT_EQ(bench.memory.doubleWord(fcb + 0x110), 0U);
}

TEST(BdosFiles, WriteNeedsAnOpenedBlock) {
    BdosBench bench;
    bench.putFcb(fcb, "A       DAT");
    EXPECT_EQ(bench.a(0x15, fcb), 1);
    EXPECT_EQ(bench.a(0x14, fcb), 1);
    EXPECT_EQ(bench.a(0x10, fcb), 0xFF);
}

TEST(BdosFiles, FullDiskRefusesTheRecord) {
    BdosBench bench("", false, 200);
    bench.putFcb(fcb, "A       DAT");
    ASSERT_EQ(bench.a(0x16, fcb), 0);
    EXPECT_EQ(bench.a(0x15, fcb), 0);
    EXPECT_EQ(bench.a(0x15, fcb), 1);
    EXPECT_EQ(bench.a(0x10, fcb), 0);
    EXPECT_EQ(bench.folder.get("A.DAT").size(), 128U);
}

TEST(BdosFiles, SearchGivesDirectoryEntries) {
    BdosBench bench;
    bench.folder.put("b.pas", "12");
    bench.folder.put("A.PAS", "1");
    bench.folder.put("C.TXT", "1");
    bench.folder.put("longer name.pas", "1");
    std::filesystem::create_directory(bench.folder.path / "SUB.PAS");
    bench.putFcb(fcb, "????????PAS");
    bench.call(0x1A, dma);
    EXPECT_EQ(bench.a(0x11, fcb), 0);
    EXPECT_EQ(bench.memory.byte(dma), 1);
    EXPECT_EQ(bench.text(dma + 1, 11), "A       PAS");
    EXPECT_EQ(bench.a(0x12), 0);
    EXPECT_EQ(bench.text(dma + 1, 11), "B       PAS");
    EXPECT_EQ(bench.memory.doubleWord(dma + 1 + 28), 2U);
    EXPECT_EQ(bench.a(0x12), 0xFF);
}

TEST(BdosFiles, NewFilesTakeThePlacesOfDeletedOnes) {
    BdosBench bench;
    for (const char* name : {"B.PAS", "D.PAS", "A.PAS", "C.PAS"}) {
        bench.folder.put(name, "");
    }
    const auto listed = [&] {
        std::string names;
        bench.putFcb(fcb, "????????PAS");
        bench.call(0x1A, dma);
        for (unsigned function = 0x11; bench.a(function, fcb) == 0; function = 0x12) {
            names += bench.text(dma + 1, 1);
        }
        return names;
    };
    EXPECT_EQ(listed(), "ABCD");
    bench.putFcb(fcb, "B       PAS");
    EXPECT_EQ(bench.a(0x13, fcb), 0);
    bench.putFcb(fcb, "A       PAS");
    bench.putText(fcb + 17, "Z       PAS");
    EXPECT_EQ(bench.a(0x17, fcb), 0);
    EXPECT_EQ(listed(), "ZCD");
    for (const char* name : {"Y       PAS", "B       PAS"}) {
        bench.putFcb(fcb, name);
        EXPECT_EQ(bench.a(0x16, fcb), 0);
    }
    EXPECT_EQ(listed(), "ZYCDB");
}

TEST(BdosFiles, SearchCannotSeeABlockUnderTheDiskRom) {
    BdosBench bench;
    bench.folder.put("A.PAS", "1");
    for (const unsigned address : {0x4000U, 0x7FFFU, 0x3FE0U}) {
        bench.putFcb(address, "A       PAS");
        EXPECT_EQ(bench.a(0x11, address), 0xFF) << address;
    }
    for (const unsigned address : {0x3FDBU, 0x8000U}) {
        bench.putFcb(address, "A       PAS");
        EXPECT_EQ(bench.a(0x11, address), 0) << address;
    }
}

TEST(BdosFiles, DeletesByPattern) {
    BdosBench bench;
    bench.folder.put("A.TMP", "");
    bench.folder.put("b.tmp", "");
    bench.folder.put("KEEP.PAS", "");
    bench.putFcb(fcb, "????????TMP");
    EXPECT_EQ(bench.a(0x13, fcb), 0);
    EXPECT_EQ(bench.a(0x13, fcb), 0xFF);
    EXPECT_FALSE(bench.folder.has("b.tmp"));
    EXPECT_TRUE(bench.folder.has("KEEP.PAS"));
}

TEST(BdosFiles, RenamesByPatternButNotOntoAFile) {
    BdosBench bench;
    bench.folder.put("A.PAS", "1");
    bench.putFcb(fcb, "A       PAS");
    bench.putText(fcb + 17, "????????BAK");
    EXPECT_EQ(bench.a(0x17, fcb), 0);
    EXPECT_EQ(bench.folder.get("A.BAK"), "1");
    bench.folder.put("A.PAS", "2");
    EXPECT_EQ(bench.a(0x17, fcb), 0xFF);
    EXPECT_EQ(bench.folder.get("A.BAK"), "1");
}

TEST(BdosFiles, SizeInRecords) {
    BdosBench bench;
    bench.folder.put("A.DAT", std::string(129, 'x'));
    bench.putFcb(fcb, "A       DAT");
    EXPECT_EQ(bench.a(0x23, fcb), 0);
    EXPECT_EQ(bench.memory.doubleWord(fcb + 33), 2U);
}

TEST(BdosFiles, NamesCannotLeaveTheFolder) {
    BdosBench bench;
    std::filesystem::create_symlink("/etc/passwd", bench.folder.path / "LINK.TXT");
    for (const char* name : {"../../A DAT", "..         ", "/ETC    TXT", "A/B     TXT", "LINK    TXT"}) {
        bench.putFcb(fcb, name);
        EXPECT_EQ(bench.a(0x0F, fcb), 0xFF) << name;
        EXPECT_EQ(bench.a(0x16, fcb), 0xFF) << name;
        EXPECT_EQ(bench.a(0x13, fcb), 0xFF) << name;
    }
}

TEST(BdosFiles, WhatALinkStandsForIsNeitherMadeNorEmptiedNorRead) {
    BdosBench bench;
    const TemporaryFolder outside;
    outside.put("VICTIM.TXT", "precious");
    const auto& folder = bench.folder.path;
    std::filesystem::create_symlink(outside.path / "VICTIM.TXT", folder / "LINK.TXT");
    std::filesystem::create_symlink(outside.path / "MADE.TXT", folder / "NEW.TXT");
    for (const char* name : {"LINK    TXT", "NEW     TXT"}) {
        bench.putFcb(fcb, name);
        EXPECT_EQ(bench.a(0x16, fcb), 0xFF) << name;
    }
    EXPECT_EQ(outside.get("VICTIM.TXT"), "precious");
    EXPECT_FALSE(outside.has("MADE.TXT"));
    // A link that takes the place of a file between opening and reading or writing.
    bench.folder.put("A.DAT", "own text");
    bench.putFcb(fcb, "A       DAT");
    ASSERT_EQ(bench.a(0x0F, fcb), 0);
    std::filesystem::remove(folder / "A.DAT");
    std::filesystem::create_symlink(outside.path / "VICTIM.TXT", folder / "A.DAT");
    bench.memory.setWord(fcb + 14, 1);
    bench.call(0x1A, dma);
    EXPECT_EQ(bench.call(0x27, fcb, 8).hl, 0);
    EXPECT_EQ(bench.a(0x26, fcb, 8), 1);
    EXPECT_EQ(outside.get("VICTIM.TXT"), "precious");
}

TEST(BdosFiles, RenamingCannotLeaveTheFolder) {
    BdosBench bench;
    std::filesystem::create_directory(bench.folder.path / "SUB");
    bench.folder.put("A.PAS", "1");
    for (const char* name : {"SUB/A   PAS", "SUB/A      ", "..      PAS", "../A    PAS", "/TMP/A  PAS",
                             "SUB\\A   PAS", "A B     PAS", "           ", "SUB        "}) {
        bench.putFcb(fcb, "A       PAS");
        bench.putText(fcb + 17, name);
        EXPECT_EQ(bench.a(0x17, fcb), 0xFF) << name;
        EXPECT_EQ(bench.folder.get("A.PAS"), "1") << name;
    }
    EXPECT_TRUE(std::filesystem::is_empty(bench.folder.path / "SUB"));
    EXPECT_FALSE(std::filesystem::exists(bench.folder.path / "../A.PAS"));
}

std::size_t openDescriptors() {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}));
}

TEST(BdosFiles, AProgramWithManyFilesKeepsFewOfTheHostsOpen) {
    BdosBench bench;
    constexpr unsigned files = 300;
    constexpr unsigned blockLength = 37;
    const std::size_t before = openDescriptors();
    bench.call(0x1A, dma);
    std::size_t most = 0;
    for (unsigned i = 0; i < files; ++i) {
        const std::string number = std::to_string(100 + i);
        bench.folder.put("F" + number + ".DAT", number);
        const unsigned block = 0xA000 + i * blockLength;
        bench.putFcb(block, "F" + number + "    DAT");
        ASSERT_EQ(bench.a(0x0F, block), 0);
        bench.memory.setWord(block + 14, 1);
        EXPECT_EQ(bench.call(0x27, block, 3).hl, 3);
        EXPECT_EQ(bench.text(dma, 3), number);
        most = std::max(most, openDescriptors() - before);
    }
    EXPECT_LE(most, 64U);
    EXPECT_GT(most, 32U) << "those that are used again are not opened each time";
    for (unsigned i = 0; i < files; ++i) { // the ones that were closed open again
        const unsigned block = 0xA000 + i * blockLength;
        bench.memory.setWord(block + 33, 0);
        EXPECT_EQ(bench.call(0x27, block, 3).hl, 3);
        EXPECT_EQ(bench.text(dma, 3), std::to_string(100 + i));
    }
}

TEST(BdosFiles, TheLastFreeByteCanBeWrittenAndNoMore) {
    for (const unsigned start : {0U, 30U}) { // at the end, and beyond it, where the gap takes room too
        BdosBench bench("", false, 100);
        bench.call(0x1A, dma);
        bench.putFcb(fcb, "A       DAT");
        ASSERT_EQ(bench.a(0x16, fcb), 0);
        bench.memory.setWord(fcb + 14, 1);
        bench.memory.setWord(fcb + 33, start);
        EXPECT_EQ(bench.a(0x26, fcb, 101 - start), 1) << "one byte too many";
        bench.memory.setWord(fcb + 33, start);
    }
    for (const unsigned start : {0U, 30U}) {
        BdosBench bench("", false, 100);
        bench.call(0x1A, dma);
        bench.putFcb(fcb, "A       DAT");
        ASSERT_EQ(bench.a(0x16, fcb), 0);
        bench.memory.setWord(fcb + 14, 1);
        bench.memory.setWord(fcb + 33, start);
        EXPECT_EQ(bench.a(0x26, fcb, 100 - start), 0);
        EXPECT_EQ(bench.a(0x26, fcb, 1), 1) << "the disk is full now";
        bench.memory.setWord(fcb + 33, 0);
        EXPECT_EQ(bench.a(0x26, fcb, 100), 0) << "what is there can be written again";
        bench.memory.setWord(fcb + 33, 90);
        EXPECT_EQ(bench.a(0x26, fcb, 0), 0) << "shortened by 10 bytes";
        EXPECT_EQ(bench.a(0x26, fcb, 11), 1);
        EXPECT_EQ(bench.a(0x26, fcb, 10), 0);
        EXPECT_EQ(bench.a(0x10, fcb), 0);
        EXPECT_EQ(bench.folder.get("A.DAT").size(), 100U);
    }
    BdosBench bench("", false, 100);
    bench.putFcb(fcb, "A       DAT");
    ASSERT_EQ(bench.a(0x16, fcb), 0);
    bench.memory.setWord(fcb + 14, 1);
    for (const auto& [length, answer] : {std::pair(101U, 1), std::pair(100U, 0)}) {
        bench.memory.setWord(fcb + 33, length);
        EXPECT_EQ(bench.a(0x26, fcb, 0), answer) << "lengthened to " << length;
    }
}

TEST(BdosFiles, TheBlockOfADeviceSaysSoAndNamesNoFile) {
    for (const char* name : {"CON        ", "AUX     TXT", "NUL        ", "LST     PAS", "PRN        "}) {
        for (const unsigned function : {0x0FU, 0x16U}) {
            BdosBench bench;
            bench.putFcb(fcb, name);
            bench.memory.setDoubleWord(fcb + 16, 0x12345678);
            EXPECT_EQ(bench.a(function, fcb), 0) << name;
            EXPECT_EQ(bench.memory.doubleWord(fcb + 16), 0U) << name;
            EXPECT_GE(bench.memory.byte(fcb + 24), 0x80) << name;
            bench.memory.setWord(fcb + 14, 1);
            EXPECT_EQ(bench.a(0x26, fcb, 0), 1) << name << " has no length";
            EXPECT_EQ(bench.a(0x10, fcb), 0) << name;
            EXPECT_TRUE(std::filesystem::is_empty(bench.folder.path)) << name;
        }
    }
    BdosBench bench;
    bench.putFcb(fcb, "NUL        ");
    ASSERT_EQ(bench.a(0x0F, fcb), 0);
    bench.call(0x1A, dma);
    bench.putText(dma, "text");
    bench.memory.setWord(fcb + 14, 1);
    EXPECT_EQ(bench.a(0x26, fcb, 4), 0);
    EXPECT_EQ(bench.call(0x27, fcb, 4).hl, 0) << "nothing comes back";
    EXPECT_EQ(bench.console.screen + bench.console.paper, "");
    // A block that was a file's before still holds the number of its cluster.
    bench.folder.put("A.DAT", "text");
    bench.putFcb(fcb, "A       DAT");
    ASSERT_EQ(bench.a(0x0F, fcb), 0);
    bench.putText(fcb + 1, "NUL        ");
    ASSERT_EQ(bench.a(0x0F, fcb), 0);
    bench.memory.setWord(fcb + 14, 1);
    EXPECT_EQ(bench.a(0x26, fcb, 0), 1) << "which must not be cut";
    EXPECT_EQ(bench.folder.get("A.DAT"), "text");
    bench.putFcb(fcb, "NULL       ");
    EXPECT_EQ(bench.a(0x0F, fcb), 0xFF) << "a longer name is a file's";
}

TEST(BdosFiles, DevicesAreFiles) {
    BdosBench bench("xy");
    bench.call(0x1A, dma);
    bench.putText(dma, "hello");
    bench.putFcb(fcb, "CON        ");
    ASSERT_EQ(bench.a(0x0F, fcb), 0);
    EXPECT_EQ(bench.memory.byte(fcb + 24), 0xFF);
    bench.memory.setWord(fcb + 14, 1);
    EXPECT_EQ(bench.a(0x26, fcb, 5), 0);
    EXPECT_EQ(bench.console.screen, "hello");
    EXPECT_EQ(bench.call(0x27, fcb, 5).hl, 2);
    bench.putFcb(fcb, "PRN        ");
    ASSERT_EQ(bench.a(0x16, fcb), 0);
    bench.memory.setWord(fcb + 14, 1);
    bench.putText(dma, "p");
    EXPECT_EQ(bench.a(0x26, fcb, 1), 0);
    EXPECT_EQ(bench.console.paper, "p");
}

TEST(BdosFiles, TransferStopsAtTheEndOfMemory) {
    BdosBench bench;
    bench.folder.put("A.DAT", std::string(256, 'x'));
    bench.putFcb(fcb, "A       DAT");
    ASSERT_EQ(bench.a(0x0F, fcb), 0);
    bench.call(0x1A, 0xFFC0);
    EXPECT_EQ(bench.a(0x14, fcb), 1);
    EXPECT_EQ(bench.a(0x15, fcb), 1);
    EXPECT_EQ(bench.memory.byte(0), 0);
}

} // namespace
} // namespace msxrun::test
