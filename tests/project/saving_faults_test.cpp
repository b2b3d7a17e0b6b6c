// Whatever the program saves: with any of its calls failing each file is the old one or the new one, and an
// error comes out, which the main window tells the user.
#include "tests/project/saved_files.h"
#include "tests/support/failing_files.h"
#include "util/runtime_error.h"

#include <gtest/gtest.h>

namespace tavrel {
namespace {

using test::FailingFiles;

struct SavingFaults : testing::TestWithParam<test::SavedFile> {};

/// One attempt. Returns whether a call failed.
bool saveWith(const test::SavedFile& file, unsigned call, bool forEver, FailingFiles::Failure failure) {
    test::SavingAttempt attempt(file);
    bool told = false;
    bool failed = false;
    {
        const FailingFiles failing(call, forEver, failure);
        try {
            file.save(attempt.test);
        } catch (const RuntimeError& error) {
            told = true;
            EXPECT_EQ(error.number(), RuntimeErrorNumber::diskFull);
            EXPECT_FALSE(error.detail().empty()) << "the error names the file";
        }
        failed = failing.hasFailed();
    }
    EXPECT_EQ(told, failed) << "no failure is kept quiet";
    // A new file that says it could not be made, but was, is known to nobody.
    attempt.check(told, forEver || failure == FailingFiles::Failure::after);
    return failed;
}

TEST_P(SavingFaults, EveryFailingCallLeavesOldOrNewFiles) {
    unsigned attempts = 0;
    for (const auto failure :
         {FailingFiles::Failure::before, FailingFiles::Failure::after, FailingFiles::Failure::partWise}) {
        for (const bool forEver : {false, true}) {
            for (unsigned call = 1; saveWith(GetParam(), call, forEver, failure); ++call) {
                ASSERT_FALSE(HasFailure()) << "with call " << call << " failing";
                ++attempts;
            }
        }
    }
    EXPECT_GE(attempts, 30U) << "create, write, flush, close and rename, each in several ways";
}

std::string caseName(const testing::TestParamInfo<test::SavedFile>& info) {
    std::string name = info.param.name;
    std::erase(name, ' ');
    return name;
}

INSTANTIATE_TEST_SUITE_P(All, SavingFaults, testing::ValuesIn(test::savedFiles()), caseName);

} // namespace
} // namespace tavrel
