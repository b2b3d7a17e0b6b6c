// The New Project dialog, opened from the main window.
#include "project/form5.h"
#include "tests/app/main_window.h"

namespace tavrel {
namespace {

struct NewProjectDialog : test::MainWindow {
    const std::vector<std::string> templates = {"DEMO", "Empty"};

    std::string show(std::function<void(HWND)> work) {
        whenDialogOpens("New Project", std::move(work));
        return showNewProjectDialog(form->window(), templates);
    }
    static void select(HWND dialog, int item) {
        ListView_SetItemState(GetDlgItem(dialog, Form5_LVProjects), item, LVIS_SELECTED, LVIS_SELECTED);
    }
    static void press(HWND dialog, int button) { SendDlgItemMessageA(dialog, button, BM_CLICK, 0, 0); }
};

TEST_F(NewProjectDialog, OpenGivesTheCheckBoxAndTheName) {
    start();
    EXPECT_EQ(show([](HWND dialog) { press(dialog, Form5_Command1); }), "0DEMO")
        << "the first one is selected";
    EXPECT_EQ(show([](HWND dialog) {
                  select(dialog, 1);
                  CheckDlgButton(dialog, Form5_Check1, BST_CHECKED);
                  press(dialog, Form5_Command1);
              }),
              "1Empty");
}

TEST_F(NewProjectDialog, CancelGivesNothing) {
    start();
    EXPECT_EQ(show([](HWND dialog) { press(dialog, Form5_Command2); }), "");
    EXPECT_EQ(show([](HWND dialog) { SendMessageA(dialog, WM_CLOSE, 0, 0); }), "");
}

TEST_F(NewProjectDialog, ADoubleClickGivesTheNameAlone) {
    start();
    EXPECT_EQ(show([](HWND dialog) {
                  HWND const list = GetDlgItem(dialog, Form5_LVProjects);
                  RECT place = {};
                  ListView_GetItemRect(list, 1, &place, LVIR_ICON);
                  const LPARAM point =
                      MAKELPARAM((place.left + place.right) / 2, (place.top + place.bottom) / 2);
                  SendMessageA(list, WM_LBUTTONDBLCLK, MK_LBUTTON, point);
              }),
              "Empty");
}

TEST_F(NewProjectDialog, WithoutASelectionOpenIsOff) {
    start();
    EXPECT_EQ(show([](HWND dialog) {
                  HWND const list = GetDlgItem(dialog, Form5_LVProjects);
                  EXPECT_EQ(ListView_GetItemCount(list), 2);
                  ListView_SetItemState(list, -1, 0, LVIS_SELECTED);
                  EXPECT_FALSE(IsWindowEnabled(GetDlgItem(dialog, Form5_Command1)));
                  press(dialog, Form5_Command2);
              }),
              "");
}

TEST_F(NewProjectDialog, OpensAtStartUpAndCreatesAProject) {
    writeSettings(program.path(), SetDefaultSettings(program.path()));
    program.makeFolder("projects\\DEMO");
    program.write("projects\\DEMO\\DEMO.PAS", "program Demo;\r\nbegin end.\r\n");
    dialogs.answer = folder.path() + "game";
    whenDialogOpens("New Project", [](HWND dialog) { press(dialog, Form5_Command1); });
    start();
    EXPECT_EQ(form->Code1().text(), "program Demo;\r\nbegin end.\r\n");
    EXPECT_EQ(panel(2), "Current View: GAME.PAS");
    EXPECT_TRUE(folder.has("game.tpj"));
    EXPECT_TRUE(form->commandEnabled(mnuCompile));
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(NewProjectDialog, StaysAwayForAnyOtherArgument) {
    writeSettings(program.path(), SetDefaultSettings(program.path()));
    start(folder.path() + "A.INC");
    EXPECT_TRUE(IsWindowEnabled(form->window()));
    EXPECT_FALSE(form->commandEnabled(mnuCompile));
}

} // namespace
} // namespace tavrel
