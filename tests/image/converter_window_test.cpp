// The converter's window, with stand-ins for the file dialogs.
#include "image/command_line.h"
#include "image/converter_window.h"
#include "image/picture_reader.h"
#include "image/resource.h"
#include "tests/image/test_pictures.h"
#include "tests/support/fakes.h"

#include <array>
#include <bit>
#include <gtest/gtest.h>
#include <memory>
#include <objbase.h>

namespace image {
namespace {

struct Window : testing::Test {
    tavrel::test::TemporaryFolder folder;
    tavrel::test::FakeFileDialogs dialogs;
    tavrel::test::FakeMessageBoxes messages;
    ConverterWindow converter{dialogs, messages};
    std::string picture;

    Window() {
        CoInitialize(nullptr);
        picture = folder.write("P.BMP", bmpFile(test::testPictures().front().picture));
    }
    ~Window() override {
        if (converter.window() != nullptr)
            SendMessageA(converter.window(), WM_CLOSE, 0, 0);
        MSG message; // take WM_QUIT away
        PeekMessageA(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);
        CoUninitialize();
    }
    HWND control(int identifier) { return GetDlgItem(converter.window(), identifier); }
    void press(int button) { SendMessageA(control(button), BM_CLICK, 0, 0); }
    void choose(int list, int item) {
        SendMessageA(control(list), CB_SETCURSEL, static_cast<WPARAM>(item), 0);
        SendMessageA(converter.window(), WM_COMMAND, MAKEWPARAM(list, CBN_SELCHANGE),
                     std::bit_cast<LPARAM>(control(list)));
    }
    bool enabled(int identifier) { return IsWindowEnabled(control(identifier)) != 0; }
    std::string text(int identifier) {
        std::array<char, 300> buffer{};
        GetDlgItemTextA(converter.window(), identifier, buffer.data(), static_cast<int>(buffer.size()));
        return buffer.data();
    }
};

TEST_F(Window, IsEmptyAtFirst) {
    converter.open("");
    EXPECT_TRUE(IsWindowVisible(converter.window()));
    EXPECT_FALSE(enabled(Converter_Save));
    EXPECT_FALSE(enabled(Converter_SavePalette));
    EXPECT_FALSE(enabled(Converter_Copy));
    EXPECT_EQ(text(Converter_Status), "Open a picture, or drop one here.");
}

TEST_F(Window, ConvertsWhatIsOpened) {
    converter.open("");
    dialogs.answer = picture;
    press(Converter_Open);
    ASSERT_TRUE(converter.conversion());
    EXPECT_EQ(converter.conversion()->screen->number, 5);
    EXPECT_EQ(text(Converter_Name), picture);
    EXPECT_EQ(text(Converter_Status).substr(0, 16), "256 x 212 pixels");
    EXPECT_TRUE(enabled(Converter_Save));
    dialogs.answer.clear();
    press(Converter_Open);
    EXPECT_EQ(text(Converter_Name), picture) << "Cancel changes nothing";
}

TEST_F(Window, EachListConvertsAgain) {
    converter.open(picture);
    choose(Converter_Screens, 5);
    EXPECT_EQ(converter.conversion()->screen->number, 12);
    EXPECT_FALSE(enabled(Converter_SavePalette));
    EXPECT_FALSE(enabled(Converter_Palettes));
    choose(Converter_Screens, 3);
    EXPECT_EQ(converter.conversion()->screen->number, 7);
    EXPECT_TRUE(enabled(Converter_Palettes));
    const Picture diffused = converter.conversion()->preview;
    choose(Converter_Dithers, 2);
    EXPECT_NE(converter.conversion()->preview.pixels, diffused.pixels);
    choose(Converter_Palettes, 1);
    EXPECT_EQ(converter.conversion()->palette, powerOnPalette);
    choose(Converter_Sizes, 2);
    EXPECT_EQ(converter.conversion()->preview.width, 512);
}

TEST_F(Window, TakesAPaletteFromAFile) {
    converter.open(picture);
    std::string palette = "JASC-PAL\r\n0100\r\n16\r\n";
    for (int i = 0; i < 16; ++i)
        palette += "255 0 0\r\n";
    dialogs.answer = folder.write("R.PAL", palette);
    choose(Converter_Palettes, 2);
    EXPECT_EQ(converter.conversion()->palette[9], (MsxColour{7, 0, 0}));
    dialogs.answer = folder.write("BAD.PAL", "nothing");
    choose(Converter_Palettes, 2);
    EXPECT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(converter.conversion()->palette[9], (MsxColour{7, 0, 0})) << "the former one stays";
}

TEST_F(Window, SavesPictureAndPalette) {
    converter.open(picture);
    dialogs.answer = folder.path() + "OUT.SC5";
    press(Converter_Save);
    EXPECT_EQ(folder.read("OUT.SC5"), pictureFile(converter.conversion()->memory));
    EXPECT_EQ(dialogs.saved.back().proposedPath, folder.path() + "P.sc5");
    dialogs.answer = folder.path() + "OUT.PL5";
    press(Converter_SavePalette);
    EXPECT_EQ(folder.read("OUT.PL5").size(), 39U);
    dialogs.answer = folder.path() + "OUT.INC";
    press(Converter_SavePalette);
    EXPECT_EQ(folder.read("OUT.INC"), tavrel::setPaletteLines(converter.conversion()->palette));
    dialogs.answer = folder.path() + "no folder\\OUT.SC5";
    press(Converter_Save);
    EXPECT_EQ(messages.shown.size(), 1U);
}

TEST_F(Window, CopiesTheLines) {
    converter.open(picture);
    press(Converter_Copy);
    ASSERT_TRUE(OpenClipboard(converter.window()));
    HANDLE const memory = GetClipboardData(CF_TEXT);
    ASSERT_NE(memory, nullptr);
    EXPECT_EQ(static_cast<const char*>(GlobalLock(memory)),
              tavrel::setPaletteLines(converter.conversion()->palette));
    GlobalUnlock(memory);
    CloseClipboard();
}

TEST_F(Window, APictureThatCannotBeReadLeavesTheFormerOne) {
    converter.open(picture);
    dialogs.answer = folder.write("BAD.PNG", "nothing");
    press(Converter_Open);
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(text(Converter_Name), picture);
    EXPECT_TRUE(converter.conversion());
}

TEST_F(Window, LargePicturesComeSmaller) {
    const Picture large = readPicture(folder.write("L.BMP", bmpFile(Picture(3000, 20))));
    EXPECT_EQ(large.width, 2048);
    EXPECT_EQ(large.height, 13);
    const Picture small = readPicture(picture);
    EXPECT_EQ(small.pixels, test::testPictures().front().picture.pixels);
}

TEST_F(Window, EscapeCloses) {
    converter.open("");
    SendMessageA(converter.window(), WM_COMMAND, IDCANCEL, 0);
    EXPECT_EQ(converter.window(), nullptr);
}

} // namespace
} // namespace image
