// Colour spaces and differences.
#pragma once

#include "image/picture.h"

#include <span>

namespace image {

/// Amounts of light, 0 to 1 (sRGB primaries): what mixes when small dots are seen from afar.
struct Light {
    float red = 0;
    float green = 0;
    float blue = 0;
};

/// A colour as it is seen: lightness and two opponent axes. In OKLab (B. Ottosson, 2020) or in CIELAB.
struct Lab {
    float lightness = 0;
    float a = 0;
    float b = 0;
};

constexpr Light operator+(const Light& x, const Light& y) {
    return {x.red + y.red, x.green + y.green, x.blue + y.blue};
}
constexpr Light operator-(const Light& x, const Light& y) {
    return {x.red - y.red, x.green - y.green, x.blue - y.blue};
}
constexpr Light operator*(const Light& x, float factor) {
    return {x.red * factor, x.green * factor, x.blue * factor};
}

/// The transfer curve of sRGB (IEC 61966-2-1).
float lightOf(std::uint8_t component);
Light lightOf(const Rgb& colour);

/// The other way, rounded to the nearest component; what lies outside 0 to 1 is cut off.
Rgb rgbOf(const Light& light);
/// One component, 0 to 1, not rounded.
float encoded(float light);

Raster<Light> lightOf(const Picture& picture);

/// OKLab with both opponent axes doubled, which brings distances nearer to differences as they are seen (its
/// author's own correction).
Lab okLab(const Light& light);

/// CIELAB under D65; lightness 0 to 100.
Lab cieLab(const Light& light);

/// Square of the distance in the same space.
constexpr float squaredDistance(const Lab& x, const Lab& y) {
    const float lightness = x.lightness - y.lightness;
    const float a = x.a - y.a;
    const float b = x.b - y.b;
    return lightness * lightness + a * a + b * b;
}

/// The CIEDE2000 difference of two CIELAB colours (G. Sharma, W. Wu, E. Dalal, 2005), all weights 1.
double ciede2000(const Lab& x, const Lab& y);

/// Mean CIEDE2000 difference of two pictures of the same size, pixel by pixel.
double meanDifference(const Raster<Light>& x, const Raster<Light>& y);

/// The picture as from a distance: each pixel is the mean of the light around it, weighed by a bell curve of
/// this standard deviation in pixels.
Raster<Light> fromAfar(const Raster<Light>& picture, float deviation);

} // namespace image
