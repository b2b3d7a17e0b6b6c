// What the main window does with the editor's keys and mouse buttons.
#include "app/form1.h"
#include "editor/signature_lookup.h"
#include "tools/launchers.h"

namespace tavrel {

void Form1::editorKeyDown(int key, int shift) {
    const auto meaning = editorKey(key, shift);
    if (!meaning)
        return;
    switch (*meaning) {
    case EditorKey::nextPane:
        Code1_->setActivePane(nextPane(Code1_->activePane(), Code1_->paneCount()));
        break;
    case EditorKey::previousPane:
        Code1_->setActivePane(previousPane(Code1_->activePane(), Code1_->paneCount()));
        break;
    case EditorKey::calculator:
        guarded([this] { calculatorCommand(); });
        break;
    case EditorKey::imageConverter:
        guarded([this] { imageConverterCommand(); });
        break;
    case EditorKey::saveFile:
        runCommand(mnuSaveFile);
        break;
    }
}

void Form1::editorKeyPress(int character, int shift) {
    constexpr int substitute = 26; // what Ctrl+Z types
    guarded([&] {
        if (character == substitute && shift == shiftState::control)
            undoCommand();
        else if (workspace_->settings.UseTooltips != storedFalse)
            showSignatureFor(character);
    });
}

void Form1::showSignatureFor(int character) {
    constexpr int lineFeed = 10;
    if (character == lineFeed) {
        setPanel(StatusPanel::message, "");
        RefreshTooltips(*workspace_);
    }
    if (character != '(' && character != '[')
        return;
    setPanel(StatusPanel::message, "");
    const auto signature = findSignature(
        searchedWord(Code1_->wordAtCaret()),
        {AutocompleteList_, autocompleteIndex_, workspace_->FileRoutineLists, workspace_->tree.count()},
        [this] { RefreshTooltips(*workspace_); });
    if (signature)
        showSignature(*signature);
}

void Form1::editorMouseDown(MouseButton button, int, int, int) {
    if (button != MouseButton::right)
        return;
    SendMessageA(window_, WM_RBUTTONDOWN, 0, 0);
    followEditor(); // what can be cut or copied may have changed by this very click
    popUpMenu(mnuEdit);
}

void Form1::calculatorCommand() {
    shell_.execute(window_, calculator());
}

void Form1::imageConverterCommand() {
    shell_.execute(window_, imageConverter(workspace_->AppDir));
}

void Form1::pascalReferenceCommand() {
    shell_.showHelp(pascalReference(workspace_->AppDir));
}

} // namespace tavrel
