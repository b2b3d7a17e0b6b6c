#include "util/runtime_error.h"
#include "util/text_input.h"

#include <gtest/gtest.h>

namespace tavrel {
namespace {

TEST(TextInput, LinesEndAtAnyLineEnd) {
    TextInput input("a\r\nb\rc\nd");
    EXPECT_EQ(input.line(), "a");
    EXPECT_EQ(input.line(), "b");
    EXPECT_EQ(input.line(), "c");
    EXPECT_EQ(input.line(), "d");
    EXPECT_TRUE(input.atEnd());
}

TEST(TextInput, OnlyACarriageReturnAndTheLineFeedAfterItAreOneLineEnd) {
    TextInput input("a\r\rb\n\nc\n\rd\r\r\ne");
    for (const char* const expected : {"a", "", "b", "", "c", "", "d", "", "e"})
        EXPECT_EQ(input.line(), expected);
    EXPECT_TRUE(input.atEnd());
    TextInput items("1\r\r2\n\n\"3\"\n\r4\r");
    for (const char* const expected : {"1", "", "2", "", "3", "", "4"})
        EXPECT_EQ(items.item(), expected);
    EXPECT_TRUE(items.atEnd());
}

TEST(TextInput, TabsAndBlanksBeforeAnItemAreSkipped) {
    TextInput input("\t \tA\t,\t\"B\"\t,\t\r\n\tC");
    EXPECT_EQ(input.item(), "A\t");
    EXPECT_EQ(input.item(), "B");
    EXPECT_EQ(input.item(), "");
    EXPECT_EQ(input.item(), "C");
    EXPECT_TRUE(input.atEnd());
}

TEST(TextInput, ReadingPastTheEndFails) {
    TextInput input("");
    try {
        input.line();
        FAIL() << "an empty file has no line";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.number(), RuntimeErrorNumber::inputPastEndOfFile);
    }
}

TEST(TextInput, ControlZEndsTheFile) {
    TextInput input("a\r\n\x1A rest");
    EXPECT_EQ(input.line(), "a");
    EXPECT_TRUE(input.atEnd());
}

TEST(TextInput, ItemsAreSeparatedByCommasAndLineEnds) {
    TextInput input("\"A, B\", 12,3\r\n  plain text \r\n\r\n\"open");
    EXPECT_EQ(input.item(), "A, B");
    EXPECT_EQ(input.item(), "12");
    EXPECT_EQ(input.item(), "3");
    EXPECT_EQ(input.item(), "plain text ");
    EXPECT_EQ(input.item(), "");
    EXPECT_EQ(input.item(), "open");
    EXPECT_THROW(input.item(), RuntimeError);
}

TEST(TextInput, WhatFollowsAClosingQuoteBelongsToNoItem) {
    TextInput input("\"A\" junk,\"\",\"B\"\r\"C\nD\"\n,\r\n");
    EXPECT_EQ(input.item(), "A");
    EXPECT_EQ(input.item(), "");
    EXPECT_EQ(input.item(), "B");
    EXPECT_EQ(input.item(), "C\nD") << "a quoted text may go over lines";
    EXPECT_EQ(input.item(), "");
    EXPECT_EQ(input.item(), "");
    EXPECT_TRUE(input.atEnd());
}

TEST(TextInput, ControlZEndsAnItem) {
    TextInput input("a,b\x1A"
                    "c");
    EXPECT_EQ(input.item(), "a");
    EXPECT_EQ(input.item(), "b");
    EXPECT_THROW(input.item(), RuntimeError);
}

} // namespace
} // namespace tavrel
