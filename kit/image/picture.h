// A picture in memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace image {

/// A pixel as files keep it: sRGB, 0 to 255.
struct Rgb {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    bool operator==(const Rgb&) const = default;
};

/// Rows from top to bottom, pixels from left to right; T is the colour's form.
template <typename T> struct Raster {
    int width = 0;
    int height = 0;
    std::vector<T> pixels;

    Raster() = default;
    Raster(int rasterWidth, int rasterHeight)
        : width(rasterWidth), height(rasterHeight),
          pixels(static_cast<std::size_t>(rasterWidth) * static_cast<std::size_t>(rasterHeight)) {}

    T& at(int x, int y) { return pixels.at(index(x, y)); }
    const T& at(int x, int y) const { return pixels.at(index(x, y)); }

  private:
    std::size_t index(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
    }
};

using Picture = Raster<Rgb>;

} // namespace image
