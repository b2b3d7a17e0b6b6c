#include "image/command_line.h"

#include <gtest/gtest.h>

namespace image {
namespace {

TEST(MsximgCommandLine, OpensTheWindow) {
    EXPECT_TRUE(parseCommandLine({}).window);
    EXPECT_TRUE(parseCommandLine({"1"}).window);
    EXPECT_EQ(parseCommandLine({"1"}).input, "") << "what an editor starts it with";
    EXPECT_TRUE(parseCommandLine({"C:\\A.PNG"}).window);
    EXPECT_EQ(parseCommandLine({"C:\\A.PNG"}).input, "C:\\A.PNG");
    EXPECT_FALSE(parseCommandLine({"a.png", "a.sc5"}).window);
    EXPECT_TRUE(parseCommandLine({"a", "b", "--help"}).help);
}

TEST(MsximgCommandLine, TakesEveryOption) {
    const CommandLine line =
        parseCommandLine({"in.png", "--screen", "7", "--dither", "ordered", "out.bin", "--palette", "P.PAL",
                          "--resize", "fill", "--palette-out", "p.inc", "--preview", "p.bmp"});
    EXPECT_EQ(line.input, "in.png");
    EXPECT_EQ(line.output, "out.bin");
    EXPECT_EQ(line.options.screen, 7);
    EXPECT_EQ(line.options.dither, Dither::ordered);
    EXPECT_EQ(line.options.resize, Resize::fill);
    EXPECT_EQ(line.palette, PaletteKind::file);
    EXPECT_EQ(line.paletteFile, "P.PAL");
    EXPECT_EQ(line.paletteOutput, "p.inc");
    EXPECT_EQ(line.previewOutput, "p.bmp");
    EXPECT_EQ(parseCommandLine({"a", "b.sc5", "--dither", "none"}).options.dither, Dither::none);
    EXPECT_EQ(parseCommandLine({"a", "b.sc5", "--dither", "fs"}).options.dither, Dither::errorDiffusion);
    EXPECT_EQ(parseCommandLine({"a", "b.sc5", "--resize", "fit"}).options.resize, Resize::fit);
    EXPECT_EQ(parseCommandLine({"a", "b.sc5", "--resize", "stretch"}).options.resize, Resize::stretch);
}

TEST(MsximgCommandLine, FillsInWhatIsMissing) {
    CommandLine line = parseCommandLine({"a.b\\in.png", "C:\\x.y\\out", "--screen", "5"});
    EXPECT_EQ(line.output, "C:\\x.y\\out.sc5");
    EXPECT_EQ(line.paletteOutput, "C:\\x.y\\out.pl5");
    EXPECT_EQ(line.palette, PaletteKind::best);
    EXPECT_FALSE(line.options.palette);
    line = parseCommandLine({"in.png", "OUT.SC7"});
    EXPECT_EQ(line.options.screen, 7);
    EXPECT_EQ(line.paletteOutput, "OUT.pl7");
    EXPECT_EQ(parseCommandLine({"in.png", "out.scc"}).options.screen, 12);
    EXPECT_EQ(parseCommandLine({"in.png", "out.sc8"}).paletteOutput, "");
    EXPECT_EQ(parseCommandLine({"in.png", "out.sc2"}).options.palette, powerOnPalette);
    EXPECT_FALSE(parseCommandLine({"in.png", "out.sc2", "--palette", "auto"}).options.palette);
    EXPECT_EQ(parseCommandLine({"in.png", "out.sc5", "--palette", "fixed"}).options.palette, powerOnPalette);
}

TEST(MsximgCommandLine, RefusesWhatItDoesNotKnow) {
    const std::vector<std::vector<std::string>> wrong = {{"a", "b"},
                                                         {"--screen", "5"},
                                                         {"a", "b", "c", "--screen", "5"},
                                                         {"a", "b", "--screen", "3"},
                                                         {"a", "b", "--screen", "05"},
                                                         {"a", "b", "--screen"},
                                                         {"a", "b.sc5", "--dither", "x"},
                                                         {"a", "b.sc5", "--resize", ""},
                                                         {"a", "b.sc5", "--what", "x"}};
    for (const auto& arguments : wrong)
        EXPECT_THROW(parseCommandLine(arguments), UsageError);
    EXPECT_THROW(parseCommandLine({"--what"}), UsageError);
}

TEST(MsximgCommandLine, PalettesComeInTwoForms) {
    for (const char* const name : {"a.inc", "A.PAS", "a.lib", "a.txt"})
        EXPECT_TRUE(holdsPascal(name)) << name;
    for (const char* const name : {"a.pl5", "a", "inc", "a.inc\\b"})
        EXPECT_FALSE(holdsPascal(name)) << name;
    Conversion conversion;
    conversion.screen = findScreen(7);
    conversion.palette[0] = {1, 2, 3};
    EXPECT_EQ(paletteContent(conversion, true).substr(0, 23), "SetPalette(00,1,2,3);\r\n");
    EXPECT_EQ(paletteContent(conversion, false).substr(0, 9),
              std::string("\xFE\x80\xFA\x9F\xFA\0\0\x13\x02", 9));
}

TEST(MsximgCommandLine, APreviewIsABmp) {
    Picture picture(3, 2);
    picture.at(0, 0) = {1, 2, 3};
    picture.at(2, 1) = {7, 8, 9};
    const std::string file = bmpFile(picture);
    ASSERT_EQ(file.size(), 54U + 2 * 12);
    EXPECT_EQ(file.substr(0, 2), "BM");
    EXPECT_EQ(file.substr(54 + 6, 3), "\x09\x08\x07") << "the lowest row first, blue first";
    EXPECT_EQ(file.substr(66, 3), "\x03\x02\x01");
}

} // namespace
} // namespace image
