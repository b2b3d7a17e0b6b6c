#include "tools/palette/palette_commands.h"

#include "tools/palette/palette_source.h"
#include "util/files.h"

namespace tavrel {

std::string paletteAsPascal(const std::string& sourcePath, MessageBoxes& messages) {
    const auto palette = readPaletteSource(sourcePath, messages);
    return palette ? setPaletteLines(msxPalette(*palette)) : std::string();
}

void savePaletteFile(const std::string& sourcePath, const std::string& folder, FileDialogs& dialogs,
                     MessageBoxes& messages) {
    const auto palette = readPaletteSource(sourcePath, messages);
    if (!palette)
        return;
    SaveDialogRequest request;
    request.title = "Save screen 5 palette file";
    request.filter = "Screen 5 palette files (*.pl5) | *.pl5";
    request.initialFolder = folder;
    request.extension = "pl5";
    const std::string path = dialogs.showSaveDialog(request);
    if (!path.empty())
        writeWholeFile(path, paletteFile(msxPalette(*palette)));
}

OpenDialogRequest paletteSourceRequest(const std::string& folder) {
    OpenDialogRequest request;
    request.title = "Select file to convert";
    request.filter = "PSP Palette (*.pal) | *.pal | BMP File (*.bmp) | *.bmp";
    request.initialFolder = folder;
    return request;
}

} // namespace tavrel
