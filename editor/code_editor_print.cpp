// Printing the editor's text.
#include "editor/code_editor.h"

#include <bit>
#include <memory>
#include <type_traits>

namespace tavrel {

namespace {

constexpr double marginInInches = 0.6;
constexpr int headerPoints = 9;

/// A length in pixels of a device with this many pixels to the inch.
int pixels(double inches, int pixelsPerInch) {
    return static_cast<int>(inches * pixelsPerInch);
}

/// Where header and text lie on a page, in pixels from the upper left corner of what can be printed on.
struct PageLayout {
    Sci_Rectangle page{};
    Sci_Rectangle text{};
    RECT header{};
    int headerFontHeight = 0;
};

PageLayout layoutOf(HDC device) {
    const auto measure = [device](int what) { return GetDeviceCaps(device, what); };
    const int right = measure(HORZRES);
    const int bottom = measure(VERTRES);
    const int inchX = measure(LOGPIXELSX);
    const int inchY = measure(LOGPIXELSY);
    // The margins count from the paper's edge, which a printer cannot quite reach. Other devices have no
    // paper.
    const int paperX = measure(PHYSICALWIDTH);
    const int paperY = measure(PHYSICALHEIGHT);
    const int hiddenLeft = measure(PHYSICALOFFSETX);
    const int hiddenTop = measure(PHYSICALOFFSETY);
    const int hiddenRight = paperX > 0 ? paperX - hiddenLeft - right : 0;
    const int hiddenBottom = paperY > 0 ? paperY - hiddenTop - bottom : 0;
    const auto inner = [](int margin, int hidden) { return margin > hidden ? margin - hidden : 0; };
    const int marginX = pixels(marginInInches, inchX);
    const int marginY = pixels(marginInInches, inchY);

    PageLayout layout;
    layout.page = {0, 0, right, bottom};
    layout.headerFontHeight = pixels(headerPoints / 72.0, inchY);
    layout.header = {inner(marginX, hiddenLeft), inner(marginY, hiddenTop),
                     right - inner(marginX, hiddenRight), 0};
    layout.header.bottom = layout.header.top + layout.headerFontHeight * 3 / 2;
    layout.text = {static_cast<int>(layout.header.left),
                   static_cast<int>(layout.header.bottom) + layout.headerFontHeight,
                   static_cast<int>(layout.header.right), bottom - inner(marginY, hiddenBottom)};
    return layout;
}

struct FontDeleter {
    void operator()(HFONT font) const { DeleteObject(font); }
};
using Font = std::unique_ptr<std::remove_pointer_t<HFONT>, FontDeleter>;

void drawHeader(HDC device, const PageLayout& layout, const std::string& title, int page) {
    const Font font(CreateFontA(-layout.headerFontHeight, 0, 0, 0, FW_BOLD, FALSE, FALSE, FALSE,
                                DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY,
                                VARIABLE_PITCH | FF_SWISS, "Arial"));
    HGDIOBJ const formerFont = SelectObject(device, font.get());
    SetTextColor(device, RGB(0, 0, 0));
    SetBkMode(device, TRANSPARENT);
    SetTextAlign(device, TA_LEFT | TA_TOP);
    RECT place = layout.header;
    constexpr UINT format = DT_SINGLELINE | DT_NOPREFIX | DT_TOP;
    const std::string number = "Page " + std::to_string(page);
    DrawTextA(device, title.c_str(), static_cast<int>(title.size()), &place, format | DT_LEFT);
    DrawTextA(device, number.c_str(), static_cast<int>(number.size()), &place, format | DT_RIGHT);
    MoveToEx(device, place.left, place.bottom, nullptr);
    LineTo(device, place.right, place.bottom);
    SelectObject(device, formerFont);
}

void printPages(const ScintillaView& view, PrintDevice& device, const std::string& title) {
    HDC const context = device.context();
    const PageLayout layout = layoutOf(context);
    const sptr_t length = view.call(SCI_GETLENGTH);
    Sci_RangeToFormatFull range = {context, context, layout.text, layout.page, {0, length}};
    int page = 0;
    do { // an empty text is one page with nothing but its header
        device.beginPage();
        drawHeader(context, layout, title, ++page);
        const sptr_t next = view.call(SCI_FORMATRANGEFULL, 1, std::bit_cast<sptr_t>(&range));
        device.endPage();
        if (next <= range.chrg.cpMin)
            break; // not even one line finds room on such a page
        range.chrg.cpMin = next;
    } while (range.chrg.cpMin < length);
}

} // namespace

PrintStart CodeEditor::print(PrintDevice& device, const std::string& title) const {
    const PrintStart start = device.open(title);
    if (start != PrintStart::printing)
        return start;
    upper_->call(SCI_SETPRINTCOLOURMODE, SC_PRINT_COLOURONWHITE);
    try {
        printPages(*upper_, device, title);
    } catch (...) {
        upper_->call(SCI_FORMATRANGEFULL, 0);
        device.close(false);
        throw;
    }
    upper_->call(SCI_FORMATRANGEFULL, 0); // gives back what was kept for the pages
    device.close(true);
    return start;
}

} // namespace tavrel
