// The screen modes of MSX computers, and how pictures lie in their video memory (V9938 Technical Data Book,
// MSX2 Technical Handbook; screen 12: V9958).
#pragma once

#include "image/picture.h"
#include "tools/palette/msx_palette.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace image {

using tavrel::MsxColour;
using tavrel::MsxPalette;

enum class PixelForm {
    pattern,   ///< two of 16 colours for each 8 pixels of a row
    twoBits,   ///< one of 4 colours
    fourBits,  ///< one of 16 colours
    fixedByte, ///< a byte of three bits of green, three of red, two of blue
    yjk,       ///< 4 pixels share two values of colour and have each a lightness
};

struct Screen {
    int number;
    int width;
    int height;
    PixelForm form;
    int colours; ///< how many entries of the palette a pixel can have; 0 when the palette does not count
    std::uint16_t memoryBytes;      ///< what a picture file holds, from address 0
    std::uint16_t paletteAddress;   ///< where BASIC keeps the palette; 0 when it does not count
    std::uint16_t spriteAttributes; ///< address of the sprites' places; 0 when behind the picture's end
    std::uint8_t noSprites;         ///< first byte there that hides all sprites
    const char* extension;          ///< of picture files, with the dot
    const char* paletteExtension;

    /// Width of a pixel divided by its height.
    double pixelAspect() const { return width == 512 ? 0.5 : 1; }
    bool hasPalette() const { return colours != 0; }
};

/// All screens that pictures can be converted to.
std::span<const Screen> screens();

/// The screen of this number, or null.
const Screen* findScreen(int number);

/// The palette that an MSX2 has after it is switched on.
extern const MsxPalette powerOnPalette;

/// What a palette entry looks like.
Rgb shown(const MsxColour& colour);

/// What a byte of screen 8 looks like.
Rgb shownByte(std::uint8_t value);

/// A pixel of screen 12: `lightness` 0 to 31, `j` and `k` -32 to 31.
struct Yjk {
    int lightness;
    int j;
    int k;
};
/// Its red, green and blue, 0 to 31.
struct FiveBits {
    int red;
    int green;
    int blue;
};
constexpr FiveBits fiveBits(const Yjk& colour) {
    const auto limited = [](int value) { return value < 0 ? 0 : value > 31 ? 31 : value; };
    return {limited(colour.lightness + colour.j), limited(colour.lightness + colour.k),
            limited((5 * colour.lightness - 2 * colour.j - colour.k + 2) / 4)};
}
Rgb shown(const FiveBits& colour);

/// The picture that a screen shows: `memory` holds its memoryBytes.
Picture shownPicture(const Screen& screen, std::span<const std::uint8_t> memory, const MsxPalette& palette);

/// A file as BSAVE ,S writes it: 7 bytes of header and the memory from address 0.
std::string pictureFile(std::span<const std::uint8_t> memory);

} // namespace image
