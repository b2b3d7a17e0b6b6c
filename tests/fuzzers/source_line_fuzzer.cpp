// Any bytes as a source file for the routine index, and each line as a directive, a header and a word before
// the caret.
#include "editor/prefix_index.h"
#include "editor/routine_index.h"
#include "editor/signature_lookup.h"
#include "fuzzer.h"
#include "project/include_directive.h"
#include "scratch_file.h"
#include "util/runtime_error.h"

using tavrel::fuzzing::require;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const tavrel::fuzzing::ScratchFile file(".pas");
    std::string_view text(reinterpret_cast<const char*>(data), size);
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        const auto name = tavrel::includeName(line);
        require(!name || name->find('}') == std::string::npos);
        tavrel::routineHeader(line);
        require(tavrel::searchedWord(line).size() <= line.size());
    }
    std::vector<tavrel::FileRoutineList> lists;
    try {
        tavrel::GetFileFunctions(lists, 1, file.write(data, size));
    } catch (const tavrel::RuntimeError&) {
        return 0;
    }
    for (const tavrel::FileRoutineList& list : lists) {
        for (const std::string& header : list.Headers) {
            const std::string word = tavrel::searchedWord(header);
            // The index finds what a walk through the list finds.
            std::size_t expected = tavrel::PrefixIndex::none;
            for (std::size_t i = list.Headers.size(); i-- > 0;)
                if (tavrel::beginsWithWord(list.Headers[i], word))
                    expected = i;
            require(list.index.first(list.Headers, word) == expected);
        }
    }
    return 0;
}
