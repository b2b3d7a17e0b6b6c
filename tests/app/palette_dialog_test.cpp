// The palette converter's dialog, opened from the main window.
#include "tests/app/main_window.h"
#include "tests/tools/palette_samples.h"

namespace tavrel {
namespace {

struct PaletteDialog : test::MainWindow {
    HWND dialog = nullptr;

    /// Opens the dialog, does `work` with it and closes it.
    void inDialog(const std::function<void()>& work) {
        start();
        bool done = false;
        whenDialogOpens("Palette Converter", [&](HWND window) {
            dialog = window;
            work();
            done = true;
            SendMessageA(window, WM_COMMAND, IDCANCEL, 0);
        });
        choose(mnuConvPal);
        EXPECT_TRUE(done);
    }
    void press(int button) { SendDlgItemMessageA(dialog, button, BM_CLICK, 0, 0); }
    void write(int field, const std::string& text) { SetDlgItemTextA(dialog, field, text.c_str()); }
    std::string read(int field) {
        std::string text(8192, '\0');
        text.resize(GetDlgItemTextA(dialog, field, text.data(), static_cast<int>(text.size())));
        return text;
    }
    std::string palette() { return folder.write("a.pal", test::jascText("\n")); }
    /// The colour in the middle of a preview's field.
    COLORREF fieldColour(int preview, int index) {
        RECT area = {};
        GetClientRect(GetDlgItem(dialog, preview), &area);
        HDC const screen = GetDC(nullptr);
        HDC const context = CreateCompatibleDC(screen);
        HBITMAP const bitmap = CreateCompatibleBitmap(screen, area.right, area.bottom);
        HGDIOBJ const former = SelectObject(context, bitmap);
        DRAWITEMSTRUCT item = {};
        item.CtlType = ODT_STATIC;
        item.CtlID = static_cast<UINT>(preview);
        item.hwndItem = GetDlgItem(dialog, preview);
        item.hDC = context;
        item.rcItem = area;
        SendMessageA(dialog, WM_DRAWITEM, static_cast<WPARAM>(preview), std::bit_cast<LPARAM>(&item));
        const COLORREF colour = GetPixel(context, area.right * (2 * index + 1) / 32, area.bottom / 4);
        SelectObject(context, former);
        DeleteObject(bitmap);
        DeleteDC(context);
        ReleaseDC(nullptr, screen);
        return colour;
    }
};

TEST_F(PaletteDialog, OpenFillsInTheName) {
    dialogs.answer = palette();
    inDialog([&] {
        press(frmConvPal_Command1);
        EXPECT_EQ(read(frmConvPal_Text1), dialogs.answer);
        dialogs.answer.clear();
        press(frmConvPal_Command1);
        EXPECT_NE(read(frmConvPal_Text1), "") << "Cancel keeps the name";
    });
    EXPECT_EQ(dialogs.opened.at(0).title, "Select file to convert");
}

TEST_F(PaletteDialog, EachConversionAppendsABlock) {
    inDialog([&] {
        write(frmConvPal_Text1, palette());
        press(frmConvPal_Command2);
        const std::string once = read(frmConvPal_Text2);
        EXPECT_EQ(once.substr(0, 46), "SetPalette(00,0,0,7);\r\nSetPalette(01,0,1,7);\r\n");
        press(frmConvPal_Command2);
        EXPECT_EQ(read(frmConvPal_Text2), once + once);
    });
}

TEST_F(PaletteDialog, CopyPutsTheTextOnTheClipboard) {
    inDialog([&] {
        write(frmConvPal_Text2, "SetPalette(00,1,2,3);\r\n");
        press(frmConvPal_Command3);
        ASSERT_TRUE(OpenClipboard(dialog));
        HANDLE const memory = GetClipboardData(CF_TEXT);
        ASSERT_NE(memory, nullptr);
        EXPECT_STREQ(static_cast<const char*>(GlobalLock(memory)), "SetPalette(00,1,2,3);\r\n");
        GlobalUnlock(memory);
        CloseClipboard();
    });
}

TEST_F(PaletteDialog, InsertGoesToTheStartOfTheSelection) {
    inDialog([&] {
        form->Code1().setText("one\r\ntwo\r\n");
        form->Code1().setCaret({1, 1});
        write(frmConvPal_Text2, "X;\r\n");
        press(frmConvPal_Command4);
        EXPECT_EQ(form->Code1().text(), "one\r\ntX;\r\nwo\r\n");
    });
}

TEST_F(PaletteDialog, SaveWritesAPaletteFile) {
    dialogs.answer = folder.path() + "a.pl5";
    inDialog([&] {
        write(frmConvPal_Text1, palette());
        press(frmConvPal_Command5);
    });
    EXPECT_EQ(folder.read("a.pl5").size(), 39U);
    EXPECT_EQ(dialogs.saved.at(0).title, "Save screen 5 palette file");
}

TEST_F(PaletteDialog, FailuresAreToldAndTheTextStays) {
    inDialog([&] {
        write(frmConvPal_Text2, "kept");
        write(frmConvPal_Text1, folder.path() + "missing.pal");
        press(frmConvPal_Command2);
        write(frmConvPal_Text1, folder.write("b.pal", "JASC-PAL\n0100\n16\n1 2\n"));
        press(frmConvPal_Command2);
        EXPECT_EQ(read(frmConvPal_Text2), "kept");
        EXPECT_EQ(read(frmConvPal_Hint), "This file holds no palette of 16 colours.");
    });
    ASSERT_EQ(messages.shown.size(), 2U) << "the preview says nothing";
    EXPECT_EQ(messages.shown[0].text, "Could not open the file!");
    EXPECT_EQ(messages.shown[1].text, "Subscript out of range\r\nLine 4: red, green and blue are needed");
}

TEST_F(PaletteDialog, ThePreviewShowsBothPalettes) {
    inDialog([&] {
        EXPECT_EQ(fieldColour(frmConvPal_Before, 1), GetSysColor(COLOR_BTNFACE)) << "no file yet";
        write(frmConvPal_Text1, palette());
        EXPECT_EQ(fieldColour(frmConvPal_Before, 1), RGB(16, 31, 239));
        EXPECT_EQ(fieldColour(frmConvPal_After, 1), RGB(0, 36, 255));
        EXPECT_EQ(read(frmConvPal_Hint), "");
    });
    EXPECT_TRUE(messages.shown.empty());
}

} // namespace
} // namespace tavrel
