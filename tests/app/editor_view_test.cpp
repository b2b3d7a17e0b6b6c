// What of the text is in sight, and how it is drawn.
#include "app/program_folder.h"
#include "editor/editor_font.h"
#include "editor/oem_characters.h"
#include "tests/app/main_window.h"

namespace tavrel {
namespace {

struct EditorView : test::MainWindow {
    sptr_t ask(int pane, unsigned message, uptr_t first = 0, sptr_t second = 0) {
        return SendMessageA(editorPane(pane), message, first, second);
    }
    static std::string lines(int count) {
        std::string text;
        for (int i = 1; i <= count; ++i)
            text += "line " + std::to_string(i) + "\r\n";
        return text;
    }
};

TEST_F(EditorView, TheLineOfAnErrorHasLinesBelowIt) {
    folder.write("M.PAS", lines(500));
    startWithProject();
    for (const long line : {60L, 300L, 497L}) {
        form->Code1().setCaret({0, 0});
        form->Code1().setCaret({line, 0});
        const sptr_t last = ask(0, SCI_GETFIRSTVISIBLELINE) + ask(0, SCI_LINESONSCREEN) - 1;
        EXPECT_LE(line + 3, last) << line;
        EXPECT_LE(ask(0, SCI_GETFIRSTVISIBLELINE), line);
    }
}

TEST_F(EditorView, AnotherFileHasAScrollRangeOfItsOwn) {
    folder.write("A.INC", std::string(3000, 'x') + "\r\n");
    startWithProject();
    choose(mnuSplit);
    const sptr_t narrow = ask(0, SCI_GETSCROLLWIDTH);
    form->Code1().setText(std::string(3000, 'x'));
    UpdateWindow(editorPane(0));
    ask(0, SCI_SETXOFFSET, 500);
    EXPECT_GT(ask(0, SCI_GETSCROLLWIDTH), narrow + 3000);
    messages.answers = {Answer::no};
    choose(mnurecent_0);
    EXPECT_LE(ask(0, SCI_GETSCROLLWIDTH), narrow + 300);
    EXPECT_EQ(ask(0, SCI_GETXOFFSET), 0);
}

TEST_F(EditorView, SwitchingTheSplitOffInTheLowerPaneKeepsItsPlace) {
    folder.write("M.PAS", lines(500));
    startWithProject();
    choose(mnuSplit);
    form->Code1().setActivePane(1);
    form->Code1().setCaret({300, 2});
    const sptr_t first = ask(1, SCI_GETFIRSTVISIBLELINE);
    choose(mnuSplit);
    EXPECT_EQ(form->Code1().caret(), (EditorPosition{300, 2}));
    EXPECT_EQ(ask(0, SCI_GETFIRSTVISIBLELINE), first);
    choose(mnuSplit);
    form->Code1().setActivePane(1);
    form->Code1().setCaret({10, 0});
    form->Code1().setActivePane(0);
    choose(mnuSplit);
    EXPECT_EQ(form->Code1().caret(), (EditorPosition{300, 2})) << "the pane that stays was the active one";
}

TEST_F(EditorView, OnlyAFontOfOutlinesHasBoldWords) {
    start();
    for (const char* const face :
         {"System", "Fixedsys", "Courier", "Courier New", "Terminal", "DejaVu Sans Mono"}) {
        const EditorFont font = installedEditorFont(face);
        form->Code1().setFont(face, 11);
        EXPECT_EQ(ask(0, SCI_STYLEGETBOLD, 9 /* reserved words */) != 0, !font.raster) << face;
    }
}

TEST_F(EditorView, TheStatusLineShowsOemCharactersOfASignature) {
    folder.write("A.INC", "procedure Box\xC9(X: byte);\r\n"); // a corner of a frame
    startWithProject();
    form->Code1().setText("box\xC9");
    form->Code1().setCaret({0, 4});
    typeInEditor('(');
    std::wstring shown(64, L'\0');
    SendDlgItemMessageW(form->window(), Form1_StatusBar1, SB_GETTEXTW, 2,
                        std::bit_cast<LPARAM>(shown.data()));
    EXPECT_EQ(std::wstring(shown.c_str()), unicodeOfOem("Box\xC9(X: byte);"));
}

TEST_F(EditorView, TheWindowLiesInTheWorkArea) {
    start();
    RECT window = {};
    GetWindowRect(form->window(), &window);
    RECT work = {};
    SystemParametersInfoA(SPI_GETWORKAREA, 0, &work, 0);
    EXPECT_GE(window.left, work.left);
    EXPECT_GE(window.top, work.top);
    EXPECT_LE(window.right, work.right);
    EXPECT_LE(window.bottom, work.bottom);
}

TEST_F(EditorView, AFolderOutsideTheCodePageHasAShortName) {
    const std::filesystem::path odd = folder.native() / L"\x6E38\x620F";
    std::filesystem::create_directory(odd);
    EXPECT_EQ(ansiPath(folder.native().wstring()), folder.native().string()) << "as it is where that goes";
    const auto path = ansiPath(odd.wstring() + L"\\");
    ASSERT_TRUE(path.has_value());
    EXPECT_EQ(path->find('?'), std::string::npos) << *path;
    writeWholeFile(*path + "X.PAS", "x");
    EXPECT_TRUE(std::filesystem::exists(odd / "X.PAS"));
    EXPECT_EQ(ansiPath(odd.wstring() + L"\x6E38"), std::nullopt) << "what is not there has no short name";
}

} // namespace
} // namespace tavrel
