#include "image/conversion.h"

#include "image/palette_choice.h"

#include <algorithm>
#include <utility>

namespace image {

namespace {

/// Which entries of the palette pixels may have. In screen 2 entry 0 is not among them: there it shows the
/// colour behind the picture.
struct Usable {
    int first = 0;
    int count = 0;
};

Usable usableEntries(const Screen& screen) {
    const int first = screen.form == PixelForm::pattern ? 1 : 0;
    return {first, screen.colours - first};
}

MsxPalette bestPalette(const Raster<Light>& wanted, Usable& usable) {
    const auto colours = choosePalette(wanted, static_cast<std::size_t>(usable.count));
    MsxPalette palette = powerOnPalette;
    std::copy(colours.begin(), colours.end(), palette.begin() + usable.first);
    usable.count = static_cast<int>(colours.size());
    return palette;
}

/// Draws row after row, with error diffusion alternately from the left and from the right, and passes errors
/// on to the pixels around. (R. Floyd and L. Steinberg, 1976.)
class Drawing {
  public:
    Drawing(const Raster<Light>& wanted, Encoder& encoder, bool diffuses)
        : wanted_(wanted), encoder_(encoder), diffuses_(diffuses),
          below_(static_cast<std::size_t>(wanted.width) + 2), here_(below_.size()),
          block_(static_cast<std::size_t>(encoder.blockWidth())), shownLight_(block_.size()) {}

    void draw() {
        for (int y = 0; y < wanted_.height; ++y) {
            std::swap(here_, below_);
            std::fill(below_.begin(), below_.end(), Light());
            carried_ = {};
            const bool fromRight = diffuses_ && y % 2 != 0;
            const int blocks = wanted_.width / encoder_.blockWidth();
            for (int i = 0; i < blocks; ++i)
                drawBlock(fromRight ? blocks - 1 - i : i, y, fromRight);
        }
    }

  private:
    /// Errors have a place more at both ends than the row has pixels.
    Light& below(int x) { return below_.at(static_cast<std::size_t>(x + 1)); }

    void drawBlock(int number, int y, bool fromRight) {
        const int width = encoder_.blockWidth();
        const int start = fromRight ? (number + 1) * width - 1 : number * width;
        const int step = fromRight ? -1 : 1;
        for (std::size_t i = 0; i < block_.size(); ++i) {
            const int x = start + step * static_cast<int>(i);
            block_[i] = {x, wanted_.at(x, y)};
            if (diffuses_)
                block_[i].light = withinReach(block_[i].light + here_.at(static_cast<std::size_t>(x + 1)) +
                                              (i == 0 ? carried_ : Light()));
        }
        encoder_.encode(y, block_, shownLight_);
        if (diffuses_)
            passOn(step);
    }

    void passOn(int step) {
        for (std::size_t i = 0; i < block_.size(); ++i) {
            const int x = block_[i].x;
            const Light aim = i == 0 ? block_[i].light : withinReach(block_[i].light + carried_);
            const Light error = aim - shownLight_[i];
            carried_ = error * passedToNext;
            below(x - step) = below(x - step) + error * (3.0F / 16);
            below(x) = below(x) + error * (5.0F / 16);
            below(x + step) = below(x + step) + error * (1.0F / 16);
        }
    }

    const Raster<Light>& wanted_;
    Encoder& encoder_;
    bool diffuses_;
    std::vector<Light> below_;
    std::vector<Light> here_;
    Light carried_;
    std::vector<Wanted> block_;
    std::vector<Light> shownLight_;
};

/// What lies behind the picture: sprites out of sight, and the palette where BASIC looks for it.
void finishMemory(const Screen& screen, const MsxPalette& palette, std::vector<std::uint8_t>& memory) {
    if (screen.spriteAttributes != 0)
        memory[screen.spriteAttributes] = screen.noSprites;
    if (!screen.hasPalette())
        return;
    for (std::size_t i = 0; i < palette.size(); ++i) {
        const MsxColour& colour = palette.at(i);
        memory[screen.paletteAddress + 2 * i] = static_cast<std::uint8_t>(colour.red << 4 | colour.blue);
        memory[screen.paletteAddress + 2 * i + 1] = colour.green;
    }
}

} // namespace

Conversion convert(const Picture& picture, const Options& options) {
    const Screen& screen = *findScreen(options.screen);
    return convert(resized(picture, screen.width, screen.height, screen.pixelAspect(), options.resize),
                   options);
}

Conversion convert(Raster<Light> wanted, const Options& options) {
    Conversion result;
    result.screen = findScreen(options.screen);
    const Screen& screen = *result.screen;
    result.memory.resize(screen.memoryBytes);
    Usable usable = usableEntries(screen);
    if (screen.hasPalette())
        result.palette = options.palette ? *options.palette : bestPalette(wanted, usable);
    const auto encoder =
        makeEncoder(screen, result.palette, usable.first, usable.count, options.dither, result.memory);
    Drawing(wanted, *encoder, options.dither == Dither::errorDiffusion).draw();
    finishMemory(screen, result.palette, result.memory);
    result.preview = shownPicture(screen, result.memory, result.palette);
    result.wanted = std::move(wanted);
    return result;
}

} // namespace image
