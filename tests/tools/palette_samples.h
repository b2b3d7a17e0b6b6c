// Palette files for tests.
#pragma once

#include <string>

namespace tavrel::test {

/// A JASC-PAL text: entry i is 16 * i, 15 + 16 * i, 255 - 16 * i.
inline std::string jascText(const std::string& lineEnd) {
    std::string text = "JASC-PAL" + lineEnd + "0100" + lineEnd + "16" + lineEnd;
    for (int i = 0; i < 16; ++i)
        text += std::to_string(16 * i) + " " + std::to_string(15 + 16 * i) + " " +
                std::to_string(255 - 16 * i) + lineEnd;
    return text;
}

/// A BMP image of some pixels with a header of 40 bytes: table entry i is blue 3 * i, green 100 + i, red
/// 255 - i.
inline std::string bmpFile(int bitsPerPixel) {
    std::string bytes = "BM";
    bytes.resize(54);
    bytes[10] = 118;
    bytes[14] = 40;
    bytes[18] = 8;
    bytes[22] = 2;
    bytes[26] = 1;
    bytes[28] = static_cast<char>(bitsPerPixel & 0xFF);
    bytes[29] = static_cast<char>(bitsPerPixel >> 8);
    for (int i = 0; i < 16; ++i)
        bytes += {static_cast<char>(3 * i), static_cast<char>(100 + i), static_cast<char>(255 - i), 0};
    bytes.resize(bytes.size() + 64, '\x5A'); // pixels
    return bytes;
}

} // namespace tavrel::test
