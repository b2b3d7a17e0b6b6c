// The main window, made in this process and used by real messages.
#include "tests/app/main_window.h"
#include "util/runtime_error.h"
#include "util/window_placing.h"

namespace tavrel {
namespace {

using test::MainWindow;

TEST_F(MainWindow, OpensWithTheProjectCommandsDisabled) {
    start();
    for (const int command : {mnuSave, mnuPrint, mnuCompile, mnuCompileRun, mnuProp, mnuRefresh, mnuNewInc,
                              mnuOpenIncfile, mnuCompileCHN})
        EXPECT_FALSE(form->commandEnabled(static_cast<UINT>(command))) << command;
    EXPECT_EQ(panel(2), "Current View: no file");
    tick();
    EXPECT_EQ(panel(1), "Line: 1 Col: 1");
    EXPECT_FALSE(menuHas(mnurecent_0));
    EXPECT_FALSE(menuHas(mnseparator1));
    EXPECT_EQ(form->AutocompleteList().size(), 2U);
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(MainWindow, EveryRowOfTheCommandTableIsInTheMenuOnce) {
    HMENU const bar = makeMenuBar();
    for (const CommandRow& row : commandTable()) {
        if (row.kind == RowKind::menu)
            continue;
        std::string caption(64, '\0');
        caption.resize(static_cast<std::size_t>(GetMenuStringA(
            bar, row.identifier, caption.data(), static_cast<int>(caption.size()), MF_BYCOMMAND)));
        if (row.kind == RowKind::command) {
            EXPECT_EQ(caption.substr(0, caption.find('\t')), row.caption) << row.name;
        }
    }
    DestroyMenu(bar);
}

TEST_F(MainWindow, ItsControlsHaveNamesForScreenReaders) {
    start();
    const auto nameOf = [&](int control) {
        std::array<char, 40> name{};
        GetDlgItemTextA(form->window(), control, name.data(), static_cast<int>(name.size()));
        return std::string(name.data());
    };
    EXPECT_EQ(nameOf(Form1_TV), "Project tree");
    EXPECT_EQ(nameOf(Form1_Code1), "Source");
}

TEST_F(MainWindow, HasAnIconOfEachSizeThatTheShellShows) {
    start();
    EXPECT_NE(SendMessageA(form->window(), WM_GETICON, ICON_SMALL, 0), 0);
    EXPECT_NE(GetClassLongPtrA(form->window(), GCLP_HICON), 0U);
    for (const int side : {16, 20, 24, 32, 40, 48, 64, 96, 128, 256}) {
        HANDLE const icon =
            LoadImageA(GetModuleHandleA(nullptr), std::bit_cast<LPCSTR>(ULONG_PTR{Tavrel_Icon}), IMAGE_ICON,
                       side, side, 0);
        ICONINFO parts = {};
        ASSERT_TRUE(GetIconInfo(static_cast<HICON>(icon), &parts)) << side;
        BITMAP colours = {};
        GetObjectA(parts.hbmColor, sizeof colours, &colours);
        EXPECT_EQ(colours.bmWidth, side);
        EXPECT_EQ(colours.bmBitsPixel, 32);
        DeleteObject(parts.hbmColor);
        DeleteObject(parts.hbmMask);
        DestroyIcon(static_cast<HICON>(icon));
    }
}

TEST_F(MainWindow, AMissingWordListStopsStartUp) {
    deleteFile(program.path() + "help\\autocomplete.txt");
    EXPECT_THROW(start(), RuntimeError);
}

TEST_F(MainWindow, AProjectArgumentFillsEditorAndTree) {
    startWithProject();
    EXPECT_EQ(form->Code1().text(), "program M;\r\n{$I A.INC}\r\nbegin end.\r\n");
    EXPECT_EQ(TreeView_GetCount(form->TV().window()), 3U);
    EXPECT_EQ(panel(2), "Current View: M.PAS");
    EXPECT_TRUE(form->commandEnabled(mnuCompile));
    EXPECT_TRUE(form->commandEnabled(mnuSave));
    EXPECT_TRUE(form->commandEnabled(mnuCompileRun));
    EXPECT_TRUE(form->commandEnabled(mnuPrint));
    EXPECT_TRUE(menuHas(mnurecent_0));
    EXPECT_TRUE(menuHas(mnseparator1));
}

TEST_F(MainWindow, AShortProjectFileIsReported) {
    folder.write("M.TPJ", "Demo\r\n");
    startWithProject();
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_FALSE(form->commandEnabled(mnuCompile));
}

TEST_F(MainWindow, AnyBytesAreSavedAsTheyWereLoaded) {
    std::string bytes = "a\r\nb\nc\rd\0e\x1A\r\r\n"
                        "\x80\xFF";
    for (int i = 0; i < 256; ++i)
        bytes += static_cast<char>(i);
    folder.write("M.PAS", bytes);
    startWithProject();
    choose(mnuSaveFile);
    EXPECT_EQ(folder.read("M.PAS"), bytes);
}

TEST_F(MainWindow, HidingTheTreeMovesTheEditor) {
    start();
    const ScreenScale scale = screenScale();
    EXPECT_EQ(place(Form1_Code1).left, scale.toPixelsX(2400));
    choose(mnuShowProjectTree);
    RECT client = {};
    GetClientRect(form->window(), &client);
    EXPECT_EQ(place(Form1_Code1).left, 0);
    EXPECT_EQ(place(Form1_Code1).right, scale.toPixelsX(scale.toTwipsX(client.right) - 10));
    EXPECT_EQ(IsWindowVisible(form->TV().window()), FALSE);
    choose(mnuShowProjectTree);
    EXPECT_EQ(place(Form1_Code1).left, scale.toPixelsX(2400));
}

TEST_F(MainWindow, ResizingRecentresTheSplit) {
    start();
    choose(mnuSplit);
    EXPECT_TRUE(form->SplitActive());
    EXPECT_EQ(form->Code1().paneCount(), 2);
    form->Code1().setSplitterPosition(30);
    SetWindowPos(form->window(), nullptr, 0, 0, 800, 500, SWP_NOMOVE | SWP_NOZORDER);
    const RECT editor = place(Form1_Code1);
    EXPECT_NEAR(form->Code1().splitterPosition(), (editor.bottom - editor.top) / 2.0, 1);
    form->Code1().insertText("shared", {0, 0});
    choose(mnuSplit);
    EXPECT_EQ(form->Code1().paneCount(), 1);
    EXPECT_EQ(form->Code1().text(), "shared");
}

TEST_F(MainWindow, UndoNeedsAModifiedText) {
    start();
    form->Code1().insertText("x", {0, 0});
    tick();
    EXPECT_TRUE(form->commandEnabled(mnuUndo));
    form->Code1().setModified(false);
    choose(mnuUndo);
    EXPECT_EQ(form->Code1().text(), "x");
    form->Code1().insertText("y", {0, 0});
    choose(mnuUndo);
    EXPECT_EQ(form->Code1().text().find('y'), std::string::npos);
    choose(mnuClear);
    choose(mnuClear);
    EXPECT_EQ(form->Code1().text(), "");
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(MainWindow, CompilingPutsTheCaretOnTheFailingLine) {
    startWithProject();
    processes.work = [this] { folder.write("errors.txt", "\"A.INC\",2,1,1,\"x\"\r\n"); };
    choose(mnuCompile);
    EXPECT_EQ(form->Code1().caret(), (EditorPosition{1, 0}));
    EXPECT_EQ(form->Code1().highlightedLine(), 1);
    EXPECT_EQ(panel(2), "Current View: A.INC");
    EXPECT_EQ(form->progressWindow().text(), "file  : A.INC: line 2, column 1\r\nError : 1 - x\r\n");
    EXPECT_TRUE(form->progressWindow().imageVisible(3));
}

TEST_F(MainWindow, EscClosesTheProgressWindowAndLaterWritesOpenItAgain) {
    startWithProject();
    processes.work = [this] {
        HWND const box = GetDlgItem(form->progressWindow().window(), Form2_Text1);
        PostMessageA(box, WM_KEYDOWN, VK_ESCAPE, 0);
        pump();
        EXPECT_EQ(form->progressWindow().window(), nullptr);
    };
    choose(mnuCompile);
    EXPECT_EQ(form->progressWindow().text(), "Compiling Demo...\r\nNo errors - Sucessfully compiled");
    EXPECT_FALSE(form->progressWindow().timer1Enabled());
}

TEST_F(MainWindow, ASecondBuildReusesTheOpenProgressWindow) {
    startWithProject();
    choose(mnuCompile);
    choose(mnuCompile);
    EXPECT_EQ(form->progressWindow().text(),
              "Compiling Demo...\r\nNo errors - Sucessfully compiled\r\nNo errors - Sucessfully compiled");
}

TEST_F(MainWindow, CompileAndRunPacksTheFolderAndStartsTheEmulator) {
    program.makeFolder("dsk");
    program.write("dsk\\d.dsk", "old");
    startWithProject();
    form->workspace().settings.EmulatorPath = "C:\\emu.exe";
    processes.work = [this] {
        const bool building = processes.runs.size() == 1;
        EXPECT_EQ(form->progressWindow().window() != nullptr, building);
        EXPECT_EQ(program.has("dsk\\d.dsk"), building) << "the blank behind the name does not count";
    };
    choose(mnuCompileRun);
    ASSERT_EQ(processes.runs.size(), 3U);
    const std::string image = program.path() + "dsk\\d.dsk";
    EXPECT_EQ(processes.runs[1].commandLine,
              program.path() + "dsk\\dsktool.exe A " + image + " " + folder.path() + "*.*");
    EXPECT_EQ(processes.runs[2].commandLine, "C:\\emu.exe -diska " + image + " -msx2");
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(MainWindow, AnImageThatAnotherProgramHoldsIsReportedAndEndsCompileAndRun) {
    program.makeFolder("dsk");
    const std::string image = program.write("dsk\\d.dsk", "old");
    startWithProject();
    HANDLE const holder = CreateFileA(image.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                      FILE_ATTRIBUTE_NORMAL, nullptr);
    choose(mnuCompileRun);
    CloseHandle(holder);
    EXPECT_EQ(processes.runs.size(), 1U);
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_EQ(panel(3), "The disk image is in use: close the emulator that runs with " + image);
}

TEST_F(MainWindow, AMissingKitFileIsShownInABox) {
    startWithProject();
    deleteFile(program.path() + "compiler\\TP3.EXE");
    choose(mnuCompile);
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(messages.shown[0].title, "Tavrel");
    EXPECT_EQ(messages.shown[0].text, "File not found\r\n" + program.path() + "compiler\\TP3.EXE");
    EXPECT_EQ(form->progressWindow().window(), nullptr);
}

} // namespace
} // namespace tavrel
