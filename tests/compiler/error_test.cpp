#include "test_source.h"

#include <gtest/gtest.h>

#include <set>

namespace tp3::test {
namespace {

// Every program in the folder begins with a comment such as { error 44 5:12 } or { error 41 NAME.INC 2:3 }.
TEST(Errors, ProgramsGiveTheErrorThatTheyName) {
    MemoryHost host;
    for (const auto& entry : std::filesystem::directory_iterator(ERROR_FOLDER))
        host.files[entry.path().filename().string()] = readFile(entry.path());
    std::set<std::string> numbers;
    std::size_t programs = 0;
    for (const auto& [name, source] : std::map(host.files)) {
        constexpr std::string_view prefix = "{ error ";
        if (source.substr(0, prefix.size()) != prefix)
            continue;
        const std::string expected = source.substr(prefix.size(), source.find(" }") - prefix.size());
        host.files["MAIN.PAS"] = source;
        for (const std::size_t chunk : {1U, 7U, 100000U}) {
            host.chunk = chunk;
            const Parsed parsed = parse(host, allFeatures);
            EXPECT_EQ(parsed.error(), expected) << name << " " << parsed.diagnostic.detail;
            EXPECT_FALSE(parsed.ok);
        }
        numbers.insert(expected.substr(0, expected.find(' ')));
        ++programs;
    }
    EXPECT_GE(programs, 200U);
    // Every number except those that no source gives: 58, since bit 7 does not count, 77, since programs
    // never run in memory, 92 and 94, which the disk gives.
    std::set<std::string> missing;
    for (int number = 1; number < 100; ++number)
        if (number != 58 && number != 77 && number != 92 && number != 94 &&
            errorText(static_cast<Error>(number)) != "Unknown error" &&
            !numbers.contains(std::to_string(number)))
            missing.insert(std::to_string(number));
    EXPECT_EQ(missing, std::set<std::string>());
}

// What the compiler cannot make code for is refused, part by part.
TEST(Errors, PartsThatAreHeldBackAreUnknown) {
    constexpr Features none{};
    EXPECT_EQ(parse("var r: real; begin end.", none).error(), "41 1:8");
    EXPECT_EQ(parse("var i: integer; begin i := 1.5 end.", none).error(), "41 1:28");
    EXPECT_EQ(parse("var i: integer; begin i := i / 2 end.", none).error(), "41 1:30");
    EXPECT_EQ(parse("var i: integer; begin i := trunc(i) end.", none).error(), "41 1:28");
    EXPECT_EQ(parse("type s = set of char; begin end.", none).error(), "41 1:10");
    EXPECT_EQ(parse("begin if 1 in [1] then end.", none).error(), "41 1:15");
    EXPECT_EQ(parse("var f: text; begin end.", none).error(), "41 1:8");
    EXPECT_EQ(parse("var f: file of byte; begin end.", none).error(), "41 1:8");
    EXPECT_EQ(parse("begin write(con, 'x') end.", none).error(), "41 1:13");
    EXPECT_EQ(parse("var p: ^integer; begin new(p) end.", none).error(), "41 1:24");
    EXPECT_EQ(parse("begin heapptr := 0 end.", none).error(), "41 1:7");
}

TEST(Errors, MissingMainFileIsNamed) {
    MemoryHost host;
    const Parsed parsed = parse(host);
    EXPECT_EQ(parsed.diagnostic.error, Error::fileNotFound);
    EXPECT_EQ(parsed.diagnostic.detail, "MAIN.PAS");
    EXPECT_EQ(parsed.diagnostic.file, "MAIN.PAS");
}

TEST(Errors, MissingIncludeIsNamedWithoutFolderOfTheHolder) {
    MemoryHost host;
    host.files["MAIN.PAS"] = "begin\n{$I sub\\one.inc} end.";
    host.files["SUB\\ONE.INC"] = "{$I two}";
    const Parsed parsed = parse(host);
    EXPECT_EQ(parsed.error(), "90 ONE.INC 1:3");
    EXPECT_EQ(parsed.diagnostic.detail, "TWO.PAS");
}

TEST(Errors, AnIncludeThatDosCannotNameIsNamedWhole) {
    MemoryHost host;
    const std::string reason = " (DOS takes names of 8 characters, a dot and 3)";
    for (const char* const name : {"MUCHTOOLONG.INC", "A.LONG", "TWO.DOTS.INC", "MY FILE.INC", "A+B.INC"}) {
        host.files["MAIN.PAS"] = "begin\n{$I " + std::string(name) + " } end.";
        const Parsed parsed = parse(host);
        EXPECT_EQ(parsed.error(), "90 2:3") << name;
        EXPECT_EQ(parsed.diagnostic.detail, name + reason);
    }
    host.files["MY.INC"] = "";
    host.files["MAIN.PAS"] = "begin\n{$I my.inc and more words} end.";
    EXPECT_EQ(parse(host).error(), "none");
}

TEST(Errors, AnIncludeOnAnotherDriveIsTheOneHere) {
    MemoryHost host;
    host.files["MAIN.PAS"] = "{$I A:SUB.INC} {$i sub.inc; } (*$I b:sub*) begin x := 1; y := 2 end.";
    host.files["SUB.INC"] = "var x: integer;";
    host.files["SUB.PAS"] = "var y: integer;";
    EXPECT_EQ(parse(host).error(), "43 SUB.INC 1:5"); // the same file twice
    host.files["A:SUB.INC"] = "var z: integer;";
    EXPECT_EQ(parse(host).error(), "none"); // the one on the drive goes first
    host.files["MAIN.PAS"] = "{$I A:NONE.INC; } begin end.";
    const Parsed parsed = parse(host);
    EXPECT_EQ(parsed.error(), "90 1:3");
    EXPECT_EQ(parsed.diagnostic.detail, "A:NONE.INC");
}

TEST(Errors, TextsHoldNoQuotes) {
    for (int number = 1; number < 100; ++number)
        EXPECT_EQ(errorText(static_cast<Error>(number)).find_first_of("\"'"), std::string_view::npos);
}

TEST(Errors, DeepNestingEndsWithAnError) {
    const std::string deep(100000, '(');
    EXPECT_EQ(parse("var i: integer; begin i := " + deep).diagnostic.error, Error::tableOverflow);
    std::string statements = "begin ";
    for (int i = 0; i < 100000; ++i)
        statements += "begin ";
    EXPECT_EQ(parse(statements).diagnostic.error, Error::tableOverflow);
    std::string sum = "var i: integer; begin i := i";
    for (int i = 0; i < 100000; ++i)
        sum += "+i";
    EXPECT_EQ(parse(sum + " end.").diagnostic.error, Error::tableOverflow);
    std::string signs = "var i: integer; begin i := ";
    EXPECT_EQ(parse(signs + std::string(100000, '-') + "i end.").diagnostic.error, Error::tableOverflow);
    std::string records = "var i: ";
    for (int i = 0; i < 100000; ++i)
        records += "record a: ";
    EXPECT_EQ(parse(records).diagnostic.error, Error::tableOverflow);
}

TEST(Errors, LongElseIfChainIsNotDeep) {
    std::string chain = "var i: integer; begin ";
    for (int i = 0; i < 5000; ++i)
        chain += "if i = " + std::to_string(i) + " then i := 2 else ";
    EXPECT_EQ(parse(chain + " end.").error(), "none");
}

TEST(Errors, LittleStackIsAnError) {
    MemoryHost host;
    host.stack = 100;
    host.files["MAIN.PAS"] = "begin end.";
    EXPECT_EQ(parse(host).diagnostic.error, Error::tableOverflow);
}

} // namespace
} // namespace tp3::test
