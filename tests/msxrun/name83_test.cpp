#include "msxrun/name83.h"

#include <gtest/gtest.h>

namespace msxrun {
namespace {

std::string text(const Name83& name) {
    return {name.data(), name.size()};
}

TEST(Name83, FromHost) {
    EXPECT_EQ(text(nameFromHost("a.pas").value()), "A       PAS");
    EXPECT_EQ(text(nameFromHost("NOTYPE").value()), "NOTYPE     ");
    for (const char* name : {"", ".", "..", ".pas", "ninechars", "a.long", "a.b.c", "a b", "a*b"}) {
        EXPECT_FALSE(nameFromHost(name)) << name;
    }
}

TEST(Name83, BackToHost) {
    EXPECT_EQ(nameForHost(nameFromHost("demo.pas").value()), "DEMO.PAS");
    EXPECT_EQ(nameForHost(nameFromHost("demo").value()), "DEMO");
}

TEST(Name83, WordsOfTheCommandLine) {
    const ParsedWord word = parseWord("b:te*.p?s");
    EXPECT_EQ(word.drive, 2U);
    EXPECT_EQ(text(word.name), "TE??????P?S");
    EXPECT_EQ(text(parseWord("*.*").name), "???????????");
    EXPECT_EQ(text(parseWord("/switch").name), "           ");
    EXPECT_EQ(text(parseWord("").name), "           ");
    EXPECT_EQ(text(parseWord("averylongname.types").name), "AVERYLONTYP");
}

TEST(Name83, Patterns) {
    const Name83 name = nameFromHost("data.txt").value();
    EXPECT_TRUE(matches(parseWord("d*.t?t").name, name));
    EXPECT_TRUE(matches(parseWord("*.*").name, name));
    EXPECT_FALSE(matches(parseWord("d*.p*").name, name));
}

} // namespace
} // namespace msxrun
