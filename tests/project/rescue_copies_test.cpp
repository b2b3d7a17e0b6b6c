// Copies of texts that would be lost: their names, which of them go, where they lie.
#include "project/rescue_copies.h"
#include "tests/support/temporary_folder.h"
#include "util/files.h"

#include <algorithm>

#include <gtest/gtest.h>

namespace tavrel {
namespace {

constexpr RescueTime someTime = {2026, 3, 9, 7, 5, 1};

TEST(RescueNames, CarryTimeAndFile) {
    EXPECT_EQ(rescueFileName({someTime, 1, "MAIN.PAS"}), "2026-03-09 070501 MAIN.PAS");
    EXPECT_EQ(rescueFileName({someTime, 12, "a b.inc"}), "2026-03-09 070501-12 a b.inc");
}

TEST(RescueNames, AreReadBack) {
    for (const unsigned number : {1U, 2U, 999'999U}) {
        for (const char* const file : {"MAIN.PAS", "-2 X.PAS", " ", "2026-03-09 070501 A"}) {
            const RescueName name{someTime, number, file};
            EXPECT_EQ(readRescueFileName(rescueFileName(name)), name) << file;
        }
    }
}

TEST(RescueNames, OtherNamesAreNotTaken) {
    for (const char* const name :
         {"", "MAIN.PAS", "2026-03-09 070501", "2026-03-09 070501 ", "2026-03-09 070501MAIN.PAS",
          "2026-03-09 070501- A", "2026-03-09 070501-1 A", "2026-03-09 070501-02 A",
          "2026-03-09 070501-1234567 A", "2026-03-09-070501 A", "2026-03-0x 070501 A", "026-03-09 0705011 A"})
        EXPECT_EQ(readRescueFileName(name), std::nullopt) << name;
}

TEST(RescueNames, TheOldestGoFirstAndStrangersStay) {
    const std::vector<std::string> names = {"2026-03-09 070501-2 A.PAS",  "my notes.txt",
                                            "2026-03-09 070501 B.PAS",    "2025-12-31 235959 C.PAS",
                                            "2026-03-09 070501-10 A.PAS", "2026-03-10 000000 A.PAS"};
    EXPECT_EQ(rescueCopiesToDelete(names, 5), std::vector<std::string>());
    EXPECT_EQ(rescueCopiesToDelete(names, 3),
              (std::vector<std::string>{"2026-03-09 070501 B.PAS", "2025-12-31 235959 C.PAS"}));
}

struct Copies : testing::Test {
    test::TemporaryFolder folder;
    RescueCopies copies;
    RescueTime time = someTime;

    Copies() {
        copies.now = [this] { return time; };
        copies.setFolders({folder.path() + "rescued\\"});
    }
    std::vector<std::string> names(const std::string& where = "rescued\\") {
        std::vector<std::string> found;
        for (const FolderEntry& entry : listFolder(folder.path() + where, "*"))
            found.push_back(entry.name);
        std::sort(found.begin(), found.end());
        return found;
    }
};

TEST_F(Copies, AreWrittenIntoAFolderThatIsMade) {
    const std::string path = copies.keep("M.PAS", "text\r\n");
    EXPECT_EQ(path, folder.path() + "rescued\\2026-03-09 070501 M.PAS");
    EXPECT_EQ(readWholeFile(path), "text\r\n");
}

TEST_F(Copies, OfOneSecondHaveNumbers) {
    copies.keep("M.PAS", "one");
    EXPECT_EQ(readWholeFile(copies.keep("M.PAS", "two")), "two");
    EXPECT_EQ(names(), (std::vector<std::string>{"2026-03-09 070501 M.PAS", "2026-03-09 070501-2 M.PAS"}));
}

TEST_F(Copies, TheLastTwentyStay) {
    copies.keep("FIRST.PAS", "first");
    folder.write("rescued\\mine.txt", "a stranger");
    for (time.minute = 6; time.minute < 26; ++time.minute)
        copies.keep("M.PAS", "x");
    EXPECT_EQ(names().size(), keptRescueCopies + 1);
    EXPECT_FALSE(folder.has("rescued\\2026-03-09 070501 FIRST.PAS"));
    EXPECT_TRUE(folder.has("rescued\\mine.txt"));
}

TEST_F(Copies, TheNewestStaysWhenTheClockWasSetBack) {
    for (time.minute = 6; time.minute < 26; ++time.minute)
        copies.keep("M.PAS", "x");
    time = {1999, 1, 1, 0, 0, 0};
    EXPECT_EQ(readWholeFile(copies.keep("M.PAS", "new")), "new");
    EXPECT_EQ(names().size(), keptRescueCopies);
}

TEST_F(Copies, GoToTheNextFolderWhenTheFirstTakesNone) {
    folder.write("blocked", "a file where the folder would be");
    copies.setFolders({folder.path() + "blocked\\", folder.path() + "user\\rescued\\"});
    EXPECT_EQ(copies.keep("M.PAS", "text"), folder.path() + "user\\rescued\\2026-03-09 070501 M.PAS");
    copies.setFolders({folder.path() + "blocked\\"});
    EXPECT_EQ(copies.keep("M.PAS", "text"), "");
}

TEST_F(Copies, WhatIsBeingTypedHasOneCopy) {
    EXPECT_TRUE(copies.keepWhileTyping("M.PAS", "a"));
    time.second = 11;
    EXPECT_TRUE(copies.keepWhileTyping("M.PAS", "ab"));
    EXPECT_EQ(names(), std::vector<std::string>{"2026-03-09 070511 M.PAS"});
    EXPECT_EQ(readWholeFile(copies.typingCopy()), "ab");
    copies.dropTypingCopy();
    EXPECT_TRUE(names().empty());
}

TEST_F(Copies, TheFormerTypingCopyStaysWhenTheNewOneFails) {
    copies.keepWhileTyping("M.PAS", "a");
    folder.write("blocked", "");
    copies.setFolders({folder.path() + "blocked\\"});
    EXPECT_FALSE(copies.keepWhileTyping("M.PAS", "ab"));
    EXPECT_EQ(readWholeFile(copies.typingCopy()), "a");
}

TEST(TypingWatch, IsDueAfterAChangeAndAtMostEveryTenSeconds) {
    TypingWatch watch;
    watch.settled(3);
    EXPECT_FALSE(watch.isDue(3, 0));
    EXPECT_TRUE(watch.isDue(4, 0)) << "the first change";
    watch.copied(4, 1000);
    EXPECT_FALSE(watch.isDue(4, 60'000)) << "nothing has changed";
    EXPECT_FALSE(watch.isDue(5, 10'999));
    EXPECT_TRUE(watch.isDue(5, 11'000));
    watch.settled(5);
    EXPECT_FALSE(watch.isDue(5, 60'000));
}

} // namespace
} // namespace tavrel
