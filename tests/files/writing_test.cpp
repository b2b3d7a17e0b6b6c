// The one policy by which files are written, on the real system.
#include "files/file_system.h"
#include "files/host_files.h"
#include "files/temporary_name.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sstream>
#include <string>

#ifndef _WIN32
#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#endif

namespace files {
namespace {

namespace fs = std::filesystem;

struct Writing : testing::Test {
    fs::path folder;

    Writing() {
        int number = 0;
        do
            folder = fs::temp_directory_path() / ("tavrel-files-" + std::to_string(++number));
        while (!fs::create_directory(folder));
    }
    ~Writing() override {
        std::error_code ignored;
        fs::remove_all(folder, ignored);
    }
    Writing(const Writing&) = delete;
    Writing& operator=(const Writing&) = delete;

    void put(const std::string& name, const std::string& bytes) const {
        std::ofstream(folder / name, std::ios::binary) << bytes;
    }
    std::string content(const std::string& name) const {
        std::ostringstream bytes;
        bytes << std::ifstream(folder / name, std::ios::binary).rdbuf();
        return bytes.str();
    }
    std::size_t entries() const {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), {}));
    }
    /// The reason that writing fails for.
    Reason refusal(const std::string& name, const WriteOptions& options = {}) const {
        try {
            writeWholeFile(folder / name, "new", options);
        } catch (const FileError& error) {
            EXPECT_TRUE(std::string(error.what()).starts_with(textOf(folder / name) + ": ")) << error.what();
            return error.reason();
        }
        ADD_FAILURE() << name << " was written";
        return Reason::refused;
    }
};

TEST_F(Writing, MakesAndReplacesFilesAndLeavesNothingElse) {
    std::string bytes;
    for (int i = 0; i < 3'000'000; ++i)
        bytes += static_cast<char>(i % 251);
    writeWholeFile(folder / "a", bytes);
    EXPECT_EQ(readWholeFile(folder / "a"), bytes);
    writeWholeFile(folder / "a", "");
    EXPECT_EQ(readWholeFile(folder / "a"), "");
    writeWholeFile(folder / "a", "short", {.flush = false});
    EXPECT_EQ(readWholeFile(folder / "a"), "short");
    EXPECT_EQ(entries(), 1U);
}

