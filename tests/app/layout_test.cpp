#include "app/command_line.h"
#include "app/layout.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

namespace tavrel {
namespace {

constexpr FormMeasures large = {12000, 9000, 2400, 330};

TEST(Layout, TheEditorFillsTheRoomBesideTheTree) {
    const FormLayout layout = resizedLayout({}, large, true);
    EXPECT_EQ(layout.editorLeft, 2400);
    EXPECT_EQ(layout.editorWidth, 9600);
    EXPECT_EQ(layout.editorHeight, 8600);
    EXPECT_EQ(layout.treeHeight, 8600);
}

TEST(Layout, WithTheTreeHiddenTheEditorTakesTheWidthButTen) {
    const FormLayout hidden = resizedLayout(resizedLayout({}, large, true), large, false);
    EXPECT_FALSE(hidden.treeVisible);
    EXPECT_EQ(hidden.editorLeft, 0);
    EXPECT_EQ(hidden.editorWidth, 11990);
    EXPECT_EQ(resizedLayout(hidden, large, true).editorLeft, 2400);
}

TEST(Layout, ATooSmallWindowLeavesTheSizes) {
    const FormLayout before = resizedLayout({}, large, true);
    const FormLayout after = resizedLayout(before, {2400, 398, 2400, 330}, true);
    EXPECT_EQ(after.editorWidth, before.editorWidth);
    EXPECT_EQ(after.editorHeight, before.editorHeight);
    EXPECT_EQ(resizedLayout(before, {2401, 400, 2400, 330}, true).editorHeight, 0);
}

TEST(Layout, TheSplitterHalvesTheEditor) {
    EXPECT_EQ(centredSplitter(8600, 15), 287);
    EXPECT_EQ(centredSplitter(15 * 5, 15), 2) << "a half goes to the even neighbour";
}

TEST(CommandLine, IsTakenWholeBehindTheProgramsName) {
    EXPECT_EQ(argumentText("\"C:\\a b\\Tavrel.exe\"  C:\\my game.tpj "), "C:\\my game.tpj");
    EXPECT_EQ(argumentText("Tavrel.exe \"x.tpj\""), "\"x.tpj\"");
    EXPECT_EQ(argumentText("Tavrel.exe"), "");
}

TEST(CommandLine, ProjectsEndInTpjInAnyCase) {
    const test::TemporaryFolder folder;
    EXPECT_EQ(startAction(folder.write("game.TpJ", "x"), true), StartAction::openProject);
    EXPECT_EQ(startAction(folder.write("a.txt", "x"), true), StartAction::nothing);
    EXPECT_EQ(startAction(folder.path() + "no.tpj", true), StartAction::offerNewProject);
    EXPECT_EQ(startAction(folder.path() + "game.TpJ\"", true), StartAction::nothing);
    EXPECT_EQ(startAction("", true), StartAction::offerNewProject);
    EXPECT_EQ(startAction("", false), StartAction::nothing);
}

TEST(WindowPlace, LiesInTheWorkAreaWhole) {
    const PixelArea screen = {0, 0, 1366, 728};
    EXPECT_EQ(fittedInto(screen, {26, 26, 1150, 700}), (PixelArea{26, 26, 1150, 700})) << "it fits";
    EXPECT_EQ(fittedInto(screen, {26, 26, 1150, 825}), (PixelArea{26, 0, 1150, 728}));
    EXPECT_EQ(fittedInto(screen, {400, 200, 1150, 600}), (PixelArea{216, 128, 1150, 600}));
    EXPECT_EQ(fittedInto({1366, 40, 800, 560}, {0, 0, 920, 660}), (PixelArea{1366, 40, 800, 560}))
        << "another screen, with a bar at its top";
}

} // namespace
} // namespace tavrel
