#include "msxrun/name83.h"

#include <algorithm>

namespace msxrun {

namespace {

constexpr std::size_t nameLength = 8;

/// Characters that cannot stand in a name: they separate words, drives and folders.
constexpr std::string_view separators = ".:;,=+\"/\\[]|<>*";

bool isNameCharacter(char character) {
    const auto code = static_cast<unsigned char>(character);
    return code > ' ' && code != 0x7F && separators.find(character) == std::string_view::npos;
}

Name83 blankName() {
    Name83 name;
    name.fill(' ');
    return name;
}

/// Copies one part of a name (the eight or the three) with '*' spread over what is left of the field.
void fillPart(std::string_view part, char* field, std::size_t width) {
    for (std::size_t i = 0; i < part.size() && i < width; ++i) {
        if (part[i] == '*') {
            std::fill(field + i, field + width, '?');
            return;
        }
        field[i] = upperCase(part[i]);
    }
}

} // namespace

char upperCase(char character) {
    return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A') : character;
}

bool hasWildcards(const Name83& name) {
    return std::find(name.begin(), name.end(), '?') != name.end();
}

bool isFileName(const Name83& name) {
    if (name[0] == ' ') {
        return false;
    }
    const auto partIsSound = [](auto first, auto last) {
        const auto blank = std::find(first, last, ' ');
        return std::all_of(first, blank, [](char c) { return isNameCharacter(c) && c != '?'; }) &&
               std::all_of(blank, last, [](char c) { return c == ' '; });
    };
    return partIsSound(name.begin(), name.begin() + nameLength) &&
           partIsSound(name.begin() + nameLength, name.end());
}

bool matches(const Name83& pattern, const Name83& name) {
    return std::equal(pattern.begin(), pattern.end(), name.begin(),
                      [](char wanted, char given) { return wanted == '?' || upperCase(wanted) == given; });
}

std::optional<Name83> nameFromHost(std::string_view hostName) {
    const std::size_t point = hostName.find('.');
    const std::string_view stem = hostName.substr(0, point);
    const std::string_view type = point == std::string_view::npos ? "" : hostName.substr(point + 1);
    if (stem.size() > nameLength || type.size() > 3) {
        return std::nullopt;
    }
    const auto allowed = [](char c) { return isNameCharacter(c) && c != '?'; };
    if (!std::all_of(stem.begin(), stem.end(), allowed) || !std::all_of(type.begin(), type.end(), allowed)) {
        return std::nullopt;
    }
    Name83 name = blankName();
    fillPart(stem, name.data(), nameLength);
    fillPart(type, name.data() + nameLength, 3);
    return isFileName(name) ? std::optional(name) : std::nullopt;
}

std::string nameForHost(const Name83& name) {
    const std::string_view whole(name.data(), name.size());
    const auto trimmed = [](std::string_view part) { return part.substr(0, part.find_last_not_of(' ') + 1); };
    std::string text(trimmed(whole.substr(0, nameLength)));
    const std::string_view type = trimmed(whole.substr(nameLength));
    if (!type.empty()) {
        text += '.';
        text += type;
    }
    return text;
}

ParsedWord parseWord(std::string_view word) {
    ParsedWord parsed;
    parsed.name = blankName();
    if (word.size() >= 2 && word[1] == ':') {
        parsed.drive = static_cast<unsigned>(static_cast<unsigned char>(upperCase(word[0])) - '@') & 0xFFU;
        word.remove_prefix(2);
    }
    const auto partEnd = [](std::string_view text) {
        return static_cast<std::size_t>(
            std::find_if(text.begin(), text.end(),
                         [](char c) { return !isNameCharacter(c) && c != '*' && c != '?'; }) -
            text.begin());
    };
    const std::size_t stemEnd = partEnd(word);
    fillPart(word.substr(0, stemEnd), parsed.name.data(), nameLength);
    if (stemEnd < word.size() && word[stemEnd] == '.') {
        const std::string_view rest = word.substr(stemEnd + 1);
        fillPart(rest.substr(0, partEnd(rest)), parsed.name.data() + nameLength, 3);
    }
    return parsed;
}

} // namespace msxrun
