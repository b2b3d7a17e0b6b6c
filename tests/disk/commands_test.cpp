#include "disk/commands.h"

#include "disk/host_files.h"
#include "files/host_files.h"
#include "tests/disk/support.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

namespace disk {
namespace {

namespace fs = std::filesystem;
using test::pattern;

struct Commands : testing::Test {
    fs::path folder;
    Report report;

    Commands() {
        int number = 0;
        do
            folder = fs::temp_directory_path() / ("dsktool-test-" + std::to_string(++number));
        while (!fs::create_directory(folder));
    }
    ~Commands() override {
        std::error_code ignored;
        fs::remove_all(folder, ignored);
    }
    Commands(const Commands&) = delete;
    Commands& operator=(const Commands&) = delete;

    std::string path(const std::string& name) const { return textOf(folder / name); }
    void write(const std::string& name, const Bytes& content) const {
        fs::create_directories((folder / name).parent_path());
        std::ofstream file(folder / name, std::ios::binary);
        file.write(reinterpret_cast<const char*>(content.data()),
                   static_cast<std::streamsize>(content.size()));
    }
    Bytes read(const std::string& name) const {
        const std::string bytes = files::readWholeFile(folder / name);
        return {bytes.begin(), bytes.end()};
    }
    ExitCode tool(const std::vector<std::string>& arguments) {
        report = {};
        return run(arguments, report);
    }
    std::vector<std::string> onDisk() const {
        std::vector<std::string> names;
        const DiskImage image(read("d.dsk"));
        for (const FileEntry& file : image.list())
            names.push_back(msxrun::nameForHost(file.name));
        return names;
    }
    using Names = std::vector<std::string>;
};

TEST_F(Commands, AMissingImageIsMade) {
    write("a.pas", pattern(3000, 1));
    ASSERT_EQ(tool({"A", path("d.dsk"), path("a.pas")}), done) << report.errors;
    EXPECT_EQ(read("d.dsk").size(), 737280U);
    EXPECT_EQ(test::contentOf(DiskImage(read("d.dsk")), "A.PAS"), pattern(3000, 1));
    EXPECT_EQ(report.output + report.errors, "");
}

TEST_F(Commands, FilesAreAddedAndReplaced) {
    write("a.pas", pattern(3000, 1));
    write("b.pas", pattern(100, 2));
    ASSERT_EQ(tool({"A", path("d.dsk"), path("a.pas"), path("b.pas")}), done);
    write("a.pas", pattern(9000, 3));
    write("c.pas", {});
    ASSERT_EQ(tool({"A", path("d.dsk"), path("c.pas"), path("a.pas")}), done);
    EXPECT_EQ(onDisk(), (Names{"A.PAS", "B.PAS", "C.PAS"}));
    EXPECT_EQ(test::contentOf(DiskImage(read("d.dsk")), "A.PAS"), pattern(9000, 3));
}

TEST_F(Commands, AllFilesOfAFolderWithoutFoldersAndTheImage) {
    write("p/A.PAS", {1});
    write("p/NOTYPE", {2});
    write("p/sub/B.PAS", {3});
    ASSERT_EQ(tool({"A", path("p/d.dsk"), path("p/*.*")}), done) << report.errors;
    ASSERT_EQ(tool({"A", path("p/d.dsk"), path("p/*.*")}), done) << report.errors; // now the image lies there
    fs::rename(folder / "p/d.dsk", folder / "d.dsk");
    EXPECT_EQ(onDisk(), (Names{"A.PAS", "NOTYPE"}));
}

TEST_F(Commands, DatesGoBothWays) {
    write("a", {1});
    const std::time_t then = 1'500'000'000;
    files::writeWholeFile(folder / "a", "x", {.time = then});
    ASSERT_EQ(tool({"A", path("d.dsk"), path("a")}), done);
    ASSERT_EQ(tool({"E", path("d.dsk"), "-o", path("out")}), done);
    EXPECT_EQ(files::timeOf(folder / "out" / "A"), then);
}

TEST_F(Commands, WhatAPatternFindsAndTheDiskCannotHoldIsLeftOutAndTold) {
    write("p/GOOD.PAS", {1});
    write("p/GOOD.PAS~", {2});
    write("p/.hidden", {3});
    write("p/with blank", {4});
    write("p/longname1.x", {5});
    write("p/longname2.x", {6});
    EXPECT_EQ(tool({"A", path("d.dsk"), path("p/*")}), doneInPart);
    EXPECT_EQ(onDisk(), (Names{"GOOD.PAS", "LONGNAME.X"}));
    EXPECT_EQ(test::contentOf(DiskImage(read("d.dsk")), "GOOD.PAS"), Bytes{1}) << "a whole name goes first";
    EXPECT_EQ(test::contentOf(DiskImage(read("d.dsk")), "LONGNAME.X"), Bytes{5});
    for (const char* const part :
         {"longname2.x: would be LONGNAME.X on the disk, as ", "longname1.x is (left out)\n"})
        EXPECT_NE(report.errors.find(part), std::string::npos) << report.errors;
    EXPECT_NE(report.errors.find("with blank: not a name for an MSX disk: it holds a blank (left out)\n"),
              std::string::npos);
    EXPECT_NE(report.output.find("longname1.x becomes LONGNAME.X\n"), std::string::npos);
}

TEST_F(Commands, WhatWasNamedAndTheDiskCannotHoldIsAnError) {
    write("a.pas", {1});
    write("longname1.x", {5});
    write("longname2.x", {6});
    write(".hidden", {3});
    EXPECT_EQ(tool({"A", path("d.dsk"), path("a.pas"), path(".hidden")}), failed);
    EXPECT_EQ(tool({"A", path("d.dsk"), path("longname1.x"), path("longname2.x")}), failed);
    EXPECT_NE(report.errors.find("longname2.x: would be LONGNAME.X on the disk"), std::string::npos);
    EXPECT_FALSE(fs::exists(folder / "d.dsk"));
}

TEST_F(Commands, OneFileNamedTwiceIsOneFile) {
    write("a.pas", {1});
    EXPECT_EQ(tool({"A", path("d.dsk"), path("a.pas"), path("*.pas"), path("a.pas")}), done) << report.errors;
    EXPECT_EQ(onDisk(), Names{"A.PAS"});
}

TEST_F(Commands, WhatIsNotThereIsAnErrorAndMakesNoImage) {
    fs::create_directory(folder / "sub");
    for (const char* const name : {"missing", "*.xyz", "no/*.*", "sub"})
        EXPECT_EQ(tool({"A", path("d.dsk"), path(name)}), failed) << name;
    EXPECT_FALSE(fs::exists(folder / "d.dsk"));
    EXPECT_EQ(tool({"L", path("d.dsk")}), failed);
    EXPECT_EQ(tool({"E", path("d.dsk")}), failed);
    EXPECT_EQ(tool({"D", path("d.dsk"), "X"}), failed);
    EXPECT_EQ(tool({"A", path("sub"), path("*")}), failed);
}

TEST_F(Commands, AFullDiskOrDirectoryLeavesTheImageWhole) {
    write("a.pas", {1});
    write("big", pattern(730112, 1));
    ASSERT_EQ(tool({"A", path("d.dsk"), path("a.pas")}), done);
    const Bytes before = read("d.dsk");
    EXPECT_EQ(tool({"A", path("d.dsk"), path("big")}), failed);
    EXPECT_NE(report.errors.find("the disk is full"), std::string::npos);
    EXPECT_EQ(tool({"A", path("d.dsk"), path("bi*")}), failed) << "not even the one that a pattern finds";
    std::vector<std::string> all = {"A", path("d.dsk")};
    for (int i = 0; i < 112; ++i) {
        write("many/" + std::to_string(i), {1});
        all.push_back(path("many/" + std::to_string(i)));
    }
    EXPECT_EQ(tool(all), failed);
    EXPECT_NE(report.errors.find("directory of the disk is full"), std::string::npos);
    EXPECT_EQ(read("d.dsk"), before);
    EXPECT_FALSE(fs::exists(folder / "d.dsk.txt"));
}

TEST_F(Commands, OfAFolderThatIsTooMuchForADiskTheRestIsNamedBesideTheImage) {
    write("p/GAME.COM", pattern(20'000, 1));
    for (int i = 0; i < 112; ++i)
        write("p/F" + std::to_string(i) + ".DAT", {1});
    write("p/with blank", {4});
    EXPECT_EQ(tool({"A", path("disks/new/d.dsk"), path("p/*.*")}), doneInPart)
        << "the image's folder is made";
    const DiskImage image(read("disks/new/d.dsk"));
    EXPECT_EQ(image.list().size(), 112U);
    EXPECT_EQ(test::contentOf(image, "GAME.COM"), pattern(20'000, 1));
    const Bytes bytes = read("disks/new/d.dsk.txt");
    const std::string text(bytes.begin(), bytes.end());
    EXPECT_EQ(text.find("Not on this disk image:\r\n"), 0U) << text;
    EXPECT_NE(text.find("with blank: not a name for an MSX disk: it holds a blank\r\n"), std::string::npos)
        << text;
    EXPECT_NE(text.find(".DAT: the directory of the disk is full"), std::string::npos) << text;
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 3);

    fs::remove(folder / "disks/new/d.dsk");
    ASSERT_EQ(tool({"A", path("disks/new/d.dsk"), path("p/GAME.COM")}), done) << report.errors;
    EXPECT_FALSE(fs::exists(folder / "disks/new/d.dsk.txt")) << "it spoke of an earlier image";
    write("disks/new/d.dsk.txt", {'m', 'i', 'n', 'e'});
    ASSERT_EQ(tool({"A", path("disks/new/d.dsk"), path("p/GAME.COM")}), done);
    EXPECT_EQ(read("disks/new/d.dsk.txt"), (Bytes{'m', 'i', 'n', 'e'})) << "a text of somebody else's stays";
}

#ifndef _WIN32
TEST_F(Commands, WhatAPatternFindsAndCannotBeReadIsLeftOut) {
    write("p/GAME.COM", {1});
    fs::create_symlink("nowhere", folder / "p/LOST.DAT");
    EXPECT_EQ(tool({"A", path("d.dsk"), path("p/*.*")}), doneInPart);
    EXPECT_EQ(onDisk(), Names{"GAME.COM"});
    EXPECT_TRUE(fs::exists(folder / "d.dsk.txt"));
}
#endif

TEST_F(Commands, ExtractsWhatWasAskedFor) {
    for (const char* const name : {"a.pas", "b.pas", "c.inc"})
        write(name, pattern(2000, static_cast<unsigned>(name[0])));
    ASSERT_EQ(tool({"A", path("d.dsk"), path("*.pas"), path("*.inc")}), done);
    ASSERT_EQ(tool({"E", path("d.dsk"), "*.PAS", "a.pas", "-o", path("o/p")}), done) << report.errors;
    EXPECT_EQ(read("o/p/A.PAS"), pattern(2000, 'a'));
    EXPECT_EQ(read("o/p/B.PAS"), pattern(2000, 'b'));
    EXPECT_FALSE(fs::exists(folder / "o/p/C.INC"));
    EXPECT_EQ(tool({"E", path("d.dsk"), "none", "-o", path("o")}), failed);
    ASSERT_EQ(tool({"E", path("d.dsk"), "-o", path("o/p")}), done);
    EXPECT_EQ(read("o/p/C.INC"), pattern(2000, 'c'));
}

TEST_F(Commands, DeletesAllOrNothing) {
    for (const char* const name : {"a.pas", "b.pas", "c.inc"})
        write(name, {1});
    ASSERT_EQ(tool({"A", path("d.dsk"), path("*.pas"), path("*.inc")}), done);
    EXPECT_EQ(tool({"D", path("d.dsk"), "A.PAS", "NONE"}), failed);
    EXPECT_EQ(onDisk().size(), 3U);
    EXPECT_EQ(tool({"D", path("d.dsk"), "*.pas", "a.pas"}), done) << report.errors;
    EXPECT_EQ(onDisk(), Names{"C.INC"});
    EXPECT_EQ(tool({"D", path("d.dsk"), "*.*"}), done);
    EXPECT_EQ(onDisk(), Names{});
}

TEST_F(Commands, ListsNameSizeAndTime) {
    DiskImage image;
    image.add({test::file("A.PAS", pattern(1234, 1)), test::file("LONGNAME.EXT", {})});
    write("d.dsk", image.bytes());
    EXPECT_EQ(tool({"L", path("d.dsk")}), done);
    EXPECT_EQ(report.output, "A.PAS              1234  2024-01-01 12:00:00\n"
                             "LONGNAME.EXT          0  2024-01-01 12:00:00\n"
                             "2 files, 728064 bytes free\n");
}

TEST_F(Commands, OfADamagedDiskTheSoundFilesAreTakenOff) {
    DiskImage image;
    image.add({test::file("A", pattern(3000, 1)), test::file("B", pattern(100, 2))});
    Bytes bytes = image.bytes();
    bytes[512 + 3] = 0x02; // the second cluster is the first again
    bytes[512 + 4] = 0x40;
    write("d.dsk", bytes);
    EXPECT_EQ(tool({"L", path("d.dsk")}), doneInPart);
    EXPECT_EQ(tool({"E", path("d.dsk"), "-o", path("o")}), doneInPart);
    EXPECT_EQ(report.errors, "dsktool: A runs into itself or another file (left out)\n");
    EXPECT_EQ(read("o/B"), pattern(100, 2));
    EXPECT_FALSE(fs::exists(folder / "o/A"));
    EXPECT_EQ(tool({"A", path("d.dsk"), path("o/B")}), failed);
    EXPECT_EQ(tool({"D", path("d.dsk"), "B"}), failed);
    EXPECT_EQ(read("d.dsk"), bytes);
}

TEST_F(Commands, PathsWithBlanksMayComeInSeveralWords) {
    write("my progs/x/A.PAS", {1});
    fs::create_directory(folder / "my dsk");
    const std::string image = path("my dsk/d.dsk");
    const std::string files = path("my progs/x/*.*");
    const auto split = [](const std::string& text) {
        const std::size_t blank = text.find(' ');
        return std::pair(text.substr(0, blank), text.substr(blank + 1));
    };
    EXPECT_EQ(tool({"A", split(image).first, split(image).second, split(files).first, split(files).second}),
              done)
        << report.errors;
    fs::rename(folder / "my dsk/d.dsk", folder / "d.dsk");
    EXPECT_EQ(onDisk(), Names{"A.PAS"});
}

TEST_F(Commands, AWriteProtectedImageIsNotReplaced) {
    write("a.pas", {1});
    ASSERT_EQ(tool({"A", path("d.dsk"), path("a.pas")}), done);
    fs::permissions(folder / "d.dsk",
                    fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write,
                    fs::perm_options::remove);
    EXPECT_EQ(tool({"D", path("d.dsk"), "A.PAS"}), failed);
    EXPECT_EQ(onDisk(), Names{"A.PAS"});
    fs::permissions(folder / "d.dsk", fs::perms::owner_write, fs::perm_options::add);
}

TEST_F(Commands, HelpIsPrinted) {
    EXPECT_EQ(tool({"--help"}), done);
    EXPECT_NE(report.output.find("dsktool A IMAGE FILES..."), std::string::npos);
    EXPECT_EQ(tool({}), wrongUse);
}

} // namespace
} // namespace disk
