// Screen 2: eight pixels of a row have two colours.
#include "image/encoder.h"

#include <algorithm>
#include <limits>

namespace image {

namespace {

constexpr int pixels = 8;

class PatternEncoder : public Encoder {
  public:
    PatternEncoder(const Screen& screen, const MsxPalette& palette, int firstUsable, int usable,
                   Dither dither, std::span<std::uint8_t> memory)
        : screen_(screen), firstUsable_(static_cast<std::size_t>(firstUsable)), dither_(dither),
          memory_(memory) {
        for (int i = firstUsable; i < firstUsable + usable; ++i)
            colours_.push_back(available(shown(palette.at(static_cast<std::size_t>(i)))));
        prepareMemory();
    }

    int blockWidth() const override { return pixels; }

    void encode(int y, std::span<const Wanted> wanted, std::span<Light> shownLight) override {
        Pair best;
        float bestCost = std::numeric_limits<float>::max();
        for (std::size_t i = 0; i < wanted.size(); ++i)
            seen_.at(i) = okLab(wanted[i].light);
        for (std::size_t first = 0; first < colours_.size(); ++first) {
            for (std::size_t second = first; second < colours_.size(); ++second) {
                Pair pair = {first, second};
                const float cost = draw(y, wanted, pair, bestCost);
                if (cost < bestCost) {
                    bestCost = cost;
                    best = pair;
                }
            }
        }
        for (std::size_t i = 0; i < wanted.size(); ++i)
            shownLight[i] = colour(best, i).light;
        put(y, wanted, best);
    }

  private:
    struct Pair {
        std::size_t first = 0;
        std::size_t second = 0;
        std::array<bool, pixels> takesSecond{};
    };

    const Available& colour(const Pair& pair, std::size_t pixel) const {
        return colours_[pair.takesSecond.at(pixel) ? pair.second : pair.first];
    }

    /// The name table, and no sprites: each third of the screen shows its 256 patterns in order.
    void prepareMemory() {
        constexpr std::size_t names = 0x1800;
        constexpr std::size_t nameCount = 0x300;
        for (std::size_t i = 0; i < nameCount; ++i)
            memory_[names + i] = static_cast<std::uint8_t>(i);
    }

    /// Decides for each pixel between the two colours and gives back how far the block is off, or any greater
    /// value than `limit`.
    float draw(int y, std::span<const Wanted> wanted, Pair& pair, float limit) const {
        if (dither_ == Dither::ordered)
            return drawOrdered(y, wanted, pair, limit);
        const Available& first = colours_[pair.first];
        const Available& second = colours_[pair.second];
        Light carried;
        float cost = 0;
        for (std::size_t i = 0; i < wanted.size() && cost < limit; ++i) {
            Lab aim = seen_.at(i);
            Light light = wanted[i].light;
            if (dither_ == Dither::errorDiffusion && i > 0) {
                light = withinReach(light + carried);
                aim = okLab(light);
            }
            const float toFirst = squaredDistance(aim, first.seen);
            const float toSecond = squaredDistance(aim, second.seen);
            pair.takesSecond.at(i) = toSecond < toFirst;
            cost += std::min(toFirst, toSecond);
            carried = (light - colour(pair, i).light) * passedToNext;
        }
        return cost;
    }

    float drawOrdered(int y, std::span<const Wanted> wanted, Pair& pair, float limit) const {
        // A mixture of colours that lie far apart is as far off as this part of their distance: it looks
        // rough.
        constexpr float roughness = 0.1F;
        const Available& first = colours_[pair.first];
        const Available& second = colours_[pair.second];
        const Light way = second.light - first.light;
        const float length = dot(way, way);
        const float apart = squaredDistance(first.seen, second.seen);
        float cost = 0;
        for (std::size_t i = 0; i < wanted.size() && cost < limit; ++i) {
            const float share =
                length > 0 ? std::clamp(dot(wanted[i].light - first.light, way) / length, 0.0F, 1.0F) : 0;
            pair.takesSecond.at(i) = share > orderedLimit(wanted[i].x, y);
            cost += squaredDistance(seen_.at(i), okLab(first.light + way * share)) +
                    roughness * apart * share * (1 - share);
        }
        return cost;
    }

    static float dot(const Light& x, const Light& y) {
        return x.red * y.red + x.green * y.green + x.blue * y.blue;
    }

    void put(int y, std::span<const Wanted> wanted, const Pair& pair) {
        constexpr std::size_t colourTable = 0x2000;
        const int column = wanted[0].x / pixels;
        const auto place = static_cast<std::size_t>((y / 8 * (screen_.width / pixels) + column) * 8 + y % 8);
        unsigned pattern = 0;
        for (std::size_t i = 0; i < wanted.size(); ++i) {
            if (pair.takesSecond.at(i))
                pattern |= 0x80U >> (wanted[i].x % pixels);
        }
        memory_[place] = static_cast<std::uint8_t>(pattern);
        memory_[colourTable + place] =
            static_cast<std::uint8_t>((pair.second + firstUsable_) << 4 | (pair.first + firstUsable_));
    }

    const Screen& screen_;
    std::vector<Available> colours_;
    std::size_t firstUsable_;
    Dither dither_;
    std::span<std::uint8_t> memory_;
    std::array<Lab, pixels> seen_{};
};

} // namespace

std::unique_ptr<Encoder> makePatternEncoder(const Screen& screen, const MsxPalette& palette, int firstUsable,
                                            int usable, Dither dither, std::span<std::uint8_t> memory) {
    return std::make_unique<PatternEncoder>(screen, palette, firstUsable, usable, dither, memory);
}

} // namespace image
