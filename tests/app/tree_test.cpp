// The project tree and the editor: what is selected is the file in the editor, however it came about.
#include "tests/app/main_window.h"

#include <cstring>

namespace tavrel {
namespace {

struct Tree : test::MainWindow {
    Tree() {
        folder.write("B.INC", "b\r\n");
        folder.write("C.INC", "c\r\n");
    }
    HWND tree() { return form->TV().window(); }
    RECT textOf(std::size_t node) {
        RECT place = {};
        HTREEITEM item = form->TV().item(node);
        std::memcpy(&place, &item, sizeof item);
        EXPECT_NE(SendMessageA(tree(), TVM_GETITEMRECT, TRUE, std::bit_cast<LPARAM>(&place)), 0) << node;
        return place;
    }
    /// Presses the left button there as a user does: the pointer is there too.
    void press(POINT place) {
        POINT screen = place;
        ClientToScreen(tree(), &screen);
        SetCursorPos(screen.x, screen.y);
        PostMessageA(tree(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(place.x, place.y));
        PostMessageA(tree(), WM_LBUTTONUP, 0, MAKELPARAM(place.x, place.y));
        pump();
    }
    void click(std::size_t node) {
        const RECT text = textOf(node);
        press({(text.left + text.right) / 2, (text.top + text.bottom) / 2});
    }
    /// The box with the plus or minus sign.
    void pressButtonOf(std::size_t node) {
        const RECT text = textOf(node);
        for (LONG x = 0; x < text.left; ++x) {
            TVHITTESTINFO hit = {};
            hit.pt = {x, (text.top + text.bottom) / 2};
            SendMessageA(tree(), TVM_HITTEST, 0, std::bit_cast<LPARAM>(&hit));
            if ((hit.flags & TVHT_ONITEMBUTTON) == 0)
                continue;
            press({x + 2, hit.pt.y});
            return;
        }
        ADD_FAILURE() << "no button";
    }
    bool isExpanded(std::size_t node) {
        TVITEMA item = {};
        item.mask = TVIF_STATE | TVIF_HANDLE;
        item.stateMask = TVIS_EXPANDED;
        item.hItem = form->TV().item(node);
        SendMessageA(tree(), TVM_GETITEMA, 0, std::bit_cast<LPARAM>(&item));
        return (item.state & TVIS_EXPANDED) != 0;
    }
    /// Tree, record, status line and editor agree.
    void expectShown(std::size_t node, const char* file) {
        const Workspace& workspace = form->workspace();
        EXPECT_EQ(form->Code1().text(), folder.read(file));
        EXPECT_EQ(workspace.tree.selected(), node);
        EXPECT_EQ(workspace.project.SelectedKey, workspace.tree.node(node).key);
        EXPECT_EQ(SendMessageA(tree(), TVM_GETNEXTITEM, TVGN_CARET, 0),
                  std::bit_cast<LRESULT>(form->TV().item(node)));
        EXPECT_EQ(panel(2), std::string("Current View: ") + file);
    }
};

TEST_F(Tree, IncludesComeUpInSight) {
    folder.write("A.INC", "{$I B.INC}\r\n");
    startWithProject();
    ASSERT_EQ(form->workspace().tree.count(), 4U);
    for (const std::size_t node : {1U, 2U, 3U}) {
        EXPECT_TRUE(isExpanded(node)) << node;
        EXPECT_EQ(form->workspace().tree.node(node).image, TreeImage::expanded) << node;
    }
    EXPECT_EQ(form->workspace().tree.node(4).image, TreeImage::includeFile);
}

TEST_F(Tree, AClickShowsTheFile) {
    startWithProject();
    click(3);
    expectShown(3, "A.INC");
    click(2);
    expectShown(2, "M.PAS");
}

TEST_F(Tree, CollapsingAndExpandingSwapThePicture) {
    startWithProject();
    pressButtonOf(2);
    EXPECT_FALSE(isExpanded(2));
    EXPECT_EQ(form->workspace().tree.node(2).image, TreeImage::collapsed);
    pressButtonOf(2);
    EXPECT_TRUE(isExpanded(2));
    EXPECT_EQ(form->workspace().tree.node(2).image, TreeImage::expanded);
    expectShown(2, "M.PAS");
}

TEST_F(Tree, CollapsingAboveTheSelectedFileShowsTheFileThatIsSelectedThen) {
    startWithProject();
    click(3);
    pressButtonOf(2);
    expectShown(2, "M.PAS");
}

TEST_F(Tree, CancellingTheQuestionOfACollapseGoesBack) {
    startWithProject();
    click(3);
    form->Code1().insertText("typed", {0, 0});
    messages.answers = {Answer::cancel};
    pressButtonOf(2);
    EXPECT_EQ(messages.shown.size(), 1U) << "one question";
    EXPECT_EQ(form->workspace().tree.selected(), 3U);
    EXPECT_EQ(panel(2), "Current View: A.INC");
    choose(mnuSaveFile);
    EXPECT_EQ(folder.read("A.INC"), "typedone\r\ntwo\r\n");
    EXPECT_EQ(folder.read("M.PAS"), "program M;\r\n{$I A.INC}\r\nbegin end.\r\n");
}

TEST_F(Tree, AClickOnTheNodeThatIsSelectedAlreadyShowsItsFile) {
    startWithProject();
    click(3);
    form->workspace().tree.select(2); // selected by the program, the editor keeps its file
    EXPECT_EQ(form->Code1().text(), folder.read("A.INC"));
    click(2);
    expectShown(2, "M.PAS");
}

TEST_F(Tree, AClickIsOneChoice) {
    startWithProject();
    form->Code1().insertText("typed", {0, 0});
    messages.answers = {Answer::cancel, Answer::cancel};
    click(3);
    EXPECT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(form->workspace().tree.selected(), 2U);
    messages.shown.clear();
    click(3);
    EXPECT_EQ(messages.shown.size(), 1U) << "and the next click another one";
}

TEST_F(Tree, AVanishedIncludeLeavesTheNodeOfTheEditorsFileSelected) {
    startWithProject();
    deleteFile(folder.path() + "A.INC");
    click(3);
    expectShown(2, "M.PAS");
    SendMessageA(form->window(), WM_ACTIVATE, WA_ACTIVE, 0);
    EXPECT_EQ(panel(2), "Current View: M.PAS");
    choose(mnuSaveFile);
    EXPECT_FALSE(folder.has("A.INC"));
}

TEST_F(Tree, CancelAmongThreeIncludesLeavesTheEditorsFileSelected) {
    folder.write("M.PAS", "{$I A.INC}\r\n{$I B.INC}\r\n{$I C.INC}\r\n");
    startWithProject();
    click(4);
    form->Code1().insertText("typed", {0, 0});
    messages.answers = {Answer::cancel};
    click(2);
    EXPECT_EQ(panel(2), "Current View: B.INC");
    choose(mnuSaveFile);
    EXPECT_EQ(folder.read("B.INC"), "typedb\r\n");
    EXPECT_EQ(folder.read("C.INC"), "c\r\n");
    expectShown(4, "B.INC");
}

} // namespace
} // namespace tavrel
