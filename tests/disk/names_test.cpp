#include "disk/host_files.h"
#include "disk/msx_name.h"
#include "tests/disk/support.h"

#include <gtest/gtest.h>

namespace disk {
namespace {

std::string onDisk(std::string_view hostName) {
    const MsxName result = msxNameOf(hostName);
    if (!result.name)
        return "impossible: " + result.problem;
    return displayName(*result.name) + (result.cut ? " (cut)" : "");
}

TEST(MsxName, IsTheHostsInCapitals) {
    EXPECT_EQ(onDisk("Hello.pas"), "HELLO.PAS");
    EXPECT_EQ(onDisk("a"), "A");
    EXPECT_EQ(onDisk("12345678.123"), "12345678.123");
    EXPECT_EQ(onDisk("name."), "NAME");
    EXPECT_EQ(onDisk("a-b_c!#.$%&"), "A-B_C!#.$%&");
}

TEST(MsxName, IsCutTheDosWay) {
    EXPECT_EQ(onDisk("longfilename.pas"), "LONGFILE.PAS (cut)");
    EXPECT_EQ(onDisk("page.html"), "PAGE.HTM (cut)");
    EXPECT_EQ(onDisk("hello.pas.bak"), "HELLO.PAS (cut)");
    EXPECT_EQ(onDisk("hello..x"), "HELLO (cut)");
}

TEST(MsxName, SomeNamesAreImpossible) {
    EXPECT_EQ(onDisk(".gitignore"), "impossible: nothing stands before the point");
    EXPECT_EQ(onDisk(""), "impossible: nothing stands before the point");
    EXPECT_EQ(onDisk("my file.pas"), "impossible: it holds a blank");
    EXPECT_EQ(onDisk("a+b"), "impossible: it holds a '+'");
    EXPECT_EQ(onDisk("\xC3\xA7.pas"), "impossible: it holds a letter that is not ASCII");
    EXPECT_EQ(onDisk("a\x01"), "impossible: it holds a letter that is not ASCII");
    EXPECT_EQ(onDisk("nul.txt"), "impossible: on an MSX it is the name of a device");
    EXPECT_EQ(onDisk("Con"), "impossible: on an MSX it is the name of a device");
    EXPECT_EQ(onDisk("console"), "CONSOLE");
}

TEST(SafeHostName, KeepsAwayFromFoldersAndDevices) {
    const auto safe = [](const char* bytes) {
        Name83 name{};
        std::copy_n(bytes, name.size(), name.begin());
        return safeHostName(name);
    };
    EXPECT_EQ(safe("HELLO   PAS"), "HELLO.PAS");
    EXPECT_EQ(safe("../ETC/ PAS"), "___ETC_.PAS");
    EXPECT_EQ(safe("..         "), "__");
    EXPECT_EQ(safe("           "), "_");
    EXPECT_EQ(safe("C:\\X    *?|"), "C__X.___");
    EXPECT_EQ(safe("A B     C D"), "A_B.C_D");
    EXPECT_EQ(safe("\x81\xFE      \x01\x7F "), "__.__");
    EXPECT_EQ(safe("CON        "), "_CON");
    EXPECT_EQ(safe("COM1    TXT"), "_COM1.TXT");
    EXPECT_EQ(safe("COMX    TXT"), "COMX.TXT");
}

TEST(Pattern, FitsTheDosWay) {
    EXPECT_TRUE(fitsPattern("HELLO.PAS", "*.*"));
    EXPECT_TRUE(fitsPattern("HELLO", "*.*"));
    EXPECT_TRUE(fitsPattern("HELLO", "*"));
    EXPECT_TRUE(fitsPattern("HELLO.PAS", "*"));
    EXPECT_TRUE(fitsPattern("hello.pas", "H*.P?S"));
    EXPECT_TRUE(fitsPattern("HELLO", "hello.*"));
    EXPECT_FALSE(fitsPattern("HELLO.PAS", "*.INC"));
    EXPECT_FALSE(fitsPattern("HELLO.PAS", "HELL?"));
    EXPECT_FALSE(fitsPattern("HELLO2", "HELLO.*"));
    EXPECT_TRUE(fitsPattern("aXbXc", "a*b*c"));
    EXPECT_FALSE(fitsPattern("aXbX", "a*b*c"));
    EXPECT_TRUE(fitsPattern("", ""));
    EXPECT_FALSE(fitsPattern("a", ""));
}

} // namespace
} // namespace disk
