// The disk tool while calls of the system fail and memory runs out: images and extracted files are the old
// ones or the new ones, and the user hears of it.
#include "disk/commands.h"
#include "tests/disk/support.h"
#include "tests/support/failing_allocation.h"
#include "tests/support/failing_calls.h"
#include "tests/support/folder_content.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>
#include <new>

namespace disk {
namespace {

using namespace tavrel::test;

struct DiskFaults : testing::Test {
    TemporaryFolder folder;
    FolderContent before;
    FolderContent whole;
    std::vector<std::string> arguments;

    DiskFaults() {
        put("A.PAS", pattern(5000, 1));
        put("B.PAS", pattern(700, 2));
        DiskImage image(smallDisk());
        image.add({test::file("OLD.TXT", pattern(3000, 3)), test::file("A.PAS", pattern(90, 4))});
        put("D.DSK", image.bytes());
        std::filesystem::create_directory(folder.native() / "out");
        put("out/OLD.TXT", pattern(2000, 5));
        before = contentOf(folder.native());
    }
    /// An empty disk of 24 kB, which is written faster than a real one.
    static Bytes smallDisk() {
        Geometry geometry;
        geometry.totalSectors = 48;
        geometry.sectorsPerFat = 1;
        geometry.rootEntries = 16;
        geometry.sectorsPerCluster = 1;
        Bytes bytes(geometry.totalSectors * sectorBytes);
        writeBootSector(bytes, geometry);
        return bytes;
    }
    static Bytes pattern(std::size_t size, unsigned seed) { return test::pattern(size, seed); }
    void put(const std::string& name, const Bytes& bytes) const {
        std::ofstream(folder.native() / name, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    }
    std::string path(const std::string& name) const { return (folder.native() / name).string(); }

    /// The command that is put to the test; it has to work when nothing fails.
    void use(std::vector<std::string> words) {
        arguments = std::move(words);
        Report report;
        ASSERT_EQ(run(arguments, report), done) << report.errors;
        whole = contentOf(folder.native());
        ASSERT_TRUE(whole != before);
    }
    void check(int code, const Report& report, bool othersMayStay) const {
        const FolderContent found = contentOf(folder.native());
        expectOldOrNew(found, before, whole, othersMayStay);
        if (code == done) {
            EXPECT_TRUE(found == whole) << "done is done";
        } else {
            EXPECT_EQ(code, failed);
            EXPECT_TRUE(report.errors.starts_with("dsktool: ")) << "the user is told why";
        }
    }

    void failEveryCall() const {
        const long attempts = withEveryFailingCall([&](unsigned call, bool forEver, CallFailure failure) {
            restore(folder.native(), before);
            Report report;
            int code = failed;
            {
                const FailingCalls failing(call, forEver, failure);
                code = run(arguments, report);
            }
            check(code, report, forEver);
            EXPECT_FALSE(HasFailure()) << "with call " << call << " failing";
            return !HasFailure();
        });
        EXPECT_GT(attempts, 40) << "look, read, create, write, flush, close, rename, each in several ways";
    }
    void failEveryAllocation() const {
        const long attempts = withEveryFailingAllocation([&](long request, bool forEver) {
            restore(folder.native(), before);
            Report report;
            int code = failed;
            try {
                const FailingAllocation failing(request, forEver);
                code = run(arguments, report);
            } catch (const std::bad_alloc&) {
                report.errors = "dsktool: told by the program, which needs no memory for it";
            }
            check(code, report, false);
            EXPECT_FALSE(HasFailure()) << "with request " << request << " failing";
            return !HasFailure();
        });
        EXPECT_GT(attempts, 40);
    }
};

TEST_F(DiskFaults, AddingToAnImage) {
    use({"A", path("D.DSK"), path("A.PAS"), path("B.PAS")});
    failEveryCall();
    failEveryAllocation();
}

TEST_F(DiskFaults, MakingAnImage) {
    use({"A", path("NEW.DSK"), path("A.PAS")});
    failEveryCall();
    failEveryAllocation();
}

TEST_F(DiskFaults, ExtractingFiles) {
    use({"E", path("D.DSK"), "-o", path("out")});
    failEveryCall();
    failEveryAllocation();
}

TEST_F(DiskFaults, DeletingFiles) {
    use({"D", path("D.DSK"), "OLD.TXT"});
    failEveryCall();
    failEveryAllocation();
}

TEST_F(DiskFaults, AListIsWholeOrAnError) {
    arguments = {"L", path("D.DSK")};
    Report good;
    ASSERT_EQ(run(arguments, good), done);
    withEveryFailingCall([&](unsigned call, bool forEver, CallFailure failure) {
        Report report;
        int code = failed;
        {
            const FailingCalls failing(call, forEver, failure);
            code = run(arguments, report);
        }
        EXPECT_TRUE(code == done ? report.output == good.output : !report.errors.empty()) << call;
        return !HasFailure();
    });
}

} // namespace
} // namespace disk
