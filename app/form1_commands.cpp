// The main window's commands.
#include "about/history.h"
#include "app/command_table.h"
#include "app/form1.h"
#include "app/form4.h"
#include "app/go_to_line.h"
#include "build/disk_launch.h"
#include "build/form3.h"
#include "project/editor_file.h"
#include "project/file_switching.h"
#include "project/form5.h"
#include "project/include_files.h"
#include "project/new_project.h"
#include "project/project_commands.h"
#include "project/project_loading.h"
#include "tools/frmconvpal.h"
#include "util/late_function.h"
#include "util/text.h"

#include <optional>

namespace tavrel {

namespace {

struct MenuPlace {
    HMENU menu;
    UINT position;
};

std::optional<MenuPlace> findPlace(HMENU menu, UINT identifier) {
    const int count = GetMenuItemCount(menu);
    for (int i = 0; i < count; ++i) {
        const auto position = static_cast<UINT>(i);
        MENUITEMINFOA item = {};
        item.cbSize = sizeof item;
        item.fMask = MIIM_ID | MIIM_SUBMENU;
        GetMenuItemInfoA(menu, position, TRUE, &item);
        if (item.wID == identifier)
            return MenuPlace{menu, position};
        if (item.hSubMenu != nullptr) {
            if (const auto place = findPlace(item.hSubMenu, identifier))
                return place;
        }
    }
    return std::nullopt;
}

UINT menuState(HWND window, UINT identifier) {
    const auto place = findPlace(GetMenu(window), identifier);
    if (!place)
        return MFS_DISABLED;
    MENUITEMINFOA item = {};
    item.cbSize = sizeof item;
    item.fMask = MIIM_STATE;
    GetMenuItemInfoA(place->menu, place->position, TRUE, &item);
    return item.fState;
}

} // namespace

bool Form1::commandEnabled(UINT identifier) const {
    return (menuState(window_, identifier) & MFS_DISABLED) == 0;
}

bool Form1::commandChecked(UINT identifier) const {
    return (menuState(window_, identifier) & MFS_CHECKED) != 0;
}

void Form1::enableCommand(UINT identifier, bool enabled) {
    if (const auto place = findPlace(GetMenu(window_), identifier))
        EnableMenuItem(place->menu, place->position,
                       static_cast<UINT>(MF_BYPOSITION) | (enabled ? MFS_ENABLED : MFS_DISABLED));
}

void Form1::checkCommand(UINT identifier, bool checked) {
    if (const auto place = findPlace(GetMenu(window_), identifier))
        CheckMenuItem(place->menu, place->position,
                      static_cast<UINT>(MF_BYPOSITION) | (checked ? MFS_CHECKED : MFS_UNCHECKED));
}

void Form1::popUpMenu(UINT identifier, const POINT* at) {
    const auto place = findPlace(GetMenu(window_), identifier);
    POINT corner = {};
    if (at != nullptr)
        corner = *at;
    else
        GetCursorPos(&corner);
    if (place)
        TrackPopupMenu(GetSubMenu(place->menu, static_cast<int>(place->position)), TPM_RIGHTBUTTON, corner.x,
                       corner.y, 0, window_, nullptr);
}

void Form1::runCommand(UINT identifier) {
    const CommandRow* const row = tavrel::findCommand(identifier);
    if (row == nullptr || row->handler == nullptr)
        return;
    if (row->kind == RowKind::command && !commandEnabled(identifier))
        return;
    guarded([&] { (this->*row->handler)(); });
}

void Form1::enableProjectCommands() {
    for (const CommandRow& row : commandTable()) {
        if (row.when == When::withProject && (row.kind == RowKind::menu || row.handler != nullptr))
            enableCommand(row.identifier, true);
    }
}

void Form1::showRecentFiles() {
    const auto exitPlace = findPlace(GetMenu(window_), mnuExit);
    if (!exitPlace)
        return;
    HMENU const file = exitPlace->menu;
    for (UINT identifier = mnurecent_0; identifier <= mnseparator1; ++identifier) {
        if (const auto place = findPlace(file, identifier))
            DeleteMenu(place->menu, place->position, MF_BYPOSITION);
    }
    const auto& recent = workspace_->settings.Recent;
    for (std::size_t i = 0; i < recent.size(); ++i) {
        if (recent[i].empty())
            continue;
        const std::string caption =
            replaceIgnoringCase(recent[i], "&", "&&"); // else it would underline a letter
        InsertMenuA(file, mnuExit, MF_BYCOMMAND | MF_STRING, mnurecent_0 + i, caption.c_str());
    }
    if (!recent[0].empty())
        InsertMenuA(file, mnuExit, MF_BYCOMMAND | MF_SEPARATOR, mnseparator1, nullptr);
}

void Form1::newProjectCommand() {
    newProject(*workspace_, showNewProjectDialog(window_, templateNames(workspace_->AppDir)));
}

void Form1::openProjectCommand() {
    openProject(*workspace_);
}

void Form1::openPascalFileCommand() {
    openPascalFile(*workspace_);
}

void Form1::newIncludeCommand() {
    newIncludeFile(*workspace_);
}

void Form1::openIncludeCommand() {
    openIncludeFile(*workspace_);
}

void Form1::preferencesCommand() {
    showPreferences(window_, *workspace_, [this] { applyFont(); });
}

void Form1::saveProjectCommand() {
    saveProject(*workspace_);
}

void Form1::saveFileCommand() {
    saveCurrentFile(*workspace_);
}

void Form1::refreshCommand() {
    RefreshProject(*workspace_);
}

void Form1::propertiesCommand() {
    showProjectProperties(window_, *workspace_);
}

void Form1::compileComCommand() {
    compileCommand(*workspace_, {*form2_, processes_}, Output::com);
}

void Form1::compileChnCommand() {
    compileCommand(*workspace_, {*form2_, processes_}, Output::chn);
}

void Form1::compileRunCommand() {
    compileAndRunCommand(*workspace_, {*form2_, processes_});
}

void Form1::openRecent(std::size_t index) {
    openRecentEntry(*workspace_, index);
}

void Form1::exitCommand() {
    DestroyWindow(window_);
}

void Form1::cutCommand() {
    if (Code1_->canCut())
        Code1_->cut();
}

void Form1::copyCommand() {
    if (Code1_->canCopy())
        Code1_->copy();
}

void Form1::pasteCommand() {
    if (Code1_->canPaste())
        Code1_->paste();
}

void Form1::deleteCommand() {
    Code1_->deleteSelection();
}

void Form1::findCommand() {
    findDialogs_->showFind();
}

void Form1::findNextCommand() {
    findDialogs_->findNext();
}

void Form1::replaceCommand() {
    findDialogs_->showReplace();
}

void Form1::printCommand() {
    setWaitPointer(true);
    PrintStart start = PrintStart::cancelled;
    try {
        start = Code1_->print(printer_, workspace_->tree.selectedText());
    } catch (...) {
        setWaitPointer(false);
        throw;
    }
    setWaitPointer(false);
    if (start == PrintStart::noPrinter)
        workspace_->messages.show(
            "There is no printer to print on. Add one in the settings of Windows and make "
            "it the default printer.",
            "Tavrel", Icon::information, Buttons::ok);
}

void Form1::goToLineCommand() {
    const long current = Code1_->caret().line + 1;
    if (const auto line = askForLine(window_, current, Code1_->lineCount()))
        Code1_->setCaret({*line - 1, 0});
    Code1_->giveFocus();
}

void Form1::reloadCommand() {
    reloadEditorFile(*workspace_);
    refreshTooltips();
}

/// The menu's commands take unsaved text without a question; a drop is easily made by mistake. False on
/// Cancel.
bool Form1::saveBeforeDrop() {
    if (!Code1_->modified())
        return true;
    const Answer answer = askToSaveText(*workspace_);
    const std::string& path = workspace_->editorFile.path;
    if (answer == Answer::yes && !path.empty())
        saveEditorText(*workspace_, path, false);
    return answer != Answer::cancel;
}

void Form1::filesDropped(HDROP drop) {
    auto* const queryFile = lateFunction<decltype(DragQueryFileA)>("shell32.dll", "DragQueryFileA");
    std::string path(queryFile(drop, 0, nullptr, 0) + 1U, '\0');
    path.resize(queryFile(drop, 0, path.data(), static_cast<UINT>(path.size())));
    lateFunction<decltype(DragFinish)>("shell32.dll", "DragFinish")(drop);
    const std::string ending = lowerCase(lastCharacters(path, 4));
    if (ending != ".tpj" && ending != ".pas")
        setPanel(StatusPanel::message, "Only .tpj and .pas files can be dropped here");
    else if (!saveBeforeDrop())
        return;
    else if (ending == ".tpj")
        openProjectNamed(*workspace_, path);
    else
        openPascalFileNamed(*workspace_, path);
}

void Form1::aboutCommand() {
    form6_->show();
}

void Form1::showHistory() {
    guarded([this] { form7_->show(form6_->window(), readHistory(workspace_->AppDir)); });
}

/// Not past a save: a text that is what its file holds stays so. It has always been the rule; what a save
/// replaces is not lost by undoing too far either.
void Form1::undoCommand() {
    if (Code1_->canUndo() && Code1_->modified())
        Code1_->undo();
}

void Form1::redoCommand() {
    if (Code1_->canRedo())
        Code1_->redo();
}

void Form1::clearCommand() {
    rescueEditorText(*workspace_); // it can be undone, but not once something else was saved or loaded
    Code1_->setText("");
}

void Form1::paletteConverterCommand() {
    showPaletteConverter(window_, *workspace_);
}

void Form1::splitCommand() {
    SplitActive_ = !SplitActive_;
    Code1_->setSplit(SplitActive_);
    if (SplitActive_)
        Code1_->setSplitterPosition(centredSplitter(layout_.editorHeight, scale_.twipsPerPixelY()));
    checkCommand(mnuSplit, SplitActive_);
}

void Form1::showTreeCommand() {
    checkCommand(mnuShowProjectTree, !commandChecked(mnuShowProjectTree));
    resized();
}

} // namespace tavrel
