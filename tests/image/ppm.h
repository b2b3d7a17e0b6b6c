// Pictures in the simplest of files (PPM, binary).
#pragma once

#include "image/picture.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

namespace image::test {

inline void writePpm(const std::filesystem::path& path, const Picture& picture) {
    std::ofstream file(path, std::ios::binary);
    file << "P6\n" << picture.width << ' ' << picture.height << "\n255\n";
    for (const Rgb& colour : picture.pixels)
        file << static_cast<char>(colour.red) << static_cast<char>(colour.green)
             << static_cast<char>(colour.blue);
    if (!file.flush())
        throw std::runtime_error(path.string() + ": cannot be written");
}

/// Without comments in the header.
inline Picture readPpm(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::string kind;
    int width = 0;
    int height = 0;
    int highest = 0;
    file >> kind >> width >> height >> highest;
    file.get();
    if (!file || kind != "P6" || highest != 255)
        throw std::runtime_error(path.string() + ": not a PPM file of 8 bits");
    Picture picture(width, height);
    for (Rgb& colour : picture.pixels)
        colour = {static_cast<std::uint8_t>(file.get()), static_cast<std::uint8_t>(file.get()),
                  static_cast<std::uint8_t>(file.get())};
    if (!file)
        throw std::runtime_error(path.string() + ": too short");
    return picture;
}

} // namespace image::test
