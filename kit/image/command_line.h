// The command line of msximg.
#pragma once

#include "image/conversion.h"

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace image {

enum class PaletteKind { best, powerOn, file };

/// What the user asked for.
struct CommandLine {
    bool help = false;
    bool window = false; ///< open the window; `input` may name a picture for it
    std::string input;
    std::string output;        ///< with its extension
    std::string paletteOutput; ///< "" when the screen has no palette
    std::string previewOutput; ///< a BMP image of what the screen shows; "" for none
    PaletteKind palette = PaletteKind::best;
    std::string paletteFile; ///< when the palette comes from a file
    Options options;
};

/// A command line that cannot be followed; what() is the message for the user.
class UsageError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// The text that --help prints.
extern const std::string_view helpText;

/// Reads the arguments (without the program's own name). No argument, the one argument "1" (with which an
/// editor starts the program) and a single file name ask for the window. @throws UsageError
CommandLine parseCommandLine(const std::vector<std::string>& arguments);

/// The name with another extension (which may be "") in place of its own.
std::string withExtension(const std::string& path, std::string_view extension);

/// Whether a palette file of this name holds Pascal lines: .inc, .pas, .lib and .txt do.
bool holdsPascal(const std::string& paletteOutput);

/// The content of a palette file: SetPalette lines or the bytes of the palette table.
std::string paletteContent(const Conversion& conversion, bool pascal);

/// A BMP image with 24 bits a pixel.
std::string bmpFile(const Picture& picture);

} // namespace image
