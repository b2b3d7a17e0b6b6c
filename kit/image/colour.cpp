#include "image/colour.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace image {

namespace {

float decoded(float component) {
    return component <= 0.04045F ? component / 12.92F : std::pow((component + 0.055F) / 1.055F, 2.4F);
}

std::array<float, 256> makeLightTable() {
    std::array<float, 256> table{};
    for (std::size_t i = 0; i < table.size(); ++i)
        table.at(i) = decoded(static_cast<float>(i) / 255);
    return table;
}

std::uint8_t rounded(float light) {
    return static_cast<std::uint8_t>(std::lround(encoded(std::clamp(light, 0.0F, 1.0F)) * 255));
}

double degrees(double radians) {
    return radians * 180 / std::numbers::pi;
}

double radians(double degrees) {
    return degrees * std::numbers::pi / 180;
}

double seventhPower(double x) {
    return std::pow(x, 7);
}

/// Hue in degrees, 0 to 360; 0 for a grey.
double hueOf(double a, double b) {
    if (a == 0 && b == 0)
        return 0;
    const double hue = degrees(std::atan2(b, a));
    return hue < 0 ? hue + 360 : hue;
}

/// Chroma and hue after the correction of greys.
struct Polar {
    double lightness;
    double chroma;
    double hue;
};

double hueDifference(const Polar& x, const Polar& y) {
    if (x.chroma * y.chroma == 0)
        return 0;
    const double difference = y.hue - x.hue;
    if (difference > 180)
        return difference - 360;
    return difference < -180 ? difference + 360 : difference;
}

double meanHue(const Polar& x, const Polar& y) {
    const double sum = x.hue + y.hue;
    if (x.chroma * y.chroma == 0)
        return sum;
    if (std::abs(x.hue - y.hue) <= 180)
        return sum / 2;
    return sum < 360 ? (sum + 360) / 2 : (sum - 360) / 2;
}

double polarDifference(const Polar& x, const Polar& y) {
    constexpr double fixed = 6103515625.0; // 25 to the seventh
    const double lightness = (x.lightness + y.lightness) / 2;
    const double chroma = (x.chroma + y.chroma) / 2;
    const double hue = meanHue(x, y);
    const double t = 1 - 0.17 * std::cos(radians(hue - 30)) + 0.24 * std::cos(radians(2 * hue)) +
                     0.32 * std::cos(radians(3 * hue + 6)) - 0.20 * std::cos(radians(4 * hue - 63));
    const double fromMiddle = (lightness - 50) * (lightness - 50);
    const double lightnessScale = 1 + 0.015 * fromMiddle / std::sqrt(20 + fromMiddle);
    const double chromaScale = 1 + 0.045 * chroma;
    const double hueScale = 1 + 0.015 * chroma * t;
    const double turn = 30 * std::exp(-std::pow((hue - 275) / 25, 2));
    const double rotation =
        -std::sin(radians(2 * turn)) * 2 * std::sqrt(seventhPower(chroma) / (seventhPower(chroma) + fixed));
    const double byLightness = (y.lightness - x.lightness) / lightnessScale;
    const double byChroma = (y.chroma - x.chroma) / chromaScale;
    const double byHue =
        2 * std::sqrt(x.chroma * y.chroma) * std::sin(radians(hueDifference(x, y)) / 2) / hueScale;
    return std::sqrt(byLightness * byLightness + byChroma * byChroma + byHue * byHue +
                     rotation * byChroma * byHue);
}

/// A bell curve of which the sum is 1.
std::vector<float> bellCurve(float deviation) {
    const int radius = static_cast<int>(std::ceil(3 * deviation));
    std::vector<float> weights;
    float sum = 0;
    for (int i = -radius; i <= radius; ++i) {
        const auto distance = static_cast<float>(i);
        weights.push_back(std::exp(-distance * distance / (2 * deviation * deviation)));
        sum += weights.back();
    }
    for (float& weight : weights)
        weight /= sum;
    return weights;
}

} // namespace

float encoded(float light) {
    return light <= 0.0031308F ? light * 12.92F : 1.055F * std::pow(light, 1 / 2.4F) - 0.055F;
}

