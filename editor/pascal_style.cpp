// Colours of the Pascal lexer and the look of the editor's margins.
#include "editor/editor_font.h"
#include "editor/scintilla_view.h"

#include <algorithm>
#include <array>
#include <bit>

#include <ILexer.h>
#include <Lexilla.h>
#include <SciLexer.h>

namespace tavrel {

namespace {

struct Style {
    int number;
    COLORREF colour;
    bool bold;
};

constexpr std::array styles = {
    Style{SCE_PAS_COMMENT, RGB(0, 104, 28), false},       Style{SCE_PAS_COMMENT2, RGB(0, 104, 28), false},
    Style{SCE_PAS_COMMENTLINE, RGB(0, 104, 28), false},   Style{SCE_PAS_PREPROCESSOR, RGB(128, 64, 0), false},
    Style{SCE_PAS_PREPROCESSOR2, RGB(128, 64, 0), false}, Style{SCE_PAS_NUMBER, RGB(0, 98, 118), false},
    Style{SCE_PAS_HEXNUMBER, RGB(0, 98, 118), false},     Style{SCE_PAS_WORD, RGB(0, 0, 160), true},
    Style{SCE_PAS_STRING, RGB(163, 21, 21), false},       Style{SCE_PAS_STRINGEOL, RGB(163, 21, 21), false},
    Style{SCE_PAS_CHARACTER, RGB(163, 21, 21), false},    Style{SCE_PAS_ASM, RGB(110, 0, 110), false},
};

/// A colour as Scintilla's elements have it: with its opacity in the highest byte.
constexpr sptr_t opaque(COLORREF colour) {
    return static_cast<sptr_t>(colour | 0xFF000000U);
}

/// Reserved words of Turbo Pascal 3.
constexpr const char* reservedWords = "absolute and array begin case const div do downto else end external "
                                      "file for forward function goto if in inline "
                                      "label mod nil not of or overlay packed procedure program record "
                                      "repeat set shl shr string then to type until var "
                                      "while with xor";

void setProperty(const ScintillaView& view, const char* name, const char* value) {
    view.call(SCI_SETPROPERTY, std::bit_cast<uptr_t>(name), value);
}

} // namespace

void applyPascalStyle(const ScintillaView& view, const EditorFont& font, int size) {
    view.call(SCI_STYLESETFONT, STYLE_DEFAULT, font.face.c_str());
    view.call(SCI_STYLESETSIZE, STYLE_DEFAULT, size);
    view.call(SCI_STYLESETCHARACTERSET, STYLE_DEFAULT, font.characterSet);
    view.call(SCI_STYLECLEARALL);
    showOemCharacters(view, font.characterSet);
    for (const Style& style : styles) {
        const auto number = static_cast<uptr_t>(style.number);
        view.call(SCI_STYLESETFORE, number, static_cast<sptr_t>(style.colour));
        view.call(SCI_STYLESETBOLD, number, style.bold && !font.raster ? 1 : 0);
    }
    view.call(SCI_STYLESETFORE, STYLE_LINENUMBER, static_cast<sptr_t>(RGB(110, 110, 110)));
    view.call(SCI_STYLESETBACK, STYLE_LINENUMBER, static_cast<sptr_t>(RGB(243, 243, 243)));
    view.call(SCI_STYLESETFORE, STYLE_BRACELIGHT, static_cast<sptr_t>(RGB(0, 0, 160)));
    view.call(SCI_STYLESETBACK, STYLE_BRACELIGHT, static_cast<sptr_t>(RGB(190, 220, 255)));
    view.call(SCI_STYLESETFORE, STYLE_BRACEBAD, static_cast<sptr_t>(RGB(190, 0, 0)));
    view.call(SCI_STYLESETBACK, STYLE_BRACEBAD, static_cast<sptr_t>(RGB(255, 220, 220)));
    view.call(SCI_SETELEMENTCOLOUR, SC_ELEMENT_CARET_LINE_BACK, opaque(RGB(242, 246, 255)));
    // A narrow stripe: changed lines, and those that were changed and saved.
    view.call(SCI_SETMARGINWIDTHN, 1, std::max(view.call(SCI_TEXTWIDTH, STYLE_DEFAULT, "0") / 2, sptr_t{3}));
    view.call(SCI_SETMARGINLEFT, 0, sptr_t{4});
    if (view.call(SCI_GETLEXER) != SCLEX_PASCAL) {
        Scintilla::ILexer5* const lexer = CreateLexer("pascal");
        view.call(SCI_SETILEXER, 0, std::bit_cast<sptr_t>(lexer));
        view.call(SCI_SETKEYWORDS, 0, reservedWords);
        setProperty(view, "fold", "1");
        setProperty(view, "fold.compact", "0"); // blank lines after a block stay in sight
    }
}

} // namespace tavrel
