#include "editor/code_editor.h"

#include "editor/editor_font.h"
#include "util/files.h"

#include <algorithm>

namespace tavrel {

namespace {
constexpr uptr_t errorMarker = 0;

/// The kind of line end that a text uses first, so that new lines match it.
int lineEndOf(std::string_view bytes) {
    const std::size_t first = bytes.find_first_of("\r\n");
    if (first == std::string_view::npos)
        return SC_EOL_CRLF;
    if (bytes[first] == '\n')
        return SC_EOL_LF;
    return first + 1 < bytes.size() && bytes[first + 1] == '\n' ? SC_EOL_CRLF : SC_EOL_CR;
}
} // namespace

std::string CodeEditor::text() const {
    return upper_->allText();
}

void CodeEditor::setText(std::string_view text) {
    setHighlightedLine(-1);
    upper_->call(SCI_BEGINUNDOACTION);
    upper_->call(SCI_CLEARALL);
    upper_->insert(0, text);
    upper_->call(SCI_ENDUNDOACTION);
}

void CodeEditor::insertFile(const std::string& path, EditorPosition position) {
    const std::string bytes = readWholeFile(path);
    const bool fresh = upper_->call(SCI_GETLENGTH) == 0;
    if (fresh) {
        upper_->call(SCI_SETUNDOCOLLECTION, 0);
        upper_->call(SCI_EMPTYUNDOBUFFER);
        upper_->call(SCI_SETEOLMODE, static_cast<uptr_t>(lineEndOf(bytes)));
        markChanges(SC_CHANGE_HISTORY_DISABLED);
        forgetWidestLine();
    }
    upper_->insert(positionOf(position), bytes);
    if (fresh) {
        upper_->call(SCI_SETUNDOCOLLECTION, 1);
        markChanges(showChanges); // from here on
    }
    setCaret({0, 0});
}

void CodeEditor::markChanges(uptr_t how) {
    for (const auto* const view : {upper_.get(), lower_.get()}) {
        if (view != nullptr)
            view->call(SCI_SETCHANGEHISTORY, how);
    }
}

/// The horizontal scroll range is that of the longest line that was ever shown.
void CodeEditor::forgetWidestLine() {
    for (const auto* const view : {upper_.get(), lower_.get()}) {
        if (view == nullptr)
            continue;
        view->call(SCI_SETXOFFSET, 0);
        view->call(SCI_SETSCROLLWIDTH, 1);
    }
}

void CodeEditor::saveFile(const std::string& path, bool clearUndo) {
    writeWholeFile(path, text());
    if (clearUndo)
        upper_->call(SCI_EMPTYUNDOBUFFER);
    setModified(false);
}

void CodeEditor::insertText(std::string_view text, EditorPosition position) {
    upper_->insert(positionOf(position), text);
}

bool CodeEditor::modified() const {
    return forcedModified_ || upper_->call(SCI_GETMODIFY) != 0;
}

void CodeEditor::setModified(bool modified) {
    forcedModified_ = modified;
    if (!modified)
        upper_->call(SCI_SETSAVEPOINT);
}

long CodeEditor::lineCount() const {
    return static_cast<long>(upper_->call(SCI_GETLINECOUNT));
}

std::string CodeEditor::lineText(long line) const {
    if (line < 0 || line >= lineCount())
        return {};
    const auto number = static_cast<uptr_t>(line);
    return upper_->range(upper_->call(SCI_POSITIONFROMLINE, number),
                         upper_->call(SCI_GETLINEENDPOSITION, number));
}

sptr_t CodeEditor::positionOf(EditorPosition position) const {
    const long line = std::clamp(position.line, 0L, lineCount() - 1);
    const sptr_t start = upper_->call(SCI_POSITIONFROMLINE, static_cast<uptr_t>(line));
    const sptr_t end = upper_->call(SCI_GETLINEENDPOSITION, static_cast<uptr_t>(line));
    return std::min<sptr_t>(start + std::max(position.column, 0L), end);
}

EditorPosition CodeEditor::placeOf(sptr_t position) const {
    const sptr_t line = upper_->call(SCI_LINEFROMPOSITION, static_cast<uptr_t>(position));
    return {static_cast<long>(line),
            static_cast<long>(position - upper_->call(SCI_POSITIONFROMLINE, static_cast<uptr_t>(line)))};
}

EditorSelection CodeEditor::selection() const {
    return {placeOf(active().call(SCI_GETSELECTIONSTART)), placeOf(active().call(SCI_GETSELECTIONEND))};
}

EditorPosition CodeEditor::caret() const {
    return placeOf(active().call(SCI_GETCURRENTPOS));
}

void CodeEditor::setCaret(EditorPosition position) {
    const ScintillaView& view = active();
    view.call(SCI_ENSUREVISIBLE, static_cast<uptr_t>(std::clamp(position.line, 0L, lineCount() - 1)));
    view.call(SCI_GOTOPOS, static_cast<uptr_t>(positionOf(position)));
    // What follows the line belongs into sight too: an error is often in what comes next.
    constexpr sptr_t linesBelow = 3;
    const sptr_t visible = view.call(SCI_LINESONSCREEN);
    const sptr_t line =
        view.call(SCI_VISIBLEFROMDOCLINE,
                  static_cast<uptr_t>(
                      view.call(SCI_LINEFROMPOSITION, static_cast<uptr_t>(view.call(SCI_GETCURRENTPOS)))));
    const sptr_t last = view.call(SCI_GETFIRSTVISIBLELINE) + visible - 1;
    if (visible > 2 * linesBelow && line > last - linesBelow)
        view.call(SCI_LINESCROLL, 0, line - (last - linesBelow));
}

std::string CodeEditor::wordAtCaret() const {
    const sptr_t caretPosition = active().call(SCI_GETCURRENTPOS);
    const sptr_t start = upper_->call(SCI_WORDSTARTPOSITION, static_cast<uptr_t>(caretPosition), 1);
    return upper_->range(start, upper_->call(SCI_WORDENDPOSITION, static_cast<uptr_t>(caretPosition), 1));
}

long CodeEditor::highlightedLine() const {
    return static_cast<long>(upper_->call(SCI_MARKERNEXT, 0, sptr_t{1} << errorMarker));
}

void CodeEditor::setHighlightedLine(long line) {
    upper_->call(SCI_MARKERDELETEALL, errorMarker);
    if (line >= 0 && line < lineCount())
        upper_->call(SCI_MARKERADD, static_cast<uptr_t>(line), static_cast<sptr_t>(errorMarker));
}

bool CodeEditor::canUndo() const {
    return upper_->call(SCI_CANUNDO) != 0;
}

bool CodeEditor::canRedo() const {
    return upper_->call(SCI_CANREDO) != 0;
}

bool CodeEditor::canCut() const {
    return active().call(SCI_GETSELECTIONEMPTY) == 0;
}

bool CodeEditor::canCopy() const {
    return canCut();
}

bool CodeEditor::canPaste() const {
    return active().call(SCI_CANPASTE) != 0;
}

void CodeEditor::undo() {
    active().call(SCI_UNDO);
}

void CodeEditor::redo() {
    active().call(SCI_REDO);
}

void CodeEditor::cut() {
    active().call(SCI_CUT);
}

void CodeEditor::copy() {
    active().call(SCI_COPY);
}

void CodeEditor::paste() {
    active().call(SCI_PASTE);
}

void CodeEditor::deleteSelection() {
    active().call(SCI_REPLACESEL, 0, "");
}

void CodeEditor::giveFocus() {
    SetFocus(active().window());
}

void CodeEditor::setFont(const std::string& face, int size) {
    const EditorFont font = installedEditorFont(face);
    // Settings cut short give an empty name and the size 0, which no text can be read in.
    const int shown = size > 0 ? size : 11;
    if (font == font_ && shown == size_)
        return;
    font_ = font;
    size_ = shown;
    for (const auto* const view : {upper_.get(), lower_.get()}) {
        if (view != nullptr)
            applyPascalStyle(*view, font_, size_);
    }
    layNumberMargin();
}

void CodeEditor::releaseKey(int key, int modifiers) {
    for (const auto* const view : {upper_.get(), lower_.get()}) {
        if (view != nullptr)
            view->call(SCI_CLEARCMDKEY, static_cast<uptr_t>(key | (modifiers << 16)));
    }
}

POINT CodeEditor::caretPlace() const {
    const ScintillaView& view = active();
    const sptr_t caret = view.call(SCI_GETCURRENTPOS);
    const sptr_t line = view.call(SCI_LINEFROMPOSITION, static_cast<uptr_t>(caret));
    POINT place = {static_cast<LONG>(view.call(SCI_POINTXFROMPOSITION, 0, caret)),
                   static_cast<LONG>(view.call(SCI_POINTYFROMPOSITION, 0, caret) +
                                     view.call(SCI_TEXTHEIGHT, static_cast<uptr_t>(line)))};
    ClientToScreen(view.window(), &place);
    return place;
}

void CodeEditor::setWaitPointer(bool wait) {
    for (const auto* const view : {upper_.get(), lower_.get()}) {
        if (view != nullptr)
            view->call(SCI_SETCURSOR, static_cast<uptr_t>(wait ? SC_CURSORWAIT : SC_CURSORNORMAL));
    }
}

} // namespace tavrel
