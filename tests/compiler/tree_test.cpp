#include "test_source.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace tp3::test {
namespace {

// The tree of a program whose declarations and statements are given.
std::string tree(const std::string& declarations, const std::string& statements) {
    const Parsed parsed = parse(declarations + "\nbegin " + statements + " end.");
    return parsed.ok ? parsed.text : parsed.error() + " " + parsed.diagnostic.detail;
}

TEST(Tree, FoldsConstantsAsTheProgramWouldReckon) {
    EXPECT_EQ(tree("var i: integer;", "i := 32767 + 1; i := 7 div -2; i := -7 mod 3; i := $FFFF shr 4;"
                                      "i := not 0; i := 200 * 200"),
              "program\n  I := -32768\n  I := -3\n  I := -1\n  I := 4095\n  I := -1\n  I := -25536\n");
}

TEST(Tree, MinusBindsTightest) {
    EXPECT_EQ(tree("var i, j: integer;", "i := -j mod 3; i := j * -i"),
              "program\n  I := (mod (- J) 3)\n  I := (* J (- I))\n");
}

// Each program in trees/ has the constants and trees that it gives in a file beside it.
TEST(Tree, GoldenPrograms) {
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(TREE_FOLDER)) {
        if (entry.path().extension() != ".pas")
            continue;
        SCOPED_TRACE(entry.path().filename().string());
        const Parsed parsed = parse(readFile(entry.path()), allFeatures);
        EXPECT_EQ(parsed.error(), "none");
        std::filesystem::path expected = entry.path();
        EXPECT_EQ(parsed.constants + parsed.text, readFile(expected.replace_extension(".txt")));
        ++count;
    }
    EXPECT_GE(count, 3U);
}

} // namespace
} // namespace tp3::test
