#include "util/runtime_error.h"
#include "util/text.h"

#include <gtest/gtest.h>

namespace tavrel {
namespace {

TEST(Text, TrimTakesBlanksOnly) {
    EXPECT_EQ(trimBlanks("  a b  "), "a b");
    EXPECT_EQ(trimBlanks("\ta "), "\ta");
    EXPECT_EQ(trimBlanks("   "), "");
}

TEST(Text, UpperCaseKnowsAnsiLetters) {
    EXPECT_EQ(upperCase("a\xE4\xFFz1"), "A\xC4\x9FZ1");
    EXPECT_EQ(lowerCase("A\xC4\x9FZ"), "a\xE4\xFFz");
    EXPECT_EQ(upperCase("\xF7"), "\xF7"); // the division sign is no letter
}

TEST(Text, ReplaceIgnoresCaseAndDoesNotSearchReplacements) {
    EXPECT_EQ(replaceIgnoringCase("X.PAS.pas", ".pas", ""), "X");
    EXPECT_EQ(replaceIgnoringCase("aAa", "a", "aa"), "aaaaaa");
    EXPECT_EQ(replaceIgnoringCase("abc", "", "x"), "abc");
}

TEST(Text, HexadecimalOfSixteenBits) {
    EXPECT_EQ(hexOf16(11931), "2E9B");
    EXPECT_EQ(hexOf16(0), "0");
    EXPECT_EQ(hexOf16(15), "F");
    EXPECT_EQ(hexOf16(-16384), "C000");
}

TEST(Text, EvaluatingHexadecimalStopsAtTheFirstOtherCharacter) {
    EXPECT_EQ(evaluateHex("D200"), static_cast<std::int16_t>(0xD200));
    EXPECT_EQ(evaluateHex("f rest"), 15);
    EXPECT_EQ(evaluateHex(""), 0);
    EXPECT_EQ(evaluateHex("xyz"), 0);
    EXPECT_EQ(evaluateHex(" 1"), 0);
    EXPECT_EQ(evaluateHex("12345678901234560ABC"), 0x0ABC); // the low 16 bits
}

TEST(Text, EveryAddressSurvivesTextAndBack) {
    for (int bits = 0; bits <= 0xFFFF; ++bits) {
        const auto value = static_cast<std::int16_t>(static_cast<std::uint16_t>(bits));
        ASSERT_EQ(evaluateHex(hexOf16(value)), value);
    }
}

TEST(Text, NumericValueReadsWhatItCan) {
    EXPECT_EQ(numericValue("12"), 12);
    EXPECT_EQ(numericValue("  1 2abc"), 12);
    EXPECT_EQ(numericValue("-1.5E1x"), -15);
    EXPECT_EQ(numericValue("2D1"), 20);
    EXPECT_EQ(numericValue("3E"), 3);
    EXPECT_EQ(numericValue("&H10"), 16);
    EXPECT_EQ(numericValue("x"), 0);
    EXPECT_EQ(numericValue("."), 0);
}

TEST(Text, RoundingTakesHalvesToTheEvenNeighbour) {
    EXPECT_EQ(roundHalfToEven(0.5), 0);
    EXPECT_EQ(roundHalfToEven(1.5), 2);
    EXPECT_EQ(roundHalfToEven(2.5), 2);
    EXPECT_EQ(roundHalfToEven(-0.5), 0);
    EXPECT_EQ(roundHalfToEven(-1.5), -2);
    EXPECT_EQ(roundHalfToEven(2.4), 2);
    EXPECT_EQ(roundHalfToEven(2.6), 3);
}

RuntimeErrorNumber conversionError(const std::string& text) {
    try {
        convertToInteger(text);
    } catch (const RuntimeError& error) {
        return error.number();
    }
    return RuntimeErrorNumber::fileNotFound; // for "none"
}

TEST(Text, ConversionToIntegerTakesWholeNumbersOnly) {
    EXPECT_EQ(convertToInteger("11"), 11);
    EXPECT_EQ(convertToInteger(" -12 "), -12);
    EXPECT_EQ(convertToInteger("10.5"), 10);
    EXPECT_EQ(convertToInteger("11.5"), 12);
    EXPECT_EQ(convertToInteger("1e1"), 10);
    EXPECT_EQ(convertToInteger("&H1F"), 31);
    EXPECT_EQ(convertToInteger("32767.4"), 32767);
    EXPECT_EQ(convertToInteger("-32768.5"), -32768);
    for (const char* const text : {"", " ", "x", "12x", "1 2", "&H", "&Hxyz", "-", "1e"})
        EXPECT_EQ(conversionError(text), RuntimeErrorNumber::typeMismatch) << text;
    for (const char* const text : {"32767.5", "32768", "-32769", "1e300", "1e999"})
        EXPECT_EQ(conversionError(text), RuntimeErrorNumber::overflow) << text;
}

TEST(RuntimeErrors, CarryTheClassicTextAndTheDetail) {
    EXPECT_EQ(RuntimeError(RuntimeErrorNumber::fileNotFound).message(), "File not found");
    EXPECT_EQ(RuntimeError(RuntimeErrorNumber::inputPastEndOfFile, "x.txt").message(),
              "Input past end of file\r\nx.txt");
    EXPECT_EQ(static_cast<int>(RuntimeErrorNumber::pathNotFound), 76);
}

} // namespace
} // namespace tavrel
