#include "tests/support/temporary_folder.h"
#include "util/files.h"
#include "util/runtime_error.h"

#include <array>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>

#ifdef _WIN32
#include <windows.h>
#endif

namespace tavrel {
namespace {

RuntimeErrorNumber numberOf(const std::function<void()>& operation) {
    try {
        operation();
    } catch (const RuntimeError& error) {
        return error.number();
    }
    return RuntimeErrorNumber::overflow; // stands for "nothing was thrown": no file operation gives it
}

TEST(Files, AFolderOrAnEmptyPathCountsAsMissing) {
    const test::TemporaryFolder folder;
    folder.write("a.txt", "x");
    EXPECT_TRUE(FileExists(folder.path() + "a.txt"));
    EXPECT_FALSE(FileExists(folder.path() + "b.txt"));
    EXPECT_FALSE(FileExists(folder.path()));
    EXPECT_FALSE(FileExists(folder.path().substr(0, folder.path().size() - 1)));
    EXPECT_FALSE(FileExists(""));
}

TEST(Files, BytesComeBackAsTheyWere) {
    const test::TemporaryFolder folder;
    std::string bytes;
    for (int i = 0; i < 200'000; ++i)
        bytes += static_cast<char>(i % 256);
    folder.write("a.bin", bytes);
    EXPECT_EQ(folder.read("a.bin"), bytes);
    folder.write("a.bin", "short");
    EXPECT_EQ(folder.read("a.bin"), "short");
    EXPECT_EQ(listFolder(folder.path(), "*.*").size(), 1U) << "no helper file may stay behind";
}

TEST(Files, ErrorsTellAMissingFileFromAMissingFolder) {
    const test::TemporaryFolder folder;
    EXPECT_EQ(numberOf([&] { readWholeFile(folder.path() + "no.txt"); }), RuntimeErrorNumber::fileNotFound);
    EXPECT_EQ(numberOf([&] { readWholeFile(folder.path() + "no\\no.txt"); }),
              RuntimeErrorNumber::pathNotFound);
    EXPECT_EQ(numberOf([&] { writeWholeFile(folder.path() + "no\\no.txt", "x"); }),
              RuntimeErrorNumber::pathNotFound);
    EXPECT_EQ(numberOf([&] { deleteFile(folder.path() + "no.txt"); }), RuntimeErrorNumber::fileNotFound);
}

TEST(Files, CopyNamesTheFileThatFailed) {
    const test::TemporaryFolder folder;
    try {
        copyFile(folder.path() + "no.txt", folder.path() + "b.txt");
        FAIL();
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.detail(), folder.path() + "no.txt");
    }
    EXPECT_FALSE(folder.has("b.txt"));
}

TEST(Files, AReadOnlyTargetIsNotReplaced) {
    const test::TemporaryFolder folder;
    folder.write("a.txt", "old");
    std::filesystem::permissions(folder.native() / "a.txt", std::filesystem::perms::owner_read);
    EXPECT_EQ(numberOf([&] { writeWholeFile(folder.path() + "a.txt", "new"); }),
              RuntimeErrorNumber::pathFileAccessError);
    std::filesystem::permissions(folder.native() / "a.txt", std::filesystem::perms::owner_all);
    EXPECT_EQ(folder.read("a.txt"), "old");
}

TEST(Files, AFullDiskIsReported) {
#ifdef _WIN32
    const std::string full = "Z:\\dev\\full"; // there is one only where Wine shows a Unix file system
    if (GetFileAttributesA(full.c_str()) == INVALID_FILE_ATTRIBUTES)
        GTEST_SKIP() << "this machine has no device that is always full";
#else
    const std::string full = "\\dev\\full";
#endif
    const RuntimeErrorNumber number = numberOf([&] { writeWholeFile(full, "x"); });
    EXPECT_TRUE(number == RuntimeErrorNumber::diskFull || number == RuntimeErrorNumber::deviceIoError)
        << static_cast<int>(number);
}

TEST(Files, ADeviceIsNoFileToRead) {
#ifdef _WIN32
    for (const char* const device : {"NUL", "CON", "C:\\NUL", "CON.INC"}) {
        EXPECT_FALSE(FileExists(device)) << device;
        EXPECT_THROW(readWholeFile(device), RuntimeError) << device;
    }
#else
    EXPECT_FALSE(FileExists("\\dev\\null"));
    EXPECT_THROW(readWholeFile("\\dev\\zero"), RuntimeError);
#endif
}

#ifdef _WIN32
TEST(Files, AFileThatAnotherProgramLocksCountsAsMissing) {
    const test::TemporaryFolder folder;
    const std::string path = folder.write("a.txt", "x");
    HANDLE const holder =
        CreateFileA(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    EXPECT_FALSE(FileExists(path));
    EXPECT_EQ(numberOf([&] { readWholeFile(path); }), RuntimeErrorNumber::permissionDenied);
    CloseHandle(holder);
    EXPECT_TRUE(FileExists(path));
}
#endif

TEST(Files, ANameWithAZeroInItIsNotTheNameBeforeTheZero) {
    const test::TemporaryFolder folder;
    const std::string path = folder.write("a.txt", "old") + std::string("\0.bak", 5);
    EXPECT_FALSE(FileExists(path));
    EXPECT_EQ(numberOf([&] { readWholeFile(path); }), RuntimeErrorNumber::badFileNameOrNumber);
    EXPECT_EQ(numberOf([&] { writeWholeFile(path, "new"); }), RuntimeErrorNumber::badFileNameOrNumber);
    EXPECT_EQ(folder.read("a.txt"), "old");
}

TEST(Files, FolderSizeCountsTenThousandFiles) {
    const test::TemporaryFolder folder;
    std::uint64_t expected = 0;
    for (unsigned sub = 0; sub < 100; ++sub) {
        const std::filesystem::path place = folder.native() / ("s" + std::to_string(sub));
        std::filesystem::create_directory(place);
        for (unsigned file = 0; file < 100; ++file) {
            const unsigned size = (sub * 100 + file) % 7;
            std::ofstream(place / (std::to_string(file) + (file % 2 == 0 ? ".pas" : "")))
                << std::string(size, 'x');
            expected += size;
        }
    }
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(GetFolderSize(folder.path(), "*.*", true), expected);
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    EXPECT_LT(taken.count(), 20.0) << "a build must not wait for this";
    EXPECT_EQ(GetFolderSize(folder.path(), "*.*", false), 0U);
    EXPECT_LT(GetFolderSize(folder.path(), "*.pas", true), expected);
}

TEST(Files, SumsAboveFourGigabytesAreWhole) {
    const test::TemporaryFolder folder;
    constexpr std::uintmax_t each = 3ULL << 30;
    for (const char* const name : {"a", "b"}) {
        std::ofstream(folder.native() / name).put('x');
        std::error_code error;
        std::filesystem::resize_file(folder.native() / name, each, error); // holes take no room
        if (error)
            GTEST_SKIP() << "the temporary folder takes no large files";
    }
    EXPECT_EQ(GetFolderSize(folder.path(), "*.*", false), 2 * each);
}

#ifdef _WIN32
TEST(Files, FolderSizeCountsFilesOfEveryAttribute) {
    const test::TemporaryFolder folder;
    const std::string hidden = folder.makeFolder("hidden");
    SetFileAttributesA(hidden.c_str(), FILE_ATTRIBUTE_HIDDEN);
    const std::array<DWORD, 4> attributes = {FILE_ATTRIBUTE_NORMAL, FILE_ATTRIBUTE_READONLY,
                                             FILE_ATTRIBUTE_HIDDEN, FILE_ATTRIBUTE_SYSTEM};
    for (std::size_t i = 0; i < attributes.size(); ++i) {
        for (const char* const place : {"", "hidden\\"}) {
            const std::string path = folder.write(place + std::to_string(i), std::string(10, 'x'));
            SetFileAttributesA(path.c_str(), attributes.at(i));
        }
    }
    EXPECT_EQ(GetFolderSize(folder.path(), "*.*", true), 80U);
    EXPECT_EQ(GetFolderSize(folder.path(), "*.*", false), 40U);
    for (const char* const place : {"1", "hidden\\1"}) // so that the folder can be removed
        SetFileAttributesA((folder.path() + place).c_str(), FILE_ATTRIBUTE_NORMAL);
}
#endif

TEST(Files, FolderSizeCountsWithAndWithoutSubfolders) {
    const test::TemporaryFolder folder;
    EXPECT_EQ(GetFolderSize(folder.path(), "*.*", true), 0U);
    folder.write("a.txt", "12345");
    folder.write("b", "123");
    folder.makeFolder("sub");
    folder.write("sub\\c.pas", "12");
    EXPECT_EQ(GetFolderSize(folder.path(), "*.*", false), 8U);
    EXPECT_EQ(GetFolderSize(folder.path(), "*.*", true), 10U);
    EXPECT_EQ(GetFolderSize(folder.path(), "*.pas", true), 2U);
    EXPECT_EQ(GetFolderSize(folder.path().substr(0, folder.path().size() - 1), "*.*", true), 10U);
    folder.makeFolder("sub\\deep\\deeper");
    folder.write("sub\\deep\\deeper\\d.pas", "1234567");
    EXPECT_EQ(GetFolderSize(folder.path(), "*.*", true), 17U) << "at any depth";
    EXPECT_EQ(GetFolderSize(folder.path(), "*.pas", true), 9U);
}

TEST(Files, FolderSizeIsCountedUpToALimitOnly) {
    const test::TemporaryFolder folder;
    for (const char* const sub : {"a", "b", "c"}) {
        folder.makeFolder(sub);
        folder.write(std::string(sub) + "\\x", "12345");
    }
    EXPECT_EQ(GetFolderSize(folder.path(), "*.*", true), 15U);
    EXPECT_EQ(GetFolderSize(folder.path(), "*.*", true, 15), 15U) << "the limit itself is not above it";
    EXPECT_EQ(GetFolderSize(folder.path(), "*.*", true, 4), 5U) << "the other folders are not looked into";
    EXPECT_EQ(GetFolderSize(folder.path(), "*.*", true, 5), 10U);
}

#ifndef _WIN32
TEST(Files, FolderLinksInACircleAreNotFollowed) {
    const test::TemporaryFolder folder;
    folder.makeFolder("a");
    folder.makeFolder("b");
    folder.write("a\\x", "12345");
    std::filesystem::create_directory_symlink(folder.native() / "b", folder.native() / "a/to-b");
    std::filesystem::create_directory_symlink(folder.native() / "a", folder.native() / "b/to-a");
    std::filesystem::create_directory_symlink(folder.native(), folder.native() / "b/up");
    EXPECT_EQ(GetFolderSize(folder.path(), "*.*", true), 5U);
}
#endif

TEST(Files, OnlyUnfinishedFilesAreTakenAway) {
    const test::TemporaryFolder folder;
    const std::string leftover = "~tavrel-002a0007.tmp";
    const std::array<const char*, 6> others = {"~tavrel12-0", "~tavrel-notes.tmp", "~tavrel.pas",
                                               "~TAVERN.PAS", "TAVREL.PAS",        "A.TMP"};
    folder.write(leftover, "x");
    for (const char* const name : others)
        folder.write(name, "x");
    deleteUnfinishedFiles(folder.path());
    EXPECT_FALSE(folder.has(leftover));
    for (const char* const name : others)
        EXPECT_TRUE(folder.has(name)) << name;
    deleteUnfinishedFiles(folder.path() + "NOWHERE"); // says nothing
}

} // namespace
} // namespace tavrel
