// Sources that nobody would write, through both passes of the compiler.
#include "compiler.h"
#include "test_source.h"

#include <gtest/gtest.h>

namespace tp3::test {
namespace {

CompileResult compileText(const std::string& text) {
    MemoryHost host;
    host.files["MAIN.PAS"] = text;
    CompileOptions options;
    options.mainFile = "MAIN.PAS";
    return compile(host, options);
}

Error errorOf(const std::string& text) {
    return compileText(text).diagnostic.error;
}

TEST(HostileSource, NoLineEnds) {
    EXPECT_TRUE(compileText("program NoEnds; var i: Integer; begin i := 1; WriteLn(i) end.").ok);
}

TEST(HostileSource, OnlyCarriageReturns) {
    EXPECT_TRUE(compileText("program Old;\rvar i: Integer;\rbegin\ri := 1;\rWriteLn(i)\rend.\r").ok);
}

TEST(HostileSource, ALineOfAMegabyte) {
    std::string blanks = "begin ";
    blanks.append(1U << 20U, ' ');
    EXPECT_TRUE(compileText(blanks + "end.").ok);
    std::string comment = "begin { ";
    comment.append(1U << 20U, 'x');
    EXPECT_TRUE(compileText(comment + " } end.").ok);
    EXPECT_FALSE(compileText("begin WriteLn('" + std::string(1U << 20U, 'x') + "') end.").ok);
    std::string statements = "var i: Integer; begin ";
    while (statements.size() < 1U << 20U)
        statements += "Write(i); ";
    const CompileResult many = compileText(statements + "end.");
    EXPECT_FALSE(many.ok) << "this is more code than an MSX has memory";
    EXPECT_EQ(many.diagnostic.error, Error::outOfMemory);
}

TEST(HostileSource, MoreValuesThanNumbers) {
    // Nothing reaches the statements, so that there is no code that would be too large.
    std::string statements = "var k, j: Integer; begin Exit; ";
    for (int i = 0; i < 70000; ++i)
        statements += "k := (k + j) * j; ";
    EXPECT_EQ(errorOf(statements + "end."), Error::outOfMemory);
}

TEST(HostileSource, AHundredThousandParentheses) {
    const std::string open(100000, '(');
    const std::string close(100000, ')');
    EXPECT_EQ(errorOf("var i: Integer; begin i := " + open + "1" + close + " end."), Error::tableOverflow);
}

TEST(HostileSource, NeverEndingThings) {
    EXPECT_FALSE(compileText("begin { never closed").ok);
    EXPECT_FALSE(compileText("begin (* never closed").ok);
    EXPECT_FALSE(compileText("begin WriteLn('never closed").ok);
    EXPECT_FALSE(compileText("").ok);
    EXPECT_FALSE(compileText(std::string(100000, '\0')).ok);
    EXPECT_FALSE(compileText("begin end").ok);
}

TEST(HostileSource, AnIncludeThatIncludesItself) {
    MemoryHost host;
    host.files["MAIN.PAS"] = "begin {$I LOOP.INC} end.";
    host.files["LOOP.INC"] = "WriteLn; {$I LOOP2.INC}";
    host.files["LOOP2.INC"] = "WriteLn; {$I LOOP.INC}";
    CompileOptions options;
    options.mainFile = "MAIN.PAS";
    const CompileResult result = compile(host, options);
    EXPECT_FALSE(result.ok);
    EXPECT_NE(result.diagnostic.file, "MAIN.PAS") << "the error is where the chain became too long";
}

TEST(HostileSource, ManyIdentifiers) {
    std::string text = "program Many;\nvar\n";
    for (int i = 0; i < 5000; ++i)
        text += "  variable" + std::to_string(i) + ": Integer;\n";
    text += "begin\n";
    for (int i = 0; i < 3000; ++i)
        text += "  variable" + std::to_string(i) + " := variable" + std::to_string(i + 1) + ";\n";
    EXPECT_TRUE(compileText(text + "end.\n").ok);
}

} // namespace
} // namespace tp3::test