TEST_F(Writing, TheTimeIsTheOneThatWasAskedFor) {
    writeWholeFile(folder / "a", "x", {.time = 1'500'000'000});
    EXPECT_EQ(timeOf(folder / "a"), 1'500'000'000);
    EXPECT_THROW(timeOf(folder / "b"), FileError);
}

TEST_F(Writing, AWriteProtectedFileIsRefused) {
    put("a", "old");
    fs::permissions(folder / "a", fs::perms::owner_read);
    EXPECT_EQ(refusal("a"), Reason::writeProtected);
    fs::permissions(folder / "a", fs::perms::owner_all);
    EXPECT_EQ(content("a"), "old");
    EXPECT_EQ(entries(), 1U);
}

TEST_F(Writing, AFolderAndAMissingFolderAreRefused) {
    fs::create_directory(folder / "sub");
    EXPECT_EQ(refusal("sub"), Reason::folder);
    EXPECT_EQ(refusal("no/a"), Reason::folderNotFound);
    EXPECT_THROW(writeWholeFile(Path(), "x"), FileError);
    EXPECT_TRUE(fs::is_empty(folder / "sub"));
}

TEST_F(Writing, ReadingStopsAtItsLimit) {
    put("a", std::string(1000, 'x'));
    EXPECT_EQ(readWholeFile(folder / "a", 1000).size(), 1000U);
    EXPECT_THROW(readWholeFile(folder / "a", 999), FileError);
    EXPECT_THROW(readWholeFile(folder, 999), FileError);
    EXPECT_FALSE(canBeRead(folder));
    EXPECT_TRUE(canBeRead(folder / "a"));
    EXPECT_FALSE(canBeRead(folder / "b"));
}

#ifndef _WIN32
/// The name that the next temporary file gets: numbers count up.
std::string nextName(const fs::path& folder) {
    const auto file = systemFiles().createBeside(folder / "a");
    const std::string name = file->path().filename().string();
    systemFiles().remove(file->path());
    EXPECT_TRUE(isTemporaryFileName(name)) << name;
    const auto number = static_cast<std::uint32_t>(std::stoul(name.substr(8, 8), nullptr, 16));
    return temporaryFileName(number + 1);
}

TEST_F(Writing, ATakenTemporaryNameIsLeftAlone) {
    const std::string taken = nextName(folder);
    put("victim", "precious");
    fs::create_symlink(folder / "victim", folder / taken);
    writeWholeFile(folder / "a", "new");
    EXPECT_EQ(content("victim"), "precious") << "nothing is written through a planted link";
    EXPECT_TRUE(fs::is_symlink(folder / taken));
    const std::string other = nextName(folder);
    put(other, "the user's");
    writeWholeFile(folder / "a", "newer");
    EXPECT_EQ(content(other), "the user's");
    EXPECT_EQ(content("a"), "newer");
}

TEST_F(Writing, ALinkIsNeitherFollowedNorReplaced) {
    put("victim", "precious");
    fs::create_symlink(folder / "victim", folder / "link");
    fs::create_symlink(folder / "nothing", folder / "dangling");
    fs::create_directory_symlink(folder, folder / "sub");
    EXPECT_EQ(refusal("link"), Reason::link);
    EXPECT_EQ(refusal("dangling"), Reason::link);
    EXPECT_EQ(refusal("sub"), Reason::folder);
    EXPECT_EQ(content("victim"), "precious");
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_EQ(entries(), 4U) << "and nothing is made where a link leads";
}

TEST_F(Writing, TheRightsOfTheOldFileStay) {
    put("a", "old");
    fs::permissions(folder / "a", fs::perms(0751));
    writeWholeFile(folder / "a", "new");
    EXPECT_EQ(fs::status(folder / "a").permissions(), fs::perms(0751));
    const mode_t mask = umask(027);
    writeWholeFile(folder / "b", "new");
    umask(mask);
    EXPECT_EQ(fs::status(folder / "b").permissions(), fs::perms(0640));
}

TEST_F(Writing, ADeviceIsWrittenToOrRefused) {
    writeWholeFile("/dev/null", "x");
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
    fs::create_symlink("/dev/null", folder / "null");
    writeWholeFile(folder / "null", "x");
    EXPECT_TRUE(fs::is_symlink(folder / "null"));
    EXPECT_EQ(refusal("null", {.devices = false}), Reason::notAFile);
    fs::create_symlink("/dev/full", folder / "full");
    EXPECT_EQ(refusal("full"), Reason::diskFull);
    EXPECT_THROW(readWholeFile("/dev/zero"), FileError);
    EXPECT_FALSE(canBeRead("/dev/zero"));
}

TEST_F(Writing, APipeTakesAllAndOneThatNobodyReadsIsAnError) {
    const std::string pipe = (folder / "pipe").string();
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(refusal("pipe"), Reason::refused);
    const std::string bytes(300'000, 'x'); // more than a pipe holds at once
    std::string read;
    std::thread reader([&] { read = content("pipe"); });
    for (bool written = false; !written;) {
        try {
            writeWholeFile(pipe, bytes);
            written = true;
        } catch (const FileError&) {
            std::this_thread::yield(); // the reader is not there yet
        }
    }
    reader.join();
    EXPECT_TRUE(read == bytes) << read.size();
}

TEST_F(Writing, AFileThatTheSystemLetsGrowNoFurtherStaysTheOldOne) {
    put("a", "old");
    rlimit former = {};
    getrlimit(RLIMIT_FSIZE, &former);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small = {6000, former.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    try {
        writeWholeFile(folder / "a", std::string(9000, 'x'));
        ADD_FAILURE() << "9000 bytes do not fit";
    } catch (const FileError& error) {
        EXPECT_EQ(error.reason(), Reason::diskFull);
    }
    setrlimit(RLIMIT_FSIZE, &former);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(content("a"), "old");
    EXPECT_EQ(entries(), 1U);
}

TEST_F(Writing, ANameWithAZeroInItIsNotTheNameBeforeTheZero) {
    put("a", "old");
    const Path name = (folder / "a").string() + std::string("\0b", 2);
    EXPECT_THROW(writeWholeFile(name, "new"), FileError);
    EXPECT_THROW(readWholeFile(name), FileError);
    EXPECT_EQ(content("a"), "old");
}
#else
TEST_F(Writing, DevicesAreToldFromFiles) {
    writeWholeFile("NUL", "x");
    EXPECT_THROW(writeWholeFile("NUL", "x", {.devices = false}), FileError);
    EXPECT_FALSE(canBeRead("NUL"));
    EXPECT_THROW(readWholeFile("CON"), FileError);
}

TEST_F(Writing, NamesBeyondTheCodePageWork) {
    const Path name = folder / L"\u0416\u6F22.PAS";
    writeWholeFile(name, "x");
    EXPECT_EQ(readWholeFile(name), "x");
}
#endif

} // namespace
} // namespace files
