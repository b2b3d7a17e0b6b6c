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
    TextInput shop("Code: 1, of 2\r\n\"Data, quoted\"\r\nFree: 3");
    EXPECT_EQ(readSizeLines(shop), (std::vector<std::string>{"Code: 1", "of 2", "Data, quoted"}));
}

TEST(CompilerResults, SizeLinesThatAreMissingAreLeftOut) {
    for (const char* const bytes : {"", "nothing\r\n", "\x1A", "x\x1A\r\nCode: 1\r\n"}) {
        TextInput file{std::string(bytes)};
        EXPECT_TRUE(readSizeLines(file).empty()) << bytes;
    }
    TextInput cut("Code: 1\r\nData: 2");
    EXPECT_EQ(readSizeLines(cut), (std::vector<std::string>{"Code: 1", "Data: 2"}));
}

TEST(CompilerResults, RecordsMayBeWrittenInManyWays) {
    const std::string expected = "file  : A.PAS: line 7, column 2\r\nError : 41 - some text\r\n";
    for (const char* const bytes :
         {"A.PAS,7,2,41,some text", "\"A.PAS\",\"7\",\"2\",\"41\",\"some text\"\r\n",
          " A.PAS, 7, 2, 41, some text\n", "A.PAS\r7\r2\r41\rsome text\r", "A.PAS\n7\n2\n41\nsome text\n",
          "A.PAS,7,2,41,some text\r\n\x1Ajunk,1,2,3,4"}) {
        TextInput file{std::string(bytes)};
        const CompilerError error = readCompilerErrors(file);
        EXPECT_EQ(error.text, expected) << bytes;
        EXPECT_EQ(error.file, "A.PAS") << bytes;
        EXPECT_EQ(error.line, 7) << bytes;
    }
}

TEST(CompilerResults, OfThreeRecordsTheLastIsNotShown) {
    TextInput file("A,1,1,1,x\r\nB,2,2,2,y\r\nC,3,3,3,z\r\n");
    const CompilerError error = readCompilerErrors(file);
    EXPECT_EQ(error.text, "file  : A: line 1, column 1\r\nError : 1 - x\r\n"
                          "file  : B: line 2, column 2\r\nError : 2 - y\r\n");
    EXPECT_EQ(error.file, "A");
    EXPECT_EQ(error.line, 1);
}

TEST(CompilerResults, EmptyFieldsAreFields) {
    TextInput file(",,,,\r\n");
    EXPECT_EQ(readCompilerErrors(file).text, "file  : : line , column \r\nError :  - \r\n");
    TextInput empty("");
    EXPECT_THROW(readCompilerErrors(empty), RuntimeError);
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
