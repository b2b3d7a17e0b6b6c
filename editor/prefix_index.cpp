#include "editor/prefix_index.h"

#include "util/text.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace tavrel {

namespace {

constexpr std::size_t characterCount = 256;

/// Upper case of each 8-bit character; asking the system for each comparison would cost more than all the
/// rest.
const std::array<unsigned char, characterCount>& upperCaseTable() {
    static const std::array<unsigned char, characterCount> table = [] {
        std::array<unsigned char, characterCount> made{};
        for (std::size_t code = 0; code < characterCount; ++code) {
            const auto character = static_cast<char>(static_cast<unsigned char>(code));
            const std::string upper = upperCase(std::string(1, character));
            made.at(code) = static_cast<unsigned char>(upper.size() == 1 ? upper[0] : character);
        }
        return made;
    }();
    return table;
}

/// Below, at or above zero as the text's upper-case beginning comes before the word, is it, or comes behind.
int compareBeginning(std::string_view text, std::string_view upperCaseWord) {
    const auto& upper = upperCaseTable();
    const std::size_t common = std::min(text.size(), upperCaseWord.size());
    for (std::size_t i = 0; i < common; ++i) {
        const int difference =
            upper[static_cast<unsigned char>(text[i])] - static_cast<unsigned char>(upperCaseWord[i]);
        if (difference != 0)
            return difference;
    }
    return text.size() < upperCaseWord.size() ? -1 : 0;
}

} // namespace

bool beginsWithWord(std::string_view text, std::string_view upperCaseWord) {
    return compareBeginning(text, upperCaseWord) == 0;
}

void PrefixIndex::build(const std::vector<std::string>& texts) {
    const auto& upper = upperCaseTable();
    order_.resize(texts.size());
    std::iota(order_.begin(), order_.end(), 0U);
    std::sort(order_.begin(), order_.end(), [&](std::uint32_t left, std::uint32_t right) {
        return std::lexicographical_compare(texts[left].begin(), texts[left].end(), texts[right].begin(),
                                            texts[right].end(), [&](char a, char b) {
                                                return upper[static_cast<unsigned char>(a)] <
                                                       upper[static_cast<unsigned char>(b)];
                                            });
    });
}

std::size_t PrefixIndex::first(const std::vector<std::string>& texts, std::string_view upperCaseWord) const {
    if (order_.size() != texts.size()) {
        const auto found = std::find_if(texts.begin(), texts.end(), [&](const std::string& text) {
            return beginsWithWord(text, upperCaseWord);
        });
        return found == texts.end() ? none : static_cast<std::size_t>(found - texts.begin());
    }
    const auto begin = std::partition_point(order_.begin(), order_.end(), [&](std::uint32_t index) {
        return compareBeginning(texts[index], upperCaseWord) < 0;
    });
    const auto end = std::partition_point(begin, order_.end(), [&](std::uint32_t index) {
        return compareBeginning(texts[index], upperCaseWord) == 0;
    });
    return begin == end ? none : *std::min_element(begin, end);
}

} // namespace tavrel
