// quality: what bench/image measures with.
//   quality draw FOLDER      writes the test pictures, NAME.ppm, and every colour of the MSX2, grid.ppm
//   quality measure FOLDER   converts them to screen 5 and compares with NAME.none.*.ppm and
//   NAME.diffusion.*.ppm,
//                            which another program has made of them; exit code 1 when ours are worse in a
//                            mean
#include "image/conversion.h"
#include "tests/image/ppm.h"
#include "tests/image/test_pictures.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <limits>
#include <set>
#include <stdexcept>
#include <tuple>

namespace {

using namespace image;

struct Figures {
    double byPixel = std::numeric_limits<double>::max();
    double fromAfar = std::numeric_limits<double>::max();
};

Figures figuresOf(const Raster<Light>& original, const Picture& converted) {
    constexpr float deviation = 1.5F; // pixels that flow together at the distance of a television set
    const Raster<Light> light = lightOf(converted);
    return {meanDifference(original, light),
            meanDifference(image::fromAfar(original, deviation), image::fromAfar(light, deviation))};
}

Picture grid() {
    Picture colours(512, 1);
    for (unsigned i = 0; i < 512; ++i)
        colours.pixels[i] =
            shown(MsxColour{static_cast<std::uint8_t>(i >> 6), static_cast<std::uint8_t>(i >> 3 & 7),
                            static_cast<std::uint8_t>(i & 7)});
    return colours;
}

void draw(const std::filesystem::path& folder) {
    for (const auto& [name, picture] : test::testPictures())
        test::writePpm(folder / (name + ".ppm"), picture);
    test::writePpm(folder / "grid.ppm", grid());
}

/// A peer's picture must keep to the rules: 16 of the 512 colours.
void requireScreen5(const Picture& picture, const std::filesystem::path& path) {
    using Colour = std::tuple<int, int, int>;
    std::set<Colour> allowed;
    for (const Rgb& colour : grid().pixels)
        allowed.insert({colour.red, colour.green, colour.blue});
    std::set<Colour> colours;
    for (const Rgb& colour : picture.pixels)
        colours.insert({colour.red, colour.green, colour.blue});
    if (!std::includes(allowed.begin(), allowed.end(), colours.begin(), colours.end()))
        throw std::runtime_error(path.string() + ": a colour that the MSX2 does not have");
    if (colours.size() > tavrel::paletteSize)
        throw std::runtime_error(path.string() + ": more than 16 colours");
}

/// The best that the other program can do, each figure for itself.
Figures bestPeer(const std::filesystem::path& folder, const std::string& prefix,
                 const Raster<Light>& original) {
    Figures best;
    int found = 0;
    for (const auto& file : std::filesystem::directory_iterator(folder)) {
        if (file.path().filename().string().rfind(prefix, 0) != 0)
            continue;
        const Picture picture = test::readPpm(file.path());
        requireScreen5(picture, file.path());
        const Figures figures = figuresOf(original, picture);
        best.byPixel = std::min(best.byPixel, figures.byPixel);
        best.fromAfar = std::min(best.fromAfar, figures.fromAfar);
        ++found;
    }
    if (found == 0)
        throw std::runtime_error("no " + prefix + "*.ppm");
    return best;
}

/// One method over all pictures; true when ours is not worse.
bool measure(const std::filesystem::path& folder, const char* method, Dither dither) {
    const auto pictures = test::testPictures();
    const auto count = static_cast<double>(pictures.size());
    Figures ours = {0, 0};
    Figures theirs = {0, 0};
    double milliseconds = 0;
    std::printf("%-10s %-10s %17s %17s\n", method, "", "by pixel", "from afar");
    for (const auto& [name, picture] : pictures) {
        const auto start = std::chrono::steady_clock::now();
        const Conversion conversion = convert(picture, Options{5, dither, Resize::stretch, {}});
        const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
        milliseconds += time.count() / count;
        const Raster<Light> original = lightOf(picture);
        const Figures our = figuresOf(original, conversion.preview);
        const Figures their = bestPeer(folder, name + "." + method + ".", original);
        std::printf("           %-10s %7.3f / %7.3f %7.3f / %7.3f\n", name.c_str(), our.byPixel,
                    their.byPixel, our.fromAfar, their.fromAfar);
        ours.byPixel += our.byPixel / count;
        ours.fromAfar += our.fromAfar / count;
        theirs.byPixel += their.byPixel / count;
        theirs.fromAfar += their.fromAfar / count;
    }
    std::printf("           %.0f ms a picture\n", milliseconds);
    std::printf("| mean CIEDE2000 of pictures in screen 5, %s, by pixel | ImageMagick %.3f | %.3f | %.3f |\n",
                method, theirs.byPixel, ours.byPixel, ours.byPixel / theirs.byPixel);
    std::printf("| the same from afar | ImageMagick %.3f | %.3f | %.3f |\n", theirs.fromAfar, ours.fromAfar,
                ours.fromAfar / theirs.fromAfar);
    return dither == Dither::none ? ours.byPixel <= theirs.byPixel : ours.fromAfar <= theirs.fromAfar;
}

} // namespace

int main(int count, char** words) {
    try {
        const std::string verb = count == 3 ? words[1] : "";
        if (verb == "draw") {
            draw(words[2]);
            return 0;
        }
        if (verb == "measure") {
            std::puts("mean CIEDE2000 difference, ours / the best of the peer's");
            const bool none = measure(words[2], "none", Dither::none);
            const bool diffusion = measure(words[2], "diffusion", Dither::errorDiffusion);
            return none && diffusion ? 0 : 1;
        }
        std::fputs("quality draw|measure FOLDER\n", stderr);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "quality: %s\n", error.what());
    }
    return 2;
}
