// Palettes: the rounding, the two outputs, the two sources.
#include "tests/support/fakes.h"
#include "tests/tools/palette_samples.h"
#include "tools/palette/bmp_palette.h"
#include "tools/palette/palette_commands.h"
#include "tools/palette/palette_source.h"
#include "util/runtime_error.h"

#include <gtest/gtest.h>

namespace tavrel {
namespace {

using test::bmpFile;
using test::jascText;

struct Converter : testing::Test {
    test::TemporaryFolder folder;
    test::FakeMessageBoxes messages;
    test::FakeFileDialogs dialogs;

    std::optional<RgbPalette> read(const std::string& name, const std::string& bytes) {
        return readPaletteSource(folder.write(name, bytes), messages);
    }
    /// Expects one message box, and that neither output does anything.
    void expectRefused(const std::string& name, const std::string& bytes, const std::string& text,
                       const std::string& title) {
        const std::string path = folder.write(name, bytes);
        const std::string old = folder.write("old.pl5", "old");
        dialogs.answer = old;
        messages.shown.clear();
        EXPECT_EQ(paletteAsPascal(path, messages), "");
        savePaletteFile(path, "", dialogs, messages);
        EXPECT_TRUE(dialogs.saved.empty());
        EXPECT_EQ(folder.read("old.pl5"), "old");
        ASSERT_EQ(messages.shown.size(), 2U);
        for (const auto& shown : messages.shown) {
            EXPECT_EQ(shown.text, text);
            EXPECT_EQ(shown.title, title);
            EXPECT_EQ(shown.icon, Icon::critical);
        }
    }
    RuntimeErrorNumber errorOf(const std::string& text, std::string& detail) {
        try {
            read("damaged.pal", text);
        } catch (const RuntimeError& error) {
            detail = error.detail();
            return error.number();
        }
        ADD_FAILURE() << "no error";
        return RuntimeErrorNumber::deviceIoError;
    }
};

TEST_F(Converter, EachComponentGoesToItsNearestStep) {
    // The last component of each step.
    constexpr std::array<int, 8> last = {18, 54, 91, 127, 163, 200, 236, 255};
    int step = 0;
    for (int value = 0; value <= 255; ++value) {
        if (value > last.at(static_cast<std::size_t>(step)))
            ++step;
        RgbPalette palette;
        palette[0] = {static_cast<std::uint8_t>(value), 0, 0};
        palette[1] = {0, static_cast<std::uint8_t>(value), 0};
        palette[2] = {0, 0, static_cast<std::uint8_t>(value)};
        const auto expected = static_cast<std::uint8_t>(step);
        EXPECT_EQ(msxPalette(palette)[0], (MsxColour{expected, 0, 0})) << value;
        EXPECT_EQ(msxPalette(palette)[1], (MsxColour{0, expected, 0})) << value;
        EXPECT_EQ(msxPalette(palette)[2], (MsxColour{0, 0, expected})) << value;
    }
}

TEST_F(Converter, ShownColoursConvertToThemselves) {
    for (std::uint8_t step = 0; step < 8; ++step) {
        RgbPalette palette;
        palette[5] = shownColour({step, step, step});
        EXPECT_EQ(msxPalette(palette)[5], (MsxColour{step, step, step}));
    }
    EXPECT_EQ(shownColour({7, 0, 7}), (RgbColour{255, 0, 255}));
}

TEST_F(Converter, PascalLinesHaveTwoDigitsAndNoBlanks) {
    RgbPalette palette;
    palette[3] = {255, 128, 0};
    palette[15] = {19, 236, 237};
    const std::string lines = setPaletteLines(msxPalette(palette));
    EXPECT_EQ(lines.substr(0, 44), "SetPalette(00,0,0,0);\r\nSetPalette(01,0,0,0);");
    EXPECT_NE(lines.find("\r\nSetPalette(03,7,4,0);\r\n"), std::string::npos);
    EXPECT_EQ(lines.substr(15 * 23), "SetPalette(15,1,6,7);\r\n");
    EXPECT_EQ(lines.size(), 16U * 23);
}

TEST_F(Converter, ThePaletteFileHas39Bytes) {
    MsxPalette palette;
    palette[0] = {7, 6, 5};
    palette[1] = {0, 1, 2};
    palette[15] = {3, 7, 4};
    std::string expected = {'\xFE', '\x80', '\x76', '\x9F', '\x76', 0, 0, '\x75', 6, 2, 1};
    expected.resize(37);
    expected += {'\x34', 7};
    EXPECT_EQ(paletteFile(palette), expected);
    EXPECT_EQ(paletteFile(palette).size(), 39U);
}

TEST_F(Converter, ReadsLinesOfAnySystem) {
    for (const char* const lineEnd : {"\n", "\r\n", "\r"}) {
        const auto palette = read("a.pal", jascText(lineEnd));
        ASSERT_TRUE(palette);
        EXPECT_EQ((*palette)[0], (RgbColour{0, 15, 255}));
        EXPECT_EQ((*palette)[15], (RgbColour{240, 255, 15}));
    }
    EXPECT_TRUE(read("blanks.pal", jascText(" \r\n"))) << "blanks at the ends of the lines";
    std::string unended = jascText("\n");
    unended.pop_back();
    EXPECT_TRUE(read("unended.pal", unended));
    EXPECT_TRUE(read("more.pal", jascText("\n") + "1 2 3\nnonsense\n")) << "what comes behind does not count";
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(Converter, TheSignatureIsExact) {
    expectRefused("a.pal", "jasc-pal\r\n0100\r\n16\r\n", "Not a valid PSP palette file!", "Erro");
    expectRefused("a.pal", "JASC-PA", "Not a valid PSP palette file!", "Erro");
    expectRefused("a.pal", " " + jascText("\n"), "Not a valid PSP palette file!", "Erro");
    EXPECT_TRUE(read("a.pal", "JASC-PALETTE" + jascText("\n").substr(8))) << "only eight characters count";
}

TEST_F(Converter, TheVersionIsANumber) {
    std::string text = jascText("\r\n");
    const std::size_t version = text.find("0100");
    expectRefused("a.pal", text.replace(version, 4, "0101"), "Incorrect palette version!", "Erro");
    expectRefused("a.pal", text.replace(version, 4, "    "), "Incorrect palette version!", "Erro");
    expectRefused("a.pal", text.replace(version, 4, "1e20"), "Incorrect palette version!", "Erro");
    EXPECT_TRUE(read("a.pal", text.replace(version, 4, "100")));
    EXPECT_TRUE(read("a.pal", text.replace(version, 3, " 100 x"))) << "as far as it is a number";
}

TEST_F(Converter, ThereAre16Colours) {
    std::string text = jascText("\r\n");
    const std::size_t count = text.find("16\r");
    expectRefused("a.pal", text.replace(count, 2, "15"), "Palette must have 16 colors!", "Erro");
    expectRefused("a.pal", text.replace(count, 2, "256"), "Palette must have 16 colors!", "Erro");
}

TEST_F(Converter, MissingLinesAndFieldsAreErrorsThatNameThePlace) {
    std::string detail;
    const std::string whole = jascText("\r\n");
    EXPECT_EQ(errorOf("", detail), RuntimeErrorNumber::inputPastEndOfFile);
    EXPECT_EQ(errorOf("JASC-PAL\r\n", detail), RuntimeErrorNumber::inputPastEndOfFile);
    EXPECT_EQ(errorOf(whole.substr(0, whole.rfind("240")), detail), RuntimeErrorNumber::inputPastEndOfFile);
    EXPECT_NE(detail.find("damaged.pal"), std::string::npos);

    const std::size_t second = whole.find("16 31 239");
    const auto changed = [&](const std::string& line) { return std::string(whole).replace(second, 9, line); };
    EXPECT_EQ(errorOf(changed("16 31"), detail), RuntimeErrorNumber::subscriptOutOfRange);
    EXPECT_EQ(detail, "Line 5: red, green and blue are needed");
    EXPECT_EQ(errorOf(changed(""), detail), RuntimeErrorNumber::subscriptOutOfRange);
    EXPECT_EQ(errorOf(changed("16  31 239"), detail), RuntimeErrorNumber::typeMismatch) << "an empty field";
    EXPECT_EQ(detail, "Line 5: \"\" is not a number of 0 to 255");
    EXPECT_EQ(errorOf(changed("16 x 239"), detail), RuntimeErrorNumber::typeMismatch);
    EXPECT_EQ(errorOf(changed("16 31 256"), detail), RuntimeErrorNumber::overflow);
    EXPECT_EQ(errorOf(changed("-1 31 239"), detail), RuntimeErrorNumber::overflow);
    EXPECT_EQ(errorOf(changed("99999 31 239"), detail), RuntimeErrorNumber::overflow);
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(Converter, ADamagedSourceLeavesThePaletteFileAlone) {
    const std::string path = folder.write("a.pal", "JASC-PAL\r\n0100\r\n16\r\n1 2 3\r\n");
    dialogs.answer = folder.write("old.pl5", "old");
    EXPECT_THROW(savePaletteFile(path, "", dialogs, messages), RuntimeError);
    EXPECT_TRUE(dialogs.saved.empty());
    EXPECT_EQ(folder.read("old.pl5"), "old");
}

TEST_F(Converter, AFileThatCannotBeOpenedIsTold) {
    for (const char* const name : {"missing.pal", "missing.bmp"}) {
        messages.shown.clear();
        EXPECT_EQ(paletteAsPascal(folder.path() + name, messages), "");
        dialogs.answer = folder.path() + "new.pl5";
        savePaletteFile(folder.path() + name, "", dialogs, messages);
        EXPECT_FALSE(folder.has("new.pl5"));
        ASSERT_EQ(messages.shown.size(), 2U);
        EXPECT_EQ(messages.shown[0].text, "Could not open the file!");
        EXPECT_EQ(messages.shown[0].icon, Icon::none);
    }
    messages.shown.clear();
    EXPECT_EQ(paletteAsPascal("", messages), "");
    EXPECT_EQ(messages.shown.size(), 1U) << "no name at all";
}

TEST_F(Converter, SavesUnderTheChosenName) {
    const std::string path = folder.write("a.pal", jascText("\n"));
    dialogs.answer = folder.path() + "b.pl5";
    savePaletteFile(path, "C:\\PICTURES\\", dialogs, messages);
    EXPECT_EQ(folder.read("b.pl5"), paletteFile(msxPalette(*readPaletteSource(path, messages))));
    ASSERT_EQ(dialogs.saved.size(), 1U);
    EXPECT_EQ(dialogs.saved[0].title, "Save screen 5 palette file");
    EXPECT_EQ(dialogs.saved[0].filter, "Screen 5 palette files (*.pl5) | *.pl5");
    EXPECT_EQ(dialogs.saved[0].initialFolder, "C:\\PICTURES\\");
    dialogs.answer.clear();
    savePaletteFile(path, "", dialogs, messages);
    EXPECT_TRUE(messages.shown.empty());
    dialogs.answer = folder.path() + "no such folder\\b.pl5";
    EXPECT_THROW(savePaletteFile(path, "", dialogs, messages), RuntimeError);
}

TEST_F(Converter, AsksForPalettesAndPictures) {
    const OpenDialogRequest request = paletteSourceRequest("C:\\X\\");
    EXPECT_EQ(request.title, "Select file to convert");
    EXPECT_EQ(request.filter, "PSP Palette (*.pal) | *.pal | BMP File (*.bmp) | *.bmp");
    EXPECT_EQ(request.initialFolder, "C:\\X\\");
}

TEST_F(Converter, TheNameDecidesHowAFileIsRead) {
    EXPECT_TRUE(read("a.BmP", bmpFile(4)));
    EXPECT_TRUE(read("xbmp", bmpFile(4))) << "three characters count, a dot is not needed";
    EXPECT_FALSE(read("a.pal", bmpFile(4)));
    EXPECT_EQ(messages.shown.size(), 1U);
    EXPECT_TRUE(read("a.bmp.txt", jascText("\n")));
}

TEST_F(Converter, ABmpGivesItsColoursInOrder) {
    BmpPalette table;
    ASSERT_TRUE(readBmpPalette(folder.write("a.bmp", bmpFile(4)), table, messages));
    for (std::uint8_t i = 0; i < 16; ++i) {
        const RgbQuad expected = {static_cast<std::uint8_t>(3 * i), static_cast<std::uint8_t>(100 + i),
                                  static_cast<std::uint8_t>(255 - i), 0};
        EXPECT_EQ(table.at(i), expected);
    }
    const auto palette = read("a.bmp", bmpFile(4));
    EXPECT_EQ(palette->at(1), (RgbColour{254, 101, 3})) << "stored blue first";
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(Converter, OtherColourDepthsAreRefused) {
    for (const int bits : {0, 1, 8, 24, 32, 4 + 256})
        expectRefused("a.bmp", bmpFile(bits), "Not 16 color image", "Error");
    expectRefused("a.bmp", bmpFile(24).substr(0, 54), "Not 16 color image", "Error");
}

TEST_F(Converter, OnlyTheColourDepthOfABmpIsLookedAt) {
    std::string odd = bmpFile(4);
    odd.replace(0, 14, "XX????????????"); // no type, no size, no pixel offset
    odd[14] = 124;                        // a longer header: the table still is read at 54
    odd[46] = 3;                          // three colours: the bytes behind count too
    BmpPalette table;
    ASSERT_TRUE(readBmpPalette(folder.write("a.bmp", odd), table, messages));
    EXPECT_EQ(table[15], (RgbQuad{45, 115, 240, 0}));
}

TEST_F(Converter, AShortBmpIsNoPaletteAndSaysNothing) {
    const std::string whole = bmpFile(4).substr(0, 118);
    EXPECT_TRUE(read("a.bmp", whole));
    for (std::size_t size = 0; size < whole.size(); ++size) {
        BmpPalette table;
        table[0].red = 77;
        EXPECT_FALSE(readBmpPalette(folder.write("a.bmp", whole.substr(0, size)), table, messages)) << size;
        EXPECT_EQ(table[0].red, 77);
    }
    EXPECT_TRUE(messages.shown.empty());
    BmpPalette table;
    EXPECT_FALSE(readBmpPalette(folder.path() + "missing.bmp", table, messages));
    EXPECT_TRUE(messages.shown.empty());
}

} // namespace
} // namespace tavrel
