#include "tools/palette/bmp_palette.h"

#include "util/files.h"
#include "util/runtime_error.h"

#include <string_view>

namespace tavrel {

namespace {

constexpr std::size_t fileHeaderBytes = 14;
constexpr std::size_t informationHeaderBytes = 40;
constexpr std::size_t colourTable = fileHeaderBytes + informationHeaderBytes;
constexpr std::size_t bitsPerPixel = fileHeaderBytes + 14; // two bytes, low byte first
constexpr std::size_t quadBytes = 4;

std::uint8_t byteAt(std::string_view bytes, std::size_t offset) {
    return static_cast<std::uint8_t>(bytes[offset]);
}

} // namespace

bool readBmpPalette(const std::string& path, BmpPalette& palette, MessageBoxes& messages) {
    std::string bytes;
    try {
        bytes = readWholeFile(path);
    } catch (const RuntimeError&) {
        return false;
    }
    if (bytes.size() < colourTable)
        return false;
    if (byteAt(bytes, bitsPerPixel) != 4 || byteAt(bytes, bitsPerPixel + 1) != 0) {
        messages.show("Not 16 color image", "Error", Icon::critical, Buttons::ok);
        return false;
    }
    if (bytes.size() < colourTable + quadBytes * palette.size())
        return false;
    for (std::size_t i = 0; i < palette.size(); ++i) {
        const std::size_t quad = colourTable + quadBytes * i;
        palette.at(i) = {byteAt(bytes, quad), byteAt(bytes, quad + 1), byteAt(bytes, quad + 2),
                         byteAt(bytes, quad + 3)};
    }
    return true;
}

} // namespace tavrel
