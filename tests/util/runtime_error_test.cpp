#include "util/runtime_error.h"

#include "util/twips.h"

#include <gtest/gtest.h>
#include <map>
#include <string>

namespace tavrel {
namespace {

TEST(RuntimeErrors, EachNumberHasTheClassicText) {
    const std::map<int, std::string> texts = {
        {6, "Overflow"},           {9, "Subscript out of range"},
        {13, "Type mismatch"},     {52, "Bad file name or number"},
        {53, "File not found"},    {57, "Device I/O error"},
        {61, "Disk full"},         {62, "Input past end of file"},
        {70, "Permission denied"}, {75, "Path/File access error"},
        {76, "Path not found"},    {1000, "Application-defined or object-defined error"}};
    for (const auto& [number, text] : texts) {
        const auto error = static_cast<RuntimeErrorNumber>(number);
        EXPECT_EQ(runtimeErrorText(error), text);
        EXPECT_EQ(RuntimeError(error).message(), text);
        EXPECT_EQ(RuntimeError(error, "A.PAS").message(), text + "\r\nA.PAS");
    }
}

TEST(Twips, EachDirectionHasItsOwnScale) {
    const ScreenScale scale = {96, 144};
    EXPECT_EQ(scale.toPixelsX(150), 10);
    EXPECT_EQ(scale.toPixelsY(150), 15);
    EXPECT_EQ(scale.toPixelsX(7.5), 0) << "a half goes to the even pixel";
    EXPECT_EQ(scale.toPixelsY(15), 2);
    EXPECT_EQ(scale.toTwipsY(15), 150);
}

} // namespace
} // namespace tavrel
