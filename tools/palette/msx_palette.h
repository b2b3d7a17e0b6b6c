// Palettes of 16 colours: as paint programs keep them, and as the MSX2 video processor takes them.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace tavrel {

constexpr std::size_t paletteSize = 16;

/// A colour of a paint program, each component 0 to 255.
struct RgbColour {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    bool operator==(const RgbColour&) const = default;
};

/// A colour of the MSX2 video processor, each component 0 to 7.
struct MsxColour {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    bool operator==(const MsxColour&) const = default;
};

using RgbPalette = std::array<RgbColour, paletteSize>;
using MsxPalette = std::array<MsxColour, paletteSize>;

/// The nearest colours of the video processor.
MsxPalette msxPalette(const RgbPalette& palette);

/// The colour that the video processor shows: 7 becomes 255, steps are even.
RgbColour shownColour(const MsxColour& colour);

/// 16 lines such as "SetPalette(03,7,4,0);", each with CR LF behind it.
std::string setPaletteLines(const MsxPalette& palette);

/// Address of the palette table in the video memory of screen 5.
constexpr std::uint16_t screen5PaletteAddress = 0x7680;

/// A palette file: a header as BSAVE writes it (mark FEh, load, end and start address, low bytes first) and
/// 32 bytes that lie in video memory at `address`, two a colour: red * 16 + blue, green. 39 bytes.
std::string paletteFile(const MsxPalette& palette, std::uint16_t address = screen5PaletteAddress);

} // namespace tavrel
