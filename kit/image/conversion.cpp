#include "image/conversion.h"

#include "image/palette_choice.h"

#include <algorithm>
#include <cmath>
#include <limits>
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

MsxPalette paletteOf(const std::vector<MsxColour>& colours, const Usable& usable) {
    MsxPalette palette = powerOnPalette;
    std::copy(colours.begin(), colours.end(), palette.begin() + usable.first);
    return palette;
}

/// Every second pixel of every second row.
Raster<Light> sampled(const Raster<Light>& picture) {
    Raster<Light> result(picture.width / 2, picture.height / 2);
    for (int y = 0; y < result.height; ++y) {
        for (int x = 0; x < result.width; ++x)
            result.at(x, y) = picture.at(2 * x, 2 * y);
    }
    return result;
}

double meanDistance(const Raster<Light>& x, const Raster<Light>& y) {
    double sum = 0;
    for (std::size_t i = 0; i < x.pixels.size(); ++i)
        sum += std::sqrt(squaredDistance(okLab(x.pixels[i]), okLab(y.pixels[i])));
    return sum / static_cast<double>(x.pixels.size());
}

/// How well a palette does with error diffusion: mostly the difference from afar, somewhat that of the single
/// pixels, which else would stand out.
double mixingError(const Raster<Light>& wanted, const MsxPalette& palette, const Usable& usable) {
    constexpr float deviation = 1.5F;
    constexpr double graininess = 0.3;
    Screen screen = *findScreen(5);
    screen.width = wanted.width;
    screen.height = wanted.height;
    std::vector<std::uint8_t> memory(wanted.pixels.size());
    const auto encoder =
        makePaletteEncoder(screen, palette, usable.first, usable.count, Dither::errorDiffusion, memory);
    Drawing(wanted, *encoder, true).draw();
    const Raster<Light> result = lightOf(shownPicture(screen, memory, palette));
    return meanDistance(fromAfar(wanted, deviation), fromAfar(result, deviation)) +
           graininess * meanDistance(wanted, result);
}

/// The nearest colours; for dithering, of palettes that reach out more or less the one that mixes best.
MsxPalette bestPalette(const Raster<Light>& wanted, Dither dither, Usable& usable) {
    const auto count = static_cast<std::size_t>(usable.count);
    auto best = choosePalette(wanted, count);
    if (dither != Dither::none) {
        const Raster<Light> sample = sampled(wanted);
        double smallest = std::numeric_limits<double>::max();
        for (const float spread : {1.0F, 1.1F, 1.2F, 1.3F}) {
            const auto colours = choosePalette(sample, count, spread);
            const Usable tried = {usable.first, static_cast<int>(colours.size())};
            const double error = mixingError(sample, paletteOf(colours, tried), tried);
            if (error < smallest) {
                smallest = error;
                best = colours;
            }
        }
    }
    usable.count = static_cast<int>(best.size());
    return paletteOf(best, usable);
}

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
        result.palette = options.palette ? *options.palette : bestPalette(wanted, options.dither, usable);
    const auto encoder =
        makeEncoder(screen, result.palette, usable.first, usable.count, options.dither, result.memory);
    Drawing(wanted, *encoder, options.dither == Dither::errorDiffusion).draw();
    finishMemory(screen, result.palette, result.memory);
    result.preview = shownPicture(screen, result.memory, result.palette);
    result.wanted = std::move(wanted);
    return result;
}

} // namespace image
