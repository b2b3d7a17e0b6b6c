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
};

int CALLBACK visitFont(const LOGFONTA* font, const TEXTMETRICA* metrics, DWORD, LPARAM parameter) {
    Search& search = *std::bit_cast<Search*>(parameter);
    const bool fixedPitch =
        (metrics->tmPitchAndFamily & TMPF_FIXED_PITCH) == 0; // the flag means the opposite
    if (search.fixedPitchOnly && (!fixedPitch || font->lfFaceName[0] == '@'))
        return 1;
    search.found = &font->lfFaceName[0];
    return 0;
}

std::string findFont(const std::string& face, BYTE characterSet, bool fixedPitchOnly) {
    if (face.size() >= LF_FACESIZE)
        return {};
    LOGFONTA wanted = {};
    wanted.lfCharSet = characterSet;
    face.copy(&wanted.lfFaceName[0], LF_FACESIZE - 1);
    Search search{fixedPitchOnly, {}};
    HDC const screen = GetDC(nullptr);
    EnumFontFamiliesExA(screen, &wanted, visitFont, std::bit_cast<LPARAM>(&search), 0);
    ReleaseDC(nullptr, screen);
    return search.found;
}

std::optional<EditorFont> installed(const std::string& face, bool fixedPitchOnly) {
    if (face.empty() || findFont(face, DEFAULT_CHARSET, fixedPitchOnly).empty())
        return std::nullopt;
    const bool hasOem = !findFont(face, OEM_CHARSET, fixedPitchOnly).empty();
    return EditorFont{face, hasOem ? OEM_CHARSET : DEFAULT_CHARSET};
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
    const std::string any = findFont("", DEFAULT_CHARSET, true);
    return {any.empty() ? "Courier New" : any, DEFAULT_CHARSET};
}

} // namespace tavrel
