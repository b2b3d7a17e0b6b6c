// Any bytes as a source for the editor's keys: words in order, comments that can be taken back, partners that
// point at each other. The same bytes as the name of a rescue copy.
#include "editor/source_words.h"
#include "fuzzer.h"
#include "project/rescue_copies.h"

using tavrel::fuzzing::require;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    std::size_t behind = 0;
    for (const tavrel::SourceWord& word : tavrel::sourceWords(text)) {
        require(word.start >= behind && !word.text.empty());
        require(text.substr(word.start, word.text.size()) == word.text);
        behind = word.start + word.text.size();
        if (const auto partner = tavrel::matchingWord(text, word.start)) {
            require(*partner < text.size());
            require(tavrel::matchingWord(text, *partner).has_value());
        }
        if (const auto line = tavrel::declarationLine(text, word.text))
            require(*line <= text.size());
        if (behind > 2000) // each word looks at the whole text
            break;
    }
    const std::string once = tavrel::toggleComments(text);
    const std::string twice = tavrel::toggleComments(once);
    if (text.find("*)") == std::string_view::npos) // every line can become a comment
        require(twice == text || tavrel::toggleComments(twice) == once);
    (void)tavrel::opensBlock(text);
    if (const auto name = tavrel::readRescueFileName(text))
        require(tavrel::rescueFileName(*name) == text);
    return 0;
}
