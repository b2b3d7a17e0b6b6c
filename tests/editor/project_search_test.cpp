#include "editor/project_search.h"

#include <gtest/gtest.h>

namespace tavrel {
namespace {

const std::vector<std::string> texts = {"one Two", "", "two twotwo"};

TEST(ProjectSearch, GoesThroughTheFilesInOrderAndAround) {
    EXPECT_EQ(findInTexts(texts, "two", {0, 0}), (FoundPlace{{0, 4}, 1, 4}));
    EXPECT_EQ(findInTexts(texts, "TWO", {0, 5}), (FoundPlace{{2, 0}, 2, 4}));
    EXPECT_EQ(findInTexts(texts, "two", {2, 3}), (FoundPlace{{2, 4}, 3, 4}));
    EXPECT_EQ(findInTexts(texts, "two", {2, 7}), (FoundPlace{{2, 7}, 4, 4}));
    EXPECT_EQ(findInTexts(texts, "two", {2, 8}), (FoundPlace{{0, 4}, 1, 4}));
}

TEST(ProjectSearch, WhatIsNowhereIsNotFound) {
    EXPECT_EQ(findInTexts(texts, "three", {0, 0}), std::nullopt);
    EXPECT_EQ(findInTexts(texts, "", {0, 0}), std::nullopt);
    EXPECT_EQ(findInTexts({}, "two", {0, 0}), std::nullopt);
}

} // namespace
} // namespace tavrel
