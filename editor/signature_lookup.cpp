#include "editor/signature_lookup.h"

#include "util/text.h"

namespace tavrel {

namespace {

void dropThrough(std::string& word, char separator) {
    const std::size_t position = word.find(separator);
    if (position != std::string::npos)
        word.erase(0, position + 1);
}

} // namespace

std::string searchedWord(std::string_view wordAtCaret) {
    std::string word = upperCase(wordAtCaret);
    dropThrough(word, ',');
    dropThrough(word, ';');
    return word;
}

std::optional<std::string> findSignature(std::string_view word, const SignatureSources& sources,
                                         const std::function<void()>& refresh) {
    const std::size_t entry = sources.autocompleteIndex.first(sources.AutocompleteList, word);
    if (entry != PrefixIndex::none)
        return sources.AutocompleteList[entry];
    for (std::size_t file = 0; file + 1 < sources.nodeCount; ++file) {
        if (file >= sources.FileRoutineLists.size() || sources.FileRoutineLists[file].Headers.empty()) {
            refresh();
            continue;
        }
        const FileRoutineList& list = sources.FileRoutineLists[file];
        const std::size_t header = list.index.first(list.Headers, word);
        if (header != PrefixIndex::none)
            return list.Headers[header];
    }
    return std::nullopt;
}

} // namespace tavrel
