#include "app/command_table.h"

#include "app/form1.h"
#include "app/resource.h"

#include <cstring>
#include <string>
#include <vector>

namespace tavrel {

namespace {

using enum RowKind;
constexpr When project = When::withProject;
constexpr When editor = When::byEditor;
constexpr When always = When::always;

constexpr CommandRow separatorRow(const char* name, UINT identifier, int depth = 1) {
    return {name, identifier, "-", separator, depth};
}

// clang-format off
const std::vector<CommandRow>& rows() {
    static const std::vector<CommandRow> table = {
        {"mnuFile", mnuFile, "File", menu, 0},
        {"mnuNewMenu", mnuNewMenu, "New", menu, 1},
        {"mnuNew", mnuNew, "Project", command, 2, always, {}, &Form1::newProjectCommand},
        {"mnuNewInc", mnuNewInc, "Include file", command, 2, project, {}, &Form1::newIncludeCommand},
        {"mnOpen", mnOpen, "Open", menu, 1},
        {"mnuOpenProject", mnuOpenProject, "Project file", command, 2, always, {}, &Form1::openProjectCommand},
        {"mnuFileOpen", mnuFileOpen, "Pascal file", command, 2, always, {}, &Form1::openPascalFileCommand},
        {"mnuOpenIncfile", mnuOpenIncfile, "Include file", command, 2, project, {}, &Form1::openIncludeCommand},
        {"mnuSave", mnuSave, "Save", menu, 1, project},
        {"mnuSavePrj", mnuSavePrj, "Save Project", command, 2, always, {}, &Form1::saveProjectCommand},
        {"mnuSaveFile", mnuSaveFile, "Save Current File", command, 2, always, {'S', true, "Ctrl+S"}, &Form1::saveFileCommand},
        separatorRow("mnuseparator0", mnuseparator0),
        {"mnuRefresh", mnuRefresh, "Refresh Project Tree", command, 1, project, {}, &Form1::refreshCommand},
        {"mnuProp", mnuProp, "Project Properties", command, 1, project, {}, &Form1::propertiesCommand},
        separatorRow("mnuseparator10", mnuseparator10),
        {"mnuCompile", mnuCompile, "Compile", command, 1, project, {VK_F6, false, "F6"}, &Form1::compileComCommand},
        {"mnuCompileCHN", mnuCompileCHN, "Compile to CHN", command, 1, project, {VK_F7, false, "F7"}, &Form1::compileChnCommand},
        {"mnuCompileRun", mnuCompileRun, "Compile and Run", command, 1, project, {VK_F5, false, "F5"}, &Form1::compileRunCommand},
        separatorRow("mnuseparator2", mnuseparator2),
        {"mnuPrint", mnuPrint, "Print", command, 1, project, {}, &Form1::printCommand},
        separatorRow("mnuseparator3", mnuseparator3),
        {"mnurecent(0)", mnurecent_0, "Recent opened files", command, 1, always, {}, &Form1::openRecentCommand<0>},
        {"mnurecent(1)", mnurecent_1, "Recent opened files", command, 1, always, {}, &Form1::openRecentCommand<1>},
        {"mnurecent(2)", mnurecent_2, "Recent opened files", command, 1, always, {}, &Form1::openRecentCommand<2>},
        {"mnurecent(3)", mnurecent_3, "Recent opened files", command, 1, always, {}, &Form1::openRecentCommand<3>},
        {"mnurecent(4)", mnurecent_4, "Recent opened files", command, 1, always, {}, &Form1::openRecentCommand<4>},
        separatorRow("mnseparator1", mnseparator1),
        {"mnuExit", mnuExit, "Exit", command, 1, always, {}, &Form1::exitCommand},
        {"mnuEdit", mnuEdit, "Edit", menu, 0},
        {"mnuCut", mnuCut, "Cut", command, 1, editor, {}, &Form1::cutCommand},
        {"mnuCopy", mnuCopy, "Copy", command, 1, editor, {}, &Form1::copyCommand},
        {"mnuPaste", mnuPaste, "Paste", command, 1, editor, {}, &Form1::pasteCommand},
        {"mnuDelete", mnuDelete, "Delete", command, 1, always, {}, &Form1::deleteCommand},
        separatorRow("mnuspearator5", mnuspearator5),
        {"mnuFind", mnuFind, "Find", command, 1, always, {}, &Form1::findCommand},
        {"mnuFindNext", mnuFindNext, "Find Next", command, 1, always, {}, &Form1::findNextCommand},
        {"mnuReplace", mnuReplace, "Replace", command, 1, always, {}, &Form1::replaceCommand},
        separatorRow("mnuSeparator7", mnuSeparator7),
        {"mnuUndo", mnuUndo, "Undo", command, 1, editor, {}, &Form1::undoCommand},
        {"mnuRedo", mnuRedo, "Redo", command, 1, editor, {}, &Form1::redoCommand},
        separatorRow("mnuSeparator6", mnuSeparator6),
        {"mnuClear", mnuClear, "Clear", command, 1, always, {}, &Form1::clearCommand},
        separatorRow("mnuseparator4", mnuseparator4),
        {"mnupreferences", mnupreferences, "Preferences", command, 1, always, {}, &Form1::preferencesCommand},
        {"mnuTools", mnuTools, "Tools", menu, 0},
        {"mnuConvPal", mnuConvPal, "Palette Converter", command, 1, always, {VK_F4, true, "Ctrl+F4"}, &Form1::paletteConverterCommand},
        {"mnuImgConv", mnuImgConv, "Image Converter", command, 1, always, {VK_F3, true, "Ctrl+F3"}, &Form1::imageConverterCommand},
        {"mnuCalc", mnuCalc, "Calc", command, 1, always, {VK_F2, true, "Ctrl+F2"}, &Form1::calculatorCommand},
        {"mnuWindow", mnuWindow, "Window", menu, 0},
        {"mnuSplit", mnuSplit, "Split", command, 1, always, {VK_F6, true, "Ctrl+F6"}, &Form1::splitCommand},
        {"mnuShowProjectTree", mnuShowProjectTree, "Show Project Tree", command, 1, always, {VK_F5, true, "Ctrl+F5"}, &Form1::showTreeCommand},
        {"mnuHelp", mnuHelp, "Help", menu, 0},
        {"mnuRefHelp", mnuRefHelp, "Pascal Reference", command, 1, always, {VK_F1, false, "F1"}, &Form1::pascalReferenceCommand},
        separatorRow("mnseparator0", mnseparator0),
        {"mnuAbout", mnuAbout, "About", command, 1, always, {}, &Form1::aboutCommand},
        {"keyFind", keyFind, "Find", key, 0, always, {'F', true, "Ctrl+F"}, &Form1::findCommand},
        {"keyFindNext", keyFindNext, "Find Next", key, 0, always, {VK_F3, false, "F3"}, &Form1::findNextCommand},
        {"keyReplace", keyReplace, "Replace", key, 0, always, {'H', true, "Ctrl+H"}, &Form1::replaceCommand},
        {"keyUndo", keyUndo, "Undo", key, 0, always, {VK_BACK, false, "Alt+Backspace", false, true}, &Form1::undoCommand},
        {"keyTree", keyTree, "Project tree", key, 0, always, {VK_F8, false, "F8"}, &Form1::treeCommand},
        {"keyReload", keyReload, "Load from disk again", key, 0, always, {'R', true, "Ctrl+R"}, &Form1::reloadCommand},
        {"keyDefinition", keyDefinition, "Go to definition", key, 0, always, {VK_F12, false, "F12"}, &Form1::goToDefinitionCommand},
        {"keyBack", keyBack, "Back", key, 0, always, {VK_F12, false, "Shift+F12", true}, &Form1::goBackCommand},
        {"keyFindInProject", keyFindInProject, "Find in all files", key, 0, always, {VK_F3, true, "Ctrl+Shift+F3", true}, &Form1::findInProjectCommand},
        {"keyComment", keyComment, "Comment lines", key, 0, always, {'K', true, "Ctrl+K"}, &Form1::toggleCommentsCommand},
        {"keyDuplicate", keyDuplicate, "Duplicate line", key, 0, always, {'D', true, "Ctrl+D"}, &Form1::duplicateCommand},
        {"keyMoveUp", keyMoveUp, "Move line up", key, 0, always, {VK_UP, false, "Alt+Up", false, true}, &Form1::moveLineUpCommand},
        {"keyMoveDown", keyMoveDown, "Move line down", key, 0, always, {VK_DOWN, false, "Alt+Down", false, true}, &Form1::moveLineDownCommand},
        {"keyMarkWord", keyMarkWord, "Mark the word", key, 0, always, {VK_F4, false, "F4"}, &Form1::markWordCommand},
        {"keyMatch", keyMatch, "Begin and end", key, 0, always, {'M', true, "Ctrl+M"}, &Form1::matchingWordCommand},
        {"keyFold", keyFold, "Fold", key, 0, always, {VK_F9, false, "F9"}, &Form1::foldCommand},
        {"keyGoToLine", keyGoToLine, "Go to line", key, 0, always, {'G', true, "Ctrl+G"}, &Form1::goToLineCommand},
    };
    return table;
}
// clang-format on

void appendRow(HMENU parent, const CommandRow& row, HMENU subMenu) {
    std::string caption = row.caption;
    if (row.shortcut.key != 0)
        caption += std::string("\t") + row.shortcut.text;
    MENUITEMINFOA item = {};
    item.cbSize = sizeof item;
    item.fMask = MIIM_ID | MIIM_FTYPE;
    item.wID = row.identifier;
    if (row.kind == separator) {
        item.fType = MFT_SEPARATOR;
    } else {
        item.fMask |= MIIM_STRING;
        item.dwTypeData = caption.data();
    }
    if (subMenu != nullptr) {
        item.fMask |= MIIM_SUBMENU;
        item.hSubMenu = subMenu;
    }
    InsertMenuItemA(parent, static_cast<UINT>(GetMenuItemCount(parent)), TRUE, &item);
}

} // namespace

std::span<const CommandRow> commandTable() {
    return rows();
}

const CommandRow* findCommand(UINT identifier) {
    for (const CommandRow& row : rows()) {
        if (row.identifier == identifier)
            return &row;
    }
    return nullptr;
}

const CommandRow* findCommand(const char* name) {
    for (const CommandRow& row : rows()) {
        if (std::strcmp(row.name, name) == 0)
            return &row;
    }
    return nullptr;
}

HMENU makeMenuBar() {
    std::vector<HMENU> menus = {CreateMenu()}; // the menu that rows of each depth go into
    for (const CommandRow& row : rows()) {
        if (row.kind == key)
            continue;
        menus.resize(static_cast<std::size_t>(row.depth) + 1);
        HMENU const subMenu = row.kind == menu ? CreatePopupMenu() : nullptr;
        appendRow(menus.back(), row, subMenu);
        if (subMenu != nullptr)
            menus.push_back(subMenu);
    }
    return menus.front();
}

HACCEL makeAccelerators() {
    std::vector<ACCEL> accelerators;
    for (const CommandRow& row : rows()) {
        if (row.shortcut.key == 0)
            continue;
        const auto modifier =
            static_cast<BYTE>(FVIRTKEY | (row.shortcut.control ? FCONTROL : 0) |
                              (row.shortcut.shift ? FSHIFT : 0) | (row.shortcut.alt ? FALT : 0));
        accelerators.push_back({modifier, row.shortcut.key, static_cast<WORD>(row.identifier)});
    }
    return CreateAcceleratorTableA(accelerators.data(), static_cast<int>(accelerators.size()));
}

} // namespace tavrel
