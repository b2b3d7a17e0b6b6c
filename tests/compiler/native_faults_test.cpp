// The command tp3 while calls of the system fail and memory runs out: programs and error files are the old
// ones or the new ones, and the user hears of it.
#include "native_command.h"
#include "tests/support/failing_allocation.h"
#include "tests/support/failing_calls.h"
#include "tests/support/folder_content.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>
#include <new>

namespace tp3 {
namespace {

using namespace tavrel::test;

struct NativeFaults : testing::Test {
    TemporaryFolder folder;
    FolderContent before;
    FolderContent whole;
    std::vector<std::string> arguments;
    int goodCode = 0;

    NativeFaults() {
        put("GAME.PAS", "{$I PART.INC}\r\nbegin Twice end.\r\n");
        put("PART.INC", "procedure Twice; begin WriteLn(1); WriteLn(2) end;\r\n");
        put("WRONG.PAS", "begin x := 1 end.\r\n");
        put("GAME.COM", "the old program");
        put("GAME.CHN", "the old image");
        put("ERRORS.TXT", "the old error");
        before = contentOf(folder.native());
    }
    void put(const std::string& name, const std::string& bytes) const {
        std::ofstream(folder.native() / name, std::ios::binary) << bytes;
    }
    std::string path(const std::string& name) const { return (folder.native() / name).string(); }

    /// The command that is put to the test, and its exit code when nothing fails.
    void use(std::vector<std::string> words, int code) {
        arguments = std::move(words);
        goodCode = code;
        Report report;
        ASSERT_EQ(run(arguments, report), code) << report.errors;
        whole = contentOf(folder.native());
        ASSERT_TRUE(whole != before);
    }
    static bool isRecord(const std::string& text) {
        return text.starts_with("\"WRONG.PAS\",") && text.ends_with("\"\r\n") &&
               text.find('\n') == text.size() - 1;
    }
    void check(int code, const Report& report, bool othersMayStay) const {
        FolderContent found = contentOf(folder.native());
        // The failure itself may be the error that the file tells of.
        if (goodCode != 0 && isRecord(found["ERRORS.TXT"]))
            found["ERRORS.TXT"] = whole.at("ERRORS.TXT");
        expectOldOrNew(found, before, whole, othersMayStay);
        if (code == 0) {
            EXPECT_TRUE(found == whole) << "done is done";
        } else {
            EXPECT_EQ(code, 1);
            EXPECT_FALSE(report.errors.empty()) << "the user is told why";
        }
    }
    void failEveryCall() const {
        const long attempts = withEveryFailingCall([&](unsigned call, bool forEver, CallFailure failure) {
            restore(folder.native(), before);
            Report report;
            int code = 1;
            {
                const FailingCalls failing(call, forEver, failure);
                code = run(arguments, report);
            }
            check(code, report, forEver);
            EXPECT_FALSE(HasFailure()) << "with call " << call << " failing";
            return !HasFailure();
        });
        EXPECT_GT(attempts, 40) << "look, open, create, write, flush, close, rename, each in several ways";
    }
    void failEveryAllocation() const {
        const long attempts = withEveryFailingAllocation([&](long request, bool forEver) {
            restore(folder.native(), before);
            Report report;
            int code = 1;
            try {
                const FailingAllocation failing(request, forEver);
                code = run(arguments, report);
            } catch (const std::bad_alloc&) {
                report.errors = "told by the program, which needs no memory for it";
            }
            check(code, report, false);
            EXPECT_FALSE(HasFailure()) << "with request " << request << " failing";
            return !HasFailure();
        });
        EXPECT_GT(attempts, 40);
    }
};

TEST_F(NativeFaults, WritingAProgram) {
    use({path("GAME.PAS"), "--runtime", RUNTIME_PATH}, 0);
    failEveryCall();
    failEveryAllocation();
}

TEST_F(NativeFaults, WritingAChainImage) {
    use({path("GAME.PAS"), "--chn"}, 0);
    failEveryCall();
    failEveryAllocation();
}

TEST_F(NativeFaults, WritingAnErrorFile) {
    use({path("WRONG.PAS"), "--errors", path("ERRORS.TXT")}, 1);
    failEveryCall();
    failEveryAllocation();
}

} // namespace
} // namespace tp3
