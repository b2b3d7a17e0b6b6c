// What makes the editor pleasant: indentation, brackets, colours, zoom, panes, going to a line, dropped
// files.
#include "tests/app/main_window.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include <SciLexer.h>

#include <shlobj.h>

namespace tavrel {
namespace {

struct EditorComfort : test::MainWindow {
    LRESULT ask(unsigned message, WPARAM first = 0, LPARAM second = 0, int pane = 0) {
        return SendMessageA(editorPane(pane), message, first, second);
    }
    void type(const std::string& text) {
        for (const char c : text) {
            if (c == '\r')
                pressInEditor(VK_RETURN, 0);
            else
                typeInEditor(c);
        }
        pump();
    }
    void showText(const std::string& text, EditorPosition caret = {}) {
        form->Code1().setText(text);
        form->Code1().setCaret(caret);
        UpdateWindow(editorPane(0)); // colours and brackets come with the drawing
        pump();
    }
    int styleAt(std::size_t position) {
        ask(SCI_COLOURISE, 0, -1);
        return static_cast<int>(ask(SCI_GETSTYLEAT, position));
    }
    void turnWheel(int pane, int notches) {
        hold(shiftState::control);
        SendMessageA(editorPane(pane), WM_MOUSEWHEEL,
                     MAKEWPARAM(MK_CONTROL, static_cast<WORD>(notches * WHEEL_DELTA)), 0);
        hold(0);
        pump();
    }
    static HDROP dropOf(const std::string& path) {
        const std::size_t size = sizeof(DROPFILES) + path.size() + 2;
        HGLOBAL const memory = GlobalAlloc(GHND, size);
        auto* const bytes = static_cast<char*>(GlobalLock(memory));
        DROPFILES header = {};
        header.pFiles = sizeof header;
        std::memcpy(bytes, &header, sizeof header);
        path.copy(bytes + sizeof header, path.size());
        GlobalUnlock(memory);
        return static_cast<HDROP>(memory);
    }
    void drop(HWND window, const std::string& path) {
        SendMessageA(window, WM_DROPFILES, std::bit_cast<WPARAM>(dropOf(path)), 0);
        pump();
    }
    void goToLine(const char* number, UINT button) {
        whenDialogOpens("Go to line", [=](HWND dialog) {
            SetDlgItemTextA(dialog, GoToLine_Number, number);
            SendDlgItemMessageA(dialog, static_cast<int>(button), BM_CLICK, 0, 0);
        });
        choose(keyGoToLine);
        stopWaitingForDialog();
    }
};

TEST_F(EditorComfort, ANewLineBeginsLikeTheOneAbove) {
    start();
    showText(" \tconst", {0, 7});
    type("\r x\ry");
    EXPECT_EQ(form->Code1().text(), " \tconst\r\n \t x\r\n \t y");
}

TEST_F(EditorComfort, TheIndentationFollowsEveryKindOfLineEnd) {
    const std::array<std::string, 3> ends = {"\r\n", "\n", "\r"};
    for (const std::string& end : ends) {
        folder.write("M.PAS", "begin" + end + "  x;" + end);
        startWithProject();
        form->Code1().setCaret({1, 4});
        type("\ry");
        EXPECT_EQ(form->Code1().text(), "begin" + end + "  x;" + end + "  y" + end);
        form.reset();
    }
}

TEST_F(EditorComfort, TheBracketsAtTheCaretAreMarked) {
    start();
    showText("a(b[1])", {0, 7});
    EXPECT_EQ(ask(SCI_GETSTYLEAT, 6), SCE_PAS_OPERATOR);
    EXPECT_EQ(ask(SCI_BRACEMATCH, 6), 1);
    // Scintilla does not tell what it marks; the drawn background does.
    const auto colourBehind = [&](LPARAM position) {
        RedrawWindow(editorPane(0), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
        const auto x = static_cast<int>(ask(SCI_POINTXFROMPOSITION, 0, position));
        const auto y = static_cast<int>(ask(SCI_POINTYFROMPOSITION, 0, position));
        HDC const device = GetDC(editorPane(0));
        const COLORREF colour = GetPixel(device, x, y);
        ReleaseDC(editorPane(0), device);
        return colour;
    };
    const COLORREF plain = colourBehind(0);
    EXPECT_EQ(colourBehind(1), RGB(190, 220, 255));
    EXPECT_EQ(colourBehind(6), RGB(190, 220, 255));
    EXPECT_EQ(colourBehind(3), plain);
    showText("a(b", {0, 2});
    EXPECT_EQ(colourBehind(1), RGB(255, 220, 220)) << "one without a partner stands out";
    form->Code1().setCaret({0, 0});
    pump();
    EXPECT_EQ(colourBehind(1), plain);
}

TEST_F(EditorComfort, TheCurrentLineIsMarkedAndDoesNotHideAnError) {
    start();
    showText("one\r\ntwo\r\n");
    EXPECT_EQ(ask(SCI_GETCARETLINEVISIBLE), 1);
    const auto backgroundOf = [&](LPARAM position) {
        RedrawWindow(editorPane(0), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
        const auto y = static_cast<int>(ask(SCI_POINTYFROMPOSITION, 0, position));
        HDC const device = GetDC(editorPane(0));
        const COLORREF colour = GetPixel(device, 400, y + 3); // right of the text
        ReleaseDC(editorPane(0), device);
        return colour;
    };
    const COLORREF current = backgroundOf(0);
    EXPECT_NE(current, RGB(255, 255, 255));
    EXPECT_EQ(backgroundOf(5), RGB(255, 255, 255));
    form->Code1().setHighlightedLine(0);
    EXPECT_EQ(backgroundOf(0), RGB(255, 210, 205));
    form->Code1().setCaret({1, 0});
    pump();
    EXPECT_EQ(backgroundOf(0), RGB(255, 210, 205));
    EXPECT_EQ(backgroundOf(5), current);
}

TEST_F(EditorComfort, EachKindOfTokenHasAColourOfItsOwn) {
    start();
    //        0         10        20         30        40
    form->Code1().setText("begin X := $1F + 27; {c} (*d*) {$I A.INC} 'text' end.");
    EXPECT_EQ(styleAt(0), SCE_PAS_WORD);
    EXPECT_EQ(styleAt(6), SCE_PAS_IDENTIFIER);
    EXPECT_EQ(styleAt(11), SCE_PAS_HEXNUMBER);
    EXPECT_EQ(styleAt(17), SCE_PAS_NUMBER);
    EXPECT_EQ(styleAt(21), SCE_PAS_COMMENT);
    EXPECT_EQ(styleAt(25), SCE_PAS_COMMENT2);
    EXPECT_EQ(styleAt(31), SCE_PAS_PREPROCESSOR);
    EXPECT_EQ(styleAt(42), SCE_PAS_STRING);
    std::vector<LRESULT> colours;
    for (const int style : {SCE_PAS_IDENTIFIER, SCE_PAS_WORD, SCE_PAS_NUMBER, SCE_PAS_COMMENT,
                            SCE_PAS_PREPROCESSOR, SCE_PAS_STRING})
        colours.push_back(ask(SCI_STYLEGETFORE, static_cast<WPARAM>(style)));
    std::sort(colours.begin(), colours.end());
    EXPECT_EQ(std::unique(colours.begin(), colours.end()), colours.end());
}

TEST_F(EditorComfort, ExactlyTheReservedWordsOfTheDialectAreKeywords) {
    start();
    for (const char* const word :
         {"absolute", "and",       "array",    "begin",  "case",   "const",   "div",      "do",   "downto",
          "else",     "end",       "external", "file",   "for",    "forward", "function", "goto", "if",
          "in",       "inline",    "label",    "mod",    "nil",    "not",     "of",       "or",   "overlay",
          "packed",   "procedure", "program",  "record", "repeat", "set",     "shl",      "shr",  "string",
          "then",     "to",        "type",     "until",  "var",    "while",   "with",     "xor"}) {
        form->Code1().setText(std::string(word) + " ");
        EXPECT_EQ(styleAt(0), SCE_PAS_WORD) << word;
    }
    for (const char* const word : {"unit", "uses", "class", "object", "interface", "try", "asm", "exports"}) {
        form->Code1().setText(std::string(word) + " ");
        EXPECT_NE(styleAt(0), SCE_PAS_WORD) << word;
    }
}

/// Contrast of two colours as accessibility guidelines count it, 1 to 21.
double contrast(LRESULT first, LRESULT second) {
    const auto luminance = [](LRESULT colour) {
        const auto part = [&](int shift) {
            const double value = static_cast<double>((colour >> shift) & 0xFF) / 255;
            return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * part(0) + 0.7152 * part(8) + 0.0722 * part(16);
    };
    const double one = luminance(first);
    const double two = luminance(second);
    return (std::max(one, two) + 0.05) / (std::min(one, two) + 0.05);
}

TEST_F(EditorComfort, ColoursAreReadableOnEveryBackgroundOfALine) {
    start();
    for (WPARAM style = 0; style <= SCE_PAS_ASM; ++style) {
        const LRESULT colour = ask(SCI_STYLEGETFORE, style);
        for (const LRESULT back :
             {LRESULT{RGB(255, 255, 255)}, LRESULT{RGB(242, 246, 255)}, LRESULT{RGB(255, 210, 205)}})
            EXPECT_GE(contrast(colour, back), 4.5) << style << " on " << back;
    }
    EXPECT_GE(contrast(ask(SCI_STYLEGETFORE, STYLE_LINENUMBER), ask(SCI_STYLEGETBACK, STYLE_LINENUMBER)),
              4.5);
}

TEST_F(EditorComfort, OemCharactersAreTypedAndShown) {
    start();
    SendMessageW(editorPane(0), WM_CHAR, 0x00E9, 0); // e with an acute accent
    EXPECT_EQ(form->Code1().text(), "\x82");
    EXPECT_EQ(ask(SCI_STYLEGETCHARACTERSET, STYLE_DEFAULT), SC_CHARSET_OEM);
    if (ask(SCI_STYLEGETCHARACTERSET, 0) == SC_CHARSET_OEM)
        return; // this machine's font draws them by itself
    std::array<char, 16> shown{};
    const char* const line = "\xC4";
    SendMessageA(editorPane(0), SCI_GETREPRESENTATION, std::bit_cast<WPARAM>(line),
                 std::bit_cast<LPARAM>(shown.data()));
    EXPECT_STREQ(shown.data(), "\xE2\x94\x80") << "a piece of a frame";
}

TEST_F(EditorComfort, LineNumbersHaveRoomHoweverManyLines) {
    start();
    const LRESULT few = ask(SCI_GETMARGINWIDTHN, 0);
    EXPECT_GT(few, 0);
    showText(std::string(20'000, '\n'));
    const LRESULT many = ask(SCI_GETMARGINWIDTHN, 0);
    EXPECT_GT(many, few);
    showText("");
    EXPECT_EQ(ask(SCI_GETMARGINWIDTHN, 0), few);
}

TEST_F(EditorComfort, CtrlAndTheWheelZoomBothPanes) {
    start();
    choose(mnuSplit);
    const LRESULT margin = ask(SCI_GETMARGINWIDTHN, 0);
    turnWheel(0, 1);
    turnWheel(0, 1);
    const LRESULT zoom = ask(SCI_GETZOOM);
    EXPECT_GT(zoom, 0);
    EXPECT_EQ(ask(SCI_GETZOOM, 0, 0, 1), zoom);
    EXPECT_GT(ask(SCI_GETMARGINWIDTHN, 0), margin);
    EXPECT_EQ(form->workspace().settings.FontSize, 11) << "the zoom is no setting";
    turnWheel(1, -1);
    EXPECT_LT(ask(SCI_GETZOOM), zoom);
    choose(mnuSplit);
    choose(mnuSplit);
    EXPECT_EQ(ask(SCI_GETZOOM, 0, 0, 1), ask(SCI_GETZOOM)) << "a new pane is zoomed like the old one";
}

TEST_F(EditorComfort, TheSplitIsASecondViewOfTheSameText) {
    start();
    choose(mnuSplit);
    EXPECT_EQ(ask(SCI_GETDOCPOINTER, 0, 0, 1), ask(SCI_GETDOCPOINTER));
    form->Code1().setActivePane(1);
    SendMessageA(editorPane(1), WM_CHAR, 'x', 0);
    EXPECT_EQ(ask(SCI_GETCHARAT), 'x');
    EXPECT_EQ(form->Code1().activePane(), 1);
    EXPECT_EQ(form->Code1().caret(), (EditorPosition{0, 1})) << "the caret is the active pane's";
    form->Code1().setActivePane(0);
    EXPECT_EQ(form->Code1().caret(), (EditorPosition{0, 0}));
    choose(mnuSplit);
    EXPECT_EQ(form->Code1().paneCount(), 1);
    EXPECT_EQ(editorPane(1), nullptr);
    EXPECT_EQ(form->Code1().text(), "x");
}

TEST_F(EditorComfort, TheSplitterIsDraggedWithTheMouse) {
    start();
    choose(mnuSplit);
    HWND const frame = form->Code1().window();
    const auto drag = [&](int from, int to) {
        SendMessageA(frame, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(50, from));
        SendMessageA(frame, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(50, to));
        SendMessageA(frame, WM_LBUTTONUP, 0, MAKELPARAM(50, to));
    };
    drag(form->Code1().splitterPosition() + 2, 100);
    EXPECT_EQ(form->Code1().splitterPosition(), 100);
    RECT upper = {};
    GetClientRect(editorPane(0), &upper);
    EXPECT_EQ(upper.bottom, 100);
    drag(102, -500);
    EXPECT_GT(form->Code1().splitterPosition(), 0) << "both panes stay in sight";
    drag(form->Code1().splitterPosition() + 2, 5000);
    RECT lower = {};
    GetClientRect(editorPane(1), &lower);
    EXPECT_GT(lower.bottom, 0);
}

TEST_F(EditorComfort, CtrlGGoesToALine) {
    start();
    form->Code1().setText("one\r\ntwo\r\nthree");
    goToLine("2", IDOK);
    EXPECT_EQ(form->Code1().caret(), (EditorPosition{1, 0}));
    goToLine("999999999", IDOK);
    EXPECT_EQ(form->Code1().caret(), (EditorPosition{2, 0}));
    for (const char* const nowhere : {"", "0"}) {
        goToLine(nowhere, IDOK);
        EXPECT_EQ(form->Code1().caret(), (EditorPosition{2, 0})) << nowhere;
    }
    goToLine("1", IDCANCEL);
    EXPECT_EQ(form->Code1().caret(), (EditorPosition{2, 0}));
}

TEST_F(EditorComfort, KeysWithoutAMenuWorkWithoutAProject) {
    start();
    HACCEL const accelerators = makeAccelerators();
    std::array<ACCEL, 64> table{};
    const int count = CopyAcceleratorTableA(accelerators, table.data(), static_cast<int>(table.size()));
    DestroyAcceleratorTable(accelerators);
    const auto commandOf = [&](WORD key, bool control) {
        for (int i = 0; i < count; ++i) {
            const ACCEL& row = table.at(static_cast<std::size_t>(i));
            if (row.key == key && ((row.fVirt & FCONTROL) != 0) == control)
                return static_cast<int>(row.cmd);
        }
        return 0;
    };
    EXPECT_EQ(commandOf('G', true), keyGoToLine);
    EXPECT_EQ(commandOf('F', true), keyFind);
    EXPECT_EQ(commandOf('H', true), keyReplace);
    EXPECT_EQ(commandOf(VK_F3, false), keyFindNext);
    choose(keyFind);
    EXPECT_NE(form->findDialogs().window(), nullptr);
}

TEST_F(EditorComfort, ADroppedProjectOpensAsThroughTheMenu) {
    start();
    EXPECT_NE(GetWindowLongPtrA(form->window(), GWL_EXSTYLE) & WS_EX_ACCEPTFILES, 0);
    drop(form->window(), folder.path() + "M.TPJ");
    EXPECT_EQ(form->Code1().text(), folder.read("M.PAS"));
    EXPECT_EQ(form->workspace().project.Name, "Demo");
    EXPECT_EQ(form->workspace().settings.Recent[0], folder.path() + "M.TPJ");
    EXPECT_EQ(form->workspace().LastDir, folder.path());
}

TEST_F(EditorComfort, ADroppedPascalFileOpensInEitherPane) {
    start();
    choose(mnuSplit);
    for (const int pane : {0, 1}) {
        EXPECT_NE(GetWindowLongPtrA(editorPane(pane), GWL_EXSTYLE) & WS_EX_ACCEPTFILES, 0);
        form->Code1().setText("");
        drop(editorPane(pane), folder.path() + "M.PAS");
        EXPECT_EQ(form->Code1().text(), folder.read("M.PAS"));
        EXPECT_EQ(form->workspace().project.Name, "Project");
    }
    EXPECT_EQ(form->workspace().settings.Recent[0], folder.path() + "M.PAS");
}

TEST_F(EditorComfort, OtherDroppedFilesChangeNothing) {
    startWithProject();
    drop(form->window(), folder.write("A.TXT", "x"));
    EXPECT_EQ(panel(3), "Only .tpj and .pas files can be dropped here");
    EXPECT_EQ(form->Code1().text(), folder.read("M.PAS"));
}

TEST_F(EditorComfort, AScreenWithMorePixelsToTheInchScalesTheWindow) {
    start();
    const LONG statusHeight = place(Form1_StatusBar1).bottom - place(Form1_StatusBar1).top;
    const RECT suggested = {0, 0, 1100, 700};
    SendMessageA(form->window(), WM_DPICHANGED, MAKEWPARAM(144, 144), std::bit_cast<LPARAM>(&suggested));
    EXPECT_EQ(place(Form1_Code1).left, 240);
    EXPECT_GT(place(Form1_StatusBar1).bottom - place(Form1_StatusBar1).top, statusHeight);
    RECT window = {};
    GetWindowRect(form->window(), &window);
    EXPECT_EQ(window.right - window.left, 1100);
}

} // namespace
} // namespace tavrel
