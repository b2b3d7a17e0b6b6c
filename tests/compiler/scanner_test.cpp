#include "test_source.h"

#include <gtest/gtest.h>

namespace tp3::test {
namespace {

TEST(Scanner, AllLineEndsCount) {
    EXPECT_EQ(parse("begin\nend;").error(), "10 2:4");
    EXPECT_EQ(parse("begin\r\nend;").error(), "10 2:4");
    EXPECT_EQ(parse("begin\rend;").error(), "10 2:4");
    EXPECT_EQ(parse("begin\r\r\n\n\rend;").error(), "10 5:4");
}

TEST(Scanner, ControlZEndsAFile) {
    EXPECT_EQ(parse("begin end.\x1A garbage \"").error(), "none");
    EXPECT_EQ(parse("begin \x1A end.").error(), "91 1:7");
    MemoryHost host;
    host.files["MAIN.PAS"] = "var i: integer; begin {$I A} + 1 end.";
    host.files["A.PAS"] = "i := 2 \x1A nonsense";
    EXPECT_EQ(parse(host).error(), "none");
}

TEST(Scanner, NothingBehindTheLastPeriodMatters) {
    EXPECT_EQ(parse("begin end. \" ? {").error(), "none");
}

TEST(Scanner, LongLinesAndColumns) {
    const std::string blanks(100000, ' ');
    EXPECT_EQ(parse("begin" + blanks + "end;").error(), "10 1:255");
    EXPECT_EQ(parse(std::string(200, ' ') + "begin end;").error(), "10 1:210");
}

TEST(Scanner, LiteralsThatTouchAreOne) {
    const Parsed parsed = parse("const S = 'it''s'^G#13#$41'b'^z; begin write(S, ^[, #65) end.");
    EXPECT_EQ(parsed.error(), "none");
    EXPECT_EQ(parsed.text,
              "program\n  block\n    (writeString 'it's\\7\\13Ab\\26' 0)\n    (writeChar c'\\27' 0)\n"
              "    (writeChar c'A' 0)\n");
}

TEST(Scanner, CommentsOfOneKindEncloseTheOther) {
    EXPECT_EQ(parse("{ (* } begin (* } { *) end.").error(), "none");
    EXPECT_EQ(parse("{ { } begin end.").error(), "none");
}

TEST(Scanner, DigraphsAreBrackets) {
    EXPECT_EQ(parse("var a: array(.1..3.) of byte; begin a(.1.) := 2 end.").text,
              "program\n  (index A 1) := 2\n");
}

TEST(Scanner, NumbersAndWordsMayTouch) {
    EXPECT_EQ(parse("var i: integer; begin for i:=1to 3do if i=2then i:=4else i:=$1F end.").error(), "none");
}

TEST(Scanner, MinusMakesTheLeastIntegerValid) {
    EXPECT_EQ(parse("const A = -32768; var i: integer; begin i := -32768 end.").error(), "none");
    EXPECT_EQ(parse("const A = 32768; begin end.").diagnostic.error, Error::integerConstant);
}

TEST(Scanner, IncludesNestToEight) {
    MemoryHost host;
    host.files["MAIN.PAS"] = "begin {$I A1} end.";
    for (int i = 1; i <= 9; ++i)
        host.files["A" + std::to_string(i) + ".PAS"] =
            i < 8 ? "{$I a" + std::to_string(i + 1) + ".pas}" : "writeln;";
    EXPECT_EQ(parse(host).error(), "none");
    host.files["A8.PAS"] = "{$I A9}";
    EXPECT_EQ(parse(host).error(), "96 A8.PAS 1:3");
}

TEST(Scanner, LinesOfAllFilesAreCounted) {
    MemoryHost host;
    host.files["MAIN.PAS"] = "begin\n{$I A}\nend.\n";
    host.files["A.PAS"] = "writeln;\nwriteln;\n";
    EXPECT_EQ(parse(host).lines, 4U);
}

TEST(Scanner, DirectiveListsAndText) {
    EXPECT_EQ(parse("{$R+,I-,W9,k+ any text} begin end.").error(), "none");
    EXPECT_EQ(parse("(*$A-*) begin end.").error(), "none");
    EXPECT_EQ(parse("{$R+,z-} begin end.").error(), "93 1:6");
    EXPECT_EQ(parse("{$W} begin end.").error(), "93 1:3");
}

} // namespace
} // namespace tp3::test
