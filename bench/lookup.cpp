// bench_lookup ROUNDS: what a "(" costs until its signature is found, with 2,000 library entries and 5,000
// headers of the project. Beside it, in the same run, the rule written down as it is said: of each entry the
// first characters are cut off, turned to upper case, and compared.
#include "bench/figures.h"
#include "editor/signature_lookup.h"
#include "util/text.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace tavrel;
using namespace tavrel::bench;

constexpr int libraryEntries = 2000;
constexpr int projectHeaders = 5000;
constexpr int projectFiles = 10;
constexpr int repetitions = 200;

struct Index {
    std::vector<std::string> library;
    PrefixIndex libraryIndex;
    std::vector<FileRoutineList> files = std::vector<FileRoutineList>(projectFiles);
};

Index makeIndex() {
    Index index;
    for (int i = 0; i < libraryEntries; ++i)
        index.library.push_back("LibraryRoutine" + std::to_string(i) + "(Value1, Value2: integer): integer;");
    for (int i = 0; i < projectHeaders; ++i)
        appendHeader(index.files[static_cast<std::size_t>(i * projectFiles / projectHeaders)],
                     "LibraryWork" + std::to_string(i) + "(var Value: integer);");
    index.libraryIndex.build(index.library);
    for (FileRoutineList& file : index.files)
        file.index.build(file.Headers);
    return index;
}

using Answer = std::optional<std::string>;

Answer plainRule(const Index& index, const std::string& wordAtCaret) {
    const std::string word = searchedWord(wordAtCaret);
    const auto begins = [&](const std::string& text) {
        return upperCase(text.substr(0, word.size())) == word;
    };
    for (const std::string& entry : index.library) {
        if (begins(entry))
            return entry;
    }
    for (const FileRoutineList& file : index.files) {
        for (const std::string& header : file.Headers) {
            if (begins(header))
                return header;
        }
    }
    return std::nullopt;
}

Answer lookup(const Index& index, const std::string& wordAtCaret) {
    return findSignature(searchedWord(wordAtCaret),
                         {index.library, index.libraryIndex, index.files, projectFiles + 1},
                         [] { throw std::logic_error("every file has headers"); });
}

template <typename Search>
double microseconds(Search&& search, const Index& index, const std::string& word, int times,
                    const Answer& expected) {
    const double start = now();
    for (int i = 0; i < times; ++i) {
        if (search(index, word) != expected)
            throw std::runtime_error("wrong answer for " + word);
    }
    return 1000 * (now() - start) / times;
}

} // namespace

int main(int count, char** arguments) {
    const int rounds = count > 1 ? std::atoi(arguments[1]) : 7;
    const Index index = makeIndex();
    // The last header, a word that begins like all entries and is none, and one that is like none.
    const std::array<std::string, 3> words = {"LibraryWork4999", "libraryxyz", "Unknown"};
    double worst = 0;
    try {
        for (const std::string& word : words) {
            const Answer expected = plainRule(index, word);
            std::vector<double> plain;
            std::vector<double> ours;
            for (int round = 0; round < rounds; ++round) {
                plain.push_back(microseconds(plainRule, index, word, repetitions / 20, expected));
                ours.push_back(microseconds(lookup, index, word, repetitions, expected));
            }
            std::printf("| from \"%s(\" to its signature, medians of %d rounds | the rule carried out "
                        "plainly %.0f us | "
                        "%.1f us | %.3f |\n",
                        word.c_str(), rounds, median(plain), median(ours), medianRatio(ours, plain));
            worst = std::max(worst, median(ours));
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_lookup: %s\n", error.what());
        return 1;
    }
    std::printf("slowest: %.1f us of 50 us\n", worst);
    return worst < 50 ? 0 : 1;
}
