// What the source editor reports to the main window, and what its keys mean there.
#pragma once

#include <optional>

namespace tavrel {

/// Shift state: these values summed.
namespace shiftState {
constexpr int shift = 1;
constexpr int control = 2;
constexpr int alt = 4;
} // namespace shiftState

enum class MouseButton { left = 1, right = 2 };

/// Events of the editor. None of them keeps the editor from its own handling of the key or button.
class EditorEvents {
  public:
    virtual ~EditorEvents() = default;
    /// `key` is the virtual key code.
    virtual void editorKeyDown(int key, int shift) = 0;
    /// Comes before the character gets into the text.
    virtual void editorKeyPress(int character, int shift) = 0;
    /// `x` and `y` in pixels from the pane's left upper corner. Comes after the caret was moved.
    virtual void editorMouseDown(MouseButton button, int shift, int x, int y) = 0;
};

/// The main window's own keys in the editor.
enum class EditorKey { nextPane, previousPane, calculator, imageConverter, saveFile };

/// What a key means with this shift state; nothing for all that is left to the editor.
std::optional<EditorKey> editorKey(int key, int shift);

/// The pane behind or before the active one, around the end; `active` itself when there is no pane.
int nextPane(int active, int paneCount);
int previousPane(int active, int paneCount);

} // namespace tavrel
