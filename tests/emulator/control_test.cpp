#include "emulator/control.h"

#include <gtest/gtest.h>
#include <vector>

namespace emulator {
namespace {

using Kind = Said::Kind;

std::vector<Said> read(std::string_view text, std::size_t piece) {
    OutputReader reader;
    std::vector<Said> result;
    for (; !text.empty(); text.remove_prefix(std::min(piece, text.size()))) {
        reader.add(text.substr(0, piece));
        while (std::optional<Said> said = reader.next())
            result.push_back(*said);
    }
    return result;
}

TEST(ControlCommand, EscapesWhatXmlTakesForItself) {
    EXPECT_EQ(controlCommand("set renderer SDLGL-PP"), "<command>set renderer SDLGL-PP</command>\n");
    EXPECT_EQ(controlCommand("if {1 < 2 && 3 > 2} {}"),
              "<command>if {1 &lt; 2 &amp;&amp; 3 &gt; 2} {}</command>\n");
}

TEST(TclWord, StandsForTheTextWhateverItHolds) {
    EXPECT_EQ(tclWord("C:\\my disks\\d.dsk"), "\"C:\\\\my disks\\\\d.dsk\"");
    EXPECT_EQ(tclWord("a$b[c]{d}\"e;\n"), "\"a\\$b\\[c\\]\\{d\\}\\\"e\\;\\n\"");
    EXPECT_EQ(tclWord(""), "\"\"");
}

TEST(ControlOutput, IsTakenApartWhateverThePieces) {
    const std::string_view text =
        "warning: no sound\r\n<openmsx-output>\n<reply result=\"ok\">a &lt;b&gt; &amp;amp;</reply>\n"
        "<log level=\"warning\">two\nlines</log>\n<reply result=\"nok\">no such\n</reply>\n"
        "<update type=\"status\" name=\"cpu\">suspended</update>\n<reply result=\"ok\"></reply>\n"
        "<replying\nend\n";
    const std::vector<Said> expected = {{Kind::plain, "warning: no sound"},
                                        {Kind::plain, "<openmsx-output>"},
                                        {Kind::reply, "a <b> &amp;"},
                                        {Kind::log, "two\nlines"},
                                        {Kind::failure, "no such\n"},
                                        {Kind::update, "suspended"},
                                        {Kind::reply, ""},
                                        {Kind::plain, "<replying"},
                                        {Kind::plain, "end"}};
    for (const std::size_t piece : {std::size_t{1}, std::size_t{2}, std::size_t{7}, text.size()})
        EXPECT_EQ(read(text, piece), expected) << piece;
}

TEST(ControlOutput, HasCharactersByNameAndByNumber) {
    const std::vector<Said> said =
        read("<reply result=\"ok\">&apos;&quot;&#x0a;&#65;&#x3C; &#x0; &#300; &#x; &none; & &</reply>", 5);
    ASSERT_EQ(said.size(), 1U);
    EXPECT_EQ(said[0].text, "'\"\nA< &#x0; &#300; &#x; &none; & &");
}

TEST(ControlOutput, WaitsForTheEnd) {
    EXPECT_TRUE(read("half a line", 3).empty());
    EXPECT_TRUE(read("<reply result=\"ok\">and no end", 3).empty());
    EXPECT_TRUE(read("<rep", 1).empty());
    EXPECT_TRUE(read("", 1).empty());
}

TEST(ControlOutput, WithoutEndDoesNotPileUp) {
    const std::vector<Said> said = read("<log>" + std::string(2U << 20, 'x'), 1U << 16);
    ASSERT_FALSE(said.empty());
    EXPECT_EQ(said[0].kind, Kind::plain);
}

} // namespace
} // namespace emulator
