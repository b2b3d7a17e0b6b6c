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

TEST(RoutineIndex, TheKeywordMayStandWithItsBlankOnlyLater) {
    EXPECT_EQ(routineHeader("functional x; function Y"), "Y");
    EXPECT_EQ(routineHeader("procedures procedure Z;"), "Z;");
    EXPECT_EQ(routineHeader("procedure P; function F"), "P; function F") << "the line opens with procedure";
    EXPECT_EQ(routineHeader("FuNcTiOn F; { a comment }  "), "F; { a comment }");
    EXPECT_FALSE(routineHeader("functions procedure Z;"));
}

TEST(RoutineIndex, AFileIsAddedToWhatTheListHolds) {
    const test::TemporaryFolder folder;
    const std::string path = folder.write("A.PAS", "procedure One;\r\n");
    std::vector<FileRoutineList> lists;
    GetFileFunctions(lists, 0, path);
    GetFileFunctions(lists, 0, path);
    EXPECT_EQ(lists[0].Headers, (std::vector<std::string>{"One;", "One;"}));
    EXPECT_EQ(lists[0].Count, 2);
}

TEST(RoutineIndex, OfNodesWithTheSameTextEachIsClearedAndTheLastFilled) {
    test::FakeEditor editor;
    editor.content = "procedure New;\r\n";
    std::vector<FileRoutineList> lists(3);
    for (FileRoutineList& list : lists)
        appendHeader(list, "old");
    EXPECT_TRUE(RefreshTooltips(lists, {"A.INC", "MAIN.PAS", "A.INC", "A.INC"}, "A.INC", editor))
        << "the root's text does not matter when a file has it too";
    EXPECT_EQ(lists[0].Headers, std::vector<std::string>{"old"});
    EXPECT_TRUE(lists[1].Headers.empty());
    EXPECT_EQ(lists[1].Count, 0);
    EXPECT_EQ(lists[2].Headers, std::vector<std::string>{"New;"});
    EXPECT_EQ(lists[2].Count, 1);
    EXPECT_FALSE(RefreshTooltips(lists, {"A.INC", "MAIN.PAS"}, "a.inc", editor)) << "letter case counts";
    EXPECT_EQ(lists[2].Headers, std::vector<std::string>{"New;"}) << "an error changes nothing";
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
