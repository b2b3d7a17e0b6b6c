#include "disk/command_line.h"

#include <gtest/gtest.h>
#include <set>

namespace disk {
namespace {

using Words = std::vector<std::string>;

Known among(std::set<std::string> texts) {
    return [texts = std::move(texts)](const std::string& text) { return texts.contains(text); };
}

TEST(CommandLine, NamesVerbImageAndFiles) {
    const CommandLine add = parseCommandLine({"a", "x.dsk", "no-such-file"});
    EXPECT_EQ(add.verb, Verb::add);
    EXPECT_EQ(add.image, "x.dsk");
    EXPECT_EQ(add.names, Words{"no-such-file"});
    EXPECT_EQ(parseCommandLine({"L", "x.dsk"}).verb, Verb::list);
    EXPECT_EQ(parseCommandLine({"D", "x.dsk", "*.*"}).verb, Verb::remove);
    EXPECT_EQ(parseCommandLine({"L", "--help"}).verb, Verb::help);
}

TEST(CommandLine, ExtractsIntoAFolder) {
    const CommandLine line = parseCommandLine({"E", "x.dsk", "A", "-o", "out", "B"});
    EXPECT_EQ(line.names, (Words{"A", "B"}));
    EXPECT_EQ(line.folder, "out");
    EXPECT_EQ(parseCommandLine({"E", "x.dsk"}).folder, ".");
}

TEST(CommandLine, WrongUseIsRefused) {
    for (const Words& words :
         {Words{}, Words{"X", "x.dsk"}, Words{"AL", "x.dsk"}, Words{""}, Words{"L"}, Words{"L", ""},
          Words{"A", "x.dsk"}, Words{"D", "x.dsk"}, Words{"L", "x.dsk", "A"}, Words{"E", "x.dsk", "-o"}})
        EXPECT_THROW(parseCommandLine(words), UsageError);
}

TEST(SplitPaths, ArePutTogetherWhenThatHelps) {
    const Known known = among({"C:\\My Progs\\x\\*.*", "b", "a b c"});
    EXPECT_EQ(joinSplitPaths({"C:\\My", "Progs\\x\\*.*"}, known), (Words{"C:\\My Progs\\x\\*.*"}));
    EXPECT_EQ(joinSplitPaths({"b", "C:\\My", "Progs\\x\\*.*", "b"}, known),
              (Words{"b", "C:\\My Progs\\x\\*.*", "b"}));
    EXPECT_EQ(joinSplitPaths({"a", "b", "c"}, known), Words{"a b c"});
    EXPECT_EQ(joinSplitPaths({"x", "b", "y"}, known), (Words{"x", "b", "y"}));
    EXPECT_EQ(joinSplitPaths({}, known), Words{});
}

TEST(SplitImage, IsPutTogetherWhenItsFolderIsThere) {
    const Known folder = among({"C:\\My Progs\\dsk\\", "C:\\a b c\\"});
    const Known file = among({"old"});
    EXPECT_EQ(joinSplitImage({"C:\\My", "Progs\\dsk\\d.dsk", "f"}, file, folder),
              (Words{"C:\\My Progs\\dsk\\d.dsk", "f"}));
    EXPECT_EQ(joinSplitImage({"C:\\a", "b", "c\\D.DSK", "f"}, file, folder),
              (Words{"C:\\a b c\\D.DSK", "f"}));
    for (const Words& words : {Words{"d.dsk", "Progs\\dsk\\d.dsk"}, Words{"old", "Progs\\dsk\\d.dsk"},
                               Words{"D:\\My", "Progs\\dsk\\d.dsk"}, Words{"new", "other.dsk"},
                               Words{"new", "f"}, Words{"new"}, Words{}})
        EXPECT_EQ(joinSplitImage(words, file, folder), words);
}

} // namespace
} // namespace disk
