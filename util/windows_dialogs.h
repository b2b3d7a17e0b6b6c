// Message boxes and file dialogs of Windows.
#pragma once

#include "util/file_dialogs.h"
#include "util/message_boxes.h"

#include <windows.h>

namespace tavrel {

/// Boxes owned by a window that is named later, since boxes are needed before the main window exists.
class WindowsMessageBoxes : public MessageBoxes {
  public:
    void setOwner(HWND owner) { owner_ = owner; }
    Answer show(const std::string& text, const std::string& title, Icon icon, Buttons buttons) override;

  private:
    HWND owner_ = nullptr;
};

class WindowsFileDialogs : public FileDialogs {
  public:
    void setOwner(HWND owner) { owner_ = owner; }
    std::string ShowOpenDialog(const OpenDialogRequest& request) override;
    std::string showSaveDialog(const SaveDialogRequest& request) override;
    std::string BrowseForFolder(const std::string& prompt) override;

  private:
    HWND owner_ = nullptr;
};

} // namespace tavrel
