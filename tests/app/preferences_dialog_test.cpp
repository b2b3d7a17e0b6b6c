// The preferences, opened from the main window.
#include "tests/app/main_window.h"

#include <utility>
#include <vector>

namespace tavrel {
namespace {

struct PreferencesDialog : test::MainWindow {
    void with(std::function<void(HWND)> work) {
        whenDialogOpens("Preferences", std::move(work));
        choose(mnupreferences);
    }
    static void press(HWND dialog, int button) { SendDlgItemMessageA(dialog, button, BM_CLICK, 0, 0); }
    static std::string text(HWND dialog, int field) {
        std::string text(256, '\0');
        text.resize(GetDlgItemTextA(dialog, field, text.data(), static_cast<int>(text.size())));
        return text;
    }
    static void chooseSize(HWND dialog, const char* size) {
        HWND const list = GetDlgItem(dialog, Form4_cmbFontSize);
        const LRESULT item =
            SendMessageA(list, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), std::bit_cast<LPARAM>(size));
        SendMessageA(list, CB_SETCURSEL, static_cast<WPARAM>(item), 0);
        notify(dialog, CBN_SELCHANGE);
    }
    static void typeSize(HWND dialog, const char* size) {
        SetDlgItemTextA(dialog, Form4_cmbFontSize, size);
        notify(dialog, CBN_EDITCHANGE);
    }
    static void notify(HWND dialog, WORD notification) {
        SendMessageA(dialog, WM_COMMAND, MAKEWPARAM(Form4_cmbFontSize, notification),
                     std::bit_cast<LPARAM>(GetDlgItem(dialog, Form4_cmbFontSize)));
    }
    LRESULT editorFontSize() { return SendMessageA(editorPane(0), SCI_STYLEGETSIZE, STYLE_DEFAULT, 0); }
};

TEST_F(PreferencesDialog, ShowsTheSettings) {
    start();
    with([&](HWND dialog) {
        EXPECT_EQ(text(dialog, Form4_Text2), "-diska %dsk -msx2");
        EXPECT_EQ(text(dialog, Form4_Text3), program.path() + "dsk\\");
        EXPECT_EQ(text(dialog, Form4_cmbFontSize), "11");
        const std::vector<std::pair<int, const char*>> captions = {
            {Form4_Frame1, " Emulator"},
            {Form4_Label1, "Emulator's path:"},
            {Form4_Command3, "Browse"},
            {Form4_Label2, "Command line"},
            {Form4_Frame2, "Other"},
            {Form4_Label3, "Disk image location"},
            {Form4_Command4, "Browse"},
            {Form4_Label4, "Code font size:"},
            {Form4_Check1, "Register .tpj extension with Tavrel"},
            {Form4_Check2, "Auto-save when changing files"},
            {Form4_Check3, "Don't open the new project dialog at startup"},
            {Form4_Chktooltip, "Use function auto-tooltip"},
            {Form4_Command1, "Ok"},
            {Form4_Command2, "Cancel"}};
        for (const auto& [control, caption] : captions)
            EXPECT_EQ(text(dialog, control), caption);
        EXPECT_EQ(IsDlgButtonChecked(dialog, Form4_Check3), BST_CHECKED)
            << "the tests start without that dialog";
        EXPECT_EQ(IsDlgButtonChecked(dialog, Form4_Chktooltip), BST_CHECKED);
        std::string sizes;
        for (int i = 0; i < SendDlgItemMessageA(dialog, Form4_cmbFontSize, CB_GETCOUNT, 0, 0); ++i) {
            std::array<char, 16> size{};
            SendDlgItemMessageA(dialog, Form4_cmbFontSize, CB_GETLBTEXT, static_cast<WPARAM>(i),
                                std::bit_cast<LPARAM>(size.data()));
            sizes += std::string(size.data()) + " ";
        }
        EXPECT_EQ(sizes, "8 10 11 12 14 15 16 17 18 20 ");
        RECT own = {};
        RECT owner = {};
        GetWindowRect(dialog, &own);
        GetWindowRect(form->window(), &owner);
        EXPECT_NEAR((owner.left + owner.right) / 2, (own.left + own.right) / 2, 1);
        EXPECT_NEAR((owner.top + owner.bottom) / 2, (own.top + own.bottom) / 2, 1);
        press(dialog, Form4_Command2);
    });
}

TEST_F(PreferencesDialog, OkStoresAndRefillsEmptiedFields) {
    start();
    with([&](HWND dialog) {
        SetDlgItemTextA(dialog, Form4_Text1, "C:\\emu.exe");
        SetDlgItemTextA(dialog, Form4_Text2, "");
        SetDlgItemTextA(dialog, Form4_Text3, "");
        press(dialog, Form4_Check1);
        press(dialog, Form4_Check3);
        press(dialog, Form4_Command1);
    });
    const Settings stored = readSettings(program.path());
    EXPECT_EQ(stored.EmulatorPath, "C:\\emu.exe");
    EXPECT_EQ(stored.EmulatorArgs, "-diska %dsk -msx2");
    EXPECT_EQ(stored.DiskImageDir, program.path() + "dsk\\");
    EXPECT_EQ(stored.OpenNewProjectAtStart, storedTrue);
    EXPECT_EQ(stored.RegisterTpj, storedTrue);
    EXPECT_EQ(registry.written.size(), 6U) << "saving applies the file association";
}

TEST_F(PreferencesDialog, AChosenFontSizeStaysAfterCancel) {
    start();
    with([&](HWND dialog) {
        chooseSize(dialog, "20");
        EXPECT_EQ(editorFontSize(), 20);
        press(dialog, Form4_Command2);
    });
    EXPECT_EQ(editorFontSize(), 20);
    EXPECT_EQ(form->workspace().settings.FontSize, 20);
    EXPECT_EQ(readSettings(program.path()).FontSize, 11) << "not yet stored";
}

TEST_F(PreferencesDialog, ATypedFontSizeThatIsNoNumberIsReported) {
    start();
    with([&](HWND dialog) {
        typeSize(dialog, "13");
        EXPECT_EQ(editorFontSize(), 13);
        typeSize(dialog, "x");
        ASSERT_EQ(messages.shown.size(), 1U);
        EXPECT_EQ(messages.shown[0].text, "Type mismatch\r\nx");
        press(dialog, Form4_Command1);
        EXPECT_EQ(messages.shown.size(), 2U);
        EXPECT_TRUE(IsWindow(dialog)) << "the user can mend it";
        press(dialog, Form4_Command2);
    });
    EXPECT_EQ(editorFontSize(), 13);
}

TEST_F(PreferencesDialog, CancelAfterAnOkThatFailedKeepsTheRecord) {
    start();
    const Settings former = form->workspace().settings;
    with([&](HWND dialog) {
        SetDlgItemTextA(dialog, Form4_Text1, "C:\\emu.exe");
        press(dialog, Form4_Check2);
        SetDlgItemTextA(dialog, Form4_cmbFontSize, "x");
        press(dialog, Form4_Command1);
        ASSERT_EQ(messages.shown.size(), 1U);
        press(dialog, Form4_Command2);
    });
    EXPECT_EQ(form->workspace().settings, former);
}

TEST_F(PreferencesDialog, CancelAfterAWriteThatFailedKeepsTheRecord) {
    start();
    Settings former = form->workspace().settings;
    const std::string file = program.path() + "config.cfg";
    SetFileAttributesA(file.c_str(), FILE_ATTRIBUTE_READONLY);
    with([&](HWND dialog) {
        SetDlgItemTextA(dialog, Form4_Text1, "C:\\emu.exe");
        typeSize(dialog, "13");
        press(dialog, Form4_Command1);
        ASSERT_EQ(messages.shown.size(), 1U);
        EXPECT_NE(messages.shown[0].text.find("folder of your own"), std::string::npos) << "the way out";
        press(dialog, Form4_Command1);
        ASSERT_EQ(messages.shown.size(), 2U);
        EXPECT_EQ(messages.shown[1].text.find("folder of your own"), std::string::npos) << "said once";
        press(dialog, Form4_Command2);
    });
    SetFileAttributesA(file.c_str(), FILE_ATTRIBUTE_NORMAL);
    former.FontSize = 13; // in force at once
    EXPECT_EQ(form->workspace().settings, former);
}

TEST_F(PreferencesDialog, OkShowsTheRefilledFields) {
    start();
    std::string args;
    with([&](HWND dialog) {
        SetDlgItemTextA(dialog, Form4_Text2, "");
        SetDlgItemTextA(dialog, Form4_cmbFontSize, "x"); // so that the dialog stays to be looked at
        press(dialog, Form4_Command1);
        args = text(dialog, Form4_Text2);
        press(dialog, Form4_Command2);
    });
    EXPECT_EQ(args, "-diska %dsk -msx2");
}

TEST_F(PreferencesDialog, BrowsingFillsTheFields) {
    start();
    with([&](HWND dialog) {
        dialogs.answer = "C:\\Img";
        press(dialog, Form4_Command4);
        EXPECT_EQ(text(dialog, Form4_Text3), "C:\\Img\\");
        dialogs.answer = "C:\\";
        press(dialog, Form4_Command4);
        EXPECT_EQ(text(dialog, Form4_Text3), "C:\\");
        dialogs.answer = "C:\\emu.exe";
        press(dialog, Form4_Command3);
        EXPECT_EQ(text(dialog, Form4_Text1), "C:\\emu.exe");
        dialogs.answer = "";
        press(dialog, Form4_Command3);
        press(dialog, Form4_Command4);
        EXPECT_EQ(text(dialog, Form4_Text1), "C:\\emu.exe");
        EXPECT_EQ(text(dialog, Form4_Text3), "C:\\");
        press(dialog, Form4_Command2);
    });
    ASSERT_EQ(dialogs.opened.size(), 2U);
    EXPECT_EQ(dialogs.opened[0].title, "Selectr emulator");
    EXPECT_EQ(dialogs.opened[0].filter, "*.exe");
    EXPECT_EQ(dialogs.opened[0].initialFolder, program.path() + "emulator\\");
    EXPECT_EQ(dialogs.opened[1].initialFolder, "C:\\"); // beside the one that was chosen first
}

} // namespace
} // namespace tavrel
