// One Scintilla window, spoken to through its direct function.
#pragma once

#include <string>
#include <string_view>
#include <windows.h>

#include <Scintilla.h>

namespace tavrel {

struct EditorFont;

/// Blanks that a block is indented by, as in all sources that come with the program.
constexpr uptr_t indentWidth = 2;

/// The lines that were changed since the file was loaded are marked, also those that were saved since.
constexpr uptr_t showChanges = SC_CHANGE_HISTORY_ENABLED | SC_CHANGE_HISTORY_MARKERS;

/// Typed calls to one Scintilla control. A call that the control fails throws std::runtime_error.
class ScintillaView {
  public:
    /// Makes the control as a child of `parent`. Throws std::runtime_error.
    explicit ScintillaView(HWND parent);

    HWND window() const { return window_; }
    bool hasFocus() const { return GetFocus() == window_; }

    sptr_t call(unsigned message, uptr_t first = 0, sptr_t second = 0) const;
    sptr_t call(unsigned message, uptr_t first, const char* text) const;

    std::string allText() const;
    std::string range(sptr_t start, sptr_t end) const;
    /// Inserts bytes (zeros too) at a position without moving the selection elsewhere.
    void insert(sptr_t position, std::string_view bytes) const;

  private:
    HWND window_ = nullptr;
    SciFnDirectStatus function_ = nullptr;
    sptr_t pointer_ = 0;
};

/// Has the bytes above 7Fh shown as characters of the OEM set. `characterSet` is the one that the styles of
/// the text have, when their font has it; STYLE_DEFAULT is OEM from then on.
void showOemCharacters(const ScintillaView& view, int characterSet);

/// Pascal colours and the font, which must be installed, in one view.
void applyPascalStyle(const ScintillaView& view, const EditorFont& font, int size);

} // namespace tavrel
