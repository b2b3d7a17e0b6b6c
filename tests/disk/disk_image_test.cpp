#include "disk/disk_image.h"

#include "disk/fat_time.h"
#include "tests/disk/support.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace disk {
namespace {

using test::add;
using test::contentOf;
using test::file;
using test::name;
using test::pattern;

constexpr std::size_t clusterBytes = 1024;
constexpr std::size_t diskBytes = 713 * clusterBytes;

/// Where the parts of a 720 kB disk lie.
constexpr std::size_t firstFat = 512;
constexpr std::size_t secondFat = 4 * 512;
constexpr std::size_t rootDirectory = 7 * 512;

/// A copy of the image with other bytes at one place.
DiskImage changed(const DiskImage& image, std::size_t offset, const Bytes& bytes) {
    Bytes copy = image.bytes();
    std::copy(bytes.begin(), bytes.end(), copy.begin() + static_cast<std::ptrdiff_t>(offset));
    return DiskImage(copy);
}

TEST(DiskImage, ANewDiskIsWhatAnMsxFormats) {
    const DiskImage image;
    const Bytes& bytes = image.bytes();
    ASSERT_EQ(bytes.size(), 737280U);
    const Bytes boot(bytes.begin(), bytes.begin() + 3);
    EXPECT_EQ(boot, (Bytes{0xEB, 0xFE, 0x90}));
    const Bytes parameters(bytes.begin() + 0x0B, bytes.begin() + 0x1F);
    EXPECT_EQ(parameters,
              (Bytes{0x00, 0x02, 2, 1, 0, 2, 112, 0, 0xA0, 0x05, 0xF9, 3, 0, 9, 0, 2, 0, 0, 0, 0xD0}));
    for (const std::size_t fat : {firstFat, secondFat}) {
        EXPECT_EQ(Bytes(bytes.begin() + static_cast<std::ptrdiff_t>(fat),
                        bytes.begin() + static_cast<std::ptrdiff_t>(fat) + 4),
                  (Bytes{0xF9, 0xFF, 0xFF, 0x00}));
    }
    EXPECT_TRUE(image.list().empty());
    EXPECT_EQ(image.freeBytes(), diskBytes);
    EXPECT_EQ(DiskImage(bytes).geometry(), Geometry{});
}

TEST(DiskImage, GivesBackWhatItTook) {
    DiskImage image;
    for (const std::size_t size : {0U, 1U, 1023U, 1024U, 1025U, 100'000U})
        add(image, "F" + std::to_string(size), pattern(size, static_cast<unsigned>(size)));
    const DiskImage read(image.bytes());
    EXPECT_EQ(read.list().size(), 6U);
    for (const std::size_t size : {0U, 1U, 1023U, 1024U, 1025U, 100'000U})
        EXPECT_EQ(contentOf(read, "F" + std::to_string(size)), pattern(size, static_cast<unsigned>(size)));
    EXPECT_EQ(read.freeBytes(), diskBytes - (1 + 1 + 1 + 2 + 98) * clusterBytes);
    EXPECT_TRUE(read.faults().empty());
}

TEST(DiskImage, AnEmptyFileHasNoCluster) {
    DiskImage image;
    add(image, "EMPTY", {});
    EXPECT_EQ(image.find(name("EMPTY"))->firstCluster, 0U);
    EXPECT_EQ(image.freeBytes(), diskBytes);
}

TEST(DiskImage, TheTimeIsKept) {
    DiskImage image;
    add(image, "A", {1});
    EXPECT_EQ(image.list()[0].written, (FatTime{0x5821, 0x6000}));
    EXPECT_EQ(textOf(image.list()[0].written), "2024-01-01 12:00:00");
}

TEST(DiskImage, ReplacingKeepsThePlaceInTheDirectory) {
    DiskImage image;
    for (const char* const text : {"A", "B", "C"})
        add(image, text, pattern(5000, 1));
    for (const std::size_t size : {9000U, 100U, 0U, 5000U}) {
        add(image, "B", pattern(size, 2));
        EXPECT_EQ(contentOf(image, "B"), pattern(size, 2));
        EXPECT_EQ(image.find(name("B"))->slot, 1U);
        EXPECT_EQ(contentOf(image, "A"), pattern(5000, 1));
        EXPECT_EQ(contentOf(image, "C"), pattern(5000, 1));
        EXPECT_EQ(image.freeBytes(), diskBytes - (10 + (size + 1023) / 1024) * clusterBytes);
        EXPECT_TRUE(image.faults().empty());
    }
}

TEST(DiskImage, AFileMayFillTheDiskExactly) {
    DiskImage image;
    add(image, "ALL", pattern(diskBytes, 3));
    EXPECT_EQ(image.freeBytes(), 0U);
    EXPECT_EQ(contentOf(DiskImage(image.bytes()), "ALL"), pattern(diskBytes, 3));
    add(image, "EMPTY", {}); // needs no room
    const Bytes before = image.bytes();
    EXPECT_THROW(add(image, "MORE", {1}), DiskError);
    EXPECT_EQ(image.bytes(), before);
    add(image, "ALL", pattern(diskBytes, 4)); // the room of the old one counts
    EXPECT_EQ(contentOf(image, "ALL"), pattern(diskBytes, 4));
}

TEST(DiskImage, AFullDiskIsLeftWhole) {
    DiskImage image;
    add(image, "A", pattern(10'000, 1));
    const Bytes before = image.bytes();
    try {
        image.add({file("A", pattern(20'000, 2)), file("B", pattern(diskBytes - 20 * clusterBytes + 1, 3))});
        FAIL() << "that is one cluster more than there is";
    } catch (const DiskError& error) {
        EXPECT_STREQ(error.what(), "the disk is full: 1024 bytes more would be needed");
    }
    EXPECT_EQ(image.bytes(), before);
    image.add({file("A", pattern(20'000, 2)), file("B", pattern(diskBytes - 20 * clusterBytes, 3))});
    EXPECT_EQ(image.freeBytes(), 0U);
}

TEST(DiskImage, TheDirectoryTakes112Files) {
    DiskImage image;
    std::vector<NewFile> files;
    for (unsigned i = 0; i < 112; ++i)
        files.push_back(file("F" + std::to_string(i), pattern(i, i)));
    image.add(files);
    const Bytes before = image.bytes();
    EXPECT_THROW(add(image, "ONEMORE", {}), DiskError);
    EXPECT_EQ(image.bytes(), before);
    add(image, "F7", pattern(3000, 7)); // has its entry
    image.remove({*image.find(name("F111"))});
    add(image, "ONEMORE", {9});
    const DiskImage read(image.bytes());
    EXPECT_EQ(read.list().size(), 112U);
    EXPECT_EQ(contentOf(read, "ONEMORE"), Bytes{9});
    EXPECT_EQ(contentOf(read, "F110"), pattern(110, 110));
}

TEST(DiskImage, DeletingGivesTheRoomBack) {
    DiskImage image;
    add(image, "A", pattern(5000, 1));
    add(image, "B", pattern(5000, 2));
    image.remove({*image.find(name("A"))});
    EXPECT_FALSE(image.find(name("A")));
    EXPECT_EQ(contentOf(image, "B"), pattern(5000, 2));
    EXPECT_EQ(image.freeBytes(), diskBytes - 5 * clusterBytes);
    add(image, "C", pattern(9000, 3)); // around B
    EXPECT_EQ(contentOf(image, "C"), pattern(9000, 3));
    EXPECT_EQ(contentOf(image, "B"), pattern(5000, 2));
    EXPECT_EQ(image.find(name("C"))->slot, 0U);
}

TEST(DiskImage, BothAllocationTablesAreTheSame) {
    DiskImage image;
    add(image, "A", pattern(50'000, 1));
    const auto at = [&](std::size_t offset) {
        return image.bytes().begin() + static_cast<std::ptrdiff_t>(offset);
    };
    EXPECT_TRUE(std::equal(at(firstFat), at(secondFat), at(secondFat)));
}

TEST(DiskImage, ANameThatStandsTwiceIsDamage) {
    DiskImage image;
    add(image, "A", {1});
    add(image, "B", {2});
    DiskImage damaged = changed(image, rootDirectory + 32, {'A'}); // B becomes A too
    EXPECT_EQ(damaged.faults(), std::vector<std::string>{"A stands in the directory twice"});
    const Bytes before = damaged.bytes();
    EXPECT_THROW(add(damaged, "A", {3}), DiskError); // which of them would it replace?
    EXPECT_EQ(damaged.bytes(), before);
    EXPECT_EQ(contentOf(damaged, "A"), Bytes{1}) << "the first is what MSX-DOS sees";
}

TEST(DiskImage, ABrokenChainIsNamedAndNothingIsChanged) {
    DiskImage image;
    add(image, "A", pattern(3000, 1)); // clusters 2, 3, 4
    add(image, "B", pattern(1000, 2)); // cluster 5
    const struct {
        std::size_t offset;
        Bytes bytes;
        const char* fault;
    } cases[] = {
        {firstFat + 3, {0x02, 0x40, 0x00}, "A runs into itself or another file"},             // 2 -> 2
        {firstFat + 6, {0x02, 0xF0, 0xFF}, "A runs into itself or another file"},             // 4 -> 2
        {firstFat + 3, {0x03, 0x50, 0x00}, "B runs into itself or another file"},             // 3 -> 5
        {firstFat + 3, {0x03, 0xF0, 0xFF}, "A is shorter than the directory says"},           // 3 ends
        {firstFat + 3, {0x00, 0x40, 0x00}, "A leads to a place that the disk does not have"}, // 2 -> 0
        {firstFat + 3, {0xCB, 0x42, 0x00}, "A leads to a place that the disk does not have"}, // 2 -> 715
        {firstFat + 3, {0xF7, 0x4F, 0x00}, "A leads to a place that the disk does not have"}, // bad cluster
        {rootDirectory + 26, {0x00, 0x00}, "A is shorter than the directory says"},           // no cluster
        {rootDirectory + 26, {0xFF, 0xFF}, "A leads to a place that the disk does not have"},
        {rootDirectory + 28, {0xFF, 0xFF, 0xFF, 0xFF}, "A is shorter than the directory says"},
    };
    for (const auto& damage : cases) {
        DiskImage damaged = changed(image, damage.offset, damage.bytes);
        const auto faults = damaged.faults();
        ASSERT_FALSE(faults.empty()) << damage.fault;
        EXPECT_EQ(faults.front(), damage.fault);
        const Bytes before = damaged.bytes();
        EXPECT_THROW(add(damaged, "C", {1}), DiskError);
        EXPECT_THROW(damaged.remove({*damaged.find(name("B"))}), DiskError);
        EXPECT_EQ(damaged.bytes(), before);
        EXPECT_EQ(contentOf(damaged, "B"), pattern(1000, 2)) << "what is whole can be taken off";
        if (damage.fault[0] == 'A') {
            EXPECT_THROW(contentOf(damaged, "A"), DiskError);
        }
    }
}

TEST(DiskImage, WhatIsNoDiskIsRefused) {
    const Bytes good = DiskImage().bytes();
    EXPECT_THROW(DiskImage(Bytes{}), DiskError);
    EXPECT_THROW(DiskImage(Bytes(1023)), DiskError);
    EXPECT_THROW(DiskImage(Bytes(737280)), DiskError);
    EXPECT_THROW(DiskImage(Bytes(good.begin(), good.end() - 1)), DiskError);
    for (const std::size_t offset : {0x0DU, 0x0EU, 0x10U, 0x11U, 0x13U, 0x16U}) { // each field as 0
        Bytes bytes = good;
        bytes.push_back(0); // so that the size does not tell the format
        bytes[offset] = 0;
        bytes[offset + 1] = 0;
        EXPECT_THROW(DiskImage{bytes}, DiskError) << offset;
    }
}

TEST(DiskImage, ADiskWithoutParametersIsKnownByItsMediaByte) {
    DiskImage image;
    add(image, "A", pattern(5000, 1));
    Bytes bytes = image.bytes();
    std::fill_n(bytes.begin(), 512, std::uint8_t{0});
    EXPECT_EQ(contentOf(DiskImage(bytes), "A"), pattern(5000, 1));
    bytes[firstFat] = 0xF0;
    EXPECT_THROW(DiskImage{bytes}, DiskError);
    Bytes single(368640);
    single[firstFat] = 0xF8;
    single[firstFat + 1] = single[firstFat + 2] = 0xFF;
    DiskImage smaller(single);
    EXPECT_EQ(smaller.freeBytes(), 354U * clusterBytes);
    add(smaller, "A", pattern(354 * clusterBytes, 1));
    EXPECT_EQ(contentOf(smaller, "A"), pattern(354 * clusterBytes, 1));
}

TEST(DiskImage, FoldersVolumeNamesAndLongNamesAreLeftAlone) {
    DiskImage image;
    add(image, "FOLDER", pattern(1000, 1));
    add(image, "VOLUME", {});
    add(image, "LONG", {});
    add(image, "FILE", pattern(10, 2));
    Bytes bytes = image.bytes();
    bytes[rootDirectory + 11] = 0x10;
    bytes[rootDirectory + 32 + 11] = 0x08;
    bytes[rootDirectory + 64 + 11] = 0x0F;
    DiskImage read(bytes);
    ASSERT_EQ(read.list().size(), 2U);
    const FileEntry folder = read.list()[0];
    EXPECT_TRUE(folder.isFolder);
    EXPECT_THROW(read.extract(folder), DiskError);
    EXPECT_THROW(read.remove({folder}), DiskError);
    EXPECT_THROW(add(read, "FOLDER", {1}), DiskError);
    EXPECT_EQ(read.bytes(), bytes);
    read.remove({*read.find(name("FILE"))});
    EXPECT_EQ(read.bytes()[rootDirectory + 64], 0xE5) << "a long name goes with its file";
    EXPECT_EQ(read.bytes()[rootDirectory + 32], 'V');
}

TEST(DiskImage, WhatLiesBehindTheEndOfTheDirectoryStaysUnseen) {
    DiskImage image;
    add(image, "A", {1});
    Bytes bytes = image.bytes();
    std::fill_n(bytes.begin() + rootDirectory + 64, 64, std::uint8_t{'X'});
    DiskImage read(bytes);
    EXPECT_EQ(read.list().size(), 1U);
    add(read, "B", {2});
    EXPECT_EQ(read.list().size(), 2U);
}

TEST(DiskImage, ALongNameInTheFirstSlotGoesWithItsFile) {
    DiskImage image;
    for (const char* const text : {"LONG", "FILE", "NEXT"})
        add(image, text, {});
    Bytes bytes = image.bytes();
    bytes[rootDirectory + 11] = 0x0F;
    DiskImage read(bytes);
    read.remove({*read.find(name("FILE"))});
    const Bytes after = read.bytes();
    ASSERT_GT(after.size(), rootDirectory + 32);
    EXPECT_EQ(after[rootDirectory], 0xE5);
    EXPECT_EQ(after[rootDirectory + 32], 0xE5);
    EXPECT_TRUE(read.find(name("NEXT")));
    read.remove({*read.find(name("NEXT"))});
    EXPECT_TRUE(read.list().empty());
    add(read, "NEW", {1});
    EXPECT_EQ(read.find(name("NEW"))->slot, 0U);
}

/// An empty disk of so many clusters of one sector.
Bytes smallDisk(unsigned clusters, unsigned sectorsPerFat) {
    Geometry geometry;
    geometry.fatCount = 1;
    geometry.sectorsPerFat = sectorsPerFat;
    geometry.rootEntries = 16;
    geometry.sectorsPerCluster = 1;
    geometry.totalSectors = 1 + sectorsPerFat + 1 + clusters;
    Bytes bytes(geometry.totalSectors * sectorBytes);
    writeBootSector(bytes, geometry);
    return bytes;
}

TEST(DiskImage, ADiskHas4084ClustersAtMost) {
    DiskImage image(smallDisk(4084, 12));
    EXPECT_EQ(image.freeBytes(), 4084U * 512);
    add(image, "ALL", pattern(std::size_t{4084} * 512, 1));
    EXPECT_EQ(contentOf(DiskImage(image.bytes()), "ALL"), pattern(std::size_t{4084} * 512, 1));
    EXPECT_THROW(DiskImage(smallDisk(4085, 12)), DiskError) << "its table would have entries of 16 bits";
}

TEST(DiskImage, TheAllocationTableHoldsEveryCluster) {
    for (const unsigned sectors : {1U, 2U}) {
        // An entry takes one and a half bytes, and the first two stand for no cluster.
        const unsigned clusters = sectors * 512 * 2 / 3 - 2;
        DiskImage image(smallDisk(clusters, sectors));
        add(image, "ALL", pattern(std::size_t{clusters} * 512, 1));
        EXPECT_EQ(image.freeBytes(), 0U);
        EXPECT_TRUE(image.list().size() == 1 && image.faults().empty())
            << "the directory begins after the table";
        EXPECT_EQ(contentOf(DiskImage(image.bytes()), "ALL"), pattern(std::size_t{clusters} * 512, 1));
        EXPECT_THROW(DiskImage(smallDisk(clusters + 1, sectors)), DiskError) << sectors;
    }
}

TEST(DiskImage, WhatADeletedFileHeldIsNotInTheRestOfANewOnesCluster) {
    DiskImage image;
    add(image, "OLD", Bytes(3 * clusterBytes, 0xAA));
    image.remove({*image.find(name("OLD"))});
    add(image, "NEW", Bytes(clusterBytes + 100, 0x55));
    const auto at = [&](std::size_t offset) {
        return image.bytes()[image.geometry().clusterOffset(image.find(name("NEW"))->firstCluster) + offset];
    };
    EXPECT_EQ(at(clusterBytes + 99), 0x55);
    for (std::size_t offset = clusterBytes + 100; offset < 2 * clusterBytes; ++offset)
        ASSERT_EQ(at(offset), 0) << offset;
}

TEST(DiskImage, AHiddenFileThatIsReplacedIsSeen) {
    DiskImage image;
    add(image, "A", {1});
    DiskImage hidden = changed(image, rootDirectory + 11, {0x07});
    add(hidden, "A", {2});
    EXPECT_EQ(hidden.bytes()[rootDirectory + 11], 0);
    EXPECT_EQ(contentOf(hidden, "A"), Bytes{2});
}

TEST(DiskImage, ANameThatBeginsWithTheMarkOfDeletedFilesIsKept) {
    DiskImage image;
    Name83 odd = name("XA");
    odd[0] = static_cast<char>(0xE5);
    image.add({{odd, {7}, {}}});
    EXPECT_EQ(image.bytes()[rootDirectory], 0x05);
    ASSERT_TRUE(DiskImage(image.bytes()).find(odd));
    EXPECT_EQ(image.extract(*image.find(odd)), Bytes{7});
}

TEST(FatTime, LosesOnlyTheOddSecond) {
    const std::time_t time = 1'700'000'001;
    const auto back = hostTimeOf(fatTimeOf(time));
    ASSERT_TRUE(back);
    EXPECT_EQ(*back, 1'700'000'000);
}

TEST(FatTime, TimesThatADirectoryCannotHold) {
    EXPECT_EQ(textOf(fatTimeOf(0)), "1980-01-01 00:00:00");
    if constexpr (sizeof(std::time_t) > 4) { // where the host's clock itself does not end in 2038
        EXPECT_EQ(textOf(fatTimeOf(static_cast<std::time_t>(5'000'000'000))), "2107-12-31 23:59:58");
    }
    EXPECT_FALSE(hostTimeOf({0, 0}));
    EXPECT_FALSE(hostTimeOf({0xFFFF, 0xFFFF}));
    EXPECT_FALSE(hostTimeOf({44 << 9 | 2 << 5 | 30, 0})) << "February 30th";
}

} // namespace
} // namespace disk