float lightOf(std::uint8_t component) {
    static const std::array<float, 256> table = makeLightTable();
    return table.at(component);
}

Light lightOf(const Rgb& colour) {
    return {lightOf(colour.red), lightOf(colour.green), lightOf(colour.blue)};
}

Rgb rgbOf(const Light& light) {
    return {rounded(light.red), rounded(light.green), rounded(light.blue)};
}

Raster<Light> lightOf(const Picture& picture) {
    Raster<Light> result(picture.width, picture.height);
    std::transform(picture.pixels.begin(), picture.pixels.end(), result.pixels.begin(),
                   [](const Rgb& colour) { return lightOf(colour); });
    return result;
}

Lab okLab(const Light& light) {
    const float l =
        std::cbrt(0.4122214708F * light.red + 0.5363325363F * light.green + 0.0514459929F * light.blue);
    const float m =
        std::cbrt(0.2119034982F * light.red + 0.6806995451F * light.green + 0.1073969566F * light.blue);
    const float s =
        std::cbrt(0.0883024619F * light.red + 0.2817188376F * light.green + 0.6299787005F * light.blue);
    constexpr float colourScale = 2;
    return {0.2104542553F * l + 0.7936177850F * m - 0.0040720468F * s,
            (1.9779984951F * l - 2.4285922050F * m + 0.4505937099F * s) * colourScale,
            (0.0259040371F * l + 0.7827717662F * m - 0.8086757660F * s) * colourScale};
}

Lab cieLab(const Light& light) {
    const auto curve = [](float t) {
        constexpr float epsilon = 216.0F / 24389;
        constexpr float kappa = 24389.0F / 27;
        return t > epsilon ? std::cbrt(t) : (kappa * t + 16) / 116;
    };
    const float x =
        curve((0.4124564F * light.red + 0.3575761F * light.green + 0.1804375F * light.blue) / 0.95047F);
    const float y = curve(0.2126729F * light.red + 0.7151522F * light.green + 0.0721750F * light.blue);
    const float z =
        curve((0.0193339F * light.red + 0.1191920F * light.green + 0.9503041F * light.blue) / 1.08883F);
    return {116 * y - 16, 500 * (x - y), 200 * (y - z)};
}

double ciede2000(const Lab& x, const Lab& y) {
    constexpr double fixed = 6103515625.0; // 25 to the seventh
    const double xa = x.a;
    const double xb = x.b;
    const double ya = y.a;
    const double yb = y.b;
    const double mean = seventhPower((std::hypot(xa, xb) + std::hypot(ya, yb)) / 2);
    const double stretch = 1 + 0.5 * (1 - std::sqrt(mean / (mean + fixed)));
    const Polar first = {x.lightness, std::hypot(xa * stretch, xb), hueOf(xa * stretch, xb)};
    const Polar second = {y.lightness, std::hypot(ya * stretch, yb), hueOf(ya * stretch, yb)};
    return polarDifference(first, second);
}

double meanDifference(const Raster<Light>& x, const Raster<Light>& y) {
    double sum = 0;
    for (std::size_t i = 0; i < x.pixels.size(); ++i)
        sum += ciede2000(cieLab(x.pixels[i]), cieLab(y.pixels.at(i)));
    return x.pixels.empty() ? 0 : sum / static_cast<double>(x.pixels.size());
}

Raster<Light> fromAfar(const Raster<Light>& picture, float deviation) {
    const std::vector<float> weights = bellCurve(deviation);
    const int radius = static_cast<int>(weights.size()) / 2;
    Raster<Light> across(picture.width, picture.height);
    Raster<Light> result(picture.width, picture.height);
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            Light sum;
            for (int i = -radius; i <= radius; ++i)
                sum = sum + picture.at(std::clamp(x + i, 0, picture.width - 1), y) *
                                weights[static_cast<std::size_t>(i + radius)];
            across.at(x, y) = sum;
        }
    }
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            Light sum;
            for (int i = -radius; i <= radius; ++i)
                sum = sum + across.at(x, std::clamp(y + i, 0, picture.height - 1)) *
                                weights[static_cast<std::size_t>(i + radius)];
            result.at(x, y) = sum;
        }
    }
    return result;
}

} // namespace image
