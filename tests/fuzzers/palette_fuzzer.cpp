// Any bytes as a palette that a paint program wrote as a text.
#include "fuzzer.h"
#include "tools/palette/msx_palette.h"
#include "tools/palette/palette_source.h"
#include "util/runtime_error.h"
#include "util/text_input.h"

using tavrel::fuzzing::require;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        tavrel::TextInput text(std::string(reinterpret_cast<const char*>(data), size));
        const auto palette = tavrel::msxPalette(tavrel::readJascPalette(text));
        for (const tavrel::MsxColour& colour : palette)
            require(colour.red <= 7 && colour.green <= 7 && colour.blue <= 7);
        require(tavrel::paletteFile(palette).size() == 39);
    } catch (const tavrel::RuntimeError&) {
    } catch (const tavrel::PaletteFormatError&) {
    }
    return 0;
}
