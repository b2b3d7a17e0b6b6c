// Memory that runs out while something is saved: each file is the old one or the new one, and nothing else
// stays.
#include "tests/project/saved_files.h"
#include "tests/support/failing_allocation.h"

#include <gtest/gtest.h>
#include <new>

namespace tavrel {
namespace {

TEST(SavingAllocation, EveryFailingRequestLeavesOldOrNewFiles) {
    for (const test::SavedFile& file : test::savedFiles()) {
        const long attempts = test::withEveryFailingAllocation([&](long request, bool forEver) {
            test::SavingAttempt attempt(file);
            bool told = false;
            try {
                const test::FailingAllocation failing(request, forEver);
                file.save(attempt.test);
            } catch (const std::bad_alloc&) {
                told = true;
            }
            attempt.check(told, false);
            EXPECT_FALSE(HasFailure()) << file.name << ", with request " << request << " failing";
            return !HasFailure();
        });
        EXPECT_GT(attempts, 4) << file.name;
    }
}

} // namespace
} // namespace tavrel
