// The names of temporary files: nothing of the user's is ever taken for one.
#include "files/temporary_name.h"

#include <gtest/gtest.h>

namespace files {
namespace {

TEST(TemporaryName, HasOneLength) {
    EXPECT_EQ(temporaryFileName(0x1A2B), "~tavrel-00001a2b.tmp");
    EXPECT_EQ(temporaryFileName(0x90ABCDEF), "~tavrel-90abcdef.tmp");
}

TEST(TemporaryName, IsRecognised) {
    for (const std::uint32_t number : {0U, 1U, 0x89ABCDEFU, 0xFFFFFFFFU})
        EXPECT_TRUE(isTemporaryFileName(temporaryFileName(number))) << number;
}

TEST(TemporaryName, NoOtherNameIsTakenForOne) {
    for (const char* const name :
         {"", "~tavrel", "~tavrel12-0", "~tavrel-notes.tmp", "~tavrel-0001a2b.tmp", "~tavrel-000001a2b.tmp",
          "~tavrel-00001A2B.tmp", "~TAVREL-00001a2b.tmp", "~tavrel-00001a2g.tmp", "~tavrel-00001a2b.pas",
          "~tavrel_00001a2b.tmp", "x~tavrel-00001a2b.tmp", "~tavrel-00001a2b.tmp "})
        EXPECT_FALSE(isTemporaryFileName(name)) << name;
}

} // namespace
} // namespace files
