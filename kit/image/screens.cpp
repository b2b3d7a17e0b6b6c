#include "image/screens.h"

#include <array>

namespace image {

namespace {

constexpr std::array<Screen, 6> table = {{
    {2, 256, 192, PixelForm::pattern, 16, 0x3800, 0x1B80, 0x1B00, 0xD0, ".sc2", ".pl2"},
    {5, 256, 212, PixelForm::fourBits, 16, 0x76A0, 0x7680, 0x7600, 0xD8, ".sc5", ".pl5"},
    {6, 512, 212, PixelForm::twoBits, 4, 0x76A0, 0x7680, 0x7600, 0xD8, ".sc6", ".pl6"},
    {7, 512, 212, PixelForm::fourBits, 16, 0xFAA0, 0xFA80, 0xFA00, 0xD8, ".sc7", ".pl7"},
    {8, 256, 212, PixelForm::fixedByte, 0, 0xD400, 0, 0, 0, ".sc8", ""},
    {12, 256, 212, PixelForm::yjk, 0, 0xD400, 0, 0, 0, ".scc", ""},
}};

constexpr std::size_t colourTable = 0x2000; // of screen 2; the patterns lie at 0

std::uint8_t level(int value, int highest) {
    return static_cast<std::uint8_t>((value * 255 * 2 + highest) / (highest * 2));
}

int signedSixBits(int value) {
    return value < 32 ? value : value - 64;
}

/// A byte of screen 2: three thirds of 256 patterns, each of 8 rows.
std::size_t patternByte(int x, int y) {
    return static_cast<std::size_t>((y / 8) * 256 + x / 8 * 8 + y % 8);
}

unsigned paletteIndex(const Screen& screen, std::span<const std::uint8_t> memory, int x, int y) {
    if (screen.form == PixelForm::pattern) {
        const std::size_t byte = patternByte(x, y);
        const bool set = (memory[byte] >> (7 - x % 8) & 1) != 0;
        const unsigned pair = memory[colourTable + byte];
        return set ? pair >> 4 : pair & 0xF;
    }
    const int bits = screen.form == PixelForm::twoBits ? 2 : 4;
    const int perByte = 8 / bits;
    const auto byte = static_cast<std::size_t>((y * screen.width + x) / perByte);
    const int shift = 8 - bits * (x % perByte + 1);
    return static_cast<unsigned>(memory[byte] >> shift) & ((1U << bits) - 1);
}

Rgb yjkPixel(std::span<const std::uint8_t> memory, std::size_t place) {
    const std::size_t four = place / 4 * 4;
    const auto low = [&](std::size_t i) { return memory[four + i] & 7; };
    const int k = signedSixBits(low(0) | low(1) << 3);
    const int j = signedSixBits(low(2) | low(3) << 3);
    return shown(fiveBits({memory[place] >> 3, j, k}));
}

} // namespace

const MsxPalette powerOnPalette = {{{0, 0, 0},
                                    {0, 0, 0},
                                    {1, 6, 1},
                                    {3, 7, 3},
                                    {1, 1, 7},
                                    {2, 3, 7},
                                    {5, 1, 1},
                                    {2, 6, 7},
                                    {7, 1, 1},
                                    {7, 3, 3},
                                    {6, 6, 1},
                                    {6, 6, 4},
                                    {1, 4, 1},
                                    {6, 2, 5},
                                    {5, 5, 5},
                                    {7, 7, 7}}};

std::span<const Screen> screens() {
    return table;
}

const Screen* findScreen(int number) {
    for (const Screen& screen : table) {
        if (screen.number == number)
            return &screen;
    }
    return nullptr;
}

Rgb shown(const MsxColour& colour) {
    const tavrel::RgbColour seen = tavrel::shownColour(colour);
    return {seen.red, seen.green, seen.blue};
}

Rgb shownByte(std::uint8_t value) {
    // The two bits of blue stand for these of the 8 levels.
    constexpr std::array<std::uint8_t, 4> blue = {0, 2, 4, 7};
    return shown(MsxColour{static_cast<std::uint8_t>(value >> 2 & 7), static_cast<std::uint8_t>(value >> 5),
                           blue.at(value & 3U)});
}

Rgb shown(const FiveBits& colour) {
    constexpr int highest = 31;
    return {level(colour.red, highest), level(colour.green, highest), level(colour.blue, highest)};
}

Picture shownPicture(const Screen& screen, std::span<const std::uint8_t> memory, const MsxPalette& palette) {
    Picture picture(screen.width, screen.height);
    for (int y = 0; y < screen.height; ++y) {
        for (int x = 0; x < screen.width; ++x) {
            const auto place = static_cast<std::size_t>(y * screen.width + x);
            if (screen.form == PixelForm::fixedByte)
                picture.at(x, y) = shownByte(memory[place]);
            else if (screen.form == PixelForm::yjk)
                picture.at(x, y) = yjkPixel(memory, place);
            else
                picture.at(x, y) = shown(palette.at(paletteIndex(screen, memory, x, y)));
        }
    }
    return picture;
}

std::string pictureFile(std::span<const std::uint8_t> memory) {
    const auto end = static_cast<unsigned>(memory.size() - 1);
    std::string file = {'\xFE', 0, 0, static_cast<char>(end & 0xFF), static_cast<char>(end >> 8), 0, 0};
    file.append(memory.begin(), memory.end());
    return file;
}

} // namespace image
