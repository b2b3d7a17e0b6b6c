// What the editor's keys know about Pascal source: blocks, comments, declarations. Pure functions over bytes.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavrel {

struct SourceWord {
    std::size_t start = 0;
    std::string_view text;
};

/// The words (letters, digits, underlines, beginning with no digit) of a text outside comments and string
/// literals, and each other visible character as a word of its own.
std::vector<SourceWord> sourceWords(std::string_view text);

/// Does the line end with a word after which the next line is indented further: begin, then, do, record,
/// repeat, or the "of" of a case?
bool opensBlock(std::string_view line);

/// Lines with their line ends: all of them as comments, or, when all already are, as they were before. Blank
/// lines stay. A line that holds the ends of both kinds of comments stays too.
std::string toggleComments(std::string_view lines);

/// The line (from 0) that declares a routine of this name, its body rather than a forward declaration;
/// without a routine, the first line that declares a constant, type, variable or label of it. Letter case
/// does not count.
std::optional<std::size_t> declarationLine(std::string_view text, std::string_view name);

/// The word that belongs to the one at or before `position`: the end of a begin, case or record, the until of
/// a repeat, and back. Gives its start; nothing when the word is none of these or has no partner.
std::optional<std::size_t> matchingWord(std::string_view text, std::size_t position);

} // namespace tavrel
