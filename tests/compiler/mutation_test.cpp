#include "mutation.h"
#include "test_source.h"

#include <gtest/gtest.h>

namespace tp3::test {
namespace {

std::vector<std::string> samples() {
    std::vector<std::string> result;
    for (const char* folder : {TREE_FOLDER, ERROR_FOLDER})
        for (const auto& entry : std::filesystem::directory_iterator(folder))
            if (entry.path().extension() != ".txt")
                result.push_back(readFile(entry.path()));
    return result;
}

// Whatever the text, the parser comes to an end, and the same text gives the same result twice.
TEST(Mutation, NoTextCrashesTheParser) {
    const std::vector<std::string> pool = samples();
    std::mt19937 random(20240229);
    MemoryHost host;
    host.files["RECURSE.INC"] = "writeln; {$I RECURSE.INC}";
    for (int round = 0; round < 4000; ++round) {
        host.files["MAIN.PAS"] = mutate(pool[random() % pool.size()], pool, random);
        host.chunk = round % 3 == 0 ? 1 : 100000;
        const Features features = round % 2 == 0 ? allFeatures : shippedFeatures;
        const Parsed first = parse(host, features);
        ASSERT_EQ(first.ok, first.diagnostic.error == Error::none);
        if (round % 8 == 0) {
            const Parsed second = parse(host, features);
            ASSERT_EQ(first.text, second.text);
            ASSERT_EQ(first.facts.size(), second.facts.size());
            ASSERT_EQ(first.error(), second.error());
        }
    }
}

TEST(Mutation, RandomBytesAreAnError) {
    std::mt19937 random(7);
    for (int round = 0; round < 1000; ++round) {
        std::string text(random() % 2000, ' ');
        for (char& character : text)
            character = static_cast<char>(random() & 0xFF);
        ASSERT_FALSE(parse(text).ok);
    }
}

} // namespace
} // namespace tp3::test
