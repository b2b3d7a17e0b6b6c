// The progress window over the real main window.
#include "tests/app/main_window.h"

#include <set>

namespace tavrel {
namespace {

struct Progress : test::MainWindow {
    Progress() { startWithProject(); }

    Form2& progress() { return form->progressWindow(); }
    void tick(UINT timer) { SendMessageA(progress().window(), WM_TIMER, timer, 0); }
    std::array<bool, 5> images() {
        std::array<bool, 5> visible{};
        for (int image = 0; image < 5; ++image) {
            visible.at(static_cast<std::size_t>(image)) = progress().imageVisible(image);
            HWND const control = GetDlgItem(progress().window(), Form2_Image1_0 + image);
            EXPECT_EQ((GetWindowLongA(control, GWL_STYLE) & WS_VISIBLE) != 0, progress().imageVisible(image))
                << image;
        }
        return visible;
    }
    bool isTopMost() { return (GetWindowLongA(progress().window(), GWL_EXSTYLE) & WS_EX_TOPMOST) != 0; }
    using Images = std::array<bool, 5>;
};

TEST_F(Progress, OpensInItsWorkingState) {
    progress().show();
    EXPECT_EQ(progress().text(), "Compiling Demo...");
    EXPECT_EQ(images(), (Images{true, false, false, false, false}));
    EXPECT_TRUE(progress().timer1Enabled());
    EXPECT_FALSE(progress().timer2Enabled());
    EXPECT_TRUE(isTopMost());
    std::array<char, 40> caption{};
    GetWindowTextA(progress().window(), caption.data(), static_cast<int>(caption.size()));
    EXPECT_STREQ(caption.data(), "Compilation");
    RECT owner = {};
    RECT own = {};
    GetWindowRect(form->window(), &owner);
    GetWindowRect(progress().window(), &own);
    EXPECT_NEAR((owner.left + owner.right) / 2, (own.left + own.right) / 2, 1);
    EXPECT_NEAR((owner.top + owner.bottom) / 2, (own.top + own.bottom) / 2, 1);
    DWORD first = 1;
    DWORD last = 1;
    SendDlgItemMessageA(progress().window(), Form2_Text1, EM_GETSEL, std::bit_cast<WPARAM>(&first),
                        std::bit_cast<LPARAM>(&last));
    EXPECT_EQ(first, last) << "no text is shown selected";
}

TEST_F(Progress, ItsTimersSwapTheirTwoPictures) {
    progress().show();
    tick(Form2_Timer1);
    EXPECT_EQ(images(), (Images{false, true, false, false, false}));
    tick(Form2_Timer1);
    EXPECT_EQ(images(), (Images{true, false, false, false, false}));
    progress().setImageVisible(0, false);
    progress().setImageVisible(3, true);
    tick(Form2_Timer2);
    EXPECT_EQ(images(), (Images{false, false, true, false, false}));
    tick(Form2_Timer1);
    EXPECT_EQ(images(), (Images{true, true, true, false, false})) << "the first timer goes on in an error";
    tick(Form2_Timer1);
    tick(Form2_Timer2);
    EXPECT_EQ(images(), (Images{false, false, false, true, false}));
}

TEST_F(Progress, OnlyEscAndTheCloseBoxCloseIt) {
    for (const bool inText : {false, true}) {
        progress().show();
        HWND const target = inText ? GetDlgItem(progress().window(), Form2_Text1) : progress().window();
        for (const WPARAM key : {WPARAM{'A'}, WPARAM{VK_F6}, WPARAM{VK_SPACE}}) {
            PostMessageA(target, WM_KEYDOWN, key, 0);
            pump();
            EXPECT_NE(progress().window(), nullptr) << key;
        }
        PostMessageA(target, WM_KEYDOWN, VK_ESCAPE, 0);
        pump();
        EXPECT_EQ(progress().window(), nullptr);
    }
    progress().show();
    SendMessageA(progress().window(), WM_CLOSE, 0, 0);
    EXPECT_EQ(progress().window(), nullptr);
}

TEST_F(Progress, AnyWriteOpensItAgain) {
    progress().setImageVisible(3, true);
    EXPECT_NE(progress().window(), nullptr);
    EXPECT_EQ(progress().text(), "Compiling Demo...");
    progress().close();
    progress().setText("words");
    EXPECT_EQ(progress().text(), "words");
    EXPECT_TRUE(progress().timer1Enabled());
}

TEST_F(Progress, AnOpenWindowIsUsedAgainAsItIs) {
    progress().show();
    HWND const first = progress().window();
    progress().setText("of the build before");
    progress().setImageVisible(4, true);
    progress().enableTimer1(false);
    progress().show();
    EXPECT_EQ(progress().window(), first);
    EXPECT_EQ(progress().text(), "of the build before");
    EXPECT_TRUE(progress().imageVisible(4));
    EXPECT_FALSE(progress().timer1Enabled());
}

TEST_F(Progress, CtrlBreakEndsWhatIsWaitedForWhereverTheFocusIs) {
    progress().show();
    int expected = 0;
    for (HWND const target :
         {form->window(), editorPane(0), progress().window(), GetDlgItem(progress().window(), Form2_Text1)}) {
        PostMessageA(target, WM_KEYDOWN, VK_CANCEL, 0);
        pump();
        EXPECT_EQ(processes.brokenOff, ++expected);
    }
    EXPECT_NE(progress().window(), nullptr) << "it stays, for what there is to say";
    PostMessageA(progress().window(), WM_KEYDOWN, VK_ESCAPE, 0);
    pump();
    EXPECT_EQ(processes.brokenOff, expected) << "Esc only closes the window";
}

TEST_F(Progress, ARefusedFolderIsToldThere) {
    folder.write("BIG.DAT", std::string(737'280, 'x'));
    choose(mnuCompile);
    EXPECT_TRUE(processes.runs.empty());
    EXPECT_EQ(progress().text(),
              "The project directory \r\n" + folder.path() + "\r\ncannot have more than 720kb of files");
    EXPECT_EQ(images(), (Images{false, false, false, true, false}));
    EXPECT_TRUE(progress().timer1Enabled()) << "it was never switched off there";
    EXPECT_TRUE(progress().timer2Enabled());
}

TEST_F(Progress, AScrollBarComesOnlyWithMoreTextThanFits) {
    const auto scrolls = [this] {
        return (GetWindowLongA(GetDlgItem(progress().window(), Form2_Text1), GWL_STYLE) & WS_VSCROLL) != 0;
    };
    progress().show();
    EXPECT_FALSE(scrolls());
    std::string many;
    for (int i = 0; i < 40; ++i)
        many += "line\r\n";
    progress().setText(many);
    EXPECT_TRUE(scrolls());
    progress().setText("one line");
    EXPECT_FALSE(scrolls());
}

TEST_F(Progress, ItsPicturesDifferAndKeepTheirSize) {
    std::set<std::string> different;
    for (int image = 0; image < 5; ++image) {
        HBITMAP const picture = makeProgressPicture(image, 52, RGB(240, 240, 240));
        DIBSECTION section = {};
        ASSERT_NE(GetObjectA(picture, sizeof section, &section), 0) << image;
        EXPECT_EQ(section.dsBm.bmWidth, 52);
        EXPECT_EQ(section.dsBm.bmHeight, 52);
        different.insert(
            std::string(static_cast<const char*>(section.dsBm.bmBits), std::size_t{52} * 52 * 4));
        DeleteObject(picture);
    }
    EXPECT_EQ(different.size(), 5U);
}

} // namespace
} // namespace tavrel
