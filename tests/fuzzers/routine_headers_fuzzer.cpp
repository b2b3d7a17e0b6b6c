// Any bytes as a source file for the routine index: each line as a header and as the word before the caret,
// and what the index then finds.
#include "editor/prefix_index.h"
#include "editor/routine_index.h"
#include "editor/signature_lookup.h"
#include "fuzzer.h"
#include "scratch_file.h"
#include "util/runtime_error.h"

using tavrel::fuzzing::require;

namespace {

void readLines(std::string_view text) {
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        const auto header = tavrel::routineHeader(line);
        require(!header || header->size() + 9 <= line.size());
        require(tavrel::searchedWord(line).size() <= line.size());
    }
}

/// What a walk through the list finds.
std::size_t firstOf(const std::vector<std::string>& headers, std::string_view word) {
    for (std::size_t i = 0; i < headers.size(); ++i)
        if (tavrel::beginsWithWord(headers[i], word))
            return i;
    return tavrel::PrefixIndex::none;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const tavrel::fuzzing::ScratchFile file(".pas");
    readLines({reinterpret_cast<const char*>(data), size});
    std::vector<tavrel::FileRoutineList> lists;
    try {
        tavrel::GetFileFunctions(lists, 0, file.write(data, size));
    } catch (const tavrel::RuntimeError&) {
        return 0;
    }
    const std::vector<std::string>& headers = lists[0].Headers;
    const std::vector<std::string> library;
    const tavrel::PrefixIndex libraryIndex;
    for (const std::string& header : headers) {
        const std::string word = tavrel::searchedWord(header);
        const std::size_t expected = firstOf(headers, word);
        require(lists[0].index.first(headers, word) == expected);
        const auto found =
            tavrel::findSignature(word, {library, libraryIndex, lists, 2}, [] { require(false); });
        require(found.has_value() == (expected != tavrel::PrefixIndex::none));
        require(!found || *found == headers[expected]);
    }
    return 0;
}
