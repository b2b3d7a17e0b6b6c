// What the player does with whatever dialog is up.
#include "app/resource.h"
#include "tests/acceptance/drive/remote.h"
#include "tests/acceptance/random/player.h"

#include <algorithm>
#include <array>
#include <bit>

namespace tavrel::random {

namespace {

constexpr int messageWords = 0xFFFF; // the text of a message box

struct ChildSearch {
    const char* wanted;
    std::vector<HWND> found;
};

BOOL CALLBACK collectChild(HWND child, LPARAM parameter) {
    auto& search = *std::bit_cast<ChildSearch*>(parameter);
    if (className(child) == search.wanted && IsWindowVisible(child) != FALSE &&
        IsWindowEnabled(child) != FALSE)
        search.found.push_back(child);
    return TRUE;
}

std::vector<HWND> childrenOfClass(HWND dialog, const char* wanted) {
    ChildSearch search{wanted, {}};
    EnumChildWindows(dialog, collectChild, std::bit_cast<LPARAM>(&search));
    return search.found;
}

/// The field for the name in one of the system's file dialogs, or nullptr in any other.
HWND fileNameField(HWND dialog) {
    constexpr std::array<int, 2> nameFields = {0x480, 0x47C}; // edt1 and cmb13
    HWND found = nullptr;
    for (const char* const kind : {"Edit", "ComboBox", "ComboBoxEx32"}) {
        for (HWND const child : childrenOfClass(dialog, kind)) {
            if (std::find(nameFields.begin(), nameFields.end(), GetDlgCtrlID(child)) != nameFields.end())
                found = child;
        }
    }
    return found;
}

bool isFolderDialog(HWND dialog) {
    return !childrenOfClass(dialog, "SysTreeView32").empty();
}

void setText(HWND field, const std::string& text) {
    SendMessageA(field, WM_SETTEXT, 0, std::bit_cast<LPARAM>(text.c_str()));
}

} // namespace

void Player::useDialog(const Program& program, HWND dialog) {
    if (className(dialog) == "HH Parent") {
        note("closes the help");
        PostMessageA(dialog, WM_CLOSE, 0, 0);
    } else if (HWND const field = fileNameField(dialog)) {
        useFileDialog(dialog, field);
    } else if (isFolderDialog(dialog)) {
        refuse(dialog); // what OK leads to is not the player's world
    } else if (GetDlgItem(dialog, messageWords) != nullptr) {
        noteBox(dialog);
        pressButton(dialog);
    } else if (choices_.oneIn(3)) {
        fillSomething(dialog);
    } else if (choices_.oneIn(4)) {
        refuse(dialog);
    } else {
        pressButton(dialog);
    }
    Sleep(30);
    program.requireAnswer();
}

void Player::useFileDialog(HWND dialog, HWND nameField) {
    if (choices_.oneIn(3)) {
        refuse(dialog);
        return;
    }
    const std::string& path = choices_.of(world_.paths);
    note("gives " + path + " to " + drive::windowText(dialog));
    setText(nameField, path);
    PostMessageA(dialog, WM_COMMAND, IDOK, 0);
}

void Player::fillSomething(HWND dialog) {
    static const std::vector<std::string> words = {"",       "1",    "12",   "-5",   "99999",
                                                   "$2E9B",  "FFFF", "D200", "zzzz", "begin",
                                                   "-diska", "%dsk", "a b",  "%1"};
    static const std::vector<std::string> templates = {"Empty", "TextMode", "Graphics", "Game",
                                                       "Sound", "Files",    "Includes", "Chain"};
    for (HWND const list : childrenOfClass(dialog, "SysListView32"))
        drive::selectListItem(list, choices_.of(templates));
    std::vector<HWND> fields = childrenOfClass(dialog, "Edit");
    if (fields.empty())
        return;
    const std::string& text = choices_.oneIn(2) ? choices_.of(words) : choices_.of(world_.paths);
    note("writes \"" + text + "\" into " + drive::windowText(dialog));
    setText(choices_.of(fields), text);
}

void Player::pressButton(HWND dialog) {
    const std::vector<HWND> buttons = childrenOfClass(dialog, "Button");
    if (buttons.empty()) {
        refuse(dialog);
        return;
    }
    HWND const button = choices_.of(buttons);
    ++uses_.fileDialogs; // which "Browse" or "Open" may bring
    note("presses " + drive::windowText(button) + " in " + drive::windowText(dialog));
    PostMessageA(button, BM_CLICK, 0, 0);
}

void Player::refuse(HWND dialog) {
    noteBox(dialog);
    for (const int button : {IDCANCEL, IDNO, IDOK}) {
        if (GetDlgItem(dialog, button) == nullptr)
            continue;
        PostMessageA(dialog, WM_COMMAND, static_cast<WPARAM>(button), 0);
        return;
    }
    PostMessageA(dialog, WM_CLOSE, 0, 0);
}

void Player::noteBox(HWND dialog) {
    HWND const words = GetDlgItem(dialog, messageWords);
    if (words == nullptr || dialog == lastBox_)
        return;
    lastBox_ = dialog;
    const std::string text = drive::windowText(dialog) + ": " + drive::windowText(words);
    note("box " + text);
    ++boxes_[text];
}

} // namespace tavrel::random
