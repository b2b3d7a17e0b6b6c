#include "image/command_line.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace image {

const std::string_view helpText =
    "msximg: pictures for MSX computers\n"
    "\n"
    "  msximg                             opens the window\n"
    "  msximg IN OUT --screen 2|5|6|7|8|12 [options]\n"
    "\n"
    "IN is a BMP, PNG, JPEG or GIF picture. OUT becomes a file for BLOAD \"NAME\",S. Screens with a\n"
    "palette also get a palette file beside it (.pl5 for screen 5 and so on).\n"
    "\n"
    "  --screen N            may be left out when OUT ends in .sc2, .sc5, .sc6, .sc7, .sc8 or .scc\n"
    "  --dither none         each pixel has the nearest colour\n"
    "           ordered      a fixed pattern mixes colours\n"
    "           fs           error diffusion (Floyd and Steinberg); taken when nothing is said\n"
    "  --palette auto        the colours that suit the picture best; taken when nothing is said, but\n"
    "                        for screen 2, where it is fixed\n"
    "            fixed       the palette of an MSX2 that has been switched on\n"
    "            FILE.pal    a JASC-PAL palette, or a BMP image with 16 colours\n"
    "  --resize fit          all of the picture, black bars beside it; taken when nothing is said\n"
    "           fill         all of the screen, the picture's edges cut off\n"
    "           stretch      all of both\n"
    "  --palette-out FILE    another name for the palette file; Pascal lines \"SetPalette(...);\" when it\n"
    "                        ends in .inc, .pas, .lib or .txt\n"
    "  --preview FILE.bmp    also writes what the screen will show\n"
    "\n"
    "Entry 0 of the palette shows the border's colour, unless that is 0 as well: COLOR ,,0.\n"
    "Exit code: 0 done, 1 failed, 2 wrong use.\n";

namespace {

char lowerCase(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string lowerCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](char c) { return lowerCase(c); });
    return text;
}

/// Place of the dot in a file's name; the length when there is none.
std::size_t extensionStart(const std::string& path) {
    const std::size_t dot = path.rfind('.');
    const std::size_t folder = path.find_last_of("/\\:");
    const bool inName = dot != std::string::npos && (folder == std::string::npos || dot > folder);
    return inName ? dot : path.size();
}

std::string extensionOf(const std::string& path) {
    return lowerCase(path.substr(extensionStart(path)));
}

template <typename T>
T chosen(const std::string& option, const std::string& value,
         std::initializer_list<std::pair<std::string_view, T>> choices) {
    for (const auto& [name, choice] : choices) {
        if (value == name)
            return choice;
    }
    throw UsageError(option + " does not know '" + value + "' (--help tells more)");
}

int screenNumber(const std::string& value) {
    for (const Screen& screen : screens()) {
        if (value == std::to_string(screen.number))
            return screen.number;
    }
    throw UsageError("--screen does not know '" + value + "': 2, 5, 6, 7, 8 or 12");
}

std::optional<int> screenOfExtension(const std::string& path) {
    for (const Screen& screen : screens()) {
        if (extensionOf(path) == screen.extension)
            return screen.number;
    }
    return std::nullopt;
}

/// The words on the command line, one after the other.
class Words {
  public:
    explicit Words(const std::vector<std::string>& words) : words_(words) {}
    bool atEnd() const { return next_ == words_.size(); }
    const std::string& take() { return words_[next_++]; }
    const std::string& valueOf(const std::string& option) {
        if (atEnd())
            throw UsageError(option + " needs a value");
        return take();
    }

  private:
    const std::vector<std::string>& words_;
    std::size_t next_ = 0;
};

struct Parsed {
    CommandLine line;
    std::vector<std::string> files;
    std::optional<int> screen;
    bool paletteChosen = false;
};

void takeOption(const std::string& option, Words& words, Parsed& parsed) {
    CommandLine& line = parsed.line;
    const std::string& value = words.valueOf(option);
    if (option == "--screen") {
        parsed.screen = screenNumber(value);
    } else if (option == "--dither") {
        line.options.dither = chosen<Dither>(
            option, value,
            {{"none", Dither::none}, {"ordered", Dither::ordered}, {"fs", Dither::errorDiffusion}});
    } else if (option == "--resize") {
        line.options.resize = chosen<Resize>(
            option, value, {{"fit", Resize::fit}, {"fill", Resize::fill}, {"stretch", Resize::stretch}});
    } else if (option == "--palette") {
        parsed.paletteChosen = true;
        line.palette = value == "auto"    ? PaletteKind::best
                       : value == "fixed" ? PaletteKind::powerOn
                                          : PaletteKind::file;
        line.paletteFile = line.palette == PaletteKind::file ? value : "";
    } else if (option == "--palette-out") {
        line.paletteOutput = value;
    } else if (option == "--preview") {
        line.previewOutput = value;
    } else {
        throw UsageError("there is no option '" + option + "' (--help tells more)");
    }
}

