#include "emulator/control.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

namespace emulator {

namespace {

/// Longer than this without an end is no element but noise; it is passed on as plain text so that nothing
/// piles up.
constexpr std::size_t longestElement = 1U << 20;

constexpr std::array<std::pair<std::string_view, char>, 5> entities = {
    {{"lt", '<'}, {"gt", '>'}, {"amp", '&'}, {"quot", '"'}, {"apos", '\''}}};

/// What stands between "&" and ";", as a character: a name, or the number of an ASCII character as openMSX
/// writes the end of a line ("#x0a").
std::optional<char> characterOf(std::string_view entity) {
    for (const auto& [name, character] : entities)
        if (name == entity)
            return character;
    const bool hexadecimal = entity.starts_with("#x");
    if (!entity.starts_with('#'))
        return std::nullopt;
    entity.remove_prefix(hexadecimal ? 2 : 1);
    unsigned number = 0;
    const auto [end, error] =
        std::from_chars(entity.data(), entity.data() + entity.size(), number, hexadecimal ? 16 : 10);
    if (error != std::errc() || end != entity.data() + entity.size() || number == 0 || number > 0x7F)
        return std::nullopt;
    return static_cast<char>(number);
}

std::string unescaped(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const std::size_t end = text[0] == '&' ? text.find(';') : text.npos;
        const std::optional<char> character =
            end == text.npos ? std::nullopt : characterOf(text.substr(1, end - 1));
        result += character.value_or(text[0]);
        text.remove_prefix(character ? end + 1 : 1);
    }
    return result;
}

struct Element {
    std::string_view name;
    Said::Kind kind;
};
constexpr std::array<Element, 3> elements = {
    {{"reply", Said::Kind::reply}, {"log", Said::Kind::log}, {"update", Said::Kind::update}}};

/// The element that begins with this text, or null: "<reply" and then a blank or ">".
const Element* elementAt(std::string_view text) {
    for (const Element& element : elements) {
        if (text.size() > element.name.size() + 1 && text[0] == '<' &&
            text.substr(1, element.name.size()) == element.name &&
            (text[element.name.size() + 1] == ' ' || text[element.name.size() + 1] == '>'))
            return &element;
    }
    return nullptr;
}

/// Whether more text could still make this the beginning of an element.
bool mayBecomeElement(std::string_view text) {
    return std::any_of(elements.begin(), elements.end(), [&](const Element& element) {
        const std::string beginning = "<" + std::string(element.name);
        return text.size() <= beginning.size() && beginning.starts_with(text);
    });
}

} // namespace

std::string controlCommand(std::string_view command) {
    std::string text = "<command>";
    for (const char character : command) {
        if (character == '<')
            text += "&lt;";
        else if (character == '>')
            text += "&gt;";
        else if (character == '&')
            text += "&amp;";
        else
            text += character;
    }
    return text + "</command>\n";
}

std::string tclWord(std::string_view text) {
    std::string word = "\"";
    for (const char character : text) {
        constexpr std::string_view special = "\"\\$[]{};";
        if (character == '\n') {
            word += "\\n";
            continue;
        }
        if (special.find(character) != special.npos)
            word += '\\';
        word += character;
    }
    return word + '"';
}

void OutputReader::add(std::string_view piece) {
    pending_ += piece;
}

std::optional<Said> OutputReader::next() {
    pending_.erase(0, std::min(pending_.find_first_not_of("\r\n"), pending_.size()));
    if (pending_.empty() || (mayBecomeElement(pending_) && pending_.size() < longestElement))
        return std::nullopt;
    Said said;
    std::size_t end = 0;
    if (const Element* const element = elementAt(pending_); element != nullptr) {
        const std::string closing = "</" + std::string(element->name) + ">";
        const std::size_t start = pending_.find('>');
        const std::size_t stop = start == pending_.npos ? start : pending_.find(closing, start);
        if (stop != pending_.npos) {
            const bool failed = pending_.substr(0, start).find("\"nok\"") != pending_.npos;
            said.kind = element->kind == Said::Kind::reply && failed ? Said::Kind::failure : element->kind;
            said.text = unescaped(std::string_view(pending_).substr(start + 1, stop - start - 1));
            end = stop + closing.size();
        } else if (pending_.size() < longestElement) {
            return std::nullopt;
        }
    }
    if (end == 0) {
        end = pending_.find('\n');
        if (end == pending_.npos && pending_.size() < longestElement)
            return std::nullopt;
        end = std::min(end, pending_.size());
        said.text = pending_.substr(0, end);
        if (said.text.ends_with('\r'))
            said.text.pop_back();
    }
    pending_.erase(0, end);
    return said;
}

} // namespace emulator
