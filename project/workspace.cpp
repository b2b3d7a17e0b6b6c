#include "project/workspace.h"

#include "project/unwritable_folder.h"
#include "settings/recent_list.h"
#include "settings/settings_merge.h"
#include "util/runtime_error.h"

namespace tavrel {

void LoadSettings(Workspace& workspace) {
    workspace.settings = readSettings(workspace.AppDir);
    workspace.storedSettings = workspace.settings;
    RegisterFileType(workspace.registry, workspace.settings, workspace.AppDir);
}

void SaveSettings(Workspace& workspace) {
    // A second Tavrel may have stored something since; what this one did not change stays as that one wants
    // it.
    if (workspace.storedSettings) {
        if (const auto stored = readStoredSettings(workspace.AppDir))
            workspace.settings = mergeSettings(*workspace.storedSettings, workspace.settings, *stored);
    }
    writeSettings(workspace.AppDir, workspace.settings);
    workspace.storedSettings = workspace.settings;
    RegisterFileType(workspace.registry, workspace.settings, workspace.AppDir);
}

void AddRecentFile(Workspace& workspace, const std::string& path) {
    if (!addToRecentList(workspace.settings, path))
        return;
    try {
        SaveSettings(workspace);
    } catch (const RuntimeError& error) {
        // With each file that is opened it would be told again.
        if (!workspace.toldUnwritable || !isUnwritableProgramFolder(workspace, error))
            throw;
    }
    workspace.display.showRecentFiles();
}

void RefreshTooltips(Workspace& workspace) {
    if (workspace.settings.UseTooltips == storedFalse)
        return;
    if (!RefreshTooltips(workspace.FileRoutineLists, workspace.tree.texts(), workspace.tree.selectedText(),
                         workspace.editor))
        workspace.messages.show("Error refreshing tooltips", "Tavrel", Icon::critical, Buttons::ok);
}

void showCurrentView(Workspace& workspace, const std::string& fileName) {
    workspace.display.setPanel(StatusPanel::currentView, "Current View: " + fileName);
}

} // namespace tavrel
