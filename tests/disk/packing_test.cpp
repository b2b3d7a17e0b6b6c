#include "disk/packing.h"

#include "disk/msx_name.h"
#include "tests/disk/support.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace disk {
namespace {

using Names = std::vector<std::string>;

PackedFile fileOf(const std::string& name, std::size_t size, std::time_t written = 1) {
    return {{*msxNameOf(name).name, test::pattern(size, 1), {}}, "C:\\P\\" + name, false, written};
}

Names onDisk(const DiskImage& image) {
    Names names;
    for (const FileEntry& file : image.list())
        names.push_back(displayName(file.name));
    std::sort(names.begin(), names.end());
    return names;
}

Names pathsOf(const std::vector<LeftOut>& leftOut) {
    Names paths;
    for (const LeftOut& file : leftOut)
        paths.push_back(file.path);
    std::sort(paths.begin(), paths.end());
    return paths;
}

constexpr std::size_t roomOfADisk = 713 * 1024;

TEST(Packing, TheProgramAndWhatItNeedsToStartComeFirst) {
    DiskImage image;
    const std::vector<LeftOut> leftOut = addWhatFits(
        image, {fileOf("A.PAS", 100), fileOf("AUTOEXEC.BAT", 1024), fileOf("BIG.DAT", roomOfADisk - 9 * 1024),
                fileOf("COMMAND.COM", 2048, 9), fileOf("GAME.COM", 4096, 5), fileOf("MSXDOS.SYS", 1024),
                fileOf("OLD.COM", 2048, 4)});
    EXPECT_EQ(onDisk(image),
              (Names{"A.PAS", "AUTOEXEC.BAT", "COMMAND.COM", "GAME.COM", "MSXDOS.SYS", "OLD.COM"}));
    EXPECT_EQ(pathsOf(leftOut), Names{"C:\\P\\BIG.DAT"});
    EXPECT_NE(leftOut[0].reason.find("the disk is full"), std::string::npos);
}

TEST(Packing, TheNewestProgramGoesBeforeOthersHoweverLarge) {
    DiskImage image;
    addWhatFits(image,
                {fileOf("A.COM", 1024, 1), fileOf("GAME.COM", roomOfADisk, 2), fileOf("Z.COM", 1024, 1)});
    EXPECT_EQ(onDisk(image), Names{"GAME.COM"});
}

TEST(Packing, DataComesBeforeSourcesAndSmallFilesBeforeLarge) {
    DiskImage image;
    const std::vector<LeftOut> leftOut =
        addWhatFits(image, {fileOf("A.PAS", 1024), fileOf("B.DAT", roomOfADisk - 3072), fileOf("C.DAT", 2048),
                            fileOf("D.INC", 1024), fileOf("E.LIB", 2048)});
    EXPECT_EQ(onDisk(image), (Names{"A.PAS", "B.DAT", "C.DAT"}));
    EXPECT_EQ(pathsOf(leftOut), (Names{"C:\\P\\D.INC", "C:\\P\\E.LIB"}));
}

TEST(Packing, ADirectoryOfProgramsAndDataTakesItsHundredAndTwelve) {
    std::vector<PackedFile> files = {fileOf("GAME.COM", 5000, 2)};
    for (int i = 0; i < 150; ++i)
        files.push_back(fileOf("F" + std::to_string(i) + (i % 2 == 0 ? ".PAS" : ".DAT"), 1));
    DiskImage image;
    EXPECT_EQ(addWhatFits(image, files).size(), 39U);
    const Names names = onDisk(image);
    EXPECT_EQ(names.size(), 112U);
    EXPECT_TRUE(std::count(names.begin(), names.end(), "GAME.COM"));
    EXPECT_TRUE(std::count(names.begin(), names.end(), "F149.DAT")) << "data before sources";
}

TEST(Packing, WhatWasNamedIsThereOrNothingIsChanged) {
    DiskImage image;
    PackedFile named = fileOf("BIG.PAS", roomOfADisk);
    named.named = true;
    EXPECT_EQ(pathsOf(addWhatFits(image, {fileOf("GAME.COM", 1), named})), Names{"C:\\P\\GAME.COM"});
    EXPECT_EQ(onDisk(image), Names{"BIG.PAS"});
    PackedFile second = fileOf("TWO.PAS", 1);
    second.named = true;
    EXPECT_THROW(addWhatFits(image, {second}), DiskError);
    EXPECT_THROW(addWhatFits(image, {fileOf("NO.DAT", 1)}), DiskError) << "nothing fits";
    EXPECT_EQ(onDisk(image), Names{"BIG.PAS"});
}

} // namespace
} // namespace disk
