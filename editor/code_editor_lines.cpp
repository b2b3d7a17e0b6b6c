// Whole lines and marked words of the editor's text.
#include "editor/code_editor.h"

namespace tavrel {

namespace {

constexpr uptr_t wordIndicator = 8; // the first that lexers leave alone

sptr_t lineAt(const ScintillaView& view, sptr_t position) {
    return view.call(SCI_LINEFROMPOSITION, static_cast<uptr_t>(position));
}

} // namespace

void CodeEditor::select(std::size_t start, std::size_t end) {
    const ScintillaView& view = active();
    view.call(SCI_ENSUREVISIBLE, static_cast<uptr_t>(lineAt(view, static_cast<sptr_t>(start))));
    view.call(SCI_SETSEL, start, static_cast<sptr_t>(end));
}

std::size_t CodeEditor::selectionEnd() const {
    return static_cast<std::size_t>(active().call(SCI_GETSELECTIONEND));
}

void CodeEditor::replaceSelectedLines(const std::function<std::string(std::string_view)>& change) {
    const ScintillaView& view = active();
    const sptr_t selectionStart = view.call(SCI_GETSELECTIONSTART);
    const sptr_t selectionEnd = view.call(SCI_GETSELECTIONEND);
    const sptr_t first = lineAt(view, selectionStart);
    sptr_t last = lineAt(view, selectionEnd);
    // A selection that ends at the beginning of a line has nothing of that line.
    if (last > first && selectionEnd == view.call(SCI_POSITIONFROMLINE, static_cast<uptr_t>(last)))
        --last;
    const sptr_t start = view.call(SCI_POSITIONFROMLINE, static_cast<uptr_t>(first));
    const sptr_t end = view.call(SCI_GETLINEENDPOSITION, static_cast<uptr_t>(last));
    const std::string former = view.range(start, end);
    const std::string changed = change(former);
    if (changed == former)
        return;
    const bool several = last > first;
    view.call(SCI_SETTARGETRANGE, static_cast<uptr_t>(start), end);
    view.call(SCI_REPLACETARGET, changed.size(), changed.c_str());
    const sptr_t after = start + static_cast<sptr_t>(changed.size());
    view.call(SCI_SETSEL, static_cast<uptr_t>(several ? start : after), after);
}

void CodeEditor::duplicateLines() {
    active().call(SCI_SELECTIONDUPLICATE); // the line, without a selection
}

void CodeEditor::moveLines(int direction) {
    active().call(direction < 0 ? SCI_MOVESELECTEDLINESUP : SCI_MOVESELECTEDLINESDOWN);
}

long CodeEditor::markOccurrences(const std::string& word) {
    const ScintillaView& view = active();
    view.call(SCI_SETINDICATORCURRENT, wordIndicator);
    view.call(SCI_INDICATORCLEARRANGE, 0, view.call(SCI_GETLENGTH));
    if (word.empty() || word == markedWord_) { // the second time takes the marks off
        markedWord_.clear();
        return 0;
    }
    markedWord_ = word;
    for (const auto* const pane : {upper_.get(), lower_.get()}) {
        if (pane == nullptr)
            continue;
        pane->call(SCI_INDICSETSTYLE, wordIndicator, sptr_t{INDIC_ROUNDBOX});
        pane->call(SCI_INDICSETFORE, wordIndicator, static_cast<sptr_t>(RGB(255, 160, 0)));
        pane->call(SCI_INDICSETALPHA, wordIndicator, 90);
    }
    long count = 0;
    sptr_t from = 0;
    view.call(SCI_SETSEARCHFLAGS, SCFIND_WHOLEWORD);
    for (;;) {
        view.call(SCI_SETTARGETRANGE, static_cast<uptr_t>(from), view.call(SCI_GETLENGTH));
        const sptr_t hit = view.call(SCI_SEARCHINTARGET, word.size(), word.c_str());
        if (hit < 0)
            return count;
        from = view.call(SCI_GETTARGETEND);
        view.call(SCI_INDICATORFILLRANGE, static_cast<uptr_t>(hit), from - hit);
        ++count;
    }
}

void CodeEditor::toggleFold() {
    const ScintillaView& view = active();
    const sptr_t line = lineAt(view, view.call(SCI_GETCURRENTPOS));
    const bool head = (view.call(SCI_GETFOLDLEVEL, static_cast<uptr_t>(line)) & SC_FOLDLEVELHEADERFLAG) != 0;
    const sptr_t block = head ? line : view.call(SCI_GETFOLDPARENT, static_cast<uptr_t>(line));
    if (block < 0)
        return;
    view.call(SCI_TOGGLEFOLD, static_cast<uptr_t>(block));
    view.call(SCI_GOTOLINE, static_cast<uptr_t>(block));
}

} // namespace tavrel
