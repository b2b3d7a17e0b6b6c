// What is started through the shell, and from where.
#include "tests/build/probe_program.h"
#include "tests/support/temporary_folder.h"
#include "util/windows_shell.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace tavrel {
namespace {

struct ShellPrograms : testing::Test {
    test::TemporaryFolder folder;
    std::filesystem::path former = std::filesystem::current_path();

    ShellPrograms() {
        folder.makeFolder("1");
        for (const char* const name : {"planted.exe", "1\\planted.exe"})
            std::filesystem::copy_file(test::probePath(), folder.path() + name);
        std::filesystem::current_path(folder.native());
    }
    ~ShellPrograms() override { std::filesystem::current_path(former); }
    ShellPrograms(const ShellPrograms&) = delete;
    ShellPrograms& operator=(const ShellPrograms&) = delete;

    static bool comesUp() {
        const ULONGLONG start = GetTickCount64();
        while (GetTickCount64() - start < 4000 && test::probeWindow() == nullptr)
            Sleep(50);
        const bool came = test::probeWindow() != nullptr;
        EXPECT_TRUE(test::comes([] { return test::probeWindow() == nullptr; }));
        return came;
    }
};

TEST_F(ShellPrograms, ANameIsNotLookedForInTheProjectsFolder) {
    ShellRequest request{"planted.exe"};
    request.parameters = "1";
    WindowsShell().execute(nullptr, request);
    EXPECT_FALSE(comesUp());
    EXPECT_EQ(std::filesystem::current_path(), folder.native()) << "the current folder is the same again";
}

TEST_F(ShellPrograms, AProgramThatIsNamedWithItsFolderStarts) {
    WindowsShell().execute(nullptr, {folder.path() + "planted.exe"});
    EXPECT_TRUE(comesUp());
}

} // namespace
} // namespace tavrel
