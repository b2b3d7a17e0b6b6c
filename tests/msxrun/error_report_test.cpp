#include "msxrun/error_report.h"

#include <gtest/gtest.h>
#include <string_view>

namespace msxrun {
namespace {

bool ends(std::string_view text) {
    ErrorReport report;
    for (const char character : text) {
        report.add(static_cast<std::uint8_t>(character));
    }
    return report.ends();
}

TEST(ErrorReport, RecognisesBothKinds) {
    EXPECT_TRUE(ends("x\r\nRun-time error 02, PC=2F10\r\nProgram aborted\r\n"));
    EXPECT_TRUE(ends("\r\n\r\nI/O error FF, PC=0000\r\n\r\nProgram aborted"));
    EXPECT_TRUE(ends(std::string(1000, 'x') + "\r\nRun-time error 90, PC=ABCD\r\nProgram aborted\r\n"));
}

TEST(ErrorReport, OtherEndsAreNone) {
    EXPECT_FALSE(ends(""));
    EXPECT_FALSE(ends("Program aborted\r\n"));
    EXPECT_FALSE(ends("xRun-time error 02, PC=2F10\r\nProgram aborted\r\n"));
    EXPECT_FALSE(ends("Run-time error 2, PC=2F10\r\nProgram aborted\r\n"));
    EXPECT_FALSE(ends("Run-time error 02, PC=2F10\r\nProgram aborted\r\nmore"));
    EXPECT_FALSE(ends("Run-time error 02, PC=2F10\r\nbetween\r\nProgram aborted\r\n"));
    EXPECT_FALSE(ends("User break, PC=2F10\r\nProgram aborted\r\n"));
}

} // namespace
} // namespace msxrun
