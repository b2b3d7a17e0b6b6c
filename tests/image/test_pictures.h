// Pictures that tests and benchmarks draw: photograph-like, artificial, easy and hard.
#pragma once

#include "image/picture.h"

#include <string>
#include <vector>

namespace image::test {

struct NamedPicture {
    std::string name;
    Picture picture;
};

/// All of them, each 256 times 212 pixels; the same at every call.
std::vector<NamedPicture> testPictures();

} // namespace image::test
