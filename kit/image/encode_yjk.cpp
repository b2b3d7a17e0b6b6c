// Screen 12: four pixels share their colour and have each a lightness.
#include "image/encoder.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace image {

namespace {

constexpr std::size_t pixels = 4;
constexpr int lowest = -32;
constexpr int highest = 31;
constexpr int levels = 32;

/// What each of the 32768 colours looks like; made once.
const std::vector<Available>& fiveBitColours() {
    static const std::vector<Available> table = [] {
        std::vector<Available> colours;
        for (int i = 0; i < levels * levels * levels; ++i)
            colours.push_back(available(shown(FiveBits{i >> 10, i >> 5 & 31, i & 31})));
        return colours;
    }();
    return table;
}

const Available& look(const Yjk& colour) {
    const FiveBits bits = fiveBits(colour);
    return fiveBitColours()[static_cast<std::size_t>(bits.red << 10 | bits.green << 5 | bits.blue)];
}

/// Red, green and blue as real numbers of 0 to 31.
struct Scaled {
    float red;
    float green;
    float blue;
    float lightness() const { return blue / 2 + red / 4 + green / 8; }
};

Scaled scaled(const Light& light) {
    const auto component = [](float value) { return encoded(std::clamp(value, 0.0F, 1.0F)) * (levels - 1); };
    return {component(light.red), component(light.green), component(light.blue)};
}

int rounded(float value) {
    return static_cast<int>(std::lround(value));
}

struct Group {
    int j = 0;
    int k = 0;
    std::array<int, pixels> lightness{};
    float cost = std::numeric_limits<float>::max();
};

class YjkEncoder : public Encoder {
  public:
    YjkEncoder(const Screen& screen, Dither dither, std::span<std::uint8_t> memory)
        : screen_(screen), dither_(dither), memory_(memory) {}

    int blockWidth() const override { return pixels; }

    void encode(int y, std::span<const Wanted> wanted, std::span<Light> shownLight) override {
        std::array<Light, pixels> aims;
        for (std::size_t i = 0; i < pixels; ++i)
            aims.at(i) = dither_ == Dither::ordered ? shifted(wanted[i], y) : wanted[i].light;
        const Group group = best(aims);
        for (std::size_t i = 0; i < pixels; ++i)
            shownLight[i] = look({group.lightness.at(i), group.j, group.k}).light;
        put(y, wanted, group);
    }

  private:
    /// Ordered dithering moves the light up or down by less than half a step.
    static Light shifted(const Wanted& wanted, int y) {
        const float shift = (orderedLimit(wanted.x, y) - 0.5F) / (levels - 1);
        const auto moved = [shift](float value) { return lightOfEncoded(encoded(value) - shift); };
        return {moved(wanted.light.red), moved(wanted.light.green), moved(wanted.light.blue)};
    }
    static float lightOfEncoded(float value) {
        value = std::clamp(value, 0.0F, 1.0F);
        return value <= 0.04045F ? value / 12.92F : std::pow((value + 0.055F) / 1.055F, 2.4F);
    }

    /// From the mean colour downhill, one step of j, k or both at a time.
    Group best(const std::array<Light, pixels>& aims) const {
        float j = 0;
        float k = 0;
        for (const Light& aim : aims) {
            const Scaled colour = scaled(aim);
            j += (colour.red - colour.lightness()) / pixels;
            k += (colour.green - colour.lightness()) / pixels;
        }
        Group found = drawn(aims, rounded(j), rounded(k));
        for (bool better = true; better;) {
            better = false;
            const Group from = found;
            for (int step = 0; step < 9; ++step) {
                const Group tried = drawn(aims, from.j + step % 3 - 1, from.k + step / 3 - 1);
                if (tried.cost < found.cost) {
                    found = tried;
                    better = true;
                }
            }
        }
        return found;
    }

    /// The best lightnesses with these values of colour.
    Group drawn(const std::array<Light, pixels>& aims, int j, int k) const {
        Group group;
        group.j = std::clamp(j, lowest, highest);
        group.k = std::clamp(k, lowest, highest);
        group.cost = 0;
        Light carried;
        for (std::size_t i = 0; i < pixels; ++i) {
            const Light aim = i > 0 ? withinReach(aims.at(i) + carried) : aims.at(i);
            group.cost += chooseLightness(aim, group, i);
            if (dither_ == Dither::errorDiffusion)
                carried = (aim - look({group.lightness.at(i), group.j, group.k}).light) * passedToNext;
        }
        return group;
    }

    float chooseLightness(const Light& aim, Group& group, std::size_t pixel) const {
        const Lab seen = okLab(aim);
        const Scaled colour = scaled(aim);
        const int middle = rounded((colour.red - static_cast<float>(group.j) + colour.green -
                                    static_cast<float>(group.k) + colour.lightness()) /
                                   3);
        // Ordered dithering has moved the light by even steps, which count as they are.
        const int reach = dither_ == Dither::ordered ? 0 : 2;
        float best = std::numeric_limits<float>::max();
        for (int lightness = middle - reach; lightness <= middle + reach; ++lightness) {
            const int limited = std::clamp(lightness, 0, levels - 1);
            const float distance = squaredDistance(seen, look({limited, group.j, group.k}).seen);
            if (distance < best) {
                best = distance;
                group.lightness.at(pixel) = limited;
            }
        }
        return best;
    }

    void put(int y, std::span<const Wanted> wanted, const Group& group) {
        const auto k = static_cast<unsigned>(group.k) & 0x3F;
        const auto j = static_cast<unsigned>(group.j) & 0x3F;
        const std::array<unsigned, pixels> low = {k & 7, k >> 3, j & 7, j >> 3};
        for (std::size_t i = 0; i < pixels; ++i) {
            const int x = wanted[i].x;
            memory_[static_cast<std::size_t>(y * screen_.width + x)] =
                static_cast<std::uint8_t>(static_cast<unsigned>(group.lightness.at(i)) << 3 |
                                          low.at(static_cast<std::size_t>(x) % pixels));
        }
    }

    const Screen& screen_;
    Dither dither_;
    std::span<std::uint8_t> memory_;
};

} // namespace

std::unique_ptr<Encoder> makeYjkEncoder(const Screen& screen, Dither dither, std::span<std::uint8_t> memory) {
    return std::make_unique<YjkEncoder>(screen, dither, memory);
}

} // namespace image
