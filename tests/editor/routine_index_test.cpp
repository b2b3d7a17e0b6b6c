#include "editor/autocomplete_list.h"
#include "editor/routine_index.h"
#include "tests/support/fakes.h"
#include "util/runtime_error.h"

#include <gtest/gtest.h>

namespace tavrel {
namespace {

TEST(RoutineIndex, HeaderIsWhatStandsBehindTheKeyword) {
    EXPECT_EQ(routineHeader("function Peek(Adr: integer): byte;"), "Peek(Adr: integer): byte;");
    EXPECT_EQ(routineHeader("   Function  Max(A, B: integer): integer;"), " Max(A, B: integer): integer;");
    EXPECT_EQ(routineHeader("PROCEDURE Init; forward;"), "Init; forward;");
}

TEST(RoutineIndex, OtherLinesAreNoHeaders) {
    for (const char* const line : {"function", "function\tX;", "{ function X }", "\tprocedure X;", "",
                                   "functional X", "procedure\r\n"})
        EXPECT_FALSE(routineHeader(line)) << line;
}

TEST(RoutineIndex, AFileIsScannedInOrder) {
    const test::TemporaryFolder folder;
    const std::string path =
        folder.write("A.PAS", "PROCEDURE Init; forward;\r\nvar X: integer;\r\nprocedure Init;\r\n");
    std::vector<FileRoutineList> lists;
    GetFileFunctions(lists, 1, path);
    EXPECT_EQ(lists.at(1).Headers, (std::vector<std::string>{"Init; forward;", "Init;"}));
    EXPECT_EQ(lists.at(1).Count, 2);
}

TEST(RoutineIndex, AnEmptyFileIsReadPastItsEnd) {
    const test::TemporaryFolder folder;
    std::vector<FileRoutineList> lists;
    EXPECT_THROW(GetFileFunctions(lists, 0, folder.write("A.PAS", "")), RuntimeError);
    EXPECT_THROW(GetFileFunctions(lists, 0, folder.path() + "NO.PAS"), RuntimeError);
}

TEST(RoutineIndex, RefreshTakesTheEditorsText) {
    test::FakeEditor editor;
    editor.content = "function A: byte;\r\n";
    std::vector<FileRoutineList> lists(3);
    appendHeader(lists[1], "old");
    EXPECT_TRUE(RefreshTooltips(lists, {"Root", "MAIN.PAS", "X.INC"}, "X.INC", editor));
    EXPECT_EQ(lists[1].Headers, std::vector<std::string>{"A: byte;"});
    EXPECT_FALSE(RefreshTooltips(lists, {"Root", "MAIN.PAS"}, "Root", editor));
    EXPECT_TRUE(RefreshTooltips(lists, {"Root"}, "other", editor)) << "one node only: nothing to say";
}

TEST(RoutineIndex, WithTooltipsOffNothingIsSaid) {
    test::TestWorkspace test;
    test.workspace.settings.UseTooltips = storedFalse;
    test.workspace.tree.add(0, "r", "Root", TreeImage::collapsed);
    test.workspace.tree.add(1, "m", "MAIN.PAS", TreeImage::collapsed);
    test.workspace.tree.select(1);
    RefreshTooltips(test.workspace);
    EXPECT_TRUE(test.messages.shown.empty());
    test.workspace.settings.UseTooltips = storedTrue;
    RefreshTooltips(test.workspace);
    ASSERT_EQ(test.messages.shown.size(), 1U);
    EXPECT_EQ(test.messages.shown[0].text, "Error refreshing tooltips");
}

TEST(AutocompleteList, LinesAreKeptAsTheyStand) {
    const test::TemporaryFolder folder;
    folder.makeFolder("help");
    folder.write("help\\autocomplete.txt", " A(x)\r\n\r\nb \r\n");
    EXPECT_EQ(readAutocompleteList(folder.path()), (std::vector<std::string>{" A(x)", "", "b "}));
    folder.write("help\\autocomplete.txt", "");
    EXPECT_THROW(readAutocompleteList(folder.path()), RuntimeError);
}

} // namespace
} // namespace tavrel
