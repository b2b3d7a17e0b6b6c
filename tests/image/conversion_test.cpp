// Pictures converted to each screen.
#include "image/conversion.h"
#include "image/palette_choice.h"
#include "tests/image/test_pictures.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <set>
#include <tuple>

namespace image {
namespace {

constexpr Dither allDithers[] = {Dither::none, Dither::ordered, Dither::errorDiffusion};

Picture drawn(const std::string& name) {
    for (const auto& [pictureName, picture] : test::testPictures()) {
        if (pictureName == name)
            return picture;
    }
    throw std::logic_error(name);
}

Picture plain(const Rgb& colour) {
    Picture picture(64, 53);
    picture.pixels.assign(picture.pixels.size(), colour);
    return picture;
}

std::size_t colourCount(const Picture& picture) {
    std::set<std::tuple<int, int, int>> colours;
    for (const Rgb& colour : picture.pixels)
        colours.insert({colour.red, colour.green, colour.blue});
    return colours.size();
}

std::uint8_t byteAt(const Conversion& conversion, std::size_t address) {
    return conversion.memory.at(address);
}

/// Mean CIEDE2000 difference when it is looked at from some distance.
double offFromAfar(const Conversion& conversion) {
    return meanDifference(fromAfar(conversion.wanted, 2), fromAfar(lightOf(conversion.preview), 2));
}

TEST(PaletteChoice, FindsTheColoursThatAPictureIsMadeOf) {
    Picture picture(16, 16);
    std::vector<MsxColour> used;
    for (std::uint8_t i = 0; i < 16; ++i) {
        used.push_back({static_cast<std::uint8_t>(i % 8), static_cast<std::uint8_t>(7 - i % 8),
                        static_cast<std::uint8_t>(i < 8 ? 1 : 6)});
        for (int x = 0; x < 16; ++x)
            picture.at(x, i) = shown(used.back());
    }
    const auto chosen = choosePalette(lightOf(picture), 16);
    ASSERT_EQ(chosen.size(), 16U);
    for (const MsxColour& colour : used)
        EXPECT_NE(std::find(chosen.begin(), chosen.end(), colour), chosen.end());
    EXPECT_EQ(choosePalette(lightOf(picture), 4).size(), 4U);
}

TEST(PaletteChoice, TakesNoMoreColoursThanThePictureNeeds) {
    EXPECT_EQ(choosePalette(lightOf(plain({255, 0, 0})), 16, 1.3F), (std::vector<MsxColour>{{7, 0, 0}}));
    EXPECT_EQ(choosePalette(Raster<Light>(8, 8), 16), (std::vector<MsxColour>{{0, 0, 0}}));
}

TEST(Conversion, EveryScreenShowsPlainColoursExactly) {
    for (const Screen& screen : screens()) {
        for (const Dither dither : allDithers) {
            for (const Rgb colour : {Rgb{0, 0, 0}, Rgb{255, 255, 255}}) {
                if (screen.width == 512 && dither == Dither::ordered)
                    continue; // as in screen 5, and slow
                const Conversion result =
                    convert(plain(colour), Options{screen.number, dither, Resize::stretch, {}});
                EXPECT_EQ(colourCount(result.preview), 1U) << screen.number;
                EXPECT_EQ(result.preview.at(100, 100), colour) << screen.number;
                EXPECT_EQ(result.preview.width, screen.width);
                EXPECT_EQ(result.preview.height, screen.height);
                EXPECT_EQ(result.memory.size(), screen.memoryBytes);
            }
        }
    }
}

TEST(Conversion, EveryScreenComesNearToThePicture) {
    struct Limit {
        int screen;
        double byPixel;  ///< without dithering
        double fromAfar; ///< with either
    };
    constexpr Limit limits[] = {{2, 14, 7}, {5, 6, 3}, {6, 14, 8}, {7, 6, 3}, {8, 8, 4}, {12, 3, 2}};
    const Picture picture = drawn("sunset");
    for (const Limit& limit : limits) {
        const Conversion plainly = convert(picture, Options{limit.screen, Dither::none, Resize::stretch, {}});
        EXPECT_LT(meanDifference(plainly.wanted, lightOf(plainly.preview)), limit.byPixel) << limit.screen;
        for (const Dither dither : {Dither::ordered, Dither::errorDiffusion}) {
            const Conversion dithered = convert(picture, Options{limit.screen, dither, Resize::stretch, {}});
            EXPECT_LT(offFromAfar(dithered), limit.fromAfar) << limit.screen;
            EXPECT_LT(offFromAfar(dithered), offFromAfar(plainly)) << limit.screen;
            if (plainly.screen->hasPalette()) {
                EXPECT_LE(colourCount(dithered.preview), static_cast<std::size_t>(plainly.screen->colours));
            }
        }
    }
}

TEST(Conversion, ScreensWithoutPaletteHaveManyColours) {
    EXPECT_GT(colourCount(convert(drawn("rainbow"), Options{8}).preview), 100U);
    EXPECT_GT(colourCount(convert(drawn("rainbow"), Options{12}).preview), 1000U);
}

TEST(Conversion, Screen2HasTwoColoursInEightPixels) {
    for (const Dither dither : allDithers) {
        const Picture preview = convert(drawn("foliage"), Options{2, dither, Resize::fill, {}}).preview;
        for (int y = 0; y < preview.height; ++y) {
            for (int x = 0; x < preview.width; x += 8) {
                Picture block(8, 1);
                for (int i = 0; i < 8; ++i)
                    block.at(i, 0) = preview.at(x + i, y);
                ASSERT_LE(colourCount(block), 2U);
            }
        }
    }
}

TEST(Conversion, AGivenPaletteIsKept) {
    MsxPalette palette;
    for (std::uint8_t i = 0; i < 16; ++i)
        palette.at(i) = {static_cast<std::uint8_t>(i / 2), 0, 3};
    const Conversion result = convert(drawn("cartoon"), Options{5, Dither::none, Resize::fit, palette});
    EXPECT_EQ(result.palette, palette);
    for (const Rgb& colour : result.preview.pixels)
        ASSERT_EQ(colour.green, 0);
    EXPECT_EQ(convert(drawn("cartoon"), Options{5, Dither::none, Resize::fit, powerOnPalette}).palette,
              powerOnPalette);
}

TEST(Conversion, ThePaletteLiesWhereBasicLooksForIt) {
    MsxPalette palette = {};
    palette[1] = {7, 5, 2};
    for (const auto& [screen, address] : {std::pair{2, 0x1B80U}, {5, 0x7680U}, {6, 0x7680U}, {7, 0xFA80U}}) {
        const Conversion result =
            convert(plain({0, 0, 0}), Options{screen, Dither::none, Resize::fit, palette});
        EXPECT_EQ(byteAt(result, address + 2), 0x72);
        EXPECT_EQ(byteAt(result, address + 3), 5);
    }
}

TEST(Conversion, SpritesAreOutOfSight) {
    EXPECT_EQ(byteAt(convert(plain({}), Options{2}), 0x1B00), 208);
    EXPECT_EQ(byteAt(convert(plain({}), Options{5}), 0x7600), 216);
    EXPECT_EQ(byteAt(convert(plain({}), Options{7}), 0xFA00), 216);
}

TEST(Screens, MemoryIsReadAsTheVideoProcessorReadsIt) {
    std::vector<std::uint8_t> memory(0xD400);
    memory[128 + 1] = 0x4A; // second row, pixels 2 and 3
    const Picture screen5 = shownPicture(*findScreen(5), memory, powerOnPalette);
    EXPECT_EQ(screen5.at(2, 1), shown(powerOnPalette[4]));
    EXPECT_EQ(screen5.at(3, 1), shown(powerOnPalette[10]));

    const Picture screen6 = shownPicture(*findScreen(6), memory, powerOnPalette); // 01 00 10 10
    EXPECT_EQ(screen6.at(4, 1), shown(powerOnPalette[1]));
    EXPECT_EQ(screen6.at(5, 1), shown(powerOnPalette[0]));
    EXPECT_EQ(screen6.at(6, 1), shown(powerOnPalette[2]));
    EXPECT_EQ(screen6.at(7, 1), shown(powerOnPalette[2]));

    memory[256] = 0b110'001'10; // green 6, red 1, blue 2 of 3
    EXPECT_EQ(shownPicture(*findScreen(8), memory, powerOnPalette).at(0, 1), (Rgb{36, 219, 146}));

    // Lightness 16 everywhere, k = -1 (111 111), j = 9 (001 001).
    memory[512] = 16 << 3 | 7;
    memory[513] = 16 << 3 | 7;
    memory[514] = 16 << 3 | 1;
    memory[515] = 16 << 3 | 1;
    EXPECT_EQ(shownPicture(*findScreen(12), memory, powerOnPalette).at(3, 2), shown(FiveBits{25, 15, 16}));

    memory[0x0009] = 0b10000000; // second pattern, second row
    memory[0x2009] = 0x8C;
    const Picture screen2 = shownPicture(*findScreen(2), memory, powerOnPalette);
    EXPECT_EQ(screen2.at(8, 1), shown(powerOnPalette[8]));
    EXPECT_EQ(screen2.at(9, 1), shown(powerOnPalette[12]));
}

TEST(Screens, YjkIsLimited) {
    const FiveBits bright = fiveBits({31, 31, 31});
    EXPECT_EQ(bright.red, 31);
    EXPECT_EQ(bright.blue, 16);
    EXPECT_EQ(fiveBits({0, -32, -32}).red, 0);
    EXPECT_EQ(fiveBits({0, -32, -32}).blue, 24);
    EXPECT_EQ(fiveBits({3, 0, 0}).blue, 4) << "15 quarters, rounded";
}

TEST(Screens, PictureFilesHaveAHeader) {
    const std::vector<std::uint8_t> memory(0x76A0, 0x11);
    const std::string file = pictureFile(memory);
    EXPECT_EQ(file.substr(0, 8), std::string("\xFE\0\0\x9F\x76\0\0\x11", 8));
    EXPECT_EQ(file.size(), 7U + 0x76A0);
    EXPECT_EQ(findScreen(3), nullptr);
}

} // namespace
} // namespace image
