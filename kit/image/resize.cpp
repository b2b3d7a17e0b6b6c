#include "image/resize.h"

#include <algorithm>
#include <cmath>

namespace image {

namespace {

/// The stretch of source pixels, as real numbers, that becomes `count` target pixels from `target` on.
struct Mapping {
    double source = 0;
    double sourceLength = 0;
    int target = 0;
    int count = 0;
};

/// The interpolating cubic of Catmull and Rom: sharp, and exact where nothing has to be changed.
double cubic(double x) {
    x = std::abs(x);
    if (x < 1)
        return (1.5 * x - 2.5) * x * x + 1;
    return x < 2 ? ((-0.5 * x + 2.5) * x - 4) * x + 2 : 0;
}

struct Weights {
    int first = 0;
    std::vector<float> values;
};

/// What source pixel counts how much for one target pixel. When the picture shrinks the curve is widened, so
/// that every source pixel counts.
Weights weightsOf(const Mapping& mapping, int index, int sourceSize) {
    const double scale = mapping.sourceLength / mapping.count;
    const double spread = std::max(scale, 1.0);
    const double centre = mapping.source + (index + 0.5) * scale - 0.5;
    Weights weights;
    weights.first = static_cast<int>(std::floor(centre - 2 * spread));
    const int last = static_cast<int>(std::ceil(centre + 2 * spread));
    double sum = 0;
    for (int i = weights.first; i <= last; ++i) {
        const bool inside = i >= 0 && i < sourceSize;
        const double weight = inside ? cubic((i - centre) / spread) : 0; // the edge's share goes to the rest
        weights.values.push_back(static_cast<float>(weight));
        sum += weight;
    }
    for (float& weight : weights.values)
        weight = static_cast<float>(weight / sum);
    return weights;
}

Light clamped(const Light& light) {
    return {std::clamp(light.red, 0.0F, 1.0F), std::clamp(light.green, 0.0F, 1.0F),
            std::clamp(light.blue, 0.0F, 1.0F)};
}

/// The light of `count` pixels, `pixel(i)` of them, by weight.
template <typename Pixel> Light sumOf(const Weights& weights, int sourceSize, Pixel pixel) {
    Light sum;
    for (std::size_t i = 0; i < weights.values.size(); ++i) {
        const int source = weights.first + static_cast<int>(i);
        if (source >= 0 && source < sourceSize && weights.values[i] != 0)
            sum = sum + pixel(source) * weights.values[i];
    }
    return sum;
}

Raster<Light> map(const Picture& picture, int width, int height, const Mapping& across, const Mapping& down) {
    Raster<Light> narrow(across.count, picture.height);
    for (int x = 0; x < across.count; ++x) {
        const Weights weights = weightsOf(across, x, picture.width);
        for (int y = 0; y < picture.height; ++y)
            narrow.at(x, y) =
                sumOf(weights, picture.width, [&](int source) { return lightOf(picture.at(source, y)); });
    }
    Raster<Light> result(width, height);
    for (int y = 0; y < down.count; ++y) {
        const Weights weights = weightsOf(down, y, picture.height);
        for (int x = 0; x < across.count; ++x)
            result.at(across.target + x, down.target + y) =
                clamped(sumOf(weights, picture.height, [&](int source) { return narrow.at(x, source); }));
    }
    return result;
}

int roundedBetween(double value, int low, int high) {
    return std::clamp(static_cast<int>(std::lround(value)), low, high);
}

} // namespace

Raster<Light> resized(const Picture& picture, int width, int height, double pixelAspect, Resize how) {
    if (picture.width == 0 || picture.height == 0)
        return {width, height};
    Mapping across = {0, static_cast<double>(picture.width), 0, width};
    Mapping down = {0, static_cast<double>(picture.height), 0, height};
    // Screen pixels for one source pixel when the picture fills one direction.
    const double byWidth = width * pixelAspect / picture.width;
    const double byHeight = static_cast<double>(height) / picture.height;
    if (how == Resize::fit) {
        const double scale = std::min(byWidth, byHeight);
        across.count = roundedBetween(picture.width * scale / pixelAspect, 1, width);
        down.count = roundedBetween(picture.height * scale, 1, height);
        across.target = (width - across.count) / 2;
        down.target = (height - down.count) / 2;
    } else if (how == Resize::fill) {
        const double scale = std::max(byWidth, byHeight);
        across.sourceLength = std::min(across.sourceLength, width * pixelAspect / scale);
        down.sourceLength = std::min(down.sourceLength, height / scale);
        across.source = (picture.width - across.sourceLength) / 2;
        down.source = (picture.height - down.sourceLength) / 2;
    }
    return map(picture, width, height, across, down);
}

} // namespace image
