// The main window without a mouse: menus by first letters, the tree, the Edit menu at the caret.
#include "app/form1.h"
#include "app/menu_letters.h"
#include "project/file_switching.h"

#include <array>
#include <bit>

namespace tavrel {

namespace {

std::vector<std::string> captionsOf(HMENU menu) {
    std::vector<std::string> captions;
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
        std::array<char, MAX_PATH> caption{};
        GetMenuStringA(menu, static_cast<UINT>(i), caption.data(), static_cast<int>(caption.size()),
                       MF_BYPOSITION);
        captions.emplace_back(caption.data());
    }
    return captions;
}

std::size_t highlightedItem(HMENU menu) {
    const int count = GetMenuItemCount(menu);
    for (int i = 0; i < count; ++i) {
        if ((GetMenuState(menu, static_cast<UINT>(i), MF_BYPOSITION) & MF_HILITE) != 0)
            return static_cast<std::size_t>(i);
    }
    return static_cast<std::size_t>(count);
}

} // namespace

LRESULT Form1::menuCharacter(WORD character, HMENU menu) {
    const MenuChoice choice =
        menuItemByLetter(captionsOf(menu), static_cast<char>(character), highlightedItem(menu));
    if (!choice.found)
        return MAKELRESULT(0, MNC_IGNORE);
    return MAKELRESULT(choice.item, choice.alone ? MNC_EXECUTE : MNC_SELECT);
}

void Form1::nodeChosen(std::size_t node) {
    const bool stay = TV_->chosenByKey();
    TV_->choiceTaken();
    guarded([&] {
        if (node >= 1 && node <= workspace_->tree.count())
            switchToNode(*workspace_, node);
    });
    if (stay)
        SetFocus(TV_->window()); // the next arrow key is the tree's too
}

void Form1::treeCommand() {
    const bool inTree = GetFocus() == TV_->window();
    if (inTree || IsWindowVisible(TV_->window()) == 0)
        Code1_->giveFocus();
    else
        SetFocus(TV_->window());
}

void Form1::popUpEditMenuAtCaret() {
    followEditor();
    POINT caret = Code1_->caretPlace();
    popUpMenu(mnuEdit, &caret);
}

} // namespace tavrel
