#include "project/workspace.h"

#include "settings/recent_list.h"

namespace tavrel {

void LoadSettings(Workspace& workspace) {
    workspace.settings = readSettings(workspace.AppDir);
    RegisterFileType(workspace.registry, workspace.settings, workspace.AppDir);
}

void SaveSettings(Workspace& workspace) {
    writeSettings(workspace.AppDir, workspace.settings);
    RegisterFileType(workspace.registry, workspace.settings, workspace.AppDir);
}

void AddRecentFile(Workspace& workspace, const std::string& path) {
    if (!addToRecentList(workspace.settings, path))
        return;
    SaveSettings(workspace);
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
