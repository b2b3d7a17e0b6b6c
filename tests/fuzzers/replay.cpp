// The corpus of a fuzz target and mutations of it, always the same ones, as a test.
#include "fuzzer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

std::vector<Bytes> corpus() {
    std::vector<std::filesystem::path> paths;
    std::string folders = CORPUS_FOLDERS;
    for (std::size_t from = 0; from < folders.size();) {
        const std::size_t to = std::min(folders.find('|', from), folders.size());
        for (const auto& entry : std::filesystem::directory_iterator(folders.substr(from, to - from)))
            if (entry.is_regular_file())
                paths.push_back(entry.path());
        from = to + 1;
    }
    std::sort(paths.begin(), paths.end());
    std::vector<Bytes> result;
    for (const auto& path : paths) {
        std::ifstream file(path, std::ios::binary);
        result.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }
    return result;
}

Bytes mutated(Bytes bytes, std::mt19937& random) {
    const auto below = [&](std::size_t limit) { return static_cast<std::ptrdiff_t>(random() % limit); };
    for (std::ptrdiff_t changes = 1 + below(4); changes > 0; --changes) {
        const std::ptrdiff_t at = below(bytes.size() + 1);
        const auto length = std::min<std::ptrdiff_t>(below(20), std::ssize(bytes) - at);
        switch (below(5)) {
        case 0:
            bytes.erase(bytes.begin() + at, bytes.begin() + at + length);
            break;
        case 1:
            bytes.insert(bytes.begin() + at, static_cast<std::uint8_t>(below(256)));
            break;
        case 2:
            if (at < std::ssize(bytes))
                bytes[static_cast<std::size_t>(at)] = static_cast<std::uint8_t>(below(256));
            break;
        case 3: {
            const Bytes part(bytes.begin() + at, bytes.begin() + at + length);
            bytes.insert(bytes.begin() + below(bytes.size() + 1), part.begin(), part.end());
            break;
        }
        default:
            bytes.resize(static_cast<std::size_t>(at));
            break;
        }
    }
    return bytes;
}

TEST(Replay, CorpusAndMutations) {
    const std::vector<Bytes> files = corpus();
    ASSERT_FALSE(files.empty());
    for (const Bytes& file : files)
        LLVMFuzzerTestOneInput(file.data(), file.size());
    std::mt19937 random(20261121);
    constexpr int rounds = 2000;
    for (int round = 0; round < rounds; ++round) {
        const Bytes bytes = mutated(files[random() % files.size()], random);
        LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    }
}

} // namespace
