#include "editor/source_words.h"

#include "util/text.h"

#include <algorithm>
#include <array>

namespace tavrel {

namespace {

bool isLetter(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           character == '_';
}

bool isWordCharacter(char character) {
    return isLetter(character) || (character >= '0' && character <= '9');
}

/// Position after the comment or string literal that begins at `start`, `start` itself when none does. One
/// that is not closed goes to the text's end; a string ends with its line.
std::size_t afterCommentOrString(std::string_view text, std::size_t start) {
    const auto after = [&](std::string_view end, std::size_t from) {
        const std::size_t found = text.find(end, from);
        return found == std::string_view::npos ? text.size() : found + end.size();
    };
    if (text[start] == '{')
        return after("}", start + 1);
    if (text.substr(start, 2) == "(*")
        return after("*)", start + 2);
    if (text[start] != '\'')
        return start;
    const std::size_t end = text.find_first_of("'\r\n", start + 1);
    if (end == std::string_view::npos)
        return text.size();
    return text[end] == '\'' ? end + 1 : end;
}

bool isWord(std::string_view text, std::string_view upperCaseWord) {
    return text.size() == upperCaseWord.size() && upperCase(text) == upperCaseWord;
}

template <std::size_t count>
bool isOneOf(std::string_view text, const std::array<std::string_view, count>& upperCaseWords) {
    return std::any_of(upperCaseWords.begin(), upperCaseWords.end(),
                       [&](std::string_view word) { return isWord(text, word); });
}

/// The lines with their ends.
std::vector<std::string_view> linesWithEnds(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        std::size_t length = text.find_first_of("\r\n");
        if (length == std::string_view::npos)
            length = text.size();
        else
            length += text.substr(length, 2) == "\r\n" ? 2U : 1U;
        lines.push_back(text.substr(0, length));
        text.remove_prefix(length);
    }
    return lines;
}

/// A line taken apart: blanks, what stands in it, blanks and line end.
struct LineParts {
    std::string_view before;
    std::string_view content;
    std::string_view after;
};

LineParts partsOf(std::string_view line) {
    const std::size_t first = std::min(line.find_first_not_of(" \t\r\n"), line.size());
    const std::size_t last = line.find_last_not_of(" \t\r\n");
    const std::size_t end = last == std::string_view::npos ? first : last + 1;
    return {line.substr(0, first), line.substr(first, end - first), line.substr(end)};
}

struct CommentKind {
    std::string_view open;
    std::string_view close;
};
constexpr std::array<CommentKind, 2> commentKinds = {CommentKind{"{ ", " }"}, CommentKind{"(* ", " *)"}};

/// What a comment that takes the whole line holds; nothing when the line is none.
std::optional<std::string_view> uncommented(std::string_view content) {
    for (const CommentKind& kind : commentKinds) {
        if (content.size() < kind.open.size() + kind.close.size() || !content.starts_with(kind.open) ||
            !content.ends_with(kind.close))
            continue;
        const std::string_view inner =
            content.substr(kind.open.size(), content.size() - kind.open.size() - kind.close.size());
        const std::string_view mark = kind.close.substr(1); // without its blank
        if (inner.find(mark) == std::string_view::npos)
            return inner;
    }
    return std::nullopt;
}

std::string commented(std::string_view content) {
    for (const CommentKind& kind : commentKinds) {
        if (content.find(kind.close.substr(1)) == std::string_view::npos)
            return std::string(kind.open) + std::string(content) + std::string(kind.close);
    }
    return std::string(content);
}

std::size_t lineOf(std::string_view text, std::size_t position) {
    std::size_t line = 0;
    for (std::size_t i = 0; i < position; ++i) {
        if (text[i] == '\n' || (text[i] == '\r' && text.substr(i, 2) != "\r\n"))
            ++line;
    }
    return line;
}

/// From the name in a routine's heading: does "forward" follow its first semicolon outside parentheses?
bool isForward(const std::vector<SourceWord>& words, std::size_t name) {
    int depth = 0;
    for (std::size_t i = name; i + 1 < words.size(); ++i) {
        if (words[i].text == "(")
            ++depth;
        else if (words[i].text == ")")
            --depth;
        else if (words[i].text == ";" && depth <= 0)
            return isWord(words[i + 1].text, "FORWARD");
    }
    return false;
}

/// Is the name declared here: "name =", "name :" or "name, other", not a label or an assignment in a body?
bool declares(const std::vector<SourceWord>& words, std::size_t name) {
    constexpr std::array<std::string_view, 4> sections = {"CONST", "TYPE", "VAR", "LABEL"};
    if (name + 1 >= words.size())
        return false;
    const std::string_view next = words[name + 1].text;
    const bool assigned = next == ":" && name + 2 < words.size() && words[name + 2].text == "=" &&
                          words[name + 2].start == words[name + 1].start + 1;
    if (name == 0 || assigned)
        return false;
    const std::string_view before = words[name - 1].text;
    const bool follows = before == ";" || before == "," || isOneOf(before, sections);
    return follows && (next == "=" || next == ":" || (next == "," && before != ";"));
}

constexpr std::array<std::string_view, 4> openers = {"BEGIN", "CASE", "RECORD", "REPEAT"};
constexpr std::array<std::string_view, 2> closers = {"END", "UNTIL"};

/// A variant record's "case" has no end of its own.
std::vector<SourceWord> blockWords(const std::vector<SourceWord>& words) {
    std::vector<SourceWord> blocks;
    std::vector<bool> records; // of each open block: is it a record?
    for (const SourceWord& word : words) {
        if (isOneOf(word.text, openers)) {
            if (isWord(word.text, "CASE") && !records.empty() && records.back())
                continue;
            records.push_back(isWord(word.text, "RECORD"));
            blocks.push_back(word);
        } else if (isOneOf(word.text, closers)) {
            if (!records.empty())
                records.pop_back();
            blocks.push_back(word);
        }
    }
    return blocks;
}

} // namespace

