// Colour spaces, differences, sizes.
#include "image/colour.h"
#include "image/resize.h"

#include <gtest/gtest.h>

namespace image {
namespace {

TEST(Colour, LightAndComponentsAreInverse) {
    for (int i = 0; i < 256; ++i) {
        const auto component = static_cast<std::uint8_t>(i);
        EXPECT_EQ(rgbOf(lightOf(Rgb{component, component, component})),
                  (Rgb{component, component, component}));
    }
    EXPECT_NEAR(lightOf(std::uint8_t{188}), 0.503, 0.001); // half the light is far above half the scale
    EXPECT_EQ(rgbOf({-1, 2, 0}), (Rgb{0, 255, 0}));
}

TEST(Colour, Ciede2000GivesThePublishedValues) {
    struct Pair {
        Lab first;
        Lab second;
        double difference;
    };
    // From the test data of Sharma, Wu and Dalal.
    const Pair pairs[] = {
        {{50.0F, 2.6772F, -79.7751F}, {50.0F, 0.0F, -82.7485F}, 2.0425},
        {{50.0F, 0.0F, 0.0F}, {50.0F, -1.0F, 2.0F}, 2.3669},
        {{50.0F, 2.4900F, -0.0010F}, {50.0F, -2.4900F, 0.0009F}, 7.1792},
        {{50.0F, 2.5F, 0.0F}, {73.0F, 25.0F, -18.0F}, 27.1492},
        {{60.2574F, -34.0099F, 36.2677F}, {60.4626F, -34.1751F, 39.4387F}, 1.2644},
        {{22.7233F, 20.0904F, -46.6940F}, {23.0331F, 14.9730F, -42.5619F}, 2.0373},
        {{2.0776F, 0.0795F, -1.1350F}, {0.9033F, -0.0636F, -0.5514F}, 0.9082},
    };
    for (const Pair& pair : pairs) {
        EXPECT_NEAR(ciede2000(pair.first, pair.second), pair.difference, 0.0001);
        EXPECT_NEAR(ciede2000(pair.second, pair.first), pair.difference, 0.0001);
    }
}

TEST(Colour, WhiteHasNoColour) {
    const Lab white = cieLab({1, 1, 1});
    EXPECT_NEAR(white.lightness, 100, 0.01);
    EXPECT_NEAR(white.a, 0, 0.02);
    EXPECT_NEAR(white.b, 0, 0.02);
    EXPECT_NEAR(okLab({1, 1, 1}).lightness, 1, 0.0001);
    EXPECT_NEAR(okLab({0.2F, 0.2F, 0.2F}).a, 0, 0.0001);
}

TEST(Colour, FromAfarKeepsTheMeanAndMixesNeighbours) {
    Raster<Light> board(32, 32);
    for (int y = 0; y < 32; ++y) {
        for (int x = 0; x < 32; ++x)
            board.at(x, y) = (x + y) % 2 == 0 ? Light{1, 1, 1} : Light{};
    }
    EXPECT_NEAR(fromAfar(board, 1.5F).at(16, 16).green, 0.5, 0.01);
}

Picture striped(int width, int height) {
    Picture picture(width, height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            picture.at(x, y) = {static_cast<std::uint8_t>(x * 255 / width), static_cast<std::uint8_t>(y),
                                200};
    }
    return picture;
}

TEST(ResizeTest, ThePictureOfTheRightSizeStaysAsItIs) {
    const Picture picture = striped(256, 212);
    for (const Resize how : {Resize::fit, Resize::fill, Resize::stretch}) {
        const Raster<Light> result = resized(picture, 256, 212, 1, how);
        for (std::size_t i = 0; i < picture.pixels.size(); ++i)
            ASSERT_EQ(rgbOf(result.pixels[i]), picture.pixels[i]);
    }
}

TEST(ResizeTest, FitLeavesBars) {
    Picture white(100, 100);
    white.pixels.assign(white.pixels.size(), Rgb{255, 255, 255});
    const Raster<Light> result = resized(white, 256, 212, 1, Resize::fit);
    EXPECT_EQ(rgbOf(result.at(21, 100)), (Rgb{0, 0, 0}));
    EXPECT_EQ(rgbOf(result.at(22, 100)), (Rgb{255, 255, 255}));
    EXPECT_EQ(rgbOf(result.at(233, 100)), (Rgb{255, 255, 255}));
    EXPECT_EQ(rgbOf(result.at(234, 100)), (Rgb{0, 0, 0}));
    EXPECT_EQ(rgbOf(result.at(128, 0)), (Rgb{255, 255, 255}));
}

TEST(ResizeTest, NarrowPixelsNeedTwiceAsMany) {
    Picture white(100, 100);
    white.pixels.assign(white.pixels.size(), Rgb{255, 255, 255});
    const Raster<Light> result = resized(white, 512, 212, 0.5, Resize::fit);
    EXPECT_EQ(rgbOf(result.at(43, 100)), (Rgb{0, 0, 0}));
    EXPECT_EQ(rgbOf(result.at(44, 100)), (Rgb{255, 255, 255}));
    EXPECT_EQ(rgbOf(result.at(467, 100)), (Rgb{255, 255, 255}));
}

TEST(ResizeTest, FillAndStretchCoverTheScreen) {
    Picture picture(300, 100);
    picture.pixels.assign(picture.pixels.size(), Rgb{255, 255, 255});
    for (int y = 0; y < 100; ++y) {
        for (int x = 0; x < 50; ++x)
            picture.at(x, y) = {255, 0, 0}; // the left edge
    }
    EXPECT_EQ(rgbOf(resized(picture, 256, 212, 1, Resize::fill).at(2, 2)), (Rgb{255, 255, 255}));
    EXPECT_EQ(rgbOf(resized(picture, 256, 212, 1, Resize::stretch).at(2, 2)), (Rgb{255, 0, 0}));
}

TEST(ResizeTest, SmallAndThinPicturesAreNoTrouble) {
    for (const auto& [width, height] : {std::pair{1, 1}, {1, 500}, {500, 1}, {3000, 2}}) {
        for (const Resize how : {Resize::fit, Resize::fill, Resize::stretch}) {
            const Raster<Light> result = resized(striped(width, height), 256, 192, 1, how);
            EXPECT_EQ(result.pixels.size(), 256U * 192);
        }
    }
    EXPECT_EQ(resized(Picture(), 256, 212, 1, Resize::fit).pixels.size(), 256U * 212);
}

} // namespace
} // namespace image
