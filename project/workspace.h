// What the main window owns and every operation on the project works with.
#pragma once

#include "editor/routine_index.h"
#include "editor/source_editor.h"
#include "project/editor_file.h"
#include "project/project.h"
#include "project/project_tree.h"
#include "project/rescue_copies.h"
#include "settings/file_association.h"
#include "settings/settings.h"
#include "util/file_dialogs.h"
#include "util/message_boxes.h"

#include <optional>
#include <string>
#include <vector>

namespace tavrel {

enum class StatusPanel { cursorPosition = 1, currentView = 2, message = 3 };

/// What operations show on the main window apart from editor and tree.
class MainWindowDisplay {
  public:
    virtual ~MainWindowDisplay() = default;
    virtual void setPanel(StatusPanel panel, const std::string& text) = 0;
    /// Switches on the commands that need a project.
    virtual void enableProjectCommands() = 0;
    /// Shows the recent list of the settings in the File menu.
    virtual void showRecentFiles() = 0;
    /// The hourglass, or the default pointer, over the whole program.
    virtual void setWaitPointer(bool wait) = 0;
};

/// The last build whose results were read and shown.
struct ReportedBuild {
    unsigned number = 0; ///< goes up with each one
    std::string folder;  ///< of its project
    bool succeeded = true;
};

/// The records of the main window and the roles that its operations reach out to.
struct Workspace {
    SourceEditor& editor;
    MainWindowDisplay& display;
    MessageBoxes& messages;
    FileDialogs& dialogs;
    ClassesRegistry& registry;

    std::string AppDir;  ///< program folder, ends in a backslash
    std::string LastDir; ///< folder that file dialogs offer first
    Settings settings = {};
    Project project = {};
    ProjectTree tree = {};
    std::vector<EditorPosition> CaretPositions = {}; ///< per tree node index, entry 0 unused
    std::vector<FileRoutineList> FileRoutineLists = {};
    ReportedBuild lastBuild = {};
    EditorFile editorFile = {};
    RescueCopies rescue = {};
    std::optional<Settings> storedSettings = {}; ///< as this program last read or stored them
    bool toldUnwritable = false;                 ///< that the program folder cannot be written
};

/// Reads the settings or takes the defaults, then applies the file association.
void LoadSettings(Workspace& workspace);

/// Writes the settings, with what another running Tavrel stored meanwhile taken over, then applies the file
/// association. Throws RuntimeError.
void SaveSettings(Workspace& workspace);

/// Puts a path at the head of the recent list, stores the list and shows it. A path that is in the list
/// already changes nothing. Throws RuntimeError when the settings cannot be written.
void AddRecentFile(Workspace& workspace, const std::string& path);

/// Refreshes the routine list of the selected file when tooltips are on; a message tells when it has none.
void RefreshTooltips(Workspace& workspace);

/// Status panel 2.
void showCurrentView(Workspace& workspace, const std::string& fileName);

} // namespace tavrel
