// Keys and mouse buttons in the editor, sent to its panes as Windows does.
#include "tests/app/main_window.h"

namespace tavrel {
namespace {

using test::MainWindow;

constexpr int control = shiftState::control;

struct EditorEvents : MainWindow {
    void typeWord(const std::string& word) {
        for (const char c : word)
            typeInEditor(c);
    }
};

TEST_F(EditorEvents, AParenthesisShowsTheSignature) {
    start();
    typeWord("writeln(");
    EXPECT_EQ(panel(3), "WriteLn(...)");
    EXPECT_EQ(form->Code1().text(), "writeln(") << "the character still gets into the text";
    typeWord("nothing[");
    EXPECT_EQ(panel(3), "");
    typeWord("ABS[");
    EXPECT_EQ(panel(3), "Abs(X)");
}

TEST_F(EditorEvents, ARoutineOfTheProjectIsShownBehindTheLibrary) {
    folder.write("A.INC", "procedure Abs(Mine: byte);\r\nfunction Peek(Adr: integer): byte;\r\n");
    startWithProject();
    form->Code1().setCaret({2, 100}); // behind everything: the word at the caret has two ends
    typeWord("peek(");
    EXPECT_EQ(panel(3), "Peek(Adr: integer): byte;");
    typeWord("abs(");
    EXPECT_EQ(panel(3), "Abs(X)");
}

TEST_F(EditorEvents, ALineFeedClearsThePanelAndReadsTheRoutinesAgain) {
    startWithProject();
    form->Code1().setText("procedure Fresh(X: byte);\r\n");
    form->setPanel(StatusPanel::message, "old");
    typeInEditor('\n', control);
    EXPECT_EQ(panel(3), "");
    form->Code1().setCaret({1, 0});
    typeWord("fresh(");
    EXPECT_EQ(panel(3), "Fresh(X: byte);");
}

TEST_F(EditorEvents, EnterReadsTheRoutinesAgain) {
    startWithProject();
    form->Code1().setText("procedure Fresh(X: byte);");
    form->setPanel(StatusPanel::message, "old");
    form->Code1().setCaret({0, 100});
    typeInEditor('\r');
    EXPECT_EQ(panel(3), "");
    typeWord("fresh(");
    EXPECT_EQ(panel(3), "Fresh(X: byte);");
    EXPECT_EQ(form->Code1().text().find("fresh("), form->Code1().text().size() - 6)
        << "and no line feed is typed";
}

TEST_F(EditorEvents, WithTooltipsOffNothingIsShownAndCtrlZStillUndoes) {
    start();
    form->workspace().settings.UseTooltips = storedFalse;
    typeWord("abs(");
    EXPECT_EQ(panel(3), "");
    form->Code1().insertText("x", {0, 0});
    typeInEditor(26, control);
    EXPECT_EQ(form->Code1().text(), "abs(");
}

TEST_F(EditorEvents, CtrlZDoesNothingInAnUnmodifiedText) {
    start();
    form->Code1().insertText("x", {0, 0});
    form->Code1().setModified(false);
    pressInEditor('Z', control);
    typeInEditor(26, control);
    EXPECT_EQ(form->Code1().text(), "x");
    form->Code1().insertText("y", {0, 0});
    pressInEditor('Z', control);
    typeInEditor(26, control);
    EXPECT_EQ(form->Code1().text().find('y'), std::string::npos);
}

TEST_F(EditorEvents, ControlCharactersDoNotGetIntoTheText) {
    start();
    for (const char character : {'\x01', '\x05', '\x13', '\x1A'})
        typeInEditor(character, control);
    EXPECT_EQ(form->Code1().text(), "");
}

TEST_F(EditorEvents, CtrlTabCyclesThePanes) {
    start();
    pressInEditor(VK_TAB, control);
    EXPECT_EQ(form->Code1().activePane(), 0) << "one pane only";
    choose(mnuSplit);
    form->Code1().setActivePane(1);
    pressInEditor(VK_TAB, control);
    EXPECT_EQ(form->Code1().activePane(), 0);
    pressInEditor(VK_TAB, control + shiftState::shift);
    EXPECT_EQ(form->Code1().activePane(), 1);
    pressInEditor(VK_TAB, control + shiftState::shift);
    EXPECT_EQ(form->Code1().activePane(), 0);
    EXPECT_EQ(form->Code1().text(), "");
}

TEST_F(EditorEvents, CtrlF2AndCtrlF3LaunchWithoutAProject) {
    start();
    pressInEditor(VK_F2, control);
    pressInEditor(VK_F3, control);
    pressInEditor(VK_F3, 0);
    ASSERT_EQ(shell.executed.size(), 2U);
    EXPECT_EQ(shell.executed[0].request.file, "calc.exe");
    EXPECT_EQ(shell.executed[1].request.file, program.path() + "msximg.exe");
    EXPECT_EQ(shell.executed[1].owner, form->window());
}

TEST_F(EditorEvents, CtrlSSavesTheFile) {
    startWithProject();
    form->Code1().setText("changed");
    pressInEditor('S', control);
    EXPECT_EQ(folder.read("M.PAS"), "changed");
    EXPECT_FALSE(form->Code1().modified());
}

TEST_F(EditorEvents, TheMenuCommandsLaunchTheSame) {
    start();
    choose(mnuCalc);
    choose(mnuImgConv);
    choose(mnuRefHelp);
    choose(mnuRefHelp);
    ASSERT_EQ(shell.executed.size(), 2U);
    EXPECT_EQ(shell.executed[0].request.file, "calc.exe");
    EXPECT_EQ(shell.executed[1].request.file, program.path() + "msximg.exe");
    EXPECT_EQ(shell.helpShown, std::vector<std::string>(2, program.path() + "tp3reference.chm"));
}

// The menu's own loop runs until a timer has seen the menu: captions of what can be chosen in it.
std::string choices;
void CALLBACK lookAtMenu(HWND, UINT, UINT_PTR timer, DWORD) {
    HWND const popUp = FindWindowA("#32768", nullptr);
    if (popUp == nullptr)
        return;
    KillTimer(nullptr, timer);
    auto* const menu = std::bit_cast<HMENU>(SendMessageA(popUp, MN_GETHMENU, 0, 0));
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
        const auto position = static_cast<UINT>(i);
        std::array<char, 40> caption{};
        GetMenuStringA(menu, position, caption.data(), static_cast<int>(caption.size()), MF_BYPOSITION);
        constexpr UINT unusable = MF_GRAYED | MF_DISABLED | MF_SEPARATOR;
        if ((GetMenuState(menu, position, MF_BYPOSITION) & unusable) == 0)
            choices += std::string(caption.data()) + ",";
    }
    EndMenu();
}

TEST_F(EditorEvents, TheRightButtonPopsUpTheEditMenu) {
    start();
    LPARAM place = MAKELPARAM(500, 300); // beside any text
    const auto click = [&](UINT message, WPARAM button) {
        choices.clear();
        constexpr UINT often = 20; // milliseconds
        const UINT_PTR timer = SetTimer(nullptr, 0, often, lookAtMenu);
        SendMessageA(editorPane(0), message, button, place);
        if (message == WM_LBUTTONDOWN)
            SendMessageA(editorPane(0), WM_LBUTTONUP, 0, place);
        KillTimer(nullptr, timer);
        return choices;
    };
    OpenClipboard(nullptr);
    EmptyClipboard();
    CloseClipboard();
    EXPECT_EQ(click(WM_LBUTTONDOWN, MK_LBUTTON), "") << "other buttons do not";
    const std::string always = "Find,Find Next,Replace,";
    EXPECT_EQ(click(WM_RBUTTONDOWN, MK_RBUTTON), "Delete," + always + "Clear,Preferences,");
    form->Code1().insertText("word", {0, 0});
    SendMessageA(editorPane(0), SCI_SELECTALL, 0, 0);
    form->copyCommand();
    const auto x = SendMessageA(editorPane(0), SCI_POINTXFROMPOSITION, 0, 2);
    const auto y = SendMessageA(editorPane(0), SCI_POINTYFROMPOSITION, 0, 2);
    place = MAKELPARAM(x, y + 2);
    const std::string selected = click(WM_RBUTTONDOWN, MK_RBUTTON);
    EXPECT_EQ(selected, "Cut,Copy,Paste,Delete," + always + "Undo,Clear,Preferences,")
        << "a click on the selection leaves it";
    form->Code1().undo();
    EXPECT_EQ(click(WM_RBUTTONDOWN, MK_RBUTTON), "Paste,Delete," + always + "Redo,Clear,Preferences,");
}

} // namespace
} // namespace tavrel
