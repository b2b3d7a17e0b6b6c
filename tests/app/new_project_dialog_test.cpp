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

TEST_F(NewProjectDialog, TwoHundredTemplatesAreAllThereInOrder) {
    start();
    std::vector<std::string> many;
    for (int i = 0; i < 200; ++i)
        many.push_back("Template " + std::to_string(1000 + i));
    whenDialogOpens("New Project", [&](HWND dialog) {
        HWND const list = GetDlgItem(dialog, Form5_LVProjects);
        EXPECT_EQ(ListView_GetItemCount(list), 200);
        std::array<char, 40> text{};
        LVITEMA item = {};
        item.pszText = text.data();
        item.cchTextMax = static_cast<int>(text.size());
        SendMessageA(list, LVM_GETITEMTEXTA, 199, std::bit_cast<LPARAM>(&item));
        EXPECT_STREQ(text.data(), "Template 1199");
        select(dialog, 150);
        ListView_EnsureVisible(list, 150, FALSE);
        RECT place = {};
        ListView_GetItemRect(list, 150, &place, LVIR_BOUNDS);
        RECT client = {};
        GetClientRect(list, &client);
        EXPECT_GE(place.top, 0);
        EXPECT_LE(place.bottom, client.bottom);
        EXPECT_LE(place.right, client.right) << "rows wrap, so that there is nothing to scroll sideways";
        press(dialog, Form5_Command1);
    });
    EXPECT_EQ(showNewProjectDialog(form->window(), many), "0Template 1150");
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
