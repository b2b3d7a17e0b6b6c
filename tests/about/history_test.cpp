#include "about/history.h"
#include "tests/support/temporary_folder.h"
#include "util/runtime_error.h"

#include <gtest/gtest.h>

namespace tavrel {
namespace {

TEST(History, EveryLineEndsInCrLf) {
    const test::TemporaryFolder folder;
    folder.write("history.txt", "Tavrel 0.1\n\n- First\r\n- Second");
    EXPECT_EQ(readHistory(folder.path()), "Tavrel 0.1\r\n\r\n- First\r\n- Second\r\n");
    folder.write("history.txt", "");
    EXPECT_EQ(readHistory(folder.path()), "");
}

TEST(History, AMissingFileIsAnError) {
    const test::TemporaryFolder folder;
    EXPECT_THROW(readHistory(folder.path()), RuntimeError);
}

} // namespace
} // namespace tavrel