std::vector<SourceWord> sourceWords(std::string_view text) {
    std::vector<SourceWord> words;
    std::size_t at = 0;
    while (at < text.size()) {
        const std::size_t after = afterCommentOrString(text, at);
        if (after > at) {
            at = after;
            continue;
        }
        std::size_t end = at + 1;
        if (isWordCharacter(text[at])) {
            while (end < text.size() && isWordCharacter(text[end]))
                ++end;
        }
        if (std::string_view(" \t\r\n").find(text[at]) == std::string_view::npos)
            words.push_back({at, text.substr(at, end - at)});
        at = end;
    }
    return words;
}

bool opensBlock(std::string_view line) {
    constexpr std::array<std::string_view, 5> last = {"BEGIN", "THEN", "DO", "RECORD", "REPEAT"};
    const std::vector<SourceWord> words = sourceWords(line);
    if (words.empty())
        return false;
    if (isOneOf(words.back().text, last))
        return true;
    return isWord(words.back().text, "OF") &&
           std::any_of(words.begin(), words.end(),
                       [](const SourceWord& word) { return isWord(word.text, "CASE"); });
}

std::string toggleComments(std::string_view lines) {
    bool allComments = true;
    for (const std::string_view line : linesWithEnds(lines)) {
        const LineParts parts = partsOf(line);
        allComments = allComments && (parts.content.empty() || uncommented(parts.content));
    }
    std::string result;
    for (const std::string_view line : linesWithEnds(lines)) {
        const LineParts parts = partsOf(line);
        result += parts.before;
        if (!parts.content.empty())
            result += allComments ? std::string(*uncommented(parts.content)) : commented(parts.content);
        result += parts.after;
    }
    return result;
}

std::optional<std::size_t> declarationLine(std::string_view text, std::string_view name) {
    constexpr std::array<std::string_view, 2> headings = {"PROCEDURE", "FUNCTION"};
    const std::string wanted = upperCase(name);
    const std::vector<SourceWord> words = sourceWords(text);
    std::optional<std::size_t> forward;
    std::optional<std::size_t> other;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (!isWord(words[i].text, wanted))
            continue;
        if (i > 0 && isOneOf(words[i - 1].text, headings)) {
            if (!isForward(words, i))
                return lineOf(text, words[i].start);
            forward = forward.value_or(words[i].start);
        } else if (!other && declares(words, i)) {
            other = words[i].start;
        }
    }
    const std::optional<std::size_t> found = forward ? forward : other;
    return found ? std::optional(lineOf(text, *found)) : std::nullopt;
}

std::optional<std::size_t> matchingWord(std::string_view text, std::size_t position) {
    const std::vector<SourceWord> words = sourceWords(text);
    const std::vector<SourceWord> blocks = blockWords(words);
    std::vector<std::size_t> open; // indices of openers that wait for their end
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        if (isOneOf(blocks[i].text, openers)) {
            open.push_back(i);
            continue;
        }
        if (open.empty())
            continue;
        const SourceWord& first = blocks[open.back()];
        const SourceWord& last = blocks[i];
        open.pop_back();
        const auto isAt = [&](const SourceWord& word) {
            return position >= word.start && position <= word.start + word.text.size();
        };
        if (isWord(first.text, "REPEAT") != isWord(last.text, "UNTIL"))
            continue;
        if (isAt(first))
            return last.start;
        if (isAt(last))
            return first.start;
    }
    return std::nullopt;
}

} // namespace tavrel
