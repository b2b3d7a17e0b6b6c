// Any bytes as a BMP image that the palette converter reads: the whole table, or nothing and an untouched
// palette.
#include "fuzzer.h"
#include "scratch_file.h"
#include "tools/palette/bmp_palette.h"
#include "tools/palette/palette_source.h"
#include "util/message_boxes.h"

using tavrel::fuzzing::require;

namespace {

constexpr std::size_t depthOffset = 28;
constexpr std::size_t tableOffset = 54;
constexpr std::size_t tableEnd = tableOffset + 4 * tavrel::paletteSize;

class CountedBoxes : public tavrel::MessageBoxes {
  public:
    int shown = 0;
    tavrel::Answer show(const std::string&, const std::string&, tavrel::Icon, tavrel::Buttons) override {
        ++shown;
        return tavrel::Answer::ok;
    }
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const tavrel::fuzzing::ScratchFile file(".bmp");
    const std::string& path = file.write(data, size);
    CountedBoxes boxes;
    tavrel::BmpPalette colours{};
    colours.fill({1, 2, 3, 4});
    const tavrel::BmpPalette before = colours;
    const bool read = tavrel::readBmpPalette(path, colours, boxes);
    const bool hasHeader = size >= tableOffset;
    const bool sixteen = hasHeader && data[depthOffset] == 4 && data[depthOffset + 1] == 0;
    require(read == (sixteen && size >= tableEnd));
    require(boxes.shown == (hasHeader && !sixteen ? 1 : 0));
    require(read || colours == before);
    const auto palette = tavrel::readPaletteSource(path, boxes);
    require(palette.has_value() == read);
    for (std::size_t i = 0; read && i < palette->size(); ++i) {
        const std::uint8_t* const quad = data + tableOffset + 4 * i;
        require((*palette)[i] == tavrel::RgbColour{quad[2], quad[1], quad[0]});
    }
    return 0;
}
