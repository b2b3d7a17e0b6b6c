// Screens of which each pixel has any colour of a palette, or one of 256 fixed colours.
#include "image/encoder.h"

#include <algorithm>

namespace image {

namespace {

/// For ordered dithering with colours that lie anywhere: as many of them as the matrix has steps, chosen one
/// after the other so that their mean is the light wanted, and put in order of lightness. (The method of
/// T. Knoll's patent US 6606166, expired.)
std::size_t orderedChoice(std::span<const Available> colours, const Light& wanted, float limit) {
    constexpr std::size_t steps = 16;
    std::array<std::size_t, steps> chosen{};
    Light error;
    for (std::size_t& one : chosen) {
        const Light aim = withinReach(wanted + error);
        one = nearest(colours, aim);
        error = error + wanted - colours[one].light;
    }
    std::sort(chosen.begin(), chosen.end(), [&](std::size_t x, std::size_t y) {
        return colours[x].seen.lightness < colours[y].seen.lightness;
    });
    return chosen.at(static_cast<std::size_t>(limit * steps));
}

class PaletteEncoder : public Encoder {
  public:
    PaletteEncoder(const Screen& screen, const MsxPalette& palette, int firstUsable, int usable,
                   Dither dither, std::span<std::uint8_t> memory)
        : screen_(screen), firstUsable_(firstUsable), dither_(dither), memory_(memory) {
        for (int i = firstUsable; i < firstUsable + usable; ++i)
            colours_.push_back(available(shown(palette.at(static_cast<std::size_t>(i)))));
    }

    int blockWidth() const override { return 1; }

    void encode(int y, std::span<const Wanted> wanted, std::span<Light> shownLight) override {
        const auto& [x, light] = wanted[0];
        const std::size_t choice = dither_ == Dither::ordered
                                       ? orderedChoice(colours_, light, orderedLimit(x, y))
                                       : nearest(colours_, light);
        shownLight[0] = colours_[choice].light;
        put(x, y, static_cast<unsigned>(choice) + static_cast<unsigned>(firstUsable_));
    }

  private:
    void put(int x, int y, unsigned index) {
        const int bits = screen_.form == PixelForm::twoBits ? 2 : 4;
        const int perByte = 8 / bits;
        std::uint8_t& byte = memory_[static_cast<std::size_t>((y * screen_.width + x) / perByte)];
        const int shift = 8 - bits * (x % perByte + 1);
        const unsigned mask = ((1U << bits) - 1) << shift;
        byte = static_cast<std::uint8_t>((byte & ~mask) | index << shift);
    }

    const Screen& screen_;
    std::vector<Available> colours_;
    int firstUsable_;
    Dither dither_;
    std::span<std::uint8_t> memory_;
};

/// Screen 8: the components are steps of their own.
class ByteEncoder : public Encoder {
  public:
    ByteEncoder(const Screen& screen, Dither dither, std::span<std::uint8_t> memory)
        : screen_(screen), dither_(dither), memory_(memory) {
        for (unsigned i = 0; i < 256; ++i)
            colours_.push_back(available(shownByte(static_cast<std::uint8_t>(i))));
        for (std::uint8_t i = 0; i < 8; ++i)
            levels_.at(i) = colours_[i * 4U].light.red;
        for (std::uint8_t i = 0; i < 4; ++i)
            blueLevels_.at(i) = colours_[i].light.blue;
    }

    int blockWidth() const override { return 1; }

    void encode(int y, std::span<const Wanted> wanted, std::span<Light> shownLight) override {
        const auto& [x, light] = wanted[0];
        const std::size_t choice =
            dither_ == Dither::ordered ? orderedByte(light, orderedLimit(x, y)) : nearest(colours_, light);
        shownLight[0] = colours_[choice].light;
        memory_[static_cast<std::size_t>(y * screen_.width + x)] = static_cast<std::uint8_t>(choice);
    }

  private:
    /// The step below the light, or the one above when the light lies far enough towards it.
    static std::size_t step(std::span<const float> levels, float light, float limit) {
        std::size_t below = 0;
        while (below + 2 < levels.size() && levels[below + 1] <= light)
            ++below;
        const float way = (light - levels[below]) / (levels[below + 1] - levels[below]);
        return way > limit ? below + 1 : below;
    }

    std::size_t orderedByte(const Light& light, float limit) const {
        return step(levels_, light.green, limit) << 5 | step(levels_, light.red, limit) << 2 |
               step(blueLevels_, light.blue, limit);
    }

    const Screen& screen_;
    std::vector<Available> colours_;
    std::array<float, 8> levels_{};
    std::array<float, 4> blueLevels_{};
    Dither dither_;
    std::span<std::uint8_t> memory_;
};

} // namespace

std::unique_ptr<Encoder> makePaletteEncoder(const Screen& screen, const MsxPalette& palette, int firstUsable,
                                            int usable, Dither dither, std::span<std::uint8_t> memory) {
    return std::make_unique<PaletteEncoder>(screen, palette, firstUsable, usable, dither, memory);
}

std::unique_ptr<Encoder> makeByteEncoder(const Screen& screen, Dither dither,
                                         std::span<std::uint8_t> memory) {
    return std::make_unique<ByteEncoder>(screen, dither, memory);
}

} // namespace image
