#include "project/include_directive.h"
#include "project/project_file.h"
#include "tests/support/temporary_folder.h"
#include "util/runtime_error.h"

#include <gtest/gtest.h>
#include <random>

namespace tavrel {
namespace {

TEST(ProjectFile, FourLinesToTheByte) {
    EXPECT_EQ(encodeProjectFile({"Demo", 0x2E9B, static_cast<std::int16_t>(0xD200), "DEMO.PAS"}),
              "Demo\r\n2E9B\r\nD200\r\nDEMO.PAS\r\n");
    EXPECT_EQ(encodeProjectFile({"", 15, 0, "A"}), "\r\nF\r\n0\r\nA\r\n");
}

TEST(ProjectFile, ComesBackUnchanged) {
    const test::TemporaryFolder folder;
    const ProjectFileContent content{"A name, with \"punctuation\" ", 15, static_cast<std::int16_t>(0xD200),
                                     "C:\\OLD\\MAIN.PAS"};
    writeProjectFile(folder.path() + "a.tpj", content);
    EXPECT_EQ(readProjectFile(folder.path() + "a.tpj"), content);
}

TEST(ProjectFile, FewerThanFourLinesFail) {
    const test::TemporaryFolder folder;
    for (const char* const bytes : {"", "a\r\n", "a\r\nb\r\nc\r\n", "a\r\nb\r\nc\r\n\x1A"})
        EXPECT_THROW(readProjectFile(folder.write("a.tpj", bytes)), RuntimeError) << bytes;
    EXPECT_NO_THROW(readProjectFile(folder.write("a.tpj", "a\r\nb\r\nc\r\nd\r\nmore")));
    EXPECT_EQ(readProjectFile(folder.path() + "a.tpj").startAddress, 0xB);
}

TEST(ProjectFile, RandomBytesAreReadOrRefused) {
    const test::TemporaryFolder folder;
    std::mt19937 random(2);
    for (int round = 0; round < 500; ++round) {
        std::string bytes(random() % 60, '\0');
        for (char& c : bytes)
            c = static_cast<char>(random() % 3 == 0 ? '\n' : random());
        const std::string path = folder.write("a.tpj", bytes);
        try {
            readProjectFile(path);
        } catch (const RuntimeError& error) {
            ASSERT_EQ(error.number(), RuntimeErrorNumber::inputPastEndOfFile);
        }
    }
}

TEST(IncludeDirective, NameIsTheRestOfTheLine) {
    EXPECT_EQ(includeName("{$I demo.inc}"), "DEMO.INC");
    EXPECT_EQ(includeName("  {$i DEMO.INC } "), "DEMO.INC");
    EXPECT_EQ(includeName("{$I a.inc} {comment}"), "A.INC {COMMENT");
    EXPECT_EQ(includeName("writeln('{$I x}');"), "WRITELN(' X');");
    EXPECT_EQ(includeName("{$R+}"), std::nullopt);
}

TEST(IncludeDirective, RandomLinesNeverHoldADirectiveInTheName) {
    std::mt19937 random(3);
    const std::string letters = "{$Ii} ab\0\xFF";
    for (int round = 0; round < 5000; ++round) {
        std::string line(random() % 30, ' ');
        for (char& c : line)
            c = letters[random() % letters.size()];
        const auto name = includeName(line);
        if (name) {
            ASSERT_EQ(name->find('}'), std::string::npos);
        }
    }
}

} // namespace
} // namespace tavrel
