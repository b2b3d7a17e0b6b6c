#include "app/menu_letters.h"

#include <gtest/gtest.h>

namespace tavrel {
namespace {

const std::vector<std::string> bar = {"File", "Edit", "Tools", "Window", "Help"};
const std::vector<std::string> edit = {"Cut", "Copy", "", "Find\tCtrl+F", "Find Next", "Clear"};

TEST(MenuLetters, ALetterOfItsOwnIsCarriedOut) {
    EXPECT_EQ(menuItemByLetter(bar, 't', bar.size()), (MenuChoice{true, true, 2}));
    EXPECT_EQ(menuItemByLetter(bar, 'H', 4), (MenuChoice{true, true, 4})) << "it is highlighted already";
}

TEST(MenuLetters, ASharedLetterGoesFromOneToTheNext) {
    EXPECT_EQ(menuItemByLetter(edit, 'c', edit.size()), (MenuChoice{true, false, 0}));
    EXPECT_EQ(menuItemByLetter(edit, 'c', 0), (MenuChoice{true, false, 1}));
    EXPECT_EQ(menuItemByLetter(edit, 'c', 1), (MenuChoice{true, false, 5}));
    EXPECT_EQ(menuItemByLetter(edit, 'c', 5), (MenuChoice{true, false, 0}));
    EXPECT_EQ(menuItemByLetter(edit, 'f', 0), (MenuChoice{true, false, 3}));
}

TEST(MenuLetters, AnotherLetterMeansNothing) {
    EXPECT_FALSE(menuItemByLetter(bar, 'x', 0).found);
    EXPECT_FALSE(menuItemByLetter({}, 'x', 0).found);
    EXPECT_FALSE(menuItemByLetter(edit, '\0', 2).found);
}

} // namespace
} // namespace tavrel
