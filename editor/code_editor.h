// The editor control `Code1`: one text in one or two Scintilla panes.
#pragma once

#include "editor/editor_events.h"
#include "editor/editor_font.h"
#include "editor/print_device.h"
#include "editor/scintilla_view.h"
#include "editor/source_editor.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <windows.h>

namespace tavrel {

struct FindRequest {
    std::string text;
    bool matchCase = false;
    bool wholeWord = false;
    bool forward = true;
};

enum class Found { no, yes, behindTheEnd /* the search went on at the text's other end */ };

class CodeEditor : public SourceEditor {
  public:
    /// Makes the control as a child of `parent`. setFont() gives it its font and colours; measuring texts in
    /// a font first that is not the wanted one would make each start slower. Throws std::runtime_error.
    CodeEditor(HWND parent, int controlIdentifier);
    ~CodeEditor() override;
    CodeEditor(const CodeEditor&) = delete;
    CodeEditor& operator=(const CodeEditor&) = delete;

    HWND window() const { return window_; }

    std::string text() const override;
    void setText(std::string_view text) override;
    void insertFile(const std::string& path, EditorPosition position) override;
    void saveFile(const std::string& path, bool clearUndo) override;
    void insertText(std::string_view text, EditorPosition position) override;
    bool modified() const override;
    void setModified(bool modified) override;
    long lineCount() const override;
    std::string lineText(long line) const override;
    EditorSelection selection() const override;
    EditorPosition caret() const override;
    void setCaret(EditorPosition position) override;
    std::string wordAtCaret() const override;
    long highlightedLine() const override;
    void setHighlightedLine(long line) override;
    bool canUndo() const override;
    bool canRedo() const override;
    bool canCut() const override;
    bool canCopy() const override;
    bool canPaste() const override;
    void undo() override;
    void redo() override;
    void cut() override;
    void copy() override;
    void paste() override;
    void deleteSelection() override;
    void giveFocus() override;

    /// The selected text, "" when nothing is selected.
    std::string selectedText() const;
    /// Selects the next hit behind (or before) the selection, around the text's end.
    Found find(const FindRequest& request);
    /// Replaces the selection when it is a hit; false when it is not.
    bool replaceMatch(const FindRequest& request, const std::string& replacement);
    /// Replaces every hit of the text as one step of undo and gives back their number.
    long replaceAll(const FindRequest& request, const std::string& replacement);

    /// Prints the text with a header on each page: `title` and the page's number. Throws std::runtime_error
    /// when the printer fails on the way.
    PrintStart print(PrintDevice& device, const std::string& title) const;

    /// Selects bytes of the text and brings them into sight.
    void select(std::size_t start, std::size_t end);
    /// Where the selection ends (the caret, without one), in bytes from the text's start.
    std::size_t selectionEnd() const;
    /// Replaces the lines that the selection touches by what `change` makes of them, as one step of undo.
    void replaceSelectedLines(const std::function<std::string(std::string_view)>& change);
    /// Doubles the selection, or the line that the caret is in.
    void duplicateLines();
    /// Moves the lines that the selection touches up (-1) or down (1).
    void moveLines(int direction);
    /// Marks each place of the word and gives back their number; the same word again takes the marks off.
    long markOccurrences(const std::string& word);
    /// Folds or unfolds the block that the caret is in.
    void toggleFold();

    /// Goes up with every change of the text, whoever makes it.
    unsigned long long changeCount() const { return changeCount_; }

    /// Reports keys and mouse buttons to `events`, which must outlive the editor.
    void setEvents(EditorEvents* events) { events_ = events; }

    /// Font of the settings; a fixed-pitch one stands in for a font that is not installed.
    void setFont(const std::string& face, int size);
    /// Takes a key away from the editor, since the window's menu has it as a shortcut. Modifiers as SCMOD_
    /// values.
    void releaseKey(int key, int modifiers);
    void setWaitPointer(bool wait);
    /// Where the caret is on the screen: the lower end of it.
    POINT caretPlace() const;

    bool split() const { return lower_ != nullptr; }
    void setSplit(bool split);
    /// Height in pixels of the upper pane.
    int splitterPosition() const { return splitterPosition_; }
    void setSplitterPosition(int pixels);
    int paneCount() const { return split() ? 2 : 1; }
    /// The pane (from 0) that had the focus last.
    int activePane() const { return activePane_; }
    void setActivePane(int pane);

  private:
    static LRESULT CALLBACK windowProcedure(HWND window, UINT message, WPARAM first, LPARAM second);
    LRESULT handle(UINT message, WPARAM first, LPARAM second);
    ScintillaView& active() const;
    void setUp(const ScintillaView& view) const;
    void listenTo(const ScintillaView& view);
    void handleNotification(const SCNotification& notification);
    std::size_t digitsOfLineCount() const;
    void layNumberMargin();
    void markChanges(uptr_t how);
    void forgetWidestLine();
    void zoomAs(const ScintillaView& view);
    LRESULT handlePane(HWND pane, UINT message, WPARAM first, LPARAM second);
    static LRESULT CALLBACK paneProcedure(HWND pane, UINT message, WPARAM first, LPARAM second,
                                          UINT_PTR identifier, DWORD_PTR editor);
    void placePanes();
    void takePlaceOf(const ScintillaView& pane);
    void paintSplitter();
    void dragSplitter(int y);
    sptr_t positionOf(EditorPosition position) const;
    EditorPosition placeOf(sptr_t position) const;

    HWND window_ = nullptr;
    EditorEvents* events_ = nullptr;
    std::unique_ptr<ScintillaView> upper_;
    std::unique_ptr<ScintillaView> lower_;
    int splitterPosition_ = 0;
    int activePane_ = 0;
    bool forcedModified_ = false;
    unsigned long long changeCount_ = 0;
    std::string markedWord_;
    std::size_t shownDigits_ = 0;
    EditorFont font_; ///< without a face before the first setFont()
    int size_ = 0;
};

} // namespace tavrel
