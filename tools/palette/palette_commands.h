// What the palette converter makes of a source file.
#pragma once

#include "util/file_dialogs.h"
#include "util/message_boxes.h"

#include <string>

namespace tavrel {

/// The SetPalette lines for the palette in a file; "" when there is none (the user knows why). Throws
/// RuntimeError for a source with damaged lines.
std::string paletteAsPascal(const std::string& sourcePath, MessageBoxes& messages);

/// Asks for a name and writes the palette in a file as a screen 5 palette file. Nothing is written without a
/// palette or a name. `folder` is offered first. Throws RuntimeError for a source with damaged lines, and
/// when the file cannot be written.
void savePaletteFile(const std::string& sourcePath, const std::string& folder, FileDialogs& dialogs,
                     MessageBoxes& messages);

/// What the converter asks for: a palette of a paint program.
OpenDialogRequest paletteSourceRequest(const std::string& folder);

} // namespace tavrel
