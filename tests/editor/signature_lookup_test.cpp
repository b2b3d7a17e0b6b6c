#include "editor/editor_events.h"
#include "editor/signature_lookup.h"
#include "util/text.h"

#include <gtest/gtest.h>
#include <random>

namespace tavrel {
namespace {

struct Lookup : testing::Test {
    std::vector<std::string> library = {"WriteLn(Value1, Value2, ...);", "Write(Value1, ...);",
                                        "Abs(Number)"};
    std::vector<FileRoutineList> files = std::vector<FileRoutineList>(3);
    PrefixIndex libraryIndex;
    int refreshed = 0;

    Lookup() {
        appendHeader(files[0], "Peek(Adr: integer): byte;");
        appendHeader(files[0], "abs(Mine: integer): integer;");
        appendHeader(files[2], "Peekaboo(X: byte);");
        appendHeader(files[2], "Last(X: byte);");
    }
    std::string find(const std::string& wordAtCaret, std::size_t nodeCount = 4) {
        libraryIndex.build(library);
        for (FileRoutineList& file : files)
            file.index.build(file.Headers);
        return findSignature(searchedWord(wordAtCaret), {library, libraryIndex, files, nodeCount},
                             [this] { ++refreshed; })
            .value_or("nothing");
    }
};

TEST_F(Lookup, LetterCaseDoesNotMatter) {
    EXPECT_EQ(find("writeln"), library[0]);
    EXPECT_EQ(find("WRITELN"), library[0]);
    EXPECT_EQ(find("pEEK"), files[0].Headers[0]);
}

TEST_F(Lookup, TheFirstEntryThatBeginsWithTheWordWins) {
    EXPECT_EQ(find("Write"), library[0]) << "a longer name that stands first";
    EXPECT_EQ(find("Peek"), files[0].Headers[0]);
    EXPECT_EQ(find("Peeka"), files[2].Headers[0]);
}

TEST_F(Lookup, AnEmptyWordFindsTheFirstEntry) {
    EXPECT_EQ(find(""), library[0]);
    EXPECT_EQ(find("abc,"), library[0]);
    library = {""};
    EXPECT_EQ(find(""), "") << "an empty line is an entry";
}

TEST_F(Lookup, AProjectRoutineNamedAsALibraryEntryIsNeverShown) {
    EXPECT_EQ(find("abs"), "Abs(Number)");
}

TEST_F(Lookup, WhatStandsBehindCommaAndSemicolonIsSearched) {
    EXPECT_EQ(searchedWord("a,b"), "B");
    EXPECT_EQ(searchedWord("a,b,c"), "B,C");
    EXPECT_EQ(searchedWord("a;b"), "B");
    EXPECT_EQ(searchedWord("a,b;c"), "C");
    EXPECT_EQ(searchedWord("a;b,c"), "C") << "the comma goes first";
    EXPECT_EQ(searchedWord("a,b;c;d"), "C;D");
}

TEST_F(Lookup, NothingMatches) {
    EXPECT_EQ(find("zzz"), "nothing");
    EXPECT_EQ(find("Abs(Number) "), "nothing") << "longer than any entry";
}

TEST_F(Lookup, AFileWithoutHeadersIsRefreshedAndPassedOver) {
    EXPECT_EQ(find("Last"), files[2].Headers[1]);
    EXPECT_EQ(refreshed, 1);
    const auto filling = [this] { appendHeader(files[1], "Late(X: byte);"); };
    EXPECT_FALSE(findSignature("LATE", {library, libraryIndex, files, 4}, filling))
        << "filled only for the next time";
    EXPECT_TRUE(findSignature("LATE", {library, libraryIndex, files, 4}, filling));
}

TEST_F(Lookup, OnlyFilesOfTheTreeAreSearched) {
    EXPECT_EQ(find("Peek", 1), "nothing");
    EXPECT_EQ(find("Peek", 0), "nothing");
    EXPECT_EQ(find("Peek", 2), files[0].Headers[0]);
    EXPECT_EQ(find("Last", 2), "nothing");
    EXPECT_EQ(refreshed, 0);
}

TEST_F(Lookup, ANodeWithoutAListIsRefreshed) {
    files.clear();
    EXPECT_EQ(find("Peek", 3), "nothing");
    EXPECT_EQ(refreshed, 2);
}

TEST(PrefixIndex, FindsWhatLookingAtEveryTextFinds) {
    std::mt19937 random(3); // the same texts on every run
    const auto word = [&](std::size_t longest) {
        std::string text(random() % (longest + 1), ' ');
        for (char& c : text)
            c = "aAbB_\xE9\xC9("[random() % 8];
        return text;
    };
    for (int round = 0; round < 200; ++round) {
        std::vector<std::string> texts(random() % 60);
        for (std::string& text : texts)
            text = word(6);
        PrefixIndex index;
        index.build(texts);
        for (int search = 0; search < 50; ++search) {
            const std::string wanted = upperCase(word(4));
            std::size_t expected = PrefixIndex::none;
            for (std::size_t i = texts.size(); i-- > 0;) {
                if (texts[i].size() >= wanted.size() &&
                    upperCase(texts[i].substr(0, wanted.size())) == wanted)
                    expected = i;
            }
            ASSERT_EQ(index.first(texts, wanted), expected) << wanted;
        }
        texts.push_back("added");
        ASSERT_EQ(index.first(texts, "ADDED"), texts.size() - 1) << "behind the index's back";
    }
}

TEST(EditorKeys, OnlyTheWindowsOwnKeysMeanSomething) {
    EXPECT_EQ(editorKey(9, 2), EditorKey::nextPane);
    EXPECT_EQ(editorKey(9, 3), EditorKey::previousPane);
    EXPECT_EQ(editorKey(113, 2), EditorKey::calculator);
    EXPECT_EQ(editorKey(114, 2), EditorKey::imageConverter);
    EXPECT_EQ(editorKey(83, 2), EditorKey::saveFile);
    for (const int shift : {0, 1, 3, 4, 6, 7})
        EXPECT_FALSE(editorKey(83, shift)) << shift;
    EXPECT_FALSE(editorKey(9, 0));
    EXPECT_FALSE(editorKey(9, 1));
    EXPECT_FALSE(editorKey(115, 2));
}

TEST(EditorPanes, AreCycledAroundTheEnd) {
    EXPECT_EQ(nextPane(1, 2), 0);
    EXPECT_EQ(nextPane(0, 2), 1);
    EXPECT_EQ(previousPane(0, 2), 1);
    EXPECT_EQ(previousPane(1, 2), 0);
    EXPECT_EQ(nextPane(0, 1), 0);
    EXPECT_EQ(nextPane(0, 0), 0);
    EXPECT_EQ(previousPane(0, 0), 0);
}

} // namespace
} // namespace tavrel
