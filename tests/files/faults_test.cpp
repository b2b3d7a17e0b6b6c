// Writing a file while calls of the system fail and memory runs out: the file is the old one or the new one,
// and the caller hears of it. What each program makes of that is tested with the program.
#include "files/host_files.h"
#include "files/temporary_name.h"
#include "tests/support/failing_allocation.h"
#include "tests/support/failing_calls.h"
#include "tests/support/folder_content.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>
#include <new>

namespace files {
namespace {

using namespace tavrel::test;

struct Faults : testing::Test {
    TemporaryFolder folder;
    FolderContent before;
    FolderContent whole;
    const std::string fresh = std::string(9000, 'n');

    void start(bool exists) {
        folder.write("X.COM.new", "the user's own");
        if (exists)
            folder.write("X.COM", std::string(5000, 'o'));
        before = contentOf(folder.native());
        whole = before;
        whole["X.COM"] = fresh;
    }
    /// True when it says that it wrote.
    bool write() const {
        try {
            writeWholeFile(folder.native() / "X.COM", fresh, {.time = 1'500'000'000});
            return true;
        } catch (const FileError&) {
            return false;
        } catch (const std::bad_alloc&) {
            return false;
        }
    }
    void check(bool written, bool othersMayStay) const {
        const FolderContent found = contentOf(folder.native());
        if (written) {
            EXPECT_TRUE(found == whole);
        }
        expectOldOrNew(found, before, whole, othersMayStay);
        for (const auto& [name, bytes] : found)
            EXPECT_TRUE(whole.contains(name) || isTemporaryFileName(name)) << name;
    }
    void failAll() const {
        const long attempts = withEveryFailingCall([&](unsigned call, bool forEver, CallFailure failure) {
            restore(folder.native(), before);
            bool written = false;
            {
                const FailingCalls failing(call, forEver, failure);
                written = write();
            }
            check(written, forEver);
            EXPECT_FALSE(HasFailure()) << "with call " << call << " failing";
            return !HasFailure();
        });
        EXPECT_GT(attempts, 40) << "kind, create, write, flush, time, close, rename, each in several ways";
        const long requests = withEveryFailingAllocation([&](long request, bool forEver) {
            restore(folder.native(), before);
            bool written = false;
            {
                const FailingAllocation failing(request, forEver);
                written = write();
            }
            check(written, false);
            return !HasFailure();
        });
        EXPECT_GT(requests, 2);
    }
};

TEST_F(Faults, ReplacingAFile) {
    start(true);
    failAll();
}

TEST_F(Faults, MakingAFile) {
    start(false);
    failAll();
}

} // namespace
} // namespace files
