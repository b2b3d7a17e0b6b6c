// The file whose text the editor holds: loading it, saving it, and keeping copies of what would be lost.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tavrel {

struct Workspace;

/// Which file the editor's text belongs to, and what that file held when the two last agreed.
struct EditorFile {
    std::string path; ///< full path; empty when the text belongs to no file
    std::uint64_t digest = 0;
};

/// A number that differs for different contents, apart from one case in 2 to the 64th.
std::uint64_t digestOf(std::string_view bytes);

/// Loads a file into the emptied editor, which then holds its text, unmodified. Throws RuntimeError when it
/// cannot be read; the editor then holds what it held before.
void loadIntoEditor(Workspace& workspace, const std::string& path);

/// The editor has been emptied and its text belongs to no file any more.
void leaveEditorFile(Workspace& workspace);

/// Every save of the editor's text. What the file holds and the text is not made from (another program wrote
/// it, or it is not the file that was loaded) is kept as a rescue copy first. Says in status panel 3 what
/// happened. Throws RuntimeError when the file cannot be written.
void saveEditorText(Workspace& workspace, const std::string& path, bool clearUndo);

/// The editor's unsaved text is about to go without having been saved: keeps a rescue copy of it, if there is
/// any, and says in status panel 3 where. False when there was a text and no folder took it.
bool rescueEditorText(Workspace& workspace);

/// The same for a command that goes on only when nothing is lost: throws std::runtime_error otherwise.
void rescueEditorTextOrStop(Workspace& workspace);

/// A copy of the text that is being typed, should the program be killed.
void copyTypedText(Workspace& workspace);

/// Writes a file that is none of the editor's; what it holds is kept as a rescue copy when it is something
/// else. Throws RuntimeError.
void replaceFile(Workspace& workspace, const std::string& path, std::string_view bytes);

/// What another program did to the editor's file since it was loaded or saved.
enum class DiskChange { none, changed, gone };
DiskChange changeOnDisk(const Workspace& workspace);

/// What status panel 3 says about that, "" when there is nothing to say.
std::string diskChangeNotice(const Workspace& workspace);

/// Loads the editor's file from the disk again; unsaved text is kept as a rescue copy first. The caret stays
/// at its line. Throws RuntimeError when the file cannot be read.
void reloadEditorFile(Workspace& workspace);

} // namespace tavrel
