// What the editor does by itself while its user works: indentation, matching brackets, line numbers, zoom.
#include "editor/code_editor.h"
#include "editor/source_words.h"

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

/// The position of the bracket that belongs to the one at `position`, or INVALID_POSITION. Far off it is not
/// looked for: in a large source with a missing bracket each key would wait for the whole rest of the text.
sptr_t partnerOf(const ScintillaView& view, sptr_t position) {
    constexpr sptr_t farthest = 200'000; // characters
    const sptr_t length = view.call(SCI_GETLENGTH);
    const auto kind = [&](sptr_t at) { return view.call(SCI_GETSTYLEAT, static_cast<uptr_t>(at)); };
    const auto own = static_cast<char>(view.call(SCI_GETCHARAT, static_cast<uptr_t>(position)));
    const std::size_t place = brackets.find(own);
    const bool opens = place % 2 == 0;
    const char other = brackets[opens ? place + 1 : place - 1];
    const sptr_t start = opens ? position : std::max<sptr_t>(position - farthest, 0);
    const sptr_t end = opens ? std::min(position + farthest, length) : position + 1;
    const auto* const text =
        std::bit_cast<const char*>(view.call(SCI_GETRANGEPOINTER, static_cast<uptr_t>(start), end - start));
    const sptr_t coloured = view.call(SCI_GETENDSTYLED); // further on nothing tells a comment from the rest
    const sptr_t ownKind = kind(position);
    sptr_t depth = 0;
    for (sptr_t at = position; at >= start && at < end; at += opens ? 1 : -1) {
        const char character = text[at - start];
        if ((character != own && character != other) || (at < coloured && kind(at) != ownKind))
            continue;
        depth += character == own ? 1 : -1;
        if (depth == 0)
            return at;
    }
    return INVALID_POSITION;
}

/// Marks the bracket behind or before the caret and its partner; one without a partner stands out.
void showBrackets(const ScintillaView& view) {
    const sptr_t caret = view.call(SCI_GETCURRENTPOS);
    const sptr_t bracket = isBracket(view, caret - 1) ? caret - 1 : caret;
    if (!isBracket(view, bracket)) {
        view.call(SCI_BRACEHIGHLIGHT, static_cast<uptr_t>(INVALID_POSITION), sptr_t{INVALID_POSITION});
        return;
    }
    const sptr_t partner = partnerOf(view, bracket);
    if (partner == INVALID_POSITION)
        view.call(SCI_BRACEBADLIGHT, static_cast<uptr_t>(bracket));
    else
        view.call(SCI_BRACEHIGHLIGHT, static_cast<uptr_t>(bracket), partner);
}

/// Does this character finish a line end? Of CR LF both characters are reported.
bool finishesLine(const ScintillaView& view, int character) {
    return character == '\n' || (character == '\r' && view.call(SCI_GETEOLMODE) == SC_EOL_CR);
}

/// The new line begins with the blanks and tabs that the line above begins with, and further in after a line
/// that opens a block.
void indentAsAbove(const ScintillaView& view) {
    const sptr_t caret = view.call(SCI_GETCURRENTPOS);
    const sptr_t line = view.call(SCI_LINEFROMPOSITION, static_cast<uptr_t>(caret));
    if (line == 0)
        return;
    const auto above = static_cast<uptr_t>(line - 1);
    const sptr_t start = view.call(SCI_POSITIONFROMLINE, above);
    std::string blanks = view.range(start, view.call(SCI_GETLINEINDENTPOSITION, above));
    if (opensBlock(view.range(start, view.call(SCI_GETLINEENDPOSITION, above))))
        blanks.append(indentWidth, ' ');
    if (!blanks.empty())
        view.call(SCI_REPLACESEL, 0, blanks.c_str());
}

} // namespace

void CodeEditor::handleNotification(const SCNotification& notification) {
    const bool fromLower = lower_ && notification.nmhdr.hwndFrom == lower_->window();
    const ScintillaView& view = fromLower ? *lower_ : *upper_;
    switch (notification.nmhdr.code) {
    case SCN_MODIFIED:
        if (!fromLower && (notification.modificationType & (SC_MOD_INSERTTEXT | SC_MOD_DELETETEXT)) != 0)
            ++changeCount_; // of the one text, which both panes report
        break;
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
