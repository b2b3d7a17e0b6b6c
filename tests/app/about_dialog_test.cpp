// The About dialog and the history, opened from the main window.
#include "tests/app/main_window.h"

namespace tavrel {
namespace {

struct AboutDialog : test::MainWindow {
    HWND about() { return form->aboutDialog().window(); }
    HWND link() { return GetDlgItem(about(), Form6_Label2); }
    void openAbout() {
        start();
        choose(mnuAbout);
        ASSERT_NE(about(), nullptr);
    }
    COLORREF colour() { return form->aboutDialog().linkColour(); }
    bool underlined() { return form->aboutDialog().linkUnderlined(); }
};

TEST_F(AboutDialog, IsNotModal) {
    openAbout();
    EXPECT_TRUE(IsWindowEnabled(form->window()));
    EXPECT_EQ(colour(), 0U);
    EXPECT_FALSE(underlined());
    HWND const first = about();
    choose(mnuAbout);
    EXPECT_EQ(about(), first);
}

TEST_F(AboutDialog, TheLinkFollowsTheMouse) {
    openAbout();
    SetCursorPos(1, 1);
    SendMessageA(link(), WM_LBUTTONDOWN, MK_LBUTTON, 0);
    EXPECT_EQ(colour(), 0U) << "pressed only out of the hover look";
    SendMessageA(link(), WM_MOUSEMOVE, 0, 0);
    EXPECT_EQ(colour(), 0xFF0000U);
    EXPECT_TRUE(underlined());
    SendMessageA(link(), WM_LBUTTONDOWN, MK_LBUTTON, 0);
    EXPECT_EQ(colour(), 255U);
    EXPECT_TRUE(underlined());
    SendMessageA(about(), WM_TIMER, Form6_Timer1, 0);
    EXPECT_EQ(colour(), 0U) << "the mouse is elsewhere";
    EXPECT_FALSE(underlined());
}

TEST_F(AboutDialog, TheLinkOpensThePage) {
    openAbout();
    SendMessageA(link(), WM_LBUTTONUP, 0, 0);
    ASSERT_EQ(shell.executed.size(), 1U);
    EXPECT_EQ(shell.executed[0].owner, about());
    EXPECT_EQ(shell.executed[0].request, ShellRequest{makersWebPage});
    EXPECT_EQ(shell.executed[0].request.parameters, "1");
}

TEST_F(AboutDialog, TheClosingLabelCloses) {
    openAbout();
    SendMessageA(GetDlgItem(about(), Form6_Label3), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(3, 3));
    SendMessageA(GetDlgItem(about(), Form6_Label3), WM_LBUTTONUP, 0, MAKELPARAM(3, 3));
    pump();
    EXPECT_EQ(about(), nullptr);
    choose(mnuAbout);
    EXPECT_NE(about(), nullptr) << "it can be opened again";
}

TEST_F(AboutDialog, TheHistoryShowsItsFile) {
    program.write("history.txt", "Tavrel 0.1\r\n- First\r\n");
    openAbout();
    SendDlgItemMessageA(about(), Form6_History, BM_CLICK, 0, 0);
    HWND const history = form->historyWindow().window();
    ASSERT_NE(history, nullptr);
    std::string shown(64, '\0');
    shown.resize(GetDlgItemTextA(history, Form7_Text1, shown.data(), static_cast<int>(shown.size())));
    EXPECT_EQ(shown, "Tavrel 0.1\r\n- First\r\n");
    EXPECT_EQ(GetFocus(), GetDlgItem(history, Form7_Text1));
    SendDlgItemMessageA(about(), Form6_History, BM_CLICK, 0, 0);
    EXPECT_EQ(form->historyWindow().window(), history) << "one window";
    SendMessageA(history, WM_CLOSE, 0, 0);
    EXPECT_EQ(form->historyWindow().window(), nullptr);
}

TEST_F(AboutDialog, AMissingHistoryIsReported) {
    openAbout();
    SendDlgItemMessageA(about(), Form6_History, BM_CLICK, 0, 0);
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(messages.shown[0].text, "File not found\r\n" + program.path() + "history.txt");
}

} // namespace
} // namespace tavrel
