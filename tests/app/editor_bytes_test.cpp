// Texts of any bytes and any line ends, through the editor and back.
#include "tests/app/main_window.h"

namespace tavrel {
namespace {

std::string everyByte() {
    std::string bytes;
    for (int i = 0; i < 256; ++i)
        bytes += static_cast<char>(i);
    return bytes;
}

struct EditorBytes : test::MainWindow, testing::WithParamInterface<std::string> {};

TEST_P(EditorBytes, ComeBackAsTheyWereLoaded) {
    folder.write("M.PAS", GetParam());
    startWithProject();
    EXPECT_EQ(form->Code1().text(), GetParam());
    EXPECT_FALSE(form->Code1().modified());
    choose(mnuSaveFile);
    EXPECT_EQ(folder.read("M.PAS"), GetParam());
}

TEST_P(EditorBytes, ComeBackAfterAnEditHasBeenUndone) {
    folder.write("M.PAS", GetParam());
    startWithProject();
    form->Code1().setCaret({0, 0});
    pressInEditor(VK_RETURN, 0);
    typeInEditor('x');
    EXPECT_NE(form->Code1().text(), GetParam());
    for (int i = 0; i < 10 && form->Code1().canUndo(); ++i)
        form->Code1().undo();
    choose(mnuSaveFile);
    EXPECT_EQ(folder.read("M.PAS"), GetParam());
}

TEST_P(EditorBytes, AnInsertedLineEndIsOfTheTextsOwnKind) {
    const std::string& source = GetParam();
    const std::size_t first = source.find_first_of("\r\n");
    if (first == std::string::npos)
        return;
    const std::string end = source.substr(first, source.compare(first, 2, "\r\n") == 0 ? 2 : 1);
    folder.write("M.PAS", source);
    startWithProject();
    form->Code1().setCaret({0, 0});
    pressInEditor(VK_RETURN, 0);
    EXPECT_EQ(form->Code1().text(), end + source);
}

INSTANTIATE_TEST_SUITE_P(All, EditorBytes,
                         testing::Values("", "\r\n", "\n", "\r", "no line end", "a\r\nb\r\n", "a\nb\n",
                                         "a\rb\r", "mixed\r\none\ntwo\rthree\r\r\n\n\r",
                                         "ends in 1Ah\r\n\x1A", std::string("zero\0 inside\r\n", 14),
                                         std::string(3, '\0'), "\xEF\xBB\xBFnot UTF-8 here\r\n",
                                         "\x80\x81\xC3\xA9\xFE\xFF\r\n", everyByte(),
                                         everyByte() + "\r\n" + everyByte()));

} // namespace
} // namespace tavrel
