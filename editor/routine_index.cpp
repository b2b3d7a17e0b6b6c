#include "editor/routine_index.h"

#include "util/text.h"
#include "util/text_input.h"

#include <utility>

namespace tavrel {

namespace {

/// Lines as the editor has them: they end with CR LF, CR or LF.
template <typename Visit> void forEachLine(std::string_view text, const Visit& visit) {
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = start;
        while (end < text.size() && text[end] != '\r' && text[end] != '\n')
            ++end;
        visit(text.substr(start, end - start));
        const bool two = text.substr(end, 2) == "\r\n";
        start = end + (two ? 2 : 1);
    }
}

std::optional<std::string> headerBehind(std::string_view keyword, const std::string& trimmed,
                                        const std::string& upper) {
    // The word may open the line without a blank behind it and stand with one only later.
    const std::size_t position = upper.find(keyword);
    if (position == std::string::npos || !upper.starts_with(keyword.substr(0, keyword.size() - 1)))
        return std::nullopt;
    return trimmed.substr(position + keyword.size());
}

} // namespace

std::optional<std::string> routineHeader(std::string_view line) {
    // Nearly every line ends here, before it is copied and turned into upper case.
    const std::size_t first = line.find_first_not_of(' ');
    if (first == std::string_view::npos ||
        std::string_view("FfPp").find(line[first]) == std::string_view::npos)
        return std::nullopt;
    const std::string trimmed = trimBlanks(line);
    const std::string upper = upperCase(trimmed);
    if (auto header = headerBehind("FUNCTION ", trimmed, upper))
        return header;
    return headerBehind("PROCEDURE ", trimmed, upper);
}

void appendHeader(FileRoutineList& list, std::string header) {
    list.Headers.push_back(std::move(header));
    ++list.Count;
}

void GetFileFunctions(std::vector<FileRoutineList>& lists, std::size_t index, const std::string& fileName) {
    if (lists.size() <= index)
        lists.resize(index + 1);
    TextInput file = TextInput::open(fileName);
    do {
        if (auto header = routineHeader(file.line()))
            appendHeader(lists[index], std::move(*header));
    } while (!file.atEnd());
    lists[index].index.build(lists[index].Headers);
}

bool RefreshTooltips(std::vector<FileRoutineList>& lists, const std::vector<std::string>& nodeTexts,
                     const std::string& selectedText, const SourceEditor& editor) {
    if (nodeTexts.size() <= 1)
        return true;
    std::optional<std::size_t> filled;
    // The root (first) has no list, even when its text is the selected one.
    for (std::size_t node = 1; node < nodeTexts.size(); ++node) {
        if (nodeTexts[node] != selectedText)
            continue;
        const std::size_t list = node - 1;
        if (lists.size() <= list)
            lists.resize(list + 1);
        lists[list] = FileRoutineList();
        filled = list;
    }
    if (!filled)
        return false;
    // The whole text at once: asking the editor for ten thousand lines, with each Enter, would be felt.
    const std::string text = editor.text();
    forEachLine(text, [&](std::string_view line) {
        if (auto header = routineHeader(line))
            appendHeader(lists[*filled], std::move(*header));
    });
    lists[*filled].index.build(lists[*filled].Headers);
    return true;
}

} // namespace tavrel