void finish(Parsed& parsed) {
    CommandLine& line = parsed.line;
    if (parsed.files.size() != 2)
        throw UsageError("one picture to read and one file to write are needed (--help tells more)");
    line.input = parsed.files[0];
    line.output = parsed.files[1];
    if (!parsed.screen)
        parsed.screen = screenOfExtension(line.output);
    if (!parsed.screen)
        throw UsageError("which screen? (--screen 2, 5, 6, 7, 8 or 12)");
    line.options.screen = *parsed.screen;
    const Screen& screen = *findScreen(*parsed.screen);
    if (extensionOf(line.output).empty())
        line.output += screen.extension;
    if (!screen.hasPalette())
        line.paletteOutput.clear();
    else if (line.paletteOutput.empty())
        line.paletteOutput = withExtension(line.output, screen.paletteExtension);
    if (!parsed.paletteChosen && screen.form == PixelForm::pattern)
        line.palette = PaletteKind::powerOn; // the computers that screen 2 is for have no other
    if (line.palette == PaletteKind::powerOn)
        line.options.palette = powerOnPalette;
}

} // namespace

CommandLine parseCommandLine(const std::vector<std::string>& arguments) {
    Parsed parsed;
    CommandLine& line = parsed.line;
    line.help = std::find(arguments.begin(), arguments.end(), "--help") != arguments.end();
    if (line.help)
        return line;
    line.window = arguments.empty() || (arguments.size() == 1 && arguments[0].rfind("--", 0) != 0);
    if (line.window) {
        if (!arguments.empty() && arguments[0] != "1")
            line.input = arguments[0];
        return line;
    }
    for (Words words(arguments); !words.atEnd();) {
        const std::string& word = words.take();
        if (word.rfind("--", 0) == 0)
            takeOption(word, words, parsed);
        else
            parsed.files.push_back(word);
    }
    finish(parsed);
    return line;
}

std::string withExtension(const std::string& path, std::string_view extension) {
    return path.substr(0, extensionStart(path)) + std::string(extension);
}

bool holdsPascal(const std::string& paletteOutput) {
    constexpr std::array<std::string_view, 4> pascal = {".inc", ".pas", ".lib", ".txt"};
    return std::find(pascal.begin(), pascal.end(), extensionOf(paletteOutput)) != pascal.end();
}

std::string paletteContent(const Conversion& conversion, bool pascal) {
    return pascal ? tavrel::setPaletteLines(conversion.palette)
                  : tavrel::paletteFile(conversion.palette, conversion.screen->paletteAddress);
}

std::string bmpFile(const Picture& picture) {
    constexpr std::size_t headers = 54;
    const auto width = static_cast<std::size_t>(picture.width);
    const std::size_t rowBytes = (width * 3 + 3) / 4 * 4;
    const std::size_t size = headers + rowBytes * static_cast<std::size_t>(picture.height);
    std::string file(headers, '\0');
    const auto put = [&](std::size_t place, std::size_t value) {
        for (std::size_t i = 0; i < 4; ++i)
            file[place + i] = static_cast<char>(value >> 8 * i & 0xFF);
    };
    file[0] = 'B';
    file[1] = 'M';
    put(2, size);
    put(10, headers);
    put(14, 40);
    put(18, width);
    put(22, static_cast<std::size_t>(picture.height));
    put(26, 1 | 24 << 16); // one plane, 24 bits
    put(34, size - headers);
    for (int y = picture.height - 1; y >= 0; --y) { // the lowest row comes first
        for (int x = 0; x < picture.width; ++x) {
            const Rgb& colour = picture.at(x, y);
            file += {static_cast<char>(colour.blue), static_cast<char>(colour.green),
                     static_cast<char>(colour.red)};
        }
        file.append(rowBytes - width * 3, '\0');
    }
    return file;
}

} // namespace image
