// What the editor does by itself while its user works: indentation, matching brackets, line numbers, zoom.
#include "editor/code_editor.h"

#include <algorithm>
#include <bit>
#include <string>
#include <string_view>

namespace tavrel {

namespace {

constexpr std::string_view brackets = "()[]{}";
constexpr uptr_t numberMargin = 0;

bool isBracket(const ScintillaView& view, sptr_t position) {
    return position >= 0 && position < view.call(SCI_GETLENGTH) &&
           brackets.find(static_cast<char>(view.call(SCI_GETCHARAT, static_cast<uptr_t>(position)))) !=
               std::string_view::npos;
}

/// Marks the bracket behind or before the caret and its partner; one without a partner stands out.
void showBrackets(const ScintillaView& view) {
    const sptr_t caret = view.call(SCI_GETCURRENTPOS);
    const sptr_t bracket = isBracket(view, caret - 1) ? caret - 1 : caret;
    if (!isBracket(view, bracket)) {
        view.call(SCI_BRACEHIGHLIGHT, static_cast<uptr_t>(INVALID_POSITION), sptr_t{INVALID_POSITION});
        return;
    }
    const sptr_t partner = view.call(SCI_BRACEMATCH, static_cast<uptr_t>(bracket));
    if (partner == INVALID_POSITION)
        view.call(SCI_BRACEBADLIGHT, static_cast<uptr_t>(bracket));
    else
        view.call(SCI_BRACEHIGHLIGHT, static_cast<uptr_t>(bracket), partner);
}

/// Does this character finish a line end? Of CR LF both characters are reported.
bool finishesLine(const ScintillaView& view, int character) {
    return character == '\n' || (character == '\r' && view.call(SCI_GETEOLMODE) == SC_EOL_CR);
}

/// The new line begins with the blanks and tabs that the line above begins with.
void indentAsAbove(const ScintillaView& view) {
    const sptr_t caret = view.call(SCI_GETCURRENTPOS);
    const sptr_t line = view.call(SCI_LINEFROMPOSITION, static_cast<uptr_t>(caret));
    if (line == 0)
        return;
    const auto above = static_cast<uptr_t>(line - 1);
    const std::string blanks =
        view.range(view.call(SCI_POSITIONFROMLINE, above), view.call(SCI_GETLINEINDENTPOSITION, above));
    if (!blanks.empty())
        view.call(SCI_REPLACESEL, 0, blanks.c_str());
}

} // namespace

void CodeEditor::handleNotification(const SCNotification& notification) {
    const bool fromLower = lower_ && notification.nmhdr.hwndFrom == lower_->window();
    const ScintillaView& view = fromLower ? *lower_ : *upper_;
    switch (notification.nmhdr.code) {
    case SCN_CHARADDED:
        if (finishesLine(view, notification.ch))
            indentAsAbove(view);
        break;
    case SCN_UPDATEUI:
        showBrackets(view);
        if (digitsOfLineCount() != shownDigits_)
            layNumberMargin();
        break;
    case SCN_ZOOM:
        zoomAs(view);
        break;
    default:
        break;
    }
}

std::size_t CodeEditor::digitsOfLineCount() const {
    constexpr std::size_t fewest = 4; // so that the text of small files does not move while they grow
    return std::max(fewest, std::to_string(lineCount()).size());
}

void CodeEditor::layNumberMargin() {
    shownDigits_ = digitsOfLineCount();
    const std::string widest = "_" + std::string(shownDigits_, '9');
    for (const auto* const view : {upper_.get(), lower_.get()}) {
        if (view != nullptr)
            view->call(SCI_SETMARGINWIDTHN, numberMargin,
                       view->call(SCI_TEXTWIDTH, STYLE_LINENUMBER, widest.c_str()));
    }
}

void CodeEditor::zoomAs(const ScintillaView& view) {
    const sptr_t zoom = view.call(SCI_GETZOOM);
    for (const auto* const other : {upper_.get(), lower_.get()}) {
        if (other != nullptr && other->call(SCI_GETZOOM) != zoom)
            other->call(SCI_SETZOOM, static_cast<uptr_t>(zoom));
    }
    layNumberMargin();
}

} // namespace tavrel
