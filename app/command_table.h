// The one table of commands: menu bar, accelerators, enabling and tests are made from it.
#pragma once

#include <array>
#include <span>
#include <windows.h>

namespace tavrel {

class Form1;

enum class RowKind {
    menu,
    command,
    separator,
    key, ///< a command of its shortcut alone, in no menu
};

/// When a command can be chosen. A command without a handler never can.
enum class When {
    always,
    withProject, ///< once a project has been loaded
    byEditor,    ///< the status timer follows the editor's state
};

struct Shortcut {
    BYTE key = 0; ///< virtual key, 0 for none
    bool control = false;
    const char* text = ""; ///< as the menu shows it
    bool shift = false;
    bool alt = false;
};

struct CommandRow {
    const char* name; ///< the control's name
    UINT identifier;
    const char* caption;
    RowKind kind;
    int depth; ///< 0 in the menu bar, 1 in its menus, 2 in their sub-menus
    When when = When::always;
    Shortcut shortcut = {};
    void (Form1::*handler)() = nullptr;
};

/// All rows in menu order.
std::span<const CommandRow> commandTable();

/// The row with this identifier or control name, or null.
const CommandRow* findCommand(UINT identifier);
const CommandRow* findCommand(const char* name);

/// A menu bar with every row; the caller owns it.
HMENU makeMenuBar();

/// The accelerators of all rows; the caller owns the table.
HACCEL makeAccelerators();

} // namespace tavrel
