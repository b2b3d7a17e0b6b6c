// Saving a file leaves the old one or the new one, whatever fails.
#include "tests/support/failing_files.h"
#include "tests/support/temporary_folder.h"
#include "util/files.h"
#include "util/runtime_error.h"

#include <gtest/gtest.h>

#ifndef _WIN32
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <random>
#endif

namespace tavrel {
namespace {

using test::FailingFiles;

const std::string oldContent(5000, 'o');
const std::string newContent(9000, 'n');

TEST(Saving, AnyFailingCallLeavesTheOldFileOrTheNewOne) {
    unsigned attempts = 0;
    test::withEveryFailure([&](FailingFiles& files) {
        const test::TemporaryFolder folder;
        const std::string path = folder.path() + "A.PAS";
        useFileSystem(nullptr);
        folder.write("A.PAS", oldContent);
        useFileSystem(&files);
        bool told = false;
        try {
            writeWholeFile(path, newContent);
        } catch (const RuntimeError& error) {
            told = true;
            EXPECT_EQ(error.detail(), path) << "the user knows no other name";
        }
        const std::string found = folder.read("A.PAS");
        EXPECT_TRUE(found == oldContent || found == newContent) << found.size();
        if (!told) {
            EXPECT_EQ(found, newContent);
        }
        EXPECT_EQ(told, files.hasFailed());
        ++attempts;
    });
    EXPECT_GT(attempts, 24U) << "create, write, flush, close and rename, each in several ways";
}

TEST(Saving, AFileThatWasNotThereIsWholeOrStaysAway) {
    test::withEveryFailure([](FailingFiles&) {
        const test::TemporaryFolder folder;
        try {
            writeWholeFile(folder.path() + "A.PAS", newContent);
        } catch (const RuntimeError&) {
            if (!folder.has("A.PAS"))
                return;
        }
        EXPECT_EQ(folder.read("A.PAS"), newContent);
    });
}

TEST(Saving, OneFailureLeavesNothingElseInTheFolder) {
    for (unsigned call = 1; call <= 6; ++call) { // kind, create, write, flush, close, rename
        const test::TemporaryFolder folder;
        folder.write("A.PAS", oldContent);
        const FailingFiles files(call, false, FailingFiles::Failure::before);
        EXPECT_THROW(writeWholeFile(folder.path() + "A.PAS", newContent), RuntimeError) << call;
        EXPECT_EQ(listFolder(folder.path(), "*.*").size(), 1U) << call;
    }
}

#ifndef _WIN32
TEST(Saving, AKillAtAnyMomentLeavesTheOldFileOrTheNewOne) {
    const test::TemporaryFolder folder;
    const std::string path = folder.path() + "A.PAS";
    folder.write("A.PAS", oldContent);
    std::mt19937 random(5);
    for (int round = 0; round < 60; ++round) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            for (;;) {
                writeWholeFile(path, newContent);
                writeWholeFile(path, oldContent);
            }
        }
        usleep(static_cast<useconds_t>(500 + random() % 3000));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        const std::string found = folder.read("A.PAS");
        ASSERT_TRUE(found == oldContent || found == newContent) << found.size();
    }
    deleteUnfinishedFiles(folder.path());
    EXPECT_EQ(listFolder(folder.path(), "*").size(), 1U) << "nothing but the file itself";
}

TEST(Saving, AFileThatTheSystemLetsGrowNoFurtherStaysTheOldOne) {
    const test::TemporaryFolder folder;
    folder.write("A.PAS", oldContent);
    rlimit former = {};
    getrlimit(RLIMIT_FSIZE, &former);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small = {6000, former.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    try {
        writeWholeFile(folder.path() + "A.PAS", newContent);
        ADD_FAILURE() << "9000 bytes do not fit";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.number(), RuntimeErrorNumber::diskFull);
    }
    setrlimit(RLIMIT_FSIZE, &former);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(folder.read("A.PAS"), oldContent);
    EXPECT_EQ(listFolder(folder.path(), "*.*").size(), 1U);
}
#endif

} // namespace
} // namespace tavrel
