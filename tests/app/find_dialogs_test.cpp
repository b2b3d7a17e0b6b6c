// Find and Replace, through the dialogs of Windows.
#include "tests/app/main_window.h"

#include <dlgs.h>

namespace tavrel {
namespace {

struct FindAndReplace : test::MainWindow {
    HWND dialog() { return form->findDialogs().window(); }
    void open(UINT command, const char* what, const char* with = nullptr) {
        choose(command);
        ASSERT_NE(dialog(), nullptr);
        SetDlgItemTextA(dialog(), edt1, what);
        if (with != nullptr)
            SetDlgItemTextA(dialog(), edt2, with);
    }
    void press(int button) {
        SendDlgItemMessageA(dialog(), button, BM_CLICK, 0, 0);
        pump();
    }
    EditorPosition selectionStart() { return form->Code1().selection().start; }
    void startWithText(const char* text) {
        start();
        form->Code1().setText(text);
        form->Code1().setCaret({0, 0});
    }
};

TEST_F(FindAndReplace, FindSelectsEachHitAndGoesOnAtTheStart) {
    startWithText("one two\r\nTwo three\r\n");
    open(mnuFind, "two");
    press(IDOK);
    EXPECT_EQ(selectionStart(), (EditorPosition{0, 4}));
    EXPECT_EQ(form->Code1().selectedText(), "two");
    press(IDOK);
    EXPECT_EQ(selectionStart(), (EditorPosition{1, 0}));
    press(IDOK);
    EXPECT_EQ(selectionStart(), (EditorPosition{0, 4}));
    EXPECT_EQ(panel(3), "Searched on from the start");
    choose(mnuFindNext);
    EXPECT_EQ(selectionStart(), (EditorPosition{1, 0}));
    EXPECT_EQ(panel(3), "");
}

TEST_F(FindAndReplace, CaseWordAndDirectionAreObeyed) {
    startWithText("twofold Two two");
    open(mnuFind, "two");
    CheckDlgButton(dialog(), chx1, BST_CHECKED);
    press(IDOK);
    EXPECT_EQ(selectionStart().column, 8) << "whole words";
    CheckDlgButton(dialog(), chx2, BST_CHECKED);
    press(IDOK);
    EXPECT_EQ(selectionStart().column, 12) << "the same case";
    CheckDlgButton(dialog(), chx1, BST_UNCHECKED);
    CheckRadioButton(dialog(), rad1, rad2, rad1);
    press(IDOK);
    EXPECT_EQ(selectionStart().column, 0) << "upwards";
}

TEST_F(FindAndReplace, WhatIsNotThereIsReported) {
    startWithText("one");
    open(mnuFind, "four");
    press(IDOK);
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(messages.shown[0].text, "\"four\" was not found.");
    EXPECT_EQ(form->Code1().selectedText(), "");
}

TEST_F(FindAndReplace, TheSelectedWordIsOffered) {
    startWithText("one two");
    SendMessageA(editorPane(0), SCI_SETSEL, 4, 7);
    choose(mnuFind);
    std::array<char, 64> offered{};
    GetDlgItemTextA(dialog(), edt1, offered.data(), static_cast<int>(offered.size()));
    EXPECT_STREQ(offered.data(), "two");
    press(IDCANCEL);
    EXPECT_EQ(dialog(), nullptr);
}

// Only characters that the ANSI code page has too: Wine takes the others out of its dialogs, Windows does
// not.
TEST_F(FindAndReplace, TextsAreOemCharactersAsInTheEditor) {
    startWithText("caf\x82 \x84 CAF\x90\r\n"); // e acute, a diaeresis, capital e acute
    SendMessageA(editorPane(0), SCI_SETSEL, 0, 4);
    choose(mnuFind);
    std::array<wchar_t, 64> offered{};
    GetDlgItemTextW(dialog(), edt1, offered.data(), static_cast<int>(offered.size()));
    EXPECT_STREQ(offered.data(), L"caf\u00E9");
    press(IDOK);
    EXPECT_EQ(form->Code1().selectedText(), "CAF\x90") << "letter case does not count beyond ASCII either";
    press(IDOK);
    EXPECT_EQ(form->Code1().selectedText(), "caf\x82");
    SetDlgItemTextW(dialog(), edt1, L"\u00FC");
    press(IDOK);
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(messages.shown[0].text, "\"\xFC\" was not found.") << "the box shows ANSI characters";
    press(IDCANCEL);
    choose(mnuReplace);
    SetDlgItemTextW(dialog(), edt1, L"\u00E4");
    SetDlgItemTextW(dialog(), edt2, L"\u00F6");
    press(psh2);
    EXPECT_EQ(form->Code1().text(), "caf\x82 \x94 CAF\x90\r\n");
}

TEST_F(FindAndReplace, ASelectionThatIsNoSearchTextIsNotOffered) {
    startWithText("one\r\ntwo");
    open(mnuFind, "old");
    press(IDOK); // not there; remembered all the same
    press(IDCANCEL);
    for (const LPARAM end : {LPARAM{0}, LPARAM{8}}) { // nothing, more than a line
        SendMessageA(editorPane(0), SCI_SETSEL, 0, end);
        choose(mnuFind);
        std::array<char, 64> offered{};
        GetDlgItemTextA(dialog(), edt1, offered.data(), static_cast<int>(offered.size()));
        EXPECT_STREQ(offered.data(), "old");
        press(IDCANCEL);
    }
}

TEST_F(FindAndReplace, FindNextWithoutATextAsksForOne) {
    startWithText("one");
    choose(mnuFindNext);
    EXPECT_NE(dialog(), nullptr);
}

TEST_F(FindAndReplace, ReplaceTakesOneHitAfterTheOther) {
    startWithText("a b a");
    open(mnuReplace, "a", "aa");
    press(psh1);
    EXPECT_EQ(form->Code1().text(), "a b a") << "the first press only finds";
    press(psh1);
    EXPECT_EQ(form->Code1().text(), "aa b a");
    EXPECT_EQ(selectionStart().column, 5);
}

TEST_F(FindAndReplace, ReplaceAllIsOneStepOfUndo) {
    startWithText("a b a A");
    open(mnuReplace, "a", "aa");
    press(psh2);
    EXPECT_EQ(form->Code1().text(), "aa b aa aa");
    EXPECT_EQ(panel(3), "3 places replaced");
    choose(mnuUndo);
    EXPECT_EQ(form->Code1().text(), "a b a A");
}

} // namespace
} // namespace tavrel
