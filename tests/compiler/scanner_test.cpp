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

TEST(Scanner, AByteOrderMarkAtTheBeginIsNoText) {
    const std::string mark = "\xEF\xBB\xBF";
    EXPECT_EQ(parse(mark + "begin end.").error(), "none");
    EXPECT_EQ(parse(mark + "begin end;").error(), "10 1:10") << "the first column is the one after the mark";
    EXPECT_EQ(parse(mark + "begin\nend;").error(), "10 2:4");
    EXPECT_EQ(parse("begin " + mark + "end.").error(), "41 1:7") << "it means nothing elsewhere";
    EXPECT_EQ(parse(mark + mark + "begin end.").error(), "12 1:1")
        << "without bit 7 its first byte is a letter";
    EXPECT_EQ(parse("\xEF\xBB").error(), "12 1:1");
    MemoryHost host;
    host.files["MAIN.PAS"] = "var i: integer; begin {$I A.INC} end.";
    host.files["A.INC"] = mark + "i := 2; j";
    EXPECT_EQ(parse(host).error(), "41 A.INC 1:9");
}

TEST(Scanner, NoErrorIsReportedInAWrongLineOfAVeryLongFile) {
    const std::string lines(65534, '\n');
    EXPECT_EQ(parse(lines + "begin end;").error(), "10 65535:10");
    EXPECT_EQ(parse(lines + "begin end.\n").error(), "none") << "the line's end does not begin another one";
    const Parsed tooLong = parse(lines + "begin\nend.");
    EXPECT_EQ(tooLong.error(), "99 65535:7");
    EXPECT_EQ(tooLong.diagnostic.detail, "more than 65535 lines in one file");
    EXPECT_EQ(parse(lines + "\n\n\nbegin end;").diagnostic.error, Error::tableOverflow);
}

TEST(Scanner, DevicesOfDosAreNoFiles) {
    for (const char* const name : {"CON.INC", "con", "Nul", "AUX.PAS", "PRN.X", "COM1", "COM9.INC", "LPT1",
                                   "CLOCK$", "A:CON", "SUB\\NUL.INC"}) {
        MemoryHost host;
        host.files["MAIN.PAS"] = "begin {$I " + std::string(name) + "} end.";
        std::string upper = name;
        for (char& c : upper)
            c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        host.files[upper] = host.files[upper + ".PAS"] = ""; // whatever the host has of this name
        const Parsed parsed = parse(host);
        EXPECT_EQ(parsed.error(), "90 1:9") << name;
        EXPECT_NE(parsed.diagnostic.detail.find("a device of DOS"), std::string::npos) << name;
    }
    for (const char* const name : {"CONS.INC", "COM0.INC", "COM.INC", "COM10.INC", "NUL1.INC", "XPRN.INC"}) {
        MemoryHost host;
        host.files["MAIN.PAS"] = "begin {$I " + std::string(name) + "} end.";
        host.files[name] = "";
        EXPECT_EQ(parse(host).error(), "none") << name;
    }
}

// The IDE marks a line of the file that it shows when its tree has none of the name that the record gives.
TEST(Scanner, AnErrorInAFileThatTheTreeDoesNotShowHasTheDirectiveThatIncludesIt) {
    const auto shown = [](const decltype(MemoryHost::files)& files) {
        MemoryHost host;
        host.files = files;
        const Parsed parsed = parse(host);
        EXPECT_EQ(parsed.diagnostic.error, Error::unknownIdentifier);
        const Position place = parsed.diagnostic.shownPosition;
        return parsed.diagnostic.shownFile + " " + std::to_string(unsigned{place.line});
    };
    const std::string wrong = "\n\n\nwrong";
    EXPECT_EQ(shown({{"MAIN.PAS", "begin\n{$I A.INC}\nend."}, {"A.INC", wrong}}), " 0")
        << "it is in the tree";
    EXPECT_EQ(shown({{"MAIN.PAS", "begin\n{$I A}\nend."}, {"A.PAS", wrong}}), "MAIN.PAS 2");
    EXPECT_EQ(shown({{"MAIN.PAS", "begin\n(*$I A.INC*)\nend."}, {"A.INC", wrong}}), "MAIN.PAS 2");
    EXPECT_EQ(shown({{"MAIN.PAS", "begin\n{$I A}\nend."}, {"A.PAS", "\n{$I B.INC}"}, {"B.INC", wrong}}),
              "MAIN.PAS 2")
        << "what it includes is not shown either";
    EXPECT_EQ(shown({{"MAIN.PAS", "begin\n{$I A.INC}\nend."},
                     {"A.INC", "\n\n{$I B.INC}"},
                     {"B.INC", "\n{$I C.INC}"},
                     {"C.INC", wrong}}),
              "B.INC 2");
    EXPECT_EQ(shown({{"MAIN.PAS", "begin\n{$I A}\nend."}, {"A.PAS", "\n{$I B}"}, {"B.PAS", wrong}}),
              "MAIN.PAS 2");
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
    EXPECT_EQ(parse("const A = 32768; var i: integer; begin i := A end.").error(), "44 1:45");
}

TEST(Scanner, LargeNumbersAndThoseWithAPointAreReal) {
    EXPECT_EQ(parse("var r: real; begin r := 32768 + 99999 * 2. + 0. + 5.e1 end.").error(), "none");
    EXPECT_EQ(parse("var i: integer; begin i := 32769 end.").error(), "44 1:28");
    EXPECT_EQ(parse("var a: array[1..3] of byte; begin a(.2.) := 1 end.").error(), "none");
    EXPECT_EQ(parse("begin write(2.) end.").error(), "5 1:14"); // the digraph
}

TEST(Scanner, OnlyTheEndOfAHeadingCounts) {
    EXPECT_EQ(parse("program ros2-30; begin end.").error(), "none");
    EXPECT_EQ(parse("program it's #9 (\" ?\n input, output) {;} ; begin end.").error(), "none");
    EXPECT_EQ(parse("program begin var\nof it; begin end.").error(), "none");
    EXPECT_EQ(parse("program P\n  var i: integer; begin end.").error(), "1 2:3");
    EXPECT_EQ(parse("program P").error(), "91 1:10");
}

TEST(Scanner, Bit7CountsInLiteralsAndCommentsOnly) {
    EXPECT_EQ(parse("\xE2\xE5gi\xEE\xA0\x8D\nen\xE4;").error(), "10 2:4");
    EXPECT_EQ(parse("begin\r\x8A  end;").error(), "10 2:6");
    EXPECT_EQ(parse("var \xE9: intege\xF2; begin I \xBA= \xA4"
                    "1f + 1\xB2 end\xAE")
                  .error(),
              "none");
    EXPECT_EQ(parse("{ \x9A\xFD } begin write('\x94\xA7') end.").text,
              "program\n  (writeString '\\148\\167' 0)\n");
    EXPECT_EQ(parse("begin \x9A end.").error(), "none"); // no end of the file
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
    EXPECT_EQ(parse("{$W} begin end.").error(), "93 1:3");
    EXPECT_EQ(parse("{$z-,R} begin end.").error(), "93 1:6");
    EXPECT_EQ(parse("{$-V}{$F4}{$Q+,N-}{$M 1,2}{$}(*$*) begin end.").error(), "none");
    // What stands with unknown ones counts.
    EXPECT_EQ(parse("var a: array[1..2] of byte; begin {$F4,R+} a[3] := 1 end.").error(), "45 1:46");
}

} // namespace
} // namespace tp3::test
