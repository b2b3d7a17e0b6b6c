#include "tools/palette_preview.h"

#include <bit>
#include <string>

namespace tavrel {

namespace {

void drawField(HDC context, const RECT& field, const std::optional<RgbColour>& colour) {
    if (colour) {
        HBRUSH const brush = CreateSolidBrush(RGB(colour->red, colour->green, colour->blue));
        FillRect(context, &field, brush);
        DeleteObject(brush);
    }
    FrameRect(context, &field, GetSysColorBrush(COLOR_BTNSHADOW));
}

/// The control's rectangle of one entry: a field above, its label below.
RECT column(const RECT& whole, std::size_t index) {
    const auto edge = [&](std::size_t i) {
        return whole.left + (whole.right - whole.left) * static_cast<LONG>(i) / LONG{paletteSize};
    };
    return {edge(index), whole.top, edge(index + 1) - 1, whole.bottom};
}

/// `colourOf` and `labelOf` say what entry i shows.
template <typename ColourOf, typename LabelOf>
void drawRow(const DRAWITEMSTRUCT& item, ColourOf colourOf, LabelOf labelOf) {
    HDC const context = item.hDC;
    FillRect(context, &item.rcItem, GetSysColorBrush(COLOR_BTNFACE));
    SetBkMode(context, TRANSPARENT);
    SetTextColor(context, GetSysColor(COLOR_BTNTEXT));
    SelectObject(context, std::bit_cast<HFONT>(SendMessageA(item.hwndItem, WM_GETFONT, 0, 0)));
    TEXTMETRICA metrics = {};
    GetTextMetricsA(context, &metrics);
    for (std::size_t i = 0; i < paletteSize; ++i) {
        RECT field = column(item.rcItem, i);
        RECT label = field;
        field.bottom -= metrics.tmHeight + 1;
        label.top = field.bottom + 1;
        drawField(context, field, colourOf(i));
        const std::string text = labelOf(i);
        DrawTextA(context, text.c_str(), -1, &label, DT_CENTER | DT_TOP | DT_SINGLELINE | DT_NOPREFIX);
    }
}

} // namespace

void drawPaletteBefore(const DRAWITEMSTRUCT& item, const std::optional<RgbPalette>& palette) {
    drawRow(
        item, [&](std::size_t i) { return palette ? std::optional(palette->at(i)) : std::nullopt; },
        [](std::size_t i) { return std::to_string(i); });
}

void drawPaletteAfter(const DRAWITEMSTRUCT& item, const std::optional<RgbPalette>& palette) {
    const MsxPalette converted = palette ? msxPalette(*palette) : MsxPalette();
    drawRow(
        item,
        [&](std::size_t i) { return palette ? std::optional(shownColour(converted.at(i))) : std::nullopt; },
        [&](std::size_t i) {
            const MsxColour& colour = converted.at(i);
            return palette ? std::to_string(colour.red) + std::to_string(colour.green) +
                                 std::to_string(colour.blue)
                           : std::string();
        });
}

} // namespace tavrel
