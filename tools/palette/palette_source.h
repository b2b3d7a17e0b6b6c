// Reading a palette that was made with a paint program.
#pragma once

#include "tools/palette/msx_palette.h"
#include "util/message_boxes.h"

#include <optional>
#include <stdexcept>
#include <string>

namespace tavrel {

class TextInput;

/// A text that is no JASC-PAL palette of 16 colours; what() is the message for the user.
class PaletteFormatError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// A JASC-PAL palette: lines "JASC-PAL", "0100", "16", then 16 lines of red, green and blue with single
/// blanks between them; what stands behind these is not looked at. Throws PaletteFormatError when one of the
/// first three lines is another, RuntimeError 62 when lines are missing, 9, 13 or 6 when a line has not three
/// numbers of 0 to 255; the error's detail then names the line.
RgbPalette readJascPalette(TextInput& text);

/// The palette in a file: a BMP image when the name ends in "BMP" (any case), a JASC-PAL text otherwise.
/// Nothing when there is none; the user has been told why, except about a BMP file that is too short.
/// Throws RuntimeError as readJascPalette does.
std::optional<RgbPalette> readPaletteSource(const std::string& path, MessageBoxes& messages);

} // namespace tavrel
