// Changed programs through the whole compiler: it comes to an end, and says the same twice.
#include "compiler.h"
#include "mutation.h"
#include "test_source.h"

#include <gtest/gtest.h>

namespace tp3::test {
namespace {

TEST(CompileMutation, NoTextCrashesTheCompiler) {
    std::vector<std::string> pool;
    for (const auto& entry : std::filesystem::directory_iterator(PROGRAM_FOLDER))
        if (entry.path().extension() == ".PAS")
            pool.push_back(readFile(entry.path()));
    ASSERT_GT(pool.size(), 300U);
    std::sort(pool.begin(), pool.end());
    std::mt19937 random(19831121);
    MemoryHost host;
    CompileOptions options;
    options.mainFile = "MAIN.PAS";
    int compiled = 0;
    for (int round = 0; round < 1500; ++round) {
        host.files["MAIN.PAS"] = mutate(pool[random() % pool.size()], pool, random);
        const CompileResult first = compile(host, options);
        ASSERT_EQ(first.ok, first.diagnostic.error == Error::none);
        compiled += first.ok ? 1 : 0;
        if (round % 8 == 0) {
            const CompileResult second = compile(host, options);
            ASSERT_EQ(first.image, second.image);
            ASSERT_EQ(errorRecord(first.diagnostic), errorRecord(second.diagnostic));
        }
    }
    EXPECT_GT(compiled, 30) << "changes that leave a program reach the code generator";
}

} // namespace
} // namespace tp3::test
