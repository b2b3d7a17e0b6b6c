#include "image/palette_choice.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace image {

namespace {

constexpr std::size_t candidates = 512; // the colours of the video processor

MsxColour candidate(std::size_t number) {
    return {static_cast<std::uint8_t>(number >> 6), static_cast<std::uint8_t>(number >> 3 & 7),
            static_cast<std::uint8_t>(number & 7)};
}

/// Colours that are all but the same, taken together.
struct Bin {
    Light light;
    float count = 0;
};

std::vector<Bin> binsOf(const Raster<Light>& picture) {
    constexpr int steps = 32; // for each component
    std::vector<Bin> bins(steps * steps * steps);
    const auto step = [](float light) {
        return std::min(static_cast<std::size_t>(encoded(light) * steps), std::size_t{steps - 1});
    };
    for (const Light& light : picture.pixels) {
        Bin& bin = bins[(step(light.red) * steps + step(light.green)) * steps + step(light.blue)];
        bin.light = bin.light + light;
        bin.count += 1;
    }
    std::erase_if(bins, [](const Bin& bin) { return bin.count == 0; });
    for (Bin& bin : bins)
        bin.light = bin.light * (1 / bin.count);
    return bins;
}

/// The colours as they are seen, moved away from their mean by a factor.
std::vector<Lab> spreadColours(const std::vector<Bin>& bins, float factor) {
    std::vector<Lab> colours;
    Lab mean;
    float count = 0;
    for (const Bin& bin : bins) {
        const Lab seen = okLab(bin.light);
        colours.push_back(seen);
        count += bin.count;
        mean = {mean.lightness + seen.lightness * bin.count, mean.a + seen.a * bin.count,
                mean.b + seen.b * bin.count};
    }
    mean = {mean.lightness / count, mean.a / count, mean.b / count};
    const auto spread = [factor](float middle, float value) { return middle + factor * (value - middle); };
    for (Lab& colour : colours)
        colour = {spread(mean.lightness, colour.lightness), spread(mean.a, colour.a),
                  spread(mean.b, colour.b)};
    return colours;
}

/// Looks for the set of colours with the smallest sum of differences: one after the other at first, each the
/// best addition, then as long as an exchange of one makes the sum smaller. (The k-medoids problem; the
/// exchange for all members in one go is that of E. Schubert and P. Rousseeuw, 2019.)
class Choice {
  public:
    Choice(const Raster<Light>& picture, float spread) : bins_(binsOf(picture)), nearest_(bins_.size()) {
        cost_.resize(bins_.size() * candidates);
        std::vector<Lab> colours;
        for (std::size_t c = 0; c < candidates; ++c)
            colours.push_back(okLab(lightOf(shown(candidate(c)))));
        const std::vector<Lab> wanted = spreadColours(bins_, spread);
        for (std::size_t c = 0; c < candidates; ++c) {
            for (std::size_t i = 0; i < bins_.size(); ++i)
                cost_[c * bins_.size() + i] =
                    std::sqrt(squaredDistance(wanted[i], colours[c])) * bins_[i].count;
        }
    }

    std::vector<std::size_t> choose(std::size_t count) {
        while (members_.size() < count && addBest()) {
        }
        while (members_.size() > 1 && exchangeBest()) {
        }
        return members_;
    }

  private:
    struct Nearest {
        std::size_t member = 0; ///< place in members_
        float first = std::numeric_limits<float>::max();
        float second = std::numeric_limits<float>::max();
    };
    /// An exchange that does not make the mean better by this part of it is not worth a round.
    static constexpr float worthwhile = 1e-5F;

    const float* costs(std::size_t colour) const { return &cost_[colour * bins_.size()]; }

    bool addBest() {
        std::size_t best = candidates;
        double bestSum = total();
        for (std::size_t c = 0; c < candidates; ++c) {
            double sum = 0;
            for (std::size_t i = 0; i < bins_.size(); ++i)
                sum += std::min(costs(c)[i], nearest_[i].first);
            if (sum < bestSum) {
                bestSum = sum;
                best = c;
            }
        }
        if (best == candidates)
            return false;
        members_.push_back(best);
        findNearest();
        return true;
    }

    bool exchangeBest() {
        std::size_t best = candidates;
        std::size_t leaving = 0;
        double bestChange = -worthwhile * total();
        std::vector<double> change;
        for (std::size_t c = 0; c < candidates; ++c) {
            change.assign(members_.size(), 0);
            double shared = 0;
            for (std::size_t i = 0; i < bins_.size(); ++i) {
                const float cost = costs(c)[i];
                const Nearest& now = nearest_[i];
                const float kept = std::min(cost, now.first);
                shared += kept - now.first;
                change[now.member] += std::min(cost, now.second) - kept;
            }
            for (std::size_t m = 0; m < members_.size(); ++m) {
                if (change[m] + shared < bestChange) {
                    bestChange = change[m] + shared;
                    best = c;
                    leaving = m;
                }
            }
        }
        if (best == candidates)
            return false;
        members_[leaving] = best;
        findNearest();
        return true;
    }

    void findNearest() {
        for (std::size_t i = 0; i < bins_.size(); ++i) {
            Nearest found;
            for (std::size_t m = 0; m < members_.size(); ++m) {
                const float cost = costs(members_[m])[i];
                if (cost < found.first) {
                    found.second = found.first;
                    found.first = cost;
                    found.member = m;
                } else {
                    found.second = std::min(found.second, cost);
                }
            }
            nearest_[i] = found;
        }
    }

    double total() const {
        if (members_.empty())
            return std::numeric_limits<double>::max();
        double sum = 0;
        for (const Nearest& nearest : nearest_)
            sum += nearest.first;
        return sum;
    }

    std::vector<Bin> bins_;
    std::vector<float> cost_; ///< of a bin with a candidate, one candidate after the other
    std::vector<std::size_t> members_;
    std::vector<Nearest> nearest_;
};

float lightness(const MsxColour& colour) {
    return okLab(lightOf(shown(colour))).lightness;
}

} // namespace

std::vector<MsxColour> choosePalette(const Raster<Light>& picture, std::size_t count, float spread) {
    std::vector<MsxColour> colours;
    for (const std::size_t number : Choice(picture, spread).choose(count))
        colours.push_back(candidate(number));
    std::sort(colours.begin(), colours.end(),
              [](const MsxColour& x, const MsxColour& y) { return lightness(x) < lightness(y); });
    return colours;
}

} // namespace image
