// Keys for the source, on the real editor.
#include "tests/app/main_window.h"

namespace tavrel {
namespace {

struct SourceKeys : test::MainWindow {
    void show(const std::string& text, EditorPosition caret) {
        form->Code1().setText(text);
        form->Code1().setCaret(caret);
    }
    const std::string text() { return form->Code1().text(); }
    void press(WPARAM key) { SendMessageA(editorPane(0), WM_KEYDOWN, key, 0); }
    void select(long line, long column, long lastLine, long lastColumn) {
        const auto at = [&](long l, long c) {
            return SendMessageA(editorPane(0), SCI_POSITIONFROMLINE, static_cast<WPARAM>(l), 0) + c;
        };
        SendMessageA(editorPane(0), SCI_SETSEL, static_cast<WPARAM>(at(line, column)),
                     at(lastLine, lastColumn));
    }
};

TEST_F(SourceKeys, GoToDefinitionAndBack) {
    folder.write("A.INC", "{ a }\r\nprocedure Draw(x: byte);\r\nbegin end;\r\n");
    folder.write("M.PAS", "program M;\r\n{$I A.INC}\r\nbegin draw(1) end.\r\n");
    startWithProject();
    form->Code1().setCaret({2, 8});
    choose(keyDefinition);
    EXPECT_EQ(panel(2), "Current View: A.INC");
    EXPECT_EQ(form->Code1().caret(), (EditorPosition{1, 0}));
    choose(keyBack);
    EXPECT_EQ(panel(2), "Current View: M.PAS");
    EXPECT_EQ(form->Code1().caret(), (EditorPosition{2, 8}));
    choose(keyBack);
    EXPECT_EQ(form->Code1().caret(), (EditorPosition{2, 8})) << "there is no further jump";
    form->Code1().setCaret({0, 2});
    choose(keyDefinition);
    EXPECT_EQ(panel(3), "No declaration of program in the project");
}

TEST_F(SourceKeys, CancellingTheQuestionOfAJumpStays) {
    folder.write("A.INC", "procedure Draw;\r\n");
    startWithProject();
    show("draw", {0, 1});
    messages.answers = {Answer::cancel};
    choose(keyDefinition);
    EXPECT_EQ(text(), "draw");
    EXPECT_EQ(panel(2), "Current View: M.PAS");
    choose(keyBack);
    EXPECT_EQ(text(), "draw") << "nothing to go back to";
}

TEST_F(SourceKeys, FindInAllFilesGoesFromFileToFile) {
    folder.write("A.INC", "x MAX x\r\n");
    folder.write("M.PAS", "max\r\n{$I A.INC}\r\nmax\r\n");
    startWithProject();
    form->Code1().setCaret({0, 1});
    choose(keyFindInProject);
    EXPECT_EQ(form->Code1().selectedText(), "max");
    EXPECT_EQ(form->Code1().selection().start, (EditorPosition{2, 0}));
    EXPECT_EQ(panel(3), "Place 2 of 3 in the project");
    choose(keyFindInProject);
    EXPECT_EQ(panel(2), "Current View: A.INC");
    EXPECT_EQ(form->Code1().selectedText(), "MAX");
    choose(keyFindInProject);
    EXPECT_EQ(panel(2), "Current View: M.PAS");
    EXPECT_EQ(form->Code1().selection().start, (EditorPosition{0, 0}));
}

TEST_F(SourceKeys, CommentLinesAndBack) {
    start();
    show("a;\r\n  b;\r\nc;\r\n", {0, 0});
    select(0, 1, 2, 0);
    choose(keyComment);
    EXPECT_EQ(text(), "{ a; }\r\n  { b; }\r\nc;\r\n")
        << "a line that only the selection's end touches is not in it";
    choose(keyComment);
    EXPECT_EQ(text(), "a;\r\n  b;\r\nc;\r\n");
    choose(mnuUndo);
    EXPECT_EQ(text(), "{ a; }\r\n  { b; }\r\nc;\r\n") << "one step";
}

TEST_F(SourceKeys, LinesAreDoubledAndMoved) {
    start();
    show("a\r\nb\r\n", {0, 0});
    choose(keyDuplicate);
    EXPECT_EQ(text(), "a\r\na\r\nb\r\n");
    form->Code1().setCaret({2, 0});
    choose(keyMoveUp);
    EXPECT_EQ(text(), "a\r\nb\r\na\r\n");
    choose(keyMoveDown);
    EXPECT_EQ(text(), "a\r\na\r\nb\r\n");
}

TEST_F(SourceKeys, TheWordIsMarkedEverywhereAndUnmarked) {
    start();
    show("max maximum max\r\nmax", {0, 1});
    const auto marked = [&](int position) {
        return SendMessageA(editorPane(0), SCI_INDICATORVALUEAT, 8, position) != 0;
    };
    choose(keyMarkWord);
    EXPECT_EQ(panel(3), "The word is there 3 times");
    EXPECT_TRUE(marked(0));
    EXPECT_FALSE(marked(4));
    EXPECT_TRUE(marked(12));
    choose(keyMarkWord);
    EXPECT_FALSE(marked(0));
}

TEST_F(SourceKeys, FromBeginToItsEndAndBack) {
    start();
    show("begin\r\n  begin end\r\nend.", {0, 2});
    choose(keyMatch);
    EXPECT_EQ(form->Code1().caret(), (EditorPosition{2, 0}));
    choose(keyMatch);
    EXPECT_EQ(form->Code1().caret(), (EditorPosition{0, 0}));
}

TEST_F(SourceKeys, BlocksFold) {
    start();
    show("begin\r\n  a;\r\n  b\r\nend;\r\nc", {1, 0});
    const auto visible = [&](int line) {
        return SendMessageA(editorPane(0), SCI_GETLINEVISIBLE, static_cast<WPARAM>(line), 0) != 0;
    };
    SendMessageA(editorPane(0), SCI_COLOURISE, 0, -1);
    choose(keyFold);
    EXPECT_FALSE(visible(1));
    EXPECT_TRUE(visible(4));
    form->Code1().setCaret({2, 0}); // as an error does
    EXPECT_TRUE(visible(2));
}

TEST_F(SourceKeys, TypingIndentsBlocksByTwo) {
    start();
    show("  if a then", {0, 100});
    press(VK_RETURN);
    typeInEditor('x');
    EXPECT_EQ(text(), "  if a then\r\n    x");
    press(VK_RETURN);
    press(VK_BACK);
    typeInEditor('y');
    EXPECT_EQ(text(), "  if a then\r\n    x\r\n  y") << "one key takes an indent back";
    show("", {0, 0});
    press(VK_TAB);
    EXPECT_EQ(text(), "  ");
}

} // namespace
} // namespace tavrel
