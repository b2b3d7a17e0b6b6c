#include "build/compiler_results.h"
#include "util/runtime_error.h"
#include "util/text_input.h"

#include <gtest/gtest.h>
#include <random>

namespace tavrel {
namespace {

TEST(CompilerResults, OneRecordIsShown) {
    TextInput file("\"DEMO.PAS\",12,5,1,\"';' expected, really\"\r\n");
    const CompilerError error = readCompilerErrors(file);
    EXPECT_EQ(error.file, "DEMO.PAS");
    EXPECT_EQ(error.line, 12);
    EXPECT_EQ(error.text, "file  : DEMO.PAS: line 12, column 5\r\nError : 1 - ';' expected, really\r\n");
}

TEST(CompilerResults, OfTwoRecordsOnlyTheFirstIsShown) {
    TextInput file("A,1,1,1,x\r\nB,2,2,2,y\r\n");
    EXPECT_EQ(readCompilerErrors(file).text, "file  : A: line 1, column 1\r\nError : 1 - x\r\n");
}

TEST(CompilerResults, ARecordThatIsNotWholeFails) {
    TextInput file("A,1,1\r\n");
    EXPECT_THROW(readCompilerErrors(file), RuntimeError);
}

TEST(CompilerResults, SizeLinesStartWithCode) {
    TextInput file("Compiler\r\ncode no\r\nCode: 1\r\nData: 2\r\nFree: 3\r\n");
    EXPECT_EQ(readSizeLines(file), (std::vector<std::string>{"Code: 1", "Data: 2", "Free: 3"}));
    TextInput without("nothing\r\n");
    EXPECT_EQ(readSizeLines(without), std::nullopt);
    TextInput cut("Code: 1\r\n");
    EXPECT_EQ(readSizeLines(cut), std::nullopt);
}

TEST(CompilerResults, RandomBytesAreReadOrRefused) {
    std::mt19937 random(4);
    const std::string letters = "\",\r\n 1aC\x1A";
    for (int round = 0; round < 5000; ++round) {
        std::string bytes(random() % 80, ' ');
        for (char& c : bytes)
            c = random() % 5 == 0 ? static_cast<char>(random()) : letters[random() % letters.size()];
        TextInput errors(bytes);
        try {
            ASSERT_FALSE(readCompilerErrors(errors).text.empty());
        } catch (const RuntimeError& error) {
            ASSERT_EQ(error.number(), RuntimeErrorNumber::inputPastEndOfFile);
        }
        TextInput result(bytes);
        readSizeLines(result);
    }
}

} // namespace
} // namespace tavrel
