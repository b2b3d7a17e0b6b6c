#include "test_source.h"

#include <gtest/gtest.h>

namespace tp3::test {
namespace {

// Ordinals count variables in the order of their declaration.
TEST(Facts, AddressesAndNestedUse) {
    const Parsed parsed = parse("var a, b, c, d, e, f: integer; g: byte absolute f; h: array[0..1] of byte;"
                                "procedure P(var x: integer; y: integer); begin x := a; b := y end;"
                                "begin P(c, d); e := 1; read(h[1]) end.");
    ASSERT_EQ(parsed.error(), "none");
    const auto& facts = parsed.facts;
    ASSERT_EQ(facts.size(), 10U);
    EXPECT_TRUE(facts[0].used && facts[0].usedByNested && !facts[0].assigned && !facts[0].addressTaken);
    EXPECT_TRUE(facts[1].assigned && facts[1].usedByNested && !facts[1].used);
    EXPECT_TRUE(facts[2].addressTaken && !facts[2].usedByNested);
    EXPECT_TRUE(facts[3].used && !facts[3].assigned);
    EXPECT_TRUE(facts[4].assigned && !facts[4].used);
    EXPECT_TRUE(facts[5].addressTaken);
    EXPECT_TRUE(facts[7].addressTaken);
    EXPECT_TRUE(facts[8].assigned && !facts[8].usedByNested && !facts[8].addressTaken);
}

TEST(Facts, ExpressionsGivenByAddress) {
    const Parsed parsed =
        parse("type S = string[9]; var a, b, c, d, e: integer; s1, s2: S; r: record x: byte end;"
              "begin a := addr(b); val(s1, c, d); insert('x', s2, 1); move(e, r.x, 1) end.");
    ASSERT_EQ(parsed.error(), "none");
    const bool expected[] = {false, true, true, true, true, false, true, true};
    for (std::size_t i = 0; i < std::size(expected); ++i)
        EXPECT_EQ(parsed.facts[i].addressTaken, expected[i]) << i;
}

TEST(Facts, CallsAreListedOnce) {
    const Parsed parsed = parse("procedure A; forward; procedure B; begin A; A end; procedure A; begin B end;"
                                "function F: integer; begin F := F + 1 end; procedure Unused; begin end;"
                                "var i: integer; begin B; i := addr(F) end.");
    ASSERT_EQ(parsed.error(), "none");
    using List = std::vector<std::uint16_t>;
    EXPECT_EQ(parsed.callees, (std::vector<List>{{2, 3}, {2}, {1}, {3}, {}}));
}

TEST(Facts, FieldsAreUsedThroughAWith) {
    const Parsed parsed =
        parse("var r: record x: integer end; procedure P; begin with r do x := 1 end; begin end.");
    ASSERT_EQ(parsed.error(), "none");
    EXPECT_TRUE(parsed.facts[0].usedByNested && parsed.facts[0].used);
}

/// Writes down the options of statements that call something, in their order.
class OptionConsumer : public BodyConsumer {
  public:
    void enterRoutine(Routine&) override {}
    void globalVariable(Symbol&) override {}
    void typedConstant(Symbol&) override {}
    void body(Routine&, Stmt* statements, Arena::Mark) override { walk(statements); }
    std::string calls;

  private:
    void walk(const Stmt* stmt) {
        for (; stmt != nullptr; stmt = stmt->next) {
            if (stmt->kind == StmtKind::call)
                calls += (stmt->options & optionIoCheck) != 0 ? '+' : '-';
            walk(stmt->body);
            walk(stmt->other);
        }
    }
};

// A directive counts from the next statement on, even where it stands right behind one.
TEST(Facts, DirectivesOfStatements) {
    MemoryHost host;
    host.files["MAIN.PAS"] =
        "{$B-,U+} begin {$B+} clrscr; {$I-} clreol {$I+}; clrscr; {$I-} if keypressed then clrscr {$I+} "
        "else clreol; {$I-} writeln {$I+}; case 1 of 1: clrscr {$I-} end; clrscr end.";
    Arena arena;
    OptionConsumer consumer;
    ParserOptions options;
    options.mainFile = "MAIN.PAS";
    Parser parser(host, arena, options, consumer);
    ASSERT_TRUE(parser.run());
    EXPECT_EQ(consumer.calls, "+-+-+-+-");
    EXPECT_EQ(parser.programOptions(),
              optionIoCheck | optionUserInterrupt | optionControlC | optionArraySpeed | optionAbsoluteCode);
}

/// Measures what a parser holds at most.
class CountingConsumer : public BodyConsumer {
  public:
    void enterRoutine(Routine&) override {}
    void globalVariable(Symbol&) override {}
    void typedConstant(Symbol&) override {}
    void body(Routine&, Stmt*, Arena::Mark) override { ++bodies; }
    int bodies = 0;
};

TEST(Facts, RoutinesGiveTheirMemoryBack) {
    std::string source;
    for (int i = 0; i < 1000; ++i) {
        const std::string n = std::to_string(i);
        source += "procedure Routine" + n + "(a: integer);\nvar Local" + n + ", j: integer;\nbegin\n";
        for (int line = 0; line < 16; ++line)
            source += "  Local" + n + " := a * 2 + j;\n";
        source += "end;\n";
    }
    MemoryHost host;
    host.files["MAIN.PAS"] = source + "begin end.";
    Arena arena;
    CountingConsumer consumer;
    ParserOptions options;
    options.mainFile = "MAIN.PAS";
    Parser parser(host, arena, options, consumer);
    ASSERT_TRUE(parser.run());
    EXPECT_EQ(consumer.bodies, 1001);
    EXPECT_GT(parser.lineCount(), 19000U);
    // Heading, routine and parameter of each, some 500 bytes where pointers have eight.
    EXPECT_LT(arena.capacity(), 700000U);
}

} // namespace
} // namespace tp3::test
