// Turning colours into the bytes of a screen, some neighbouring pixels at a time.
#pragma once

#include "image/colour.h"
#include "image/screens.h"

#include <array>
#include <memory>
#include <span>
#include <vector>

namespace image {

enum class Dither { none, ordered, errorDiffusion };

/// A pixel of a block: where it is and what light it should have.
struct Wanted {
    int x = 0;
    Light light;
};

/// What a pixel passes on of its error to the next one in its row.
constexpr float passedToNext = 7.0F / 16;

/// How far between two colours the limit of ordered dithering lies at a place: 0 to 1, both excluded.
float orderedLimit(int x, int y);

/// Light within what a screen can show; what lies outside could only pile up as error.
Light withinReach(const Light& light);

class Encoder {
  public:
    Encoder() = default;
    virtual ~Encoder() = default;
    Encoder(const Encoder&) = delete;
    Encoder& operator=(const Encoder&) = delete;

    /// How many pixels of a row are chosen together.
    virtual int blockWidth() const = 0;
    /// Chooses for one block of row y, given in the order of drawing, writes it into the memory and fills in
    /// the light that the pixels will have. With error diffusion a pixel's error goes to the next in the
    /// block.
    virtual void encode(int y, std::span<const Wanted> wanted, std::span<Light> shownLight) = 0;
};

/// An encoder for a screen that writes into `memory`. The first `usable` entries of the palette from
/// `firstUsable` on may be taken by pixels.
std::unique_ptr<Encoder> makeEncoder(const Screen& screen, const MsxPalette& palette, int firstUsable,
                                     int usable, Dither dither, std::span<std::uint8_t> memory);

std::unique_ptr<Encoder> makePaletteEncoder(const Screen& screen, const MsxPalette& palette, int firstUsable,
                                            int usable, Dither dither, std::span<std::uint8_t> memory);
std::unique_ptr<Encoder> makePatternEncoder(const Screen& screen, const MsxPalette& palette, int firstUsable,
                                            int usable, Dither dither, std::span<std::uint8_t> memory);
std::unique_ptr<Encoder> makeByteEncoder(const Screen& screen, Dither dither, std::span<std::uint8_t> memory);
std::unique_ptr<Encoder> makeYjkEncoder(const Screen& screen, Dither dither, std::span<std::uint8_t> memory);

/// A colour that pixels can have.
struct Available {
    Light light;
    Lab seen;
};
Available available(const Rgb& colour);

/// Number of the colour that is nearest.
std::size_t nearest(std::span<const Available> colours, const Light& light);

} // namespace image
