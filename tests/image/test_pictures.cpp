#include "tests/image/test_pictures.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <functional>
#include <utility>

namespace image::test {

namespace {

constexpr int width = 256;
constexpr int height = 212;

struct Colour { // 0 to 1
    double red;
    double green;
    double blue;
};

Colour mixed(const Colour& x, const Colour& y, double share) {
    share = std::clamp(share, 0.0, 1.0);
    return {x.red + (y.red - x.red) * share, x.green + (y.green - x.green) * share,
            x.blue + (y.blue - x.blue) * share};
}

Colour scaled(const Colour& colour, double factor) {
    return {colour.red * factor, colour.green * factor, colour.blue * factor};
}

std::uint8_t component(double value) {
    return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0, 1.0) * 255));
}

/// Noise that is the same everywhere: 0 to 1.
double dotNoise(int x, int y, unsigned seed) {
    auto hash = static_cast<std::uint32_t>(x) * 374761393U + static_cast<std::uint32_t>(y) * 668265263U +
                seed * 2246822519U;
    hash = (hash ^ hash >> 13) * 1274126177U;
    return static_cast<double>((hash ^ hash >> 16) & 0xFFFF) / 0xFFFF;
}

/// Smooth between whole numbers.
double smoothNoise(double x, double y, unsigned seed) {
    const int column = static_cast<int>(std::floor(x));
    const int row = static_cast<int>(std::floor(y));
    const auto eased = [](double t) { return t * t * (3 - 2 * t); };
    const double across = eased(x - column);
    const double down = eased(y - row);
    const auto between = [](double from, double to, double share) { return from + (to - from) * share; };
    return between(between(dotNoise(column, row, seed), dotNoise(column + 1, row, seed), across),
                   between(dotNoise(column, row + 1, seed), dotNoise(column + 1, row + 1, seed), across),
                   down);
}

/// Clouds, ground, bark: five octaves, 0 to 1.
double clouds(double x, double y, unsigned seed) {
    double sum = 0;
    double share = 0.5;
    for (unsigned octave = 0; octave < 5; ++octave) {
        sum += share * smoothNoise(x, y, seed + octave);
        x *= 2;
        y *= 2;
        share /= 2;
    }
    return sum / 0.96875;
}

Colour hue(double turn, double saturation, double value) {
    const auto channel = [&](double offset) {
        const double place = std::fmod(turn * 6 + offset, 6);
        return value * (1 - saturation * std::clamp(std::min(place, 4 - place), 0.0, 1.0));
    };
    return {channel(5), channel(3), channel(1)};
}

Colour landscape(double x, double y) {
    const double horizon = 0.55 + 0.08 * std::sin(x * 7) + 0.03 * std::sin(x * 23);
    if (y < horizon) {
        const Colour sky = mixed({0.25, 0.45, 0.80}, {0.80, 0.88, 0.95}, y / 0.6);
        return mixed(sky, {1, 1, 1}, 1.6 * clouds(x * 4, y * 7, 11) - 0.7);
    }
    const Colour grass = mixed({0.12, 0.25, 0.07}, {0.55, 0.60, 0.20}, clouds(x * 12, y * 20, 23));
    return mixed(grass, {0.70, 0.78, 0.75}, 1 - (y - horizon) * 8);
}

Colour sunset(double x, double y) {
    const double sun = std::hypot(x - 0.6, (y - 0.55) * 0.8);
    Colour sky = mixed({0.10, 0.08, 0.30}, {0.95, 0.45, 0.15}, y * 1.6);
    sky = mixed({1, 0.95, 0.6}, sky, sun * 7 - 0.3);
    const double hill = 0.72 + 0.06 * std::sin(x * 9 + 1);
    return y > hill ? mixed({0.05, 0.03, 0.06}, {0.25, 0.10, 0.08}, clouds(x * 10, y * 10, 5) - 0.2) : sky;
}

