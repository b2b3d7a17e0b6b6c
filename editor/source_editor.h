// What the program asks of its source editor. Everything but editor/ reaches the editor through this list
// only.
#pragma once

#include <string>
#include <string_view>

namespace tavrel {

/// Line and column count from 0; a column counts bytes.
struct EditorPosition {
    long line = 0;
    long column = 0;
    bool operator==(const EditorPosition&) const = default;
};

struct EditorSelection {
    EditorPosition start;
    EditorPosition end;
};

/// The source editor `Code1`. Texts are 8-bit and kept byte for byte.
class SourceEditor {
  public:
    virtual ~SourceEditor() = default;

    /// The whole text, with its line ends.
    virtual std::string text() const = 0;
    /// Replaces the whole text; the user can undo it.
    virtual void setText(std::string_view text) = 0;
    /// Inserts a file's bytes at a position. Into an empty editor this starts a fresh undo history.
    /// Throws RuntimeError when the file cannot be read; the text is then as it was.
    virtual void insertFile(const std::string& path, EditorPosition position) = 0;
    /// Writes the text to a file and clears the modified flag. Throws RuntimeError; the flag then stays set.
    virtual void saveFile(const std::string& path, bool clearUndo) = 0;
    virtual void insertText(std::string_view text, EditorPosition position) = 0;

    virtual bool modified() const = 0;
    virtual void setModified(bool modified) = 0;

    virtual long lineCount() const = 0;
    /// Text of a line without its end; "" for a line that is not there.
    virtual std::string lineText(long line) const = 0;

    virtual EditorSelection selection() const = 0;
    virtual EditorPosition caret() const = 0;
    /// Puts the caret at a position (the nearest that exists) and scrolls to it.
    virtual void setCaret(EditorPosition position) = 0;
    virtual std::string wordAtCaret() const = 0;

    /// Line with the error colour behind it; -1 for none.
    virtual long highlightedLine() const = 0;
    virtual void setHighlightedLine(long line) = 0;

    virtual bool canUndo() const = 0;
    virtual bool canRedo() const = 0;
    virtual bool canCut() const = 0;
    virtual bool canCopy() const = 0;
    virtual bool canPaste() const = 0;
    virtual void undo() = 0;
    virtual void redo() = 0;
    virtual void cut() = 0;
    virtual void copy() = 0;
    virtual void paste() = 0;
    virtual void deleteSelection() = 0;

    virtual void giveFocus() = 0;
};

} // namespace tavrel
