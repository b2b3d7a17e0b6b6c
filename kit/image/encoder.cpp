#include "image/encoder.h"

#include <algorithm>
#include <limits>

namespace image {

float orderedLimit(int x, int y) {
    // Bayer's matrix of 8 by 8: the bits of x and of x xor y, interleaved, the lowest first.
    const auto column = static_cast<unsigned>(x);
    const unsigned mixed = column ^ static_cast<unsigned>(y);
    unsigned rank = 0;
    for (unsigned bit = 0; bit < 3; ++bit)
        rank = rank << 2 | (mixed >> bit & 1) << 1 | (column >> bit & 1);
    return (static_cast<float>(rank) + 0.5F) / 64;
}

Light withinReach(const Light& light) {
    constexpr float beyond = 0.1F;
    const auto limited = [](float value) { return std::clamp(value, -beyond, 1 + beyond); };
    return {limited(light.red), limited(light.green), limited(light.blue)};
}

Available available(const Rgb& colour) {
    const Light light = lightOf(colour);
    return {light, okLab(light)};
}

std::size_t nearest(std::span<const Available> colours, const Light& light) {
    const Lab seen = okLab(light);
    std::size_t best = 0;
    float bestDistance = std::numeric_limits<float>::max();
    for (std::size_t i = 0; i < colours.size(); ++i) {
        const float distance = squaredDistance(seen, colours[i].seen);
        if (distance < bestDistance) {
            bestDistance = distance;
            best = i;
        }
    }
    return best;
}

std::unique_ptr<Encoder> makeEncoder(const Screen& screen, const MsxPalette& palette, int firstUsable,
                                     int usable, Dither dither, std::span<std::uint8_t> memory) {
    switch (screen.form) {
    case PixelForm::pattern:
        return makePatternEncoder(screen, palette, firstUsable, usable, dither, memory);
    case PixelForm::fixedByte:
        return makeByteEncoder(screen, dither, memory);
    case PixelForm::yjk:
        return makeYjkEncoder(screen, dither, memory);
    case PixelForm::twoBits:
    case PixelForm::fourBits:
        break;
    }
    return makePaletteEncoder(screen, palette, firstUsable, usable, dither, memory);
}

} // namespace image