/// A ball with a shine, on cloth; skin colours and deep shadows.
Colour portrait(double x, double y) {
    const double across = (x - 0.5) / 0.30;
    const double down = (y - 0.45) / 0.38;
    const double inside = across * across + down * down;
    const double light = std::max(0.0, 0.5 - 0.45 * across - 0.4 * down);
    if (inside < 1)
        return scaled(mixed({0.45, 0.22, 0.14}, {1.0, 0.82, 0.70}, light + 0.15 * clouds(x * 20, y * 20, 3)),
                      0.4 + 0.6 * std::sqrt(1 - inside));
    const double fold = 0.5 + 0.5 * std::sin(18 * x + 6 * clouds(x * 3, y * 3, 9));
    return mixed({0.10, 0.12, 0.22}, {0.40, 0.15, 0.20}, fold * 0.8);
}

Colour rainbow(double x, double y) {
    return y < 0.5 ? hue(x, y * 2, 1) : hue(x, 1, 2 - y * 2);
}

Colour greys(double x, double y) {
    const double ring = 0.5 + 0.5 * std::cos(40 * std::hypot(x - 0.5, y - 0.5));
    const double value = y < 0.3 ? x : ring * 0.8 + 0.1 * x;
    return {value, value, value};
}

/// Flat colours with hard edges, as a game would have them.
Colour cartoon(double x, double y) {
    static constexpr std::array<Colour, 12> paint = {{{0.93, 0.20, 0.20},
                                                      {0.98, 0.62, 0.12},
                                                      {0.99, 0.90, 0.25},
                                                      {0.20, 0.65, 0.25},
                                                      {0.10, 0.35, 0.20},
                                                      {0.25, 0.70, 0.90},
                                                      {0.12, 0.25, 0.60},
                                                      {0.55, 0.25, 0.60},
                                                      {0.98, 0.75, 0.65},
                                                      {0.45, 0.28, 0.15},
                                                      {0.95, 0.95, 0.92},
                                                      {0.06, 0.06, 0.10}}};
    const int column = static_cast<int>(x * 6);
    const int row = static_cast<int>(y * 5);
    const bool disc = std::hypot(x * 6 - column - 0.5, y * 5 - row - 0.5) < 0.35;
    return paint.at(static_cast<std::size_t>(column * 5 + row * 7 + (disc ? 3 : 0)) % paint.size());
}

Colour foliage(double x, double y) {
    const double leaf = clouds(x * 18, y * 18, 31);
    const double tone = clouds(x * 5, y * 5, 47);
    Colour colour = mixed({0.03, 0.08, 0.03}, {0.50, 0.68, 0.20}, leaf * 1.4 - 0.2);
    colour = mixed(colour, {0.75, 0.50, 0.10}, tone * 2 - 1.0);
    const bool flower = dotNoise(static_cast<int>(x * 64), static_cast<int>(y * 53), 77) > 0.985;
    return flower ? Colour{0.90, 0.25, 0.45} : colour;
}

Colour night(double x, double y) {
    const double glow = std::exp(-3 * std::hypot(x - 0.3, y - 0.9));
    Colour colour = mixed({0.01, 0.01, 0.04}, {0.15, 0.18, 0.35}, y + 0.3 * clouds(x * 4, y * 4, 61) - 0.2);
    colour = mixed(colour, {0.95, 0.65, 0.25}, glow);
    const bool window = y > 0.5 && static_cast<int>(x * 40) % 3 == 0 && static_cast<int>(y * 40) % 2 == 0 &&
                        dotNoise(static_cast<int>(x * 40), static_cast<int>(y * 40), 8) > 0.6;
    return window ? Colour{1, 0.85, 0.45} : colour;
}

} // namespace

std::vector<NamedPicture> testPictures() {
    using Paint = std::function<Colour(double, double)>;
    const std::vector<std::pair<const char*, Paint>> paints = {
        {"landscape", landscape}, {"sunset", sunset},   {"portrait", portrait}, {"rainbow", rainbow},
        {"greys", greys},         {"cartoon", cartoon}, {"foliage", foliage},   {"night", night}};
    std::vector<NamedPicture> pictures;
    for (const auto& [name, paint] : paints) {
        Picture picture(width, height);
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                const Colour colour = paint((x + 0.5) / width, (y + 0.5) / height);
                picture.at(x, y) = {component(colour.red), component(colour.green), component(colour.blue)};
            }
        }
        pictures.push_back({name, picture});
    }
    return pictures;
}

} // namespace image::test
