#include "tools/palette/palette_source.h"

#include "tools/palette/bmp_palette.h"
#include "util/files.h"
#include "util/runtime_error.h"
#include "util/text.h"
#include "util/text_input.h"

#include <algorithm>
#include <limits>

namespace tavrel {

namespace {

constexpr std::string_view signature = "JASC-PAL";
constexpr double knownVersion = 100; // written "0100"

/// Fields of a text between single blanks; two blanks have an empty field between them.
std::array<std::string, 3> firstThreeFields(const std::string& line, const std::string& place) {
    std::array<std::string, 3> fields;
    std::size_t start = 0;
    for (std::string& field : fields) {
        if (start > line.size())
            throw RuntimeError(RuntimeErrorNumber::subscriptOutOfRange,
                               place + ": red, green and blue are needed");
        const std::size_t end = std::min(line.find(' ', start), line.size());
        field = line.substr(start, end - start);
        start = end + 1;
    }
    return fields;
}

std::uint8_t component(const std::string& field, const std::string& place) {
    int value = -1;
    try {
        value = convertToInteger(field);
    } catch (const RuntimeError& error) {
        throw RuntimeError(error.number(), place + ": \"" + field + "\" is not a number of 0 to 255");
    }
    if (value < 0 || value > std::numeric_limits<std::uint8_t>::max())
        throw RuntimeError(RuntimeErrorNumber::overflow,
                           place + ": \"" + field + "\" is not a number of 0 to 255");
    return static_cast<std::uint8_t>(value);
}

/// The palette in a BMP file, stored blue first.
std::optional<RgbPalette> readBmpSource(const std::string& path, MessageBoxes& messages) {
    BmpPalette stored;
    if (!readBmpPalette(path, stored, messages))
        return std::nullopt;
    RgbPalette palette;
    std::transform(stored.begin(), stored.end(), palette.begin(), [](const RgbQuad& quad) {
        return RgbColour{quad.red, quad.green, quad.blue};
    });
    return palette;
}

} // namespace

RgbPalette readJascPalette(TextInput& text) {
    if (text.line().substr(0, signature.size()) != signature)
        throw PaletteFormatError("Not a valid PSP palette file!");
    if (numericValue(text.line()) != knownVersion)
        throw PaletteFormatError("Incorrect palette version!");
    if (numericValue(text.line()) != paletteSize)
        throw PaletteFormatError("Palette must have 16 colors!");
    RgbPalette palette;
    int line = 3;
    for (RgbColour& colour : palette) {
        const std::string place = "Line " + std::to_string(++line);
        const auto fields = firstThreeFields(text.line(), place);
        colour = {component(fields[0], place), component(fields[1], place), component(fields[2], place)};
    }
    return palette;
}

std::optional<RgbPalette> readPaletteSource(const std::string& path, MessageBoxes& messages) {
    if (!FileExists(path)) {
        messages.show("Could not open the file!", "Tavrel", Icon::none, Buttons::ok);
        return std::nullopt;
    }
    if (upperCase(lastCharacters(path, 3)) == "BMP")
        return readBmpSource(path, messages);
    TextInput text = TextInput::open(path);
    try {
        return readJascPalette(text);
    } catch (const PaletteFormatError& error) {
        messages.show(error.what(), "Erro", Icon::critical, Buttons::ok); // the title that users know
        return std::nullopt;
    }
}

} // namespace tavrel
