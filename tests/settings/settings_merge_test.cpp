// Two programs with one settings file: neither undoes what the other changed.
#include "settings/settings_merge.h"

#include <gtest/gtest.h>

namespace tavrel {
namespace {

struct SettingsMerge : testing::Test {
    Settings former = SetDefaultSettings("C:\\T\\");
    Settings mine;
    Settings stored;

    SettingsMerge() {
        former.Recent = {"A.TPJ", "B.TPJ"};
        mine = former;
        stored = former;
    }
    std::array<std::string, recentCount> recent() { return mergeSettings(former, mine, stored).Recent; }
};

TEST_F(SettingsMerge, EachFieldThatIChangedIsMineAndEveryOtherTheFiles) {
    const Settings other = {"emu",      "args",      {"N.TPJ"},   "dsk", storedTrue,
                            storedTrue, storedFalse, storedFalse, 20,    "Font"};
    EXPECT_EQ(mergeSettings(former, former, other), other) << "I changed nothing";
    mine = other;
    mine.Recent = former.Recent;
    EXPECT_EQ(mergeSettings(former, mine, stored), mine) << "the other changed nothing";
    mine = former;
    mine.FontSize = 14;
    stored.EmulatorPath = "C:\\emu.exe";
    const Settings merged = mergeSettings(former, mine, stored);
    EXPECT_EQ(merged.FontSize, 14);
    EXPECT_EQ(merged.EmulatorPath, "C:\\emu.exe");
}

TEST_F(SettingsMerge, BothChangedTheSameFieldTheLastOneWins) {
    mine.FontSize = 14;
    stored.FontSize = 20;
    EXPECT_EQ(mergeSettings(former, mine, stored).FontSize, 14);
}

TEST_F(SettingsMerge, RecentFilesOfBothStay) {
    mine.Recent = {"M2.TPJ", "M1.TPJ", "A.TPJ", "B.TPJ"};
    stored.Recent = {"S.TPJ", "A.TPJ", "B.TPJ"};
    EXPECT_EQ(recent(),
              (std::array<std::string, recentCount>{"M2.TPJ", "M1.TPJ", "S.TPJ", "A.TPJ", "B.TPJ"}));
}

TEST_F(SettingsMerge, AFileThatBothOpenedIsThereOnce) {
    mine.Recent = {"new.tpj", "A.TPJ", "B.TPJ"};
    stored.Recent = {"S.TPJ", "NEW.TPJ", "A.TPJ", "B.TPJ"};
    EXPECT_EQ(recent(), (std::array<std::string, recentCount>{"S.TPJ", "NEW.TPJ", "A.TPJ", "B.TPJ", ""}));
}

TEST_F(SettingsMerge, ARemovedFileGoesAlthoughTheOtherAddedOne) {
    mine.Recent = {"B.TPJ"};
    stored.Recent = {"S.TPJ", "a.tpj", "B.TPJ"};
    EXPECT_EQ(recent(), (std::array<std::string, recentCount>{"S.TPJ", "B.TPJ", "", "", ""}));
}

TEST_F(SettingsMerge, WhatWasPushedOutIsNoRemoval) {
    former.Recent = {"1", "2", "3", "4", "5"};
    mine.Recent = {"N", "1", "2", "3", "4"};
    stored.Recent = {"5", "4"};
    EXPECT_EQ(recent(), (std::array<std::string, recentCount>{"N", "5", "4", "", ""}));
}

} // namespace
} // namespace tavrel
