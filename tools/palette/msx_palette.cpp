#include "tools/palette/msx_palette.h"

#include <algorithm>
#include <cmath>

namespace tavrel {

namespace {

constexpr double steps = 255.0 / 7;

/// 0 to 7 of a component of 0 to 255. No component lies half-way, so that the rounding of halves is no
/// matter.
std::uint8_t msxComponent(std::uint8_t component) {
    return static_cast<std::uint8_t>(std::lround(component / steps));
}

std::uint8_t shownComponent(std::uint8_t component) {
    return static_cast<std::uint8_t>(std::lround(component * steps));
}

char digit(std::size_t value) {
    return static_cast<char>('0' + value);
}

void appendWord(std::string& bytes, unsigned word) {
    bytes += static_cast<char>(word & 0xFF);
    bytes += static_cast<char>(word >> 8 & 0xFF);
}

} // namespace

MsxPalette msxPalette(const RgbPalette& palette) {
    MsxPalette converted;
    std::transform(palette.begin(), palette.end(), converted.begin(), [](const RgbColour& colour) {
        return MsxColour{msxComponent(colour.red), msxComponent(colour.green), msxComponent(colour.blue)};
    });
    return converted;
}

RgbColour shownColour(const MsxColour& colour) {
    return {shownComponent(colour.red), shownComponent(colour.green), shownComponent(colour.blue)};
}

std::string setPaletteLines(const MsxPalette& palette) {
    std::string lines;
    for (std::size_t i = 0; i < palette.size(); ++i) {
        const MsxColour& colour = palette.at(i);
        lines += "SetPalette(";
        lines += {digit(i / 10), digit(i % 10),       ',', digit(colour.red),
                  ',',           digit(colour.green), ',', digit(colour.blue)};
        lines += ");\r\n";
    }
    return lines;
}

std::string paletteFile(const MsxPalette& palette, std::uint16_t address) {
    constexpr char diskBinaryMark = '\xFE';
    constexpr unsigned tableBytes = 2 * paletteSize;
    std::string bytes(1, diskBinaryMark);
    appendWord(bytes, address);
    appendWord(bytes, address + tableBytes - 1);
    appendWord(bytes, 0);
    for (const MsxColour& colour : palette) {
        bytes += static_cast<char>(colour.red * 16 | colour.blue);
        bytes += static_cast<char>(colour.green);
    }
    return bytes;
}

} // namespace tavrel
