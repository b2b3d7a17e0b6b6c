// Asking the user for a file.
#pragma once

#include <string>
#include <string_view>

namespace tavrel {

struct OpenDialogRequest {
    std::string filter; ///< pairs of description and pattern with " | " between them
    std::string title;
    std::string initialFolder;
    bool multipleSelection = false;
};

struct SaveDialogRequest {
    std::string filter;
    std::string title;
    std::string initialFolder;
    std::string proposedPath; ///< preset in the name field; may be empty
    std::string extension;    ///< put behind a name that has none; without a point
};

/// The role of the file dialogs; a test answers in the user's place.
class FileDialogs {
  public:
    virtual ~FileDialogs() = default;
    /// The chosen path, or "" on Cancel. A path of 255 characters or more cannot be returned.
    virtual std::string ShowOpenDialog(const OpenDialogRequest& request) = 0;
    /// The path that the user named, or "" on Cancel.
    virtual std::string showSaveDialog(const SaveDialogRequest& request) = 0;
    /// The chosen folder without a trailing backslash, or "" on Cancel.
    virtual std::string BrowseForFolder(const std::string& prompt) = 0;
};

/// The filter in the dialog's own form: a bar is added at the end unless there is one, and every bar becomes
/// a zero character. Blanks beside the bars stay.
std::string dialogFilter(std::string_view filter);

/// The same as the system wants it: a lone part is description and pattern, and one more zero character than
/// a text has by itself ends the list.
std::string systemFilter(std::string_view filter);

/// The path in the buffer that an open dialog filled: blanks trimmed from both ends, then one zero character
/// at the end taken off.
std::string pathFromDialogBuffer(std::string_view buffer);

/// Flags of the open dialog (OFN_ values of the Windows API).
unsigned long openDialogFlags(bool multipleSelection);

} // namespace tavrel
