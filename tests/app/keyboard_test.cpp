// The main window by keys alone.
#include "tests/app/main_window.h"

namespace tavrel {
namespace {

struct Keyboard : test::MainWindow {
    HWND tree() { return form->TV().window(); }
    /// A key through the message loop, as Windows brings it.
    void press(HWND window, WPARAM key) {
        PostMessageA(window, WM_KEYDOWN, key, 0);
        pump();
    }
    LRESULT menuLetter(HMENU menu, char letter) {
        return SendMessageA(form->window(), WM_MENUCHAR, MAKEWPARAM(letter, MF_POPUP),
                            std::bit_cast<LPARAM>(menu));
    }
};

TEST_F(Keyboard, MenusOpenByTheirFirstLetters) {
    start();
    HMENU const bar = GetMenu(form->window());
    EXPECT_EQ(menuLetter(bar, 't'), MAKELRESULT(2, MNC_EXECUTE));
    EXPECT_EQ(menuLetter(GetSubMenu(bar, 1), 'c'), MAKELRESULT(0, MNC_SELECT)) << "Cut, Copy, Clear";
    EXPECT_EQ(menuLetter(bar, 'x'), MAKELRESULT(0, MNC_IGNORE));
}

TEST_F(Keyboard, F8GoesIntoTheTreeAndBack) {
    startWithProject();
    press(editorPane(0), VK_F8);
    EXPECT_EQ(GetFocus(), tree());
    press(tree(), VK_F8);
    EXPECT_EQ(GetFocus(), editorPane(0));
    choose(mnuShowProjectTree);
    press(editorPane(0), VK_F8);
    EXPECT_EQ(GetFocus(), editorPane(0)) << "a tree that is hidden takes no keys";
}

TEST_F(Keyboard, ArrowsInTheTreeShowFilesAndStayThere) {
    startWithProject();
    choose(keyTree);
    press(tree(), VK_DOWN);
    EXPECT_EQ(form->Code1().text(), folder.read("A.INC"));
    EXPECT_EQ(GetFocus(), tree());
    press(tree(), VK_UP);
    EXPECT_EQ(form->Code1().text(), folder.read("M.PAS"));
    EXPECT_EQ(GetFocus(), tree());
}

TEST_F(Keyboard, TheBuildsKeysWorkFromTheProgressWindow) {
    startWithProject();
    choose(mnuCompile);
    HWND const box = GetDlgItem(form->progressWindow().window(), Form2_Text1);
    ASSERT_NE(box, nullptr);
    press(box, VK_F6);
    EXPECT_EQ(processes.runs.size(), 2U);
    press(box, VK_F7);
    EXPECT_EQ(processes.runs.size(), 3U);
    press(box, VK_F1);
    EXPECT_EQ(shell.helpShown.size(), 1U);
    press(box, VK_ESCAPE);
    EXPECT_EQ(form->progressWindow().window(), nullptr);
}

bool menuSeen = false;
void CALLBACK closeMenu(HWND, UINT, UINT_PTR timer, DWORD) {
    if (FindWindowA("#32768", nullptr) == nullptr)
        return;
    KillTimer(nullptr, timer);
    menuSeen = true;
    EndMenu();
}

TEST_F(Keyboard, TheMenuKeyPopsUpTheEditMenu) {
    startWithProject();
    menuSeen = false;
    const UINT_PTR timer = SetTimer(nullptr, 0, 20, closeMenu);
    SendMessageA(form->window(), WM_CONTEXTMENU, std::bit_cast<WPARAM>(editorPane(0)), -1);
    KillTimer(nullptr, timer);
    EXPECT_TRUE(menuSeen);
    menuSeen = false;
    SendMessageA(form->window(), WM_CONTEXTMENU, std::bit_cast<WPARAM>(editorPane(0)), MAKELPARAM(9, 9));
    EXPECT_FALSE(menuSeen) << "the mouse's menu has been there already";
}

TEST_F(Keyboard, EnterInTheProjectPropertiesFollowsTheRulesOfTheFieldItIsIn) {
    startWithProject();
    whenDialogOpens("Project properties", [](HWND dialog) {
        HWND const field = GetDlgItem(dialog, Form3_Text3);
        SetFocus(field);
        SetWindowTextA(field, "4");
        PostMessageA(field, WM_KEYDOWN, VK_RETURN, 0);
    });
    choose(mnuProp);
    EXPECT_EQ(form->workspace().project.StartAddress, 0x4000);
}

TEST_F(Keyboard, LeavingAFieldOfTheProjectPropertiesByTabFillsIt) {
    startWithProject();
    std::string left;
    whenDialogOpens("Project properties", [&](HWND dialog) {
        SetFocus(GetDlgItem(dialog, Form3_Text3));
        SetDlgItemTextA(dialog, Form3_Text3, "5");
        SetFocus(GetDlgItem(dialog, Form3_Text4));
        std::array<char, 16> text{};
        GetDlgItemTextA(dialog, Form3_Text3, text.data(), static_cast<int>(text.size()));
        left = text.data();
        PostMessageA(dialog, WM_COMMAND, IDCANCEL, 0);
    });
    choose(mnuProp);
    EXPECT_EQ(left, "5000");
}

TEST_F(Keyboard, TheFontSizeListBeginsAtTheSizeInForce) {
    start();
    LRESULT item = CB_ERR;
    whenDialogOpens("Preferences", [&](HWND dialog) {
        item = SendDlgItemMessageA(dialog, Form4_cmbFontSize, CB_GETCURSEL, 0, 0);
        PostMessageA(dialog, WM_COMMAND, IDCANCEL, 0);
    });
    choose(mnupreferences);
    EXPECT_EQ(item, 2) << "8, 10, 11";
}

} // namespace
} // namespace tavrel
