// Printing, on a printer whose pages can be read.
#include "tests/app/main_window.h"

#include <algorithm>

namespace tavrel {
namespace {

struct Print : test::MainWindow {
    bool printed(const std::string& text) {
        const auto holds = [&](const std::string& piece) { return piece.find(text) != std::string::npos; };
        return std::any_of(printer.texts.begin(), printer.texts.end(), holds);
    }
    auto timesPrinted(const std::string& text) {
        return std::count(printer.texts.begin(), printer.texts.end(), text);
    }
};

TEST_F(Print, EachPageHasTheFilesNameAndItsNumber) {
    std::string source;
    for (int i = 1; i <= 300; ++i)
        source += "Line" + std::to_string(i) + "\r\n";
    folder.write("M.PAS", source);
    startWithProject();
    choose(mnuPrint);
    EXPECT_EQ(printer.documents, std::vector<std::string>{"M.PAS"});
    EXPECT_TRUE(printer.whole);
    ASSERT_GT(printer.pages, 1);
    EXPECT_EQ(timesPrinted("M.PAS"), printer.pages);
    for (int page = 1; page <= printer.pages; ++page)
        EXPECT_EQ(timesPrinted("Page " + std::to_string(page)), 1) << page;
    for (int i = 1; i <= 300; ++i)
        EXPECT_TRUE(printed("Line" + std::to_string(i))) << i;
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_FALSE(form->Code1().modified());
}

TEST_F(Print, AnEmptyTextIsOnePage) {
    folder.write("M.PAS", "");
    startWithProject();
    choose(mnuPrint);
    EXPECT_EQ(printer.pages, 1);
    EXPECT_TRUE(printed("Page 1"));
}

TEST_F(Print, LongLinesAreBroken) {
    folder.write("M.PAS", "begin " + std::string(600, 'x') + " finish.\r\n");
    startWithProject();
    choose(mnuPrint);
    EXPECT_TRUE(printed("finish"));
    EXPECT_EQ(printer.pages, 1);
}

TEST_F(Print, WithoutAPrinterTheUserIsTold) {
    startWithProject();
    printer.answer = PrintStart::noPrinter;
    choose(mnuPrint);
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(messages.shown[0].text,
              "There is no printer to print on. Add one in the settings of Windows and "
              "make it the default printer.");
    EXPECT_EQ(messages.shown[0].title, "Tavrel");
}

TEST_F(Print, APrinterThatTheUserCancelsIsNoFailure) {
    startWithProject();
    printer.answer = PrintStart::cancelled;
    choose(mnuPrint);
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(Print, APrinterThatFailsIsReportedAndTheDocumentGivenUp) {
    startWithProject();
    printer.failAtPage = 1;
    choose(mnuPrint);
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(messages.shown[0].text, "out of paper");
    EXPECT_FALSE(printer.whole);
    printer.failAtPage = 0;
    choose(mnuPrint);
    EXPECT_TRUE(printer.whole) << "the next attempt is not spoilt";
}

} // namespace
} // namespace tavrel
