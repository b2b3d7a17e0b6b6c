// Short ways to say what the tests of the disk tool say often.
#pragma once

#include "disk/disk_image.h"

#include <gtest/gtest.h>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace disk::test {

inline Name83 name(std::string_view text) {
    const auto result = msxrun::nameFromHost(text);
    EXPECT_TRUE(result) << text;
    return result.value_or(Name83{});
}

/// Bytes that differ from cluster to cluster and from seed to seed.
inline Bytes pattern(std::size_t size, unsigned seed) {
    std::minstd_rand random(seed + 1);
    Bytes bytes(size);
    for (auto& byte : bytes)
        byte = static_cast<std::uint8_t>(random() >> 8 & 0xFF);
    return bytes;
}

inline NewFile file(std::string_view text, Bytes content) {
    return {name(text), std::move(content), {0x5821, 0x6000}};
}

inline void add(DiskImage& image, std::string_view text, Bytes content) {
    image.add({file(text, std::move(content))});
}

inline Bytes contentOf(const DiskImage& image, std::string_view text) {
    const auto entry = image.find(name(text));
    EXPECT_TRUE(entry) << text;
    return entry ? image.extract(*entry) : Bytes{};
}

} // namespace disk::test
