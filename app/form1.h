// The main window: the whole application.
#pragma once

#include "about/form6.h"
#include "about/form7.h"
#include "app/layout.h"
#include "app/resource.h"
#include "build/compilation.h"
#include "build/form2.h"
#include "editor/code_editor.h"
#include "editor/find_dialogs.h"
#include "editor/prefix_index.h"
#include "project/tree_view.h"
#include "project/workspace.h"
#include "util/message_pump.h"
#include "util/process_runner.h"
#include "util/shell.h"
#include "util/twips.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>
#include <windows.h>

#include <shellapi.h>

namespace tavrel {

/// What the main window reaches the world outside through; a test answers in its place.
struct Form1Seams {
    MessageBoxes& messages;
    FileDialogs& dialogs;
    ClassesRegistry& registry;
    ProcessRunner& processes;
    Shell& shell;
    PrintDevice& printer;
};

class Form1 : public MainWindowDisplay, private MessageFilter, private EditorEvents {
  public:
    /// `AppDir` is the program folder with its trailing backslash.
    Form1(const Form1Seams& seams, const std::string& AppDir);
    ~Form1() override;

    /// Start-up: everything from reading the data files to showing the window and loading the project that
    /// `argument` (the raw argument text) names. Throws RuntimeError when the program cannot start.
    void load(const std::string& argument);

    HWND window() const { return window_; }
    Workspace& workspace() { return *workspace_; }
    CodeEditor& Code1() { return *Code1_; }
    TreeView& TV() { return *TV_; }
    FindDialogs& findDialogs() { return *findDialogs_; }
    Form6& aboutDialog() { return *form6_; }
    Form7& historyWindow() { return *form7_; }
    Form2& progressWindow() { return *form2_; }
    const std::vector<std::string>& AutocompleteList() const { return AutocompleteList_; }
    /// Index of the last entry of that list, -1 before it has been read.
    std::int32_t AutocompleteLast() const { return static_cast<std::int32_t>(AutocompleteList_.size()) - 1; }
    bool SplitActive() const { return SplitActive_; }
    /// The `PicBKG` colour.
    static constexpr COLORREF pictureBackground = RGB(0, 0, 255);

    /// Is this menu entry enabled?
    bool commandEnabled(UINT identifier) const;
    /// Applies the file association.
    void applyFileAssociation();
    /// Rescans the routines of the file in the editor.
    void refreshTooltips();

    void setPanel(StatusPanel panel, const std::string& text) override;
    void enableProjectCommands() override;
    void showRecentFiles() override;
    void setWaitPointer(bool wait) override;

    // Handlers of the command table.
    void newProjectCommand();
    void openProjectCommand();
    void openPascalFileCommand();
    void newIncludeCommand();
    void openIncludeCommand();
    void saveProjectCommand();
    void saveFileCommand();
    void refreshCommand();
    void propertiesCommand();
    void compileComCommand();
    void compileChnCommand();
    void compileRunCommand();
    template <std::size_t index> void openRecentCommand() { openRecent(index); }
    void exitCommand();
    void cutCommand();
    void copyCommand();
    void pasteCommand();
    void deleteCommand();
    void findCommand();
    void findNextCommand();
    void replaceCommand();
    void undoCommand();
    void redoCommand();
    void clearCommand();
    void preferencesCommand();
    void splitCommand();
    void showTreeCommand();
    void paletteConverterCommand();
    void imageConverterCommand();
    void calculatorCommand();
    void pascalReferenceCommand();
    void aboutCommand();
    void printCommand();
    void goToLineCommand();
    void reloadCommand();
    void treeCommand();
    void goToDefinitionCommand();
    void goBackCommand();
    void findInProjectCommand();
    void toggleCommentsCommand();
    void duplicateCommand();
    void moveLineUpCommand();
    void moveLineDownCommand();
    void markWordCommand();
    void matchingWordCommand();
    void foldCommand();

  private:
    static LRESULT CALLBACK windowProcedure(HWND window, UINT message, WPARAM first, LPARAM second);
    LRESULT handle(UINT message, WPARAM first, LPARAM second);
    bool handleFirst(MSG& message) override;
    bool isInProgressWindow(HWND window) const;
    void editorKeyDown(int key, int shift) override;
    void editorKeyPress(int character, int shift) override;
    void editorMouseDown(MouseButton button, int shift, int x, int y) override;
    void showHistory();
    void showSignatureFor(int character);
    void showSignature(const std::string& signature);

    void makeWindows();
    void placeOnScreen();
    void makeStatusBar();
    void removeShortcutKeysFromEditor();
    void runCommand(UINT identifier);
    void guarded(const std::function<void()>& operation);
    void enableCommand(UINT identifier, bool enabled);
    void checkCommand(UINT identifier, bool checked);
    bool commandChecked(UINT identifier) const;
    void openRecent(std::size_t index);
    void activated();
    void applyFont();
    void resized();
    void layStatusBar();
    void place(const FormLayout& layout);
    FormMeasures measures() const;
    void timerTick();
    void copyTypedTextWhenDue();
    void nodeChosen(std::size_t node);
    std::vector<std::string> projectTexts() const;
    std::size_t shownFile() const;
    bool showFile(std::size_t file);
    void popUpEditMenuAtCaret();
    static LRESULT menuCharacter(WORD character, HMENU menu);
    void followEditor();
    void popUpMenu(UINT identifier, const POINT* at = nullptr);
    void filesDropped(HDROP drop);
    bool saveBeforeDrop();
    void rescaled(int pixelsPerInch, const RECT& place);
    void applyScale();
    void handleCommandLine(const std::string& argument);

    HWND window_ = nullptr;
    HWND StatusBar1_ = nullptr;
    HWND PicBKG_ = nullptr;
    HBRUSH pictureBrush_ = nullptr;
    HACCEL accelerators_ = nullptr;
    ScreenScale scale_;
    HFONT font_ = nullptr; ///< of tree and status bar
    FormLayout layout_;
    bool SplitActive_ = false;
    bool waitPointer_ = false;
    bool loaded_ = false;
    std::vector<std::string> AutocompleteList_;
    PrefixIndex autocompleteIndex_;
    std::unique_ptr<CodeEditor> Code1_;
    std::unique_ptr<TreeView> TV_;
    std::unique_ptr<Workspace> workspace_;
    std::unique_ptr<FindDialogs> findDialogs_;
    std::unique_ptr<Form2> form2_;
    std::unique_ptr<Form6> form6_;
    std::unique_ptr<Form7> form7_;
    TypingWatch typingWatch_;
    /// Where the caret was before a jump.
    struct Jump {
        std::string key; ///< of the file's node
        EditorPosition caret;
    };
    std::vector<Jump> jumps_;
    ProcessRunner& processes_;
    Shell& shell_;
    PrintDevice& printer_;
};

} // namespace tavrel
