// What a picture file says of its size, read before anything is decoded: a file of some kilobytes can stand
// for gigabytes of pixels.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace image {

/// Beyond this a picture is refused. Decoded it takes four bytes a pixel, eight in some files.
constexpr std::uint64_t mostPixels = 64'000'000;
/// So is a longer file.
constexpr std::size_t largestFile = 300'000'000;

enum class PictureKind {
    other,   ///< none of the formats that are known here
    damaged, ///< one of them, but it does not say its size
    known
};

struct PictureHeader {
    PictureKind kind = PictureKind::other;
    std::uint64_t width = 0; ///< pixels
    std::uint64_t height = 0;
    /// Of all pictures in the file together: a decoder may unpack every frame of a GIF file for the first
    /// one.
    std::uint64_t pixels = 0;
};

/// Reads the header of a BMP, PNG, JPEG or GIF file.
PictureHeader readHeader(std::string_view file);

} // namespace image
