// Searching and replacing in the editor's text.
#include "editor/code_editor.h"

namespace tavrel {

namespace {

uptr_t searchFlags(const FindRequest& request) {
    return static_cast<uptr_t>((request.matchCase ? SCFIND_MATCHCASE : 0) |
                               (request.wholeWord ? SCFIND_WHOLEWORD : 0));
}

/// Start of the first hit between two positions (backward when the first is the greater), -1 when there is
/// none. The hit is the view's target then.
sptr_t searchBetween(const ScintillaView& view, const FindRequest& request, sptr_t from, sptr_t to) {
    if (request.text.empty())
        return -1;
    view.call(SCI_SETSEARCHFLAGS, searchFlags(request));
    view.call(SCI_SETTARGETRANGE, static_cast<uptr_t>(from), to);
    return view.call(SCI_SEARCHINTARGET, request.text.size(), request.text.c_str());
}

} // namespace

std::string CodeEditor::selectedText() const {
    return upper_->range(active().call(SCI_GETSELECTIONSTART), active().call(SCI_GETSELECTIONEND));
}

Found CodeEditor::find(const FindRequest& request) {
    const ScintillaView& view = active();
    const sptr_t length = view.call(SCI_GETLENGTH);
    const sptr_t edge = request.forward ? length : 0;
    const sptr_t start = view.call(request.forward ? SCI_GETSELECTIONEND : SCI_GETSELECTIONSTART);
    Found found = Found::yes;
    if (searchBetween(view, request, start, edge) < 0) {
        found = Found::behindTheEnd;
        if (searchBetween(view, request, length - edge, edge) < 0)
            return Found::no;
    }
    const sptr_t hit = view.call(SCI_GETTARGETSTART);
    const sptr_t end = view.call(SCI_GETTARGETEND);
    view.call(SCI_ENSUREVISIBLE,
              static_cast<uptr_t>(view.call(SCI_LINEFROMPOSITION, static_cast<uptr_t>(hit))));
    view.call(SCI_SETSEL, static_cast<uptr_t>(hit), end);
    return found;
}

bool CodeEditor::replaceMatch(const FindRequest& request, const std::string& replacement) {
    const ScintillaView& view = active();
    const sptr_t start = view.call(SCI_GETSELECTIONSTART);
    const sptr_t end = view.call(SCI_GETSELECTIONEND);
    if (start == end || searchBetween(view, request, start, end) != start ||
        view.call(SCI_GETTARGETEND) != end)
        return false;
    view.call(SCI_REPLACETARGET, replacement.size(), replacement.c_str());
    view.call(SCI_SETSEL, static_cast<uptr_t>(view.call(SCI_GETTARGETEND)), view.call(SCI_GETTARGETEND));
    return true;
}

long CodeEditor::replaceAll(const FindRequest& request, const std::string& replacement) {
    const ScintillaView& view = active();
    long count = 0;
    sptr_t from = 0;
    view.call(SCI_BEGINUNDOACTION);
    while (searchBetween(view, request, from, view.call(SCI_GETLENGTH)) >= 0) {
        view.call(SCI_REPLACETARGET, replacement.size(), replacement.c_str());
        from = view.call(SCI_GETTARGETEND); // what was put in is not searched
        ++count;
    }
    view.call(SCI_ENDUNDOACTION);
    return count;
}

} // namespace tavrel
