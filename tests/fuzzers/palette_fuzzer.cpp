// Any bytes as a palette of a paint program, both as a text and as an image.
#include "fuzzer.h"
#include "scratch_file.h"
#include "tools/palette/bmp_palette.h"
#include "tools/palette/msx_palette.h"
#include "tools/palette/palette_source.h"
#include "util/message_boxes.h"
#include "util/runtime_error.h"
#include "util/text_input.h"

namespace {

class SilentBoxes : public tavrel::MessageBoxes {
  public:
    tavrel::Answer show(const std::string&, const std::string&, tavrel::Icon, tavrel::Buttons) override {
        return tavrel::Answer::ok;
    }
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const tavrel::fuzzing::ScratchFile file(".bmp");
    SilentBoxes boxes;
    try {
        tavrel::TextInput text(std::string(reinterpret_cast<const char*>(data), size));
        const auto palette = tavrel::msxPalette(tavrel::readJascPalette(text));
        tavrel::fuzzing::require(tavrel::paletteFile(palette).size() == 39);
    } catch (const tavrel::RuntimeError&) {
    } catch (const tavrel::PaletteFormatError&) {
    }
    tavrel::BmpPalette colours{};
    tavrel::readBmpPalette(file.write(data, size), colours, boxes);
    return 0;
}
