#include "emulator/request.h"

#include <gtest/gtest.h>
#include <set>

namespace emulator {
namespace {

using Words = std::vector<std::string>;

IsFile among(std::set<std::string> names) {
    return [names = std::move(names)](const std::string& name) { return names.contains(name); };
}

TEST(StarterArguments, FollowTheProgramsName) {
    const Words expected = {"-diska", "C:\\d.dsk", "-msx2"};
    for (const char* const program :
         {"C:\\Tavrel\\emulator\\msx.exe", "\"C:\\My Tools\\emulator\\msx.exe\"", "msx.exe", "msx",
          "C:\\My Tools\\emulator\\MSX.EXE", "C:/My msx.exe tools/msx.exe", "\xC3\x9C b\\msx.exe"})
        EXPECT_EQ(argumentsOf(std::string(program) + "  -diska C:\\d.dsk\t-msx2 ", "msx.exe"), expected)
            << program;
    EXPECT_EQ(argumentsOf("C:\\T\\msx.exe", "msx.exe"), Words{});
    EXPECT_EQ(argumentsOf("", "msx.exe"), Words{});
    EXPECT_EQ(argumentsOf("\"unended", "msx.exe"), Words{});
}

TEST(StarterArguments, QuotesAndBackslashesCountAsInTheCLibrary) {
    EXPECT_EQ(argumentsOf("m \"a b\" c", "m"), (Words{"a b", "c"}));
    EXPECT_EQ(argumentsOf("m a\\b\\\\c \"d\\\\\" e", "m"), (Words{"a\\b\\\\c", "d\\", "e"}));
    EXPECT_EQ(argumentsOf("m a\\\"b \"c\\\\\\\"d\"", "m"), (Words{"a\"b", "c\\\"d"}));
    EXPECT_EQ(argumentsOf("m \"\" x\"y z\"w", "m"), (Words{"", "xy zw"}));
    EXPECT_EQ(argumentsOf("m \"a b", "m"), (Words{"a b"}));
}

TEST(StarterRequest, HasTheImageAndTheMachine) {
    const Request request = parseRequest({"-diska", "C:\\d.dsk", "-msx1"}, among({"C:\\d.dsk"}));
    EXPECT_EQ(request.image, "C:\\d.dsk");
    EXPECT_EQ(request.machine, Machine::msx1);
    EXPECT_EQ(request.rest, Words{});
    EXPECT_EQ(parseRequest({"-msx2+"}, among({})).machine, Machine::msx2plus);
    EXPECT_EQ(parseRequest({"-msx1", "-msx2"}, among({})).machine, Machine::msx2);
    EXPECT_EQ(parseRequest({}, among({})).machine, Machine::msx2);
}

TEST(StarterRequest, PutsAnImageWithBlanksTogether) {
    const IsFile isFile = among({"C:\\My disks\\a d.dsk"});
    const Request whole = parseRequest({"-diska", "C:\\My", "disks\\a", "d.dsk", "-msx1", "x"}, isFile);
    EXPECT_EQ(whole.image, "C:\\My disks\\a d.dsk");
    EXPECT_EQ(whole.machine, Machine::msx1);
    EXPECT_EQ(whole.rest, Words{"x"});
    // One that is not there is named whole in the message.
    EXPECT_EQ(parseRequest({"-diska", "C:\\No", "such", "d.dsk", "-msx1"}, isFile).image,
              "C:\\No such d.dsk");
    // A file that stands further on is not drawn in.
    const Request two = parseRequest({"-diska", "a.dsk", "b.rom"}, among({"a.dsk", "a.dsk b.rom"}));
    EXPECT_EQ(two.image, "a.dsk");
    EXPECT_EQ(two.rest, Words{"b.rom"});
}

TEST(StarterRequest, HandsTheRestOn) {
    const Request request = parseRequest({"-carta", "x.rom", "-msx3", "-diska"}, among({}));
    EXPECT_EQ(request.image, "");
    EXPECT_EQ(request.rest, (Words{"-carta", "x.rom", "-msx3", "-diska"}));
}

TEST(StarterRequest, PassesBetweenTwoProcesses) {
    const Request request = {"C:\\\xC3\xBC ber\\d.dsk", Machine::msx2plus, {"-carta", "", "a b"}};
    EXPECT_EQ(decodeRequest(encodeRequest(request)), request);
    EXPECT_EQ(decodeRequest(encodeRequest({})), Request{});
    const std::string text = encodeRequest(request);
    EXPECT_EQ(decodeRequest(text.substr(0, 6)), Request{});
    EXPECT_EQ(decodeRequest(std::string("-msx9\0a\0", 8)), Request{});
    EXPECT_EQ(decodeRequest(""), Request{});
}

} // namespace
} // namespace emulator
