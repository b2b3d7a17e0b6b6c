#include "generator.h"

#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>

namespace {

const char* const usage =
    "usage: pascal_generator SEED [--free] [--range-checks] [--sets] [--drop LIST] [--count]\n"
    "  --free          the text for Free Pascal\n"
    "  --range-checks  with {$R+}, and with values that pass\n"
    "  --sets          with set types\n"
    "  --drop LIST     without these statements and terms: numbers and ranges, as 3,10-20\n"
    "  --count         print how many statements and terms there are\n";

/// Reads "3,10-20" into one flag for each number; false when it is not such a list.
bool readList(const char* text, std::vector<bool>& flags) {
    while (*text != '\0') {
        char* end = nullptr;
        unsigned long first = std::strtoul(text, &end, 10);
        unsigned long last = first;
        if (end == text) {
            return false;
        }
        if (*end == '-') {
            text = end + 1;
            last = std::strtoul(text, &end, 10);
        }
        if (last < first || last > 10000000 || (*end != ',' && *end != '\0')) {
            return false;
        }
        if (flags.size() <= last) {
            flags.resize(last + 1);
        }
        for (unsigned long i = first; i <= last; ++i) {
            flags[i] = true;
        }
        text = *end == ',' ? end + 1 : end;
    }
    return true;
}

} // namespace

int main(int argc, char** argv) {
    fuzz::Options options;
    bool good = argc >= 2;
    if (good) {
        char* end = nullptr;
        options.seed = std::strtoull(argv[1], &end, 10);
        good = *end == '\0' && end != argv[1];
    }
    for (int i = 2; i < argc && good; ++i) {
        std::string word = argv[i];
        if (word == "--free") {
            options.dialect = fuzz::Dialect::freePascal;
        } else if (word == "--range-checks") {
            options.rangeChecks = true;
        } else if (word == "--sets") {
            options.sets = true;
        } else if (word == "--count") {
            options.showCount = true;
        } else if (word == "--drop" && i + 1 < argc) {
            good = readList(argv[++i], options.dropped);
        } else {
            good = false;
        }
    }
    if (!good) {
        std::cerr << usage;
        return 2;
    }
    fuzz::Generator generator(options);
    std::string source = generator.source();
    if (options.showCount) {
        std::cout << generator.count() << '\n';
    } else {
        std::cout << source;
    }
    std::cout.flush();
    return std::cout ? 0 : 1;
}
