// Find, Find Next and Replace: the modeless dialogs of Windows over the editor's search.
#pragma once

#include "editor/code_editor.h"
#include "util/message_boxes.h"
#include "util/message_pump.h"

#include <array>
#include <functional>
#include <string>
#include <windows.h>

#include <commdlg.h>

namespace tavrel {

class FindDialogs : private MessageFilter {
  public:
    /// `notify` shows a short notice beside the search, such as that it went on at the other end.
    FindDialogs(HWND owner, CodeEditor& editor, MessageBoxes& messages,
                std::function<void(const std::string&)> notify);
    ~FindDialogs() override;

    void showFind();
    void showReplace();
    /// Searches for the last text again; without one the Find dialog comes up.
    void findNext();

    /// The owner hands all its messages here; true for those that the dialogs sent.
    bool handle(UINT message, LPARAM second);
    /// The dialog that is up, or null.
    HWND window() const { return dialog_; }

  private:
    bool handleFirst(MSG& message) override;
    void prepare();
    void obey(DWORD flags);
    void search();
    void replace();
    void replaceAll();
    FindRequest request() const;
    std::string replacement() const;

    HWND owner_;
    CodeEditor& editor_;
    MessageBoxes& messages_;
    std::function<void(const std::string&)> notify_;
    FINDREPLACEW record_{}; ///< Unicode: the text's OEM characters are not those of the ANSI code page
    std::array<wchar_t, 256> what_{};
    std::array<wchar_t, 256> with_{};
    HWND dialog_ = nullptr;
    bool replacing_ = false;
};

} // namespace tavrel
