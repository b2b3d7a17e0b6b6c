// Every dialog by keyboard alone: where the focus starts, the order of Tab, what Enter and Esc do.
#include "tests/app/main_window.h"

#include <vector>

namespace tavrel {
namespace {

struct DialogKeys : test::MainWindow {
    /// Controls in the order of Tab, beginning with the one that has the focus first.
    static std::vector<int> tabOrder(HWND dialog) {
        std::vector<int> order;
        HWND const first = GetFocus();
        HWND control = first;
        do {
            HWND const parent = GetParent(control); // a combo box has the focus in the field inside
            order.push_back(GetDlgCtrlID(parent == dialog ? control : parent));
            control = GetNextDlgTabItem(dialog, parent == dialog ? control : parent, FALSE);
        } while (control != nullptr && control != first && order.size() < 50);
        return order;
    }
    static int defaultButton(HWND dialog) {
        const LRESULT answer = SendMessageA(dialog, DM_GETDEFID, 0, 0);
        return HIWORD(answer) == DC_HASDEFID ? LOWORD(answer) : 0;
    }
    /// The words that a screen reader says for a field: the label before it.
    static std::string labelOf(HWND dialog, int field) {
        std::string text(100, '\0');
        HWND const label = GetWindow(GetDlgItem(dialog, field), GW_HWNDPREV);
        text.resize(
            static_cast<std::size_t>(GetWindowTextA(label, text.data(), static_cast<int>(text.size()))));
        return text;
    }
    /// A key that the dialog's own message loop gets.
    static void press(HWND dialog, WPARAM key) {
        HWND const focused = GetFocus();
        PostMessageA(focused != nullptr && IsChild(dialog, focused) ? focused : dialog, WM_KEYDOWN, key, 0);
    }
    void check(const char* caption, UINT command, const std::function<void(HWND)>& look) {
        int seen = 0;
        whenDialogOpens(caption, [&](HWND dialog) {
            ++seen;
            look(dialog);
            press(dialog, VK_ESCAPE);
        });
        choose(command);
        stopWaitingForDialog();
        EXPECT_EQ(seen, 1) << caption;
        EXPECT_EQ(FindWindowA("#32770", caption), nullptr) << "Esc closes " << caption;
    }
};

TEST_F(DialogKeys, Preferences) {
    start();
    check("Preferences", mnupreferences, [](HWND dialog) {
        EXPECT_EQ(tabOrder(dialog),
                  (std::vector<int>{Form4_Text1, Form4_Command3, Form4_Text2, Form4_Text3, Form4_Command4,
                                    Form4_cmbFontSize, Form4_Check1, Form4_Check2, Form4_Check3,
                                    Form4_Chktooltip, Form4_Command1, Form4_Command2}));
        EXPECT_EQ(defaultButton(dialog), Form4_Command1);
        EXPECT_EQ(labelOf(dialog, Form4_Text1), "Emulator's path:");
        EXPECT_EQ(labelOf(dialog, Form4_Text2), "Command line");
        EXPECT_EQ(labelOf(dialog, Form4_Text3), "Disk image location");
        EXPECT_EQ(labelOf(dialog, Form4_cmbFontSize), "Code font size:");
    });
}

TEST_F(DialogKeys, NewProject) {
    program.makeFolder("projects\\Empty");
    start();
    check("New Project", mnuNew, [](HWND dialog) {
        ListView_SetItemState(GetDlgItem(dialog, Form5_LVProjects), 0, LVIS_SELECTED, LVIS_SELECTED);
        EXPECT_EQ(tabOrder(dialog),
                  (std::vector<int>{Form5_LVProjects, Form5_Check1, Form5_Command1, Form5_Command2}));
        EXPECT_EQ(defaultButton(dialog), Form5_Command1);
    });
}

TEST_F(DialogKeys, ProjectProperties) {
    startWithProject();
    check("Project properties", mnuProp, [](HWND dialog) {
        EXPECT_EQ(tabOrder(dialog),
                  (std::vector<int>{Form3_Text1, Form3_Text3, Form3_Text4, Form3_Command1, Form3_Command2}));
        EXPECT_EQ(defaultButton(dialog), Form3_Command1);
        EXPECT_EQ(labelOf(dialog, Form3_Text1), "Project name:");
    });
}

TEST_F(DialogKeys, GoToLine) {
    start();
    check("Go to line", keyGoToLine, [](HWND dialog) {
        EXPECT_EQ(tabOrder(dialog), (std::vector<int>{GoToLine_Number, IDOK, IDCANCEL}));
        EXPECT_EQ(defaultButton(dialog), IDOK);
        EXPECT_EQ(labelOf(dialog, GoToLine_Number), "Line number (1 - 1):");
    });
}

TEST_F(DialogKeys, PaletteConverter) {
    start();
    check("Palette Converter", mnuConvPal, [](HWND dialog) {
        EXPECT_EQ(tabOrder(dialog), (std::vector<int>{frmConvPal_Text1, frmConvPal_Command1, frmConvPal_Text2,
                                                      frmConvPal_Command2, frmConvPal_Command3,
                                                      frmConvPal_Command4, frmConvPal_Command5, IDCANCEL}));
        EXPECT_EQ(defaultButton(dialog), frmConvPal_Command2);
        EXPECT_EQ(labelOf(dialog, frmConvPal_Text1),
                  "Palette of a paint program (.pal) or 16-colour image (.bmp):");
    });
}

TEST_F(DialogKeys, AboutAndHistory) {
    start();
    choose(mnuAbout);
    HWND const about = form->aboutDialog().window();
    EXPECT_EQ(tabOrder(about), (std::vector<int>{Form6_History, Form6_Label3}));
    program.write("history.txt", "One\r\n");
    PostMessageA(GetDlgItem(about, Form6_History), WM_KEYDOWN, VK_SPACE, 0);
    PostMessageA(GetDlgItem(about, Form6_History), WM_KEYUP, VK_SPACE, 0);
    const ULONGLONG end = GetTickCount64() + 5000;
    while (form->historyWindow().window() == nullptr && GetTickCount64() < end)
        pump();
    HWND const history = form->historyWindow().window();
    ASSERT_NE(history, nullptr) << "the space bar presses the button";
    EXPECT_EQ(tabOrder(history), std::vector<int>{Form7_Text1});
    press(history, VK_ESCAPE);
    pump();
    EXPECT_EQ(form->historyWindow().window(), nullptr);
    EXPECT_EQ(form->aboutDialog().window(), about);
}

TEST_F(DialogKeys, TheShortcutsOfTheMainWindowWorkWhileTheHistoryIsOpen) {
    program.write("history.txt", "One\r\n");
    startWithProject();
    choose(mnuAbout);
    SendMessageA(form->aboutDialog().window(), WM_COMMAND, Form6_History, 0);
    pump();
    ASSERT_NE(form->historyWindow().window(), nullptr);
    EXPECT_TRUE(IsWindowEnabled(form->window()));
    SetFocus(editorPane(0));
    PostMessageA(editorPane(0), WM_KEYDOWN, VK_F6, 0);
    pump();
    EXPECT_EQ(processes.runs.size(), 1U) << "F6 compiles";
    form.reset();
    EXPECT_EQ(FindWindowA("#32770", "History"), nullptr);
}

TEST_F(DialogKeys, EnterInTheGoToLineDialogGoesThere) {
    start();
    form->Code1().setText("one\r\ntwo");
    whenDialogOpens("Go to line", [](HWND dialog) {
        SetDlgItemTextA(dialog, GoToLine_Number, "2");
        press(dialog, VK_RETURN);
    });
    choose(keyGoToLine);
    EXPECT_EQ(form->Code1().caret(), (EditorPosition{1, 0}));
}

TEST_F(DialogKeys, EnterInThePreferencesStoresThem) {
    start();
    whenDialogOpens("Preferences", [](HWND dialog) {
        SetDlgItemTextA(dialog, Form4_Text1, "C:\\emu.exe");
        press(dialog, VK_RETURN);
    });
    choose(mnupreferences);
    EXPECT_EQ(readSettings(program.path()).EmulatorPath, "C:\\emu.exe");
}

TEST_F(DialogKeys, EscClosesTheAboutBox) {
    start();
    choose(mnuAbout);
    HWND const about = form->aboutDialog().window();
    press(about, VK_ESCAPE);
    pump();
    EXPECT_EQ(form->aboutDialog().window(), nullptr);
}

} // namespace
} // namespace tavrel
