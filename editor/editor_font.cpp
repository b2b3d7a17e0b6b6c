#include "editor/editor_font.h"

#include <algorithm>
#include <bit>
#include <optional>
#include <windows.h>

namespace tavrel {

namespace {

struct Search {
    bool fixedPitchOnly = false;
    std::string found;
    bool raster = false;
};

int CALLBACK visitFont(const LOGFONTA* font, const TEXTMETRICA* metrics, DWORD kind, LPARAM parameter) {
    Search& search = *std::bit_cast<Search*>(parameter);
    const bool fixedPitch =
        (metrics->tmPitchAndFamily & TMPF_FIXED_PITCH) == 0; // the flag means the opposite
    if (search.fixedPitchOnly && (!fixedPitch || font->lfFaceName[0] == '@'))
        return 1;
    search.found = &font->lfFaceName[0];
    search.raster = (kind & RASTER_FONTTYPE) != 0;
    return 0;
}

Search findFont(const std::string& face, BYTE characterSet, bool fixedPitchOnly) {
    if (face.size() >= LF_FACESIZE)
        return {};
    LOGFONTA wanted = {};
    wanted.lfCharSet = characterSet;
    face.copy(&wanted.lfFaceName[0], LF_FACESIZE - 1);
    Search search{fixedPitchOnly, {}, false};
    HDC const screen = GetDC(nullptr);
    EnumFontFamiliesExA(screen, &wanted, visitFont, std::bit_cast<LPARAM>(&search), 0);
    ReleaseDC(nullptr, screen);
    return search;
}

std::optional<EditorFont> installed(const std::string& face, bool fixedPitchOnly) {
    const Search any = findFont(face, DEFAULT_CHARSET, fixedPitchOnly);
    if (face.empty() || any.found.empty())
        return std::nullopt;
    const bool hasOem = !findFont(face, OEM_CHARSET, fixedPitchOnly).found.empty();
    return EditorFont{face, hasOem ? OEM_CHARSET : DEFAULT_CHARSET, any.raster};
}

} // namespace

EditorFont installedEditorFont(const std::string& wanted) {
    if (const auto font = installed(wanted, false))
        return *font;
    for (const char* const face :
         {"Consolas", "Lucida Console", "DejaVu Sans Mono", "Liberation Mono", "Courier New", "Courier"}) {
        if (const auto font = installed(face, true))
            return *font;
    }
    const Search any = findFont("", DEFAULT_CHARSET, true);
    return {any.found.empty() ? "Courier New" : any.found, DEFAULT_CHARSET, any.raster};
}

} // namespace tavrel
