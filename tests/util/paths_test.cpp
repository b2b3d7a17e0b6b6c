#include "util/file_dialogs.h"
#include "util/paths.h"
#include "util/twips.h"

#include <gtest/gtest.h>

namespace tavrel {
namespace {

TEST(Paths, FolderAndNameOfAPath) {
    EXPECT_EQ(GetFilePath("C:\\a\\b.pas"), "C:\\a\\");
    EXPECT_EQ(GetFilePath("b.pas"), "");
    EXPECT_EQ(GetFilePath(""), "");
    EXPECT_EQ(GetFileName("C:\\a\\b.pas"), "b.pas");
    EXPECT_EQ(GetFileName("b.pas"), "b.pas");
    EXPECT_EQ(GetFileName("C:\\a\\"), "");
}

TEST(Paths, BackslashIsAddedOnce) {
    EXPECT_EQ(AddBackslash("C:\\T\\"), "C:\\T\\");
    EXPECT_EQ(AddBackslash("C:\\T"), "C:\\T\\");
    EXPECT_EQ(AddBackslash(""), "\\");
}

TEST(Paths, ABareNameHasNoFolderOfAnyKind) {
    for (const char* const path :
         {"X.PAS", "..\\X.PAS", "../victim/X.PAS", "C:X.PAS", "a/b\\X.PAS", "a\\b/X.PAS"})
        EXPECT_EQ(bareFileName(path), "X.PAS") << path;
    EXPECT_EQ(bareFileName("../"), "");
}

TEST(Paths, OnlyTheNameOfAFileInThisFolderIsAFileName) {
    for (const char* const name :
         {"Demo", "My game 2", "a.b.c", "~x", "caf\xE9", "CONS", "COM", "COM10", ".x", "NULL"})
        EXPECT_TRUE(isFileName(name)) << name;
    for (const char* const name : {"",       ".",       "..",      ". .",  " ",        "..\\victim\\evil.bat",
                                   "a\\b",   "../x",    "a/b",     "C:x",  "x:stream", "a*",
                                   "a?",     "a\"b",    "a<b",     "a>b",  "a|b",      "a\tb",
                                   "con",    "NUL",     "Aux.tpj", "prn ", "COM1",     "lpt9.x",
                                   "CONIN$", "nul .txt"})
        EXPECT_FALSE(isFileName(name)) << name;
    EXPECT_FALSE(isFileName(std::string_view("a\0b", 3)));
}

TEST(FileDialogs, ALonePartIsDescriptionAndPattern) {
    using namespace std::string_literals;
    EXPECT_EQ(systemFilter("*.exe"), "*.exe\0*.exe\0\0"s);
    EXPECT_EQ(systemFilter("GAME.PAS|"), "GAME.PAS\0GAME.PAS\0\0"s);
    EXPECT_EQ(systemFilter("A | *.a"), "A \0 *.a\0\0"s);
    EXPECT_EQ(systemFilter("A | *.a | B | *.*"), "A \0 *.a \0 B \0 *.*\0\0"s);
}

TEST(FileDialogs, FilterBarsBecomeZeros) {
    using namespace std::string_literals;
    EXPECT_EQ(dialogFilter("*.exe"), "*.exe\0"s);
    EXPECT_EQ(dialogFilter("A | *.a; *.b | B | *.*"), "A \0 *.a; *.b \0 B \0 *.*\0"s);
    EXPECT_EQ(dialogFilter("A | *.a|"), "A \0 *.a\0"s);
}

TEST(FileDialogs, BufferIsTrimmedAndLosesOneZero) {
    using namespace std::string_literals;
    EXPECT_EQ(pathFromDialogBuffer("C:\\a.pas\0      "s), "C:\\a.pas");
    EXPECT_EQ(pathFromDialogBuffer("      "s), "");
}

TEST(FileDialogs, FlagsAreTheFixedOnes) {
    EXPECT_EQ(openDialogFlags(false), 4UL);
    EXPECT_EQ(openDialogFlags(true), 524804UL);
}

TEST(Twips, FollowTheScreensRealScale) {
    const ScreenScale large{144, 144};
    EXPECT_EQ(ScreenScale().toPixelsX(2400), 160);
    EXPECT_EQ(large.toPixelsX(2400), 240);
    EXPECT_EQ(large.toTwipsY(240), 2400);
}

TEST(Twips, DialogIsCentredEvenWhenItThenLiesOffScreen) {
    const TwipsRectangle placed = centredOver({-1500, 0, 3000, 1500}, {0, 0, 4500, 750});
    EXPECT_EQ(placed.left, -2250);
    EXPECT_EQ(placed.top, 375);
    EXPECT_EQ(placed.width, 4500);
}

} // namespace
} // namespace tavrel
