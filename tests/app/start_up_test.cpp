// Start-up step by step, activation, timer and the end of the program.
#include "tests/app/main_window.h"
#include "util/runtime_error.h"
#include "util/window_placing.h"

#include <cstring>

namespace tavrel {
namespace {

struct StartUp : test::MainWindow {
    void storeSettings(const std::function<void(Settings&)>& change) {
        Settings settings = readSettings(program.path());
        change(settings);
        writeSettings(program.path(), settings);
    }
    RuntimeErrorNumber failureOfStart() {
        try {
            start();
        } catch (const RuntimeError& error) {
            return error.number();
        }
        return RuntimeErrorNumber::overflow; // stands for none
    }
    /// Captions of a menu with those of its sub-menus indented below, separators as "-".
    static std::string outline(HMENU menu, const std::string& indentation = "") {
        std::string lines;
        const int count = GetMenuItemCount(menu);
        for (int i = 0; i < count; ++i) {
            std::string caption(100, '\0');
            MENUITEMINFOA item = {};
            item.cbSize = sizeof item;
            item.fMask = MIIM_FTYPE | MIIM_STRING | MIIM_SUBMENU;
            item.dwTypeData = caption.data();
            item.cch = static_cast<UINT>(caption.size());
            GetMenuItemInfoA(menu, static_cast<UINT>(i), TRUE, &item);
            caption.resize((item.fType & MFT_SEPARATOR) != 0 ? 0 : std::strlen(caption.c_str()));
            lines += indentation + (caption.empty() ? "-" : caption) + "\n";
            if (item.hSubMenu != nullptr)
                lines += outline(item.hSubMenu, indentation + "  ");
        }
        return lines;
    }
    bool newProjectDialogOpensOnStart(const std::string& argument) {
        bool seen = false;
        whenDialogOpens("New Project", [&](HWND dialog) {
            seen = true;
            EXPECT_TRUE(IsWindowVisible(form->window())) << "the dialog opens over the window";
            EXPECT_EQ(GetWindow(dialog, GW_OWNER), form->window());
            EXPECT_FALSE(form->commandEnabled(mnuCompile));
            SendMessageA(dialog, WM_COMMAND, Form5_Command2, 0);
        });
        start(argument);
        stopWaitingForDialog();
        return seen;
    }
};

TEST_F(StartUp, TheMenuBarIsTheOneThatUsersKnow) {
    start();
    EXPECT_EQ(outline(GetMenu(form->window())), "File\n"
                                                "  New\n"
                                                "    Project\n"
                                                "    Include file\n"
                                                "  Open\n"
                                                "    Project file\n"
                                                "    Pascal file\n"
                                                "    Include file\n"
                                                "  Save\n"
                                                "    Save Project\n"
                                                "    Save Current File\tCtrl+S\n"
                                                "  -\n"
                                                "  Refresh Project Tree\n"
                                                "  Project Properties\n"
                                                "  -\n"
                                                "  Compile\tF6\n"
                                                "  Compile to CHN\tF7\n"
                                                "  Compile and Run\tF5\n"
                                                "  -\n"
                                                "  Print\n"
                                                "  -\n"
                                                "  Exit\n"
                                                "Edit\n"
                                                "  Cut\n"
                                                "  Copy\n"
                                                "  Paste\n"
                                                "  Delete\n"
                                                "  -\n"
                                                "  Find\n"
                                                "  Find Next\n"
                                                "  Replace\n"
                                                "  -\n"
                                                "  Undo\n"
                                                "  Redo\n"
                                                "  -\n"
                                                "  Clear\n"
                                                "  -\n"
                                                "  Preferences\n"
                                                "Tools\n"
                                                "  Palette Converter\tCtrl+F4\n"
                                                "  Image Converter\tCtrl+F3\n"
                                                "  Calc\tCtrl+F2\n"
                                                "Window\n"
                                                "  Split\tCtrl+F6\n"
                                                "  Show Project Tree\tCtrl+F5\n"
                                                "Help\n"
                                                "  Pascal Reference\tF1\n"
                                                "  -\n"
                                                "  About\n");
}

TEST_F(StartUp, TheEditorHasNoBindingForTheWindowsShortcuts) {
    start();
    choose(mnuSplit);
    for (const CommandRow& row : commandTable()) {
        if (row.shortcut.key == 0)
            continue;
        for (const int pane : {0, 1}) { // as if the window's shortcut had not taken the key
            HWND const view = editorPane(pane);
            hold((row.shortcut.control ? shiftState::control : 0) +
                 (row.shortcut.shift ? shiftState::shift : 0) + (row.shortcut.alt ? shiftState::alt : 0));
            SendMessageA(view, WM_KEYDOWN, row.shortcut.key, 0);
            if (row.shortcut.key >= 'A' && row.shortcut.key <= 'Z')
                SendMessageA(view, WM_CHAR, static_cast<WPARAM>(row.shortcut.key - 'A' + 1), 0);
            hold(0);
        }
    }
    EXPECT_EQ(form->Code1().text(), "");
    EXPECT_FALSE(form->Code1().canUndo());
}

TEST_F(StartUp, AnUnreadableWordListStopsItBeforeTheSettings) {
    storeSettings([](Settings& settings) { settings.RegisterTpj = storedTrue; });
    const std::string list = program.path() + "help\\autocomplete.txt";
    deleteFile(list);
    EXPECT_EQ(failureOfStart(), RuntimeErrorNumber::fileNotFound);
    EXPECT_TRUE(registry.written.empty());
    EXPECT_FALSE(IsWindowVisible(form->window()));
    EXPECT_EQ(form->workspace().LastDir, "");
    EXPECT_EQ(form->AutocompleteLast(), -1);
    form.reset();
    program.write("help\\autocomplete.txt", "");
    EXPECT_EQ(failureOfStart(), RuntimeErrorNumber::inputPastEndOfFile);
    form.reset();
    program.write("help\\autocomplete.txt", "\r\n");
    EXPECT_EQ(failureOfStart(), RuntimeErrorNumber::overflow);
    EXPECT_EQ(form->AutocompleteList(), std::vector<std::string>{""}) << "one empty line is a list";
    EXPECT_EQ(form->AutocompleteLast(), 0);
}

TEST_F(StartUp, AMissingHelpFolderStopsItToo) {
    deleteFile(program.path() + "help\\autocomplete.txt");
    std::filesystem::remove(program.native() / "help");
    EXPECT_EQ(failureOfStart(), RuntimeErrorNumber::pathNotFound);
}

TEST_F(StartUp, DialogsFirstOfferTheProgramFolder) {
    start();
    EXPECT_EQ(form->workspace().LastDir, program.path());
}

TEST_F(StartUp, TheEditorAndTheTreeFillTheWindowInTwips) {
    start();
    const ScreenScale scale = windowScale(form->window());
    RECT client = {};
    GetClientRect(form->window(), &client);
    const RECT status = place(Form1_StatusBar1);
    const double height = scale.toTwipsY(client.bottom) - scale.toTwipsY(status.bottom - status.top) - 70;
    const RECT editor = place(Form1_Code1);
    EXPECT_EQ(editor.left, scale.toPixelsX(2400));
    EXPECT_EQ(editor.right - editor.left, scale.toPixelsX(scale.toTwipsX(client.right) - 2400));
    EXPECT_EQ(editor.bottom - editor.top, scale.toPixelsY(height));
    EXPECT_EQ(place(Form1_TV).bottom, scale.toPixelsY(height));
    EXPECT_EQ(place(Form1_TV).right, scale.toPixelsX(2400));
}

TEST_F(StartUp, TheSplitIsOffAndThePictureIsBlue) {
    start();
    EXPECT_FALSE(form->SplitActive());
    HWND const picture = GetDlgItem(form->window(), Form1_PicBKG);
    HDC const device = GetDC(picture);
    auto* const brush = std::bit_cast<HBRUSH>(SendMessageA(
        form->window(), WM_CTLCOLORSTATIC, std::bit_cast<WPARAM>(device), std::bit_cast<LPARAM>(picture)));
    ReleaseDC(picture, device);
    LOGBRUSH description = {};
    GetObjectA(brush, sizeof description, &description);
    EXPECT_EQ(description.lbColor, RGB(0, 0, 255));
}

TEST_F(StartUp, TheProjectHasItsDefaults) {
    start();
    EXPECT_EQ(form->workspace().project.Name, "Project");
    EXPECT_EQ(form->workspace().project.StartAddress, 11931);
    EXPECT_EQ(form->workspace().project.EndAddress, -11776);
}

TEST_F(StartUp, StoredSettingsAreAppliedWithTheFileAssociation) {
    storeSettings([](Settings& settings) {
        settings.RegisterTpj = storedTrue;
        settings.FontSize = 17;
    });
    start();
    EXPECT_EQ(registry.written.size(), 6U);
    EXPECT_EQ(SendMessageA(editorPane(0), SCI_STYLEGETSIZE, STYLE_DEFAULT, 0), 17);
    form->applyFileAssociation();
    EXPECT_EQ(registry.written.size(), 12U);
}

TEST_F(StartUp, MissingSettingsAreNotMade) {
    deleteFile(program.path() + "config.cfg");
    EXPECT_TRUE(newProjectDialogOpensOnStart("")) << "as the defaults say";
    EXPECT_EQ(form->workspace().settings, SetDefaultSettings(program.path()));
    EXPECT_FALSE(program.has("config.cfg"));
    choose(mnuExit);
    EXPECT_FALSE(program.has("config.cfg"));
}

TEST_F(StartUp, WhatAKilledSaveLeftIsTakenAway) {
    program.makeFolder("compiler");
    program.write("~tavrel-00050001.tmp", "x");
    program.write("compiler\\~tavrel-00050002.tmp", "x");
    start();
    EXPECT_FALSE(program.has("~tavrel-00050001.tmp"));
    EXPECT_FALSE(program.has("compiler\\~tavrel-00050002.tmp"));
}

TEST_F(StartUp, EmptySettingsGiveAReadableFont) {
    program.write("config.cfg", "");
    start();
    EXPECT_EQ(form->workspace().settings.FontSize, 0);
    EXPECT_GT(SendMessageA(editorPane(0), SCI_STYLEGETSIZE, STYLE_DEFAULT, 0), 7);
}

TEST_F(StartUp, RecentFilesAreShownAsTheyAreStored) {
    storeSettings([](Settings& settings) { settings.Recent = {"C:\\A & B.TPJ", "c:\\two.pas", "", "", ""}; });
    start();
    const std::string bar = outline(GetMenu(form->window()));
    EXPECT_NE(bar.find("  Print\n  -\n  C:\\A && B.TPJ\n  c:\\two.pas\n  -\n  Exit\n"), std::string::npos)
        << bar;
}

TEST_F(StartUp, AGapInTheRecentListIsHiddenAndTheSeparatorFollowsTheFirst) {
    storeSettings([](Settings& settings) { settings.Recent = {"", "c:\\two.pas", "", "", "c:\\five.tpj"}; });
    start();
    const std::string bar = outline(GetMenu(form->window()));
    EXPECT_NE(bar.find("  Print\n  -\n  c:\\two.pas\n  c:\\five.tpj\n  Exit\n"), std::string::npos) << bar;
}

TEST_F(StartUp, TheWindowIsShownAndTheEditorHasTheFocus) {
    start();
    EXPECT_TRUE(IsWindowVisible(form->window()));
    EXPECT_EQ(GetFocus(), editorPane(0));
}

TEST_F(StartUp, WithoutAnArgumentTheSettingDecidesAboutTheNewProjectDialog) {
    EXPECT_FALSE(newProjectDialogOpensOnStart(""));
    form.reset();
    storeSettings([](Settings& settings) { settings.OpenNewProjectAtStart = storedTrue; });
    EXPECT_TRUE(newProjectDialogOpensOnStart(""));
}

TEST_F(StartUp, OtherArgumentsAreIgnoredAndOfferNothing) {
    storeSettings([](Settings& settings) { settings.OpenNewProjectAtStart = storedTrue; });
    const std::string text = folder.write("A.TXT", "x");
    for (const std::string& argument :
         std::vector<std::string>{text, folder.path() + "M.PAS", folder.path() + "M.TPJ\"", "\"x\""}) {
        EXPECT_FALSE(newProjectDialogOpensOnStart(argument)) << argument;
        EXPECT_EQ(TreeView_GetCount(form->TV().window()), 0U);
        form.reset();
    }
}

TEST_F(StartUp, AMissingProjectIsTreatedLikeNoArgument) {
    EXPECT_FALSE(newProjectDialogOpensOnStart(folder.path() + "NO.TPJ"));
    form.reset();
    storeSettings([](Settings& settings) { settings.OpenNewProjectAtStart = storedTrue; });
    EXPECT_TRUE(newProjectDialogOpensOnStart(folder.path() + "NO.TPJ"));
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(StartUp, TheMainFileIsLookedForBesideTheProject) {
    folder.write("GAME.TpJ", "Game\r\n3000\r\nC000\r\nD:\\other\\M.PAS\r\n");
    storeSettings([](Settings& settings) { settings.OpenNewProjectAtStart = storedTrue; });
    const std::string argument = folder.path() + "GAME.TpJ";
    EXPECT_FALSE(newProjectDialogOpensOnStart(argument));
    EXPECT_EQ(form->Code1().text(), folder.read("M.PAS"));
    EXPECT_EQ(form->workspace().project.Name, "Game");
    EXPECT_EQ(form->workspace().project.StartAddress, 0x3000);
    EXPECT_EQ(form->workspace().project.EndAddress, -0x4000);
    EXPECT_EQ(form->workspace().LastDir, folder.path());
    EXPECT_EQ(readSettings(program.path()).Recent[0], argument) << "as it was given";
}

TEST_F(StartUp, SettingsThatCannotBeWrittenAreToldAndTheProjectIsThere) {
    const auto file = program.native() / "config.cfg";
    std::filesystem::permissions(file, std::filesystem::perms::owner_read);
    startWithProject();
    std::filesystem::permissions(file, std::filesystem::perms::owner_all);
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_TRUE(messages.shown[0].text.starts_with("Path/File access error\r\n" + program.path() +
                                                   "config.cfg\r\n\r\n"))
        << messages.shown[0].text;
    EXPECT_EQ(TreeView_GetCount(form->TV().window()), 3U);
}

TEST_F(StartUp, ActivationClearsTheMessageAndTakesTheFontOfTheSettings) {
    startWithProject();
    form->setPanel(StatusPanel::message, "old");
    form->setPanel(StatusPanel::currentView, "old");
    form->workspace().settings.FontSize = 14;
    SendMessageA(form->window(), WM_ACTIVATE, WA_INACTIVE, 0);
    EXPECT_EQ(panel(3), "old");
    SendMessageA(form->window(), WM_ACTIVATE, WA_ACTIVE, 0);
    EXPECT_EQ(panel(3), "");
    EXPECT_EQ(panel(2), "Current View: M.PAS");
    EXPECT_EQ(SendMessageA(editorPane(0), SCI_STYLEGETSIZE, STYLE_DEFAULT, 0), 14);
}

TEST_F(StartUp, TheTimerFollowsTheEditorByItself) {
    start();
    form->Code1().setText("one\r\ntwo three");
    form->Code1().setCaret({1, 4});
    SendMessageA(editorPane(0), SCI_SETSEL, 9, 14);
    const ULONGLONG end = GetTickCount64() + 5000;
    while (panel(1) != "Line: 2 Col: 5" && GetTickCount64() < end) {
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 100, QS_ALLINPUT);
        pump();
    }
    EXPECT_EQ(panel(1), "Line: 2 Col: 5") << "where the selection starts";
    EXPECT_TRUE(form->commandEnabled(mnuCopy));
    EXPECT_TRUE(form->commandEnabled(mnuCut));
    EXPECT_TRUE(form->commandEnabled(mnuUndo));
    EXPECT_FALSE(form->commandEnabled(mnuRedo));
}

TEST_F(StartUp, TheMenuFollowsWhatTheEditorCanDo) {
    start();
    OpenClipboard(nullptr);
    EmptyClipboard();
    CloseClipboard();
    tick();
    for (const int command : {mnuCopy, mnuCut, mnuPaste, mnuRedo, mnuUndo})
        EXPECT_FALSE(form->commandEnabled(static_cast<UINT>(command))) << command;
    choose(mnuPaste);
    EXPECT_EQ(form->Code1().text(), "");
    form->Code1().insertText("abc", {0, 0});
    SendMessageA(editorPane(0), SCI_SETSEL, 0, 3);
    tick();
    choose(mnuCut);
    tick();
    EXPECT_EQ(form->Code1().text(), "");
    EXPECT_FALSE(form->commandEnabled(mnuCut));
    EXPECT_TRUE(form->commandEnabled(mnuPaste));
    choose(mnuPaste);
    choose(mnuUndo);
    tick();
    EXPECT_EQ(form->Code1().text(), "");
    EXPECT_TRUE(form->commandEnabled(mnuRedo));
    choose(mnuRedo);
    EXPECT_EQ(form->Code1().text(), "abc");
}

TEST_F(StartUp, DeleteTakesTheSelectionOnly) {
    start();
    form->Code1().insertText("abc", {0, 0});
    form->Code1().setCaret({0, 1});
    choose(mnuDelete);
    EXPECT_EQ(form->Code1().text(), "abc");
    SendMessageA(editorPane(0), SCI_SETSEL, 1, 2);
    choose(mnuDelete);
    EXPECT_EQ(form->Code1().text(), "ac");
}

/// Counts what Windows makes of a key-up that a window leaves to it: the menu bar's turn.
LRESULT CALLBACK countMenuKeys(HWND window, UINT message, WPARAM first, LPARAM second, UINT_PTR,
                               DWORD_PTR count) {
    if (message == WM_SYSCOMMAND || message == WM_CONTEXTMENU) {
        ++*std::bit_cast<int*>(count);
        return 0;
    }
    return DefSubclassProc(window, message, first, second);
}

TEST_F(StartUp, KeyUpsOfTheWindowAreSwallowed) {
    start();
    int count = 0;
    SetWindowSubclass(form->window(), countMenuKeys, 7, std::bit_cast<DWORD_PTR>(&count));
    SendMessageA(form->window(), WM_SYSKEYDOWN, VK_F10, 0);
    SendMessageA(form->window(), WM_KEYUP, VK_F10, 0);
    EXPECT_EQ(count, 0);
    SendMessageA(form->window(), WM_SYSKEYDOWN, VK_F10, 0);
    SendMessageA(form->window(), WM_SYSKEYUP, VK_F10, 0);
    EXPECT_EQ(count, 1) << "F10 itself reaches the menu bar";
    RemoveWindowSubclass(form->window(), countMenuKeys, 7);
}

TEST_F(StartUp, ExitAsksNothingAndWritesNothing) {
    startWithProject();
    const std::string settings = program.read("config.cfg");
    const std::string source = folder.read("M.PAS");
    form->Code1().insertText("changed", {0, 0});
    form->workspace().settings.FontSize = 20;
    HWND const window = form->window();
    choose(mnuExit);
    EXPECT_FALSE(IsWindow(window));
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_EQ(program.read("config.cfg"), settings);
    EXPECT_EQ(folder.read("M.PAS"), source);
}

TEST_F(StartUp, ClosingTheWindowIsTheSame) {
    start();
    form->Code1().insertText("changed", {0, 0});
    HWND const window = form->window();
    SendMessageA(window, WM_CLOSE, 0, 0);
    pump();
    EXPECT_FALSE(IsWindow(window));
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(StartUp, RefreshingTheTooltipsCanBeAskedFor) {
    startWithProject();
    form->Code1().setText("procedure Fresh;\r\n");
    form->refreshTooltips();
    EXPECT_EQ(form->workspace().FileRoutineLists.at(0).Headers, std::vector<std::string>{"Fresh;"});
}

} // namespace
} // namespace tavrel
