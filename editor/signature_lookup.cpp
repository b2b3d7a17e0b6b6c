#include "editor/signature_lookup.h"

#include "util/text.h"

#include <algorithm>
#include <array>

namespace tavrel {

namespace {

constexpr std::size_t characterCount = 256;

/// Upper case of each 8-bit character; asking the system for each comparison would cost more than all the
/// rest.
const std::array<char, characterCount>& upperCaseTable() {
    static const std::array<char, characterCount> table = [] {
        std::array<char, characterCount> made{};
        for (std::size_t code = 0; code < characterCount; ++code) {
            const auto character = static_cast<char>(static_cast<unsigned char>(code));
            const std::string upper = upperCase(std::string(1, character));
            made.at(code) = upper.size() == 1 ? upper[0] : character;
        }
        return made;
    }();
    return table;
}

void dropThrough(std::string& word, char separator) {
    const std::size_t position = word.find(separator);
    if (position != std::string::npos)
        word.erase(0, position + 1);
}

const std::string* firstThatBegins(const std::vector<std::string>& texts, std::string_view word) {
    const auto found = std::find_if(texts.begin(), texts.end(),
                                    [&](const std::string& text) { return beginsWithWord(text, word); });
    return found == texts.end() ? nullptr : &*found;
}

} // namespace

std::string searchedWord(std::string_view wordAtCaret) {
    std::string word = upperCase(wordAtCaret);
    dropThrough(word, ',');
    dropThrough(word, ';');
    return word;
}

bool beginsWithWord(std::string_view text, std::string_view upperCaseWord) {
    if (text.size() < upperCaseWord.size())
        return false;
    const auto& upper = upperCaseTable();
    return std::equal(upperCaseWord.begin(), upperCaseWord.end(), text.begin(), [&](char wanted, char found) {
        return wanted == upper[static_cast<unsigned char>(found)];
    });
}

std::optional<std::string> findSignature(std::string_view word,
                                         const std::vector<std::string>& AutocompleteList,
                                         const std::vector<FileRoutineList>& FileRoutineLists,
                                         std::size_t nodeCount, const std::function<void()>& refresh) {
    if (const std::string* const entry = firstThatBegins(AutocompleteList, word))
        return *entry;
    for (std::size_t file = 0; file + 1 < nodeCount; ++file) {
        if (file >= FileRoutineLists.size() || FileRoutineLists[file].Headers.empty()) {
            refresh();
            continue;
        }
        if (const std::string* const header = firstThatBegins(FileRoutineLists[file].Headers, word))
            return *header;
    }
    return std::nullopt;
}

} // namespace tavrel
