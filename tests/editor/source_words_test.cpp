// What the editor's keys know about Pascal source.
#include "editor/source_words.h"

#include <gtest/gtest.h>

namespace tavrel {
namespace {

std::string words(std::string_view text) {
    std::string all;
    for (const SourceWord& word : sourceWords(text))
        all += std::string(word.text) + "|";
    return all;
}

TEST(SourceWords, CommentsAndStringsAreNone) {
    EXPECT_EQ(words("x1:=y_2;{ begin } 'it''s (*' (* 'end' *) Z"), "x1|:|=|y_2|;|Z|");
    EXPECT_EQ(words("a 'open\r\nb { open"), "a|b|") << "a string ends with its line, a comment with the text";
    EXPECT_EQ(words("(* { *) a"), "a|");
    EXPECT_EQ(words(""), "");
}

TEST(OpensBlock, AfterTheWordsThatOpenOne) {
    for (const char* const line : {"begin", "  if a = 1 then", "for i := 1 to 9 do { all }",
                                   "type r = Record", "repeat", "case x of", "  CASE f(x) OF (* *)"})
        EXPECT_TRUE(opensBlock(line)) << line;
    for (const char* const line : {"", "begin x", "end", "x := 'then'", "{ then }", "beginning",
                                   "a: array[1..2] of", "'begin", "set of"})
        EXPECT_FALSE(opensBlock(line)) << line;
}

TEST(ToggleComments, PutsEachLineIntoACommentAndTakesItOut) {
    const std::string code = "  a := 1;\r\n\r\n\tb := 2; { two }\r\nc";
    const std::string comments = "  { a := 1; }\r\n\r\n\t(* b := 2; { two } *)\r\n{ c }";
    EXPECT_EQ(toggleComments(code), comments);
    EXPECT_EQ(toggleComments(comments), code);
}

TEST(ToggleComments, OneLineThatIsNoneMakesAllOfThemOne) {
    EXPECT_EQ(toggleComments("{ a }\nb"), "(* { a } *)\n{ b }");
}

TEST(ToggleComments, WhatNeitherKindCanHoldStays) {
    EXPECT_EQ(toggleComments("a { x } (* y *)\n"), "a { x } (* y *)\n");
    EXPECT_EQ(toggleComments("{ a } b { c }"), "(* { a } b { c } *)")
        << "two comments are no comment of the line";
    EXPECT_EQ(toggleComments(" \r\n"), " \r\n");
}

TEST(DeclarationLine, IsTheRoutinesBody) {
    const std::string text = "program P;\r\nprocedure A(x: byte; y: byte); forward;\r\n{ procedure B; }\r\n"
                             "function b: byte;\r\nbegin a(1, 2) end;\r\nprocedure a;\r\n";
    EXPECT_EQ(declarationLine(text, "A"), 5U);
    EXPECT_EQ(declarationLine(text, "B"), 3U);
    EXPECT_EQ(declarationLine(text, "C"), std::nullopt);
    EXPECT_EQ(declarationLine("procedure a; forward;\nbegin a end.", "A"), 0U) << "better than nothing";
}

TEST(DeclarationLine, OfOtherNamesIsTheirFirst) {
    const std::string text =
        "const\n  Max = 9;\ntype T = byte;\nvar a, b: T;\n  c: byte;\nbegin\n  c := Max; d := 1\nend.";
    EXPECT_EQ(declarationLine(text, "max"), 1U);
    EXPECT_EQ(declarationLine(text, "t"), 2U);
    EXPECT_EQ(declarationLine(text, "B"), 3U);
    EXPECT_EQ(declarationLine(text, "A"), 3U);
    EXPECT_EQ(declarationLine(text, "C"), 4U);
    EXPECT_EQ(declarationLine(text, "D"), std::nullopt) << "an assignment declares nothing";
}

TEST(MatchingWord, GoesBetweenBeginAndEnd) {
    const std::string text = "begin if a then begin x end { end } end.";
    const std::size_t inner = text.find("begin x");
    EXPECT_EQ(matchingWord(text, 2), text.find("end."));
    EXPECT_EQ(matchingWord(text, text.find("end.")), 0U);
    EXPECT_EQ(matchingWord(text, inner), text.find("end {"));
    EXPECT_EQ(matchingWord(text, text.find("end {") + 3), inner) << "behind the word too";
    EXPECT_EQ(matchingWord(text, text.find("if")), std::nullopt);
    EXPECT_EQ(matchingWord(text, text.find("end }")), std::nullopt) << "in a comment";
}

TEST(MatchingWord, KnowsCaseRecordAndRepeat) {
    const std::string text =
        "r = record a: byte; case b: byte of 1: (c: byte) end; repeat case x of 1: y end until z";
    EXPECT_EQ(matchingWord(text, text.find("record")), text.find("end;"))
        << "a variant has no end of its own";
    EXPECT_EQ(matchingWord(text, text.find("repeat")), text.find("until"));
    EXPECT_EQ(matchingWord(text, text.find("case x")), text.find("end until"));
    EXPECT_EQ(matchingWord("begin until end", 0), std::nullopt) << "until closes no begin";
    EXPECT_EQ(matchingWord("end", 0), std::nullopt);
}

} // namespace
} // namespace tavrel
