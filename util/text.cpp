#include "util/text.h"

#include "util/runtime_error.h"

#include <cmath>
#include <cstdlib>

namespace tavrel {

namespace {

int hexDigit(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return -1;
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// The longest prefix of `text` (already without blanks) that is a decimal number, its exponent letter D
/// rewritten to E.
std::string decimalPrefix(std::string_view text) {
    std::string number;
    std::size_t i = 0;
    const auto takeDigits = [&] {
        const std::size_t start = i;
        while (i < text.size() && isDigit(text[i]))
            number += text[i++];
        return i > start;
    };
    if (i < text.size() && (text[i] == '+' || text[i] == '-'))
        number += text[i++];
    bool digits = takeDigits();
    if (i < text.size() && text[i] == '.') {
        number += text[i++];
        digits = takeDigits() || digits;
    }
    if (!digits)
        return {};
    if (i < text.size() && (text[i] == 'E' || text[i] == 'e' || text[i] == 'D' || text[i] == 'd')) {
        const std::string mantissa = number;
        number += 'E';
        ++i;
        if (i < text.size() && (text[i] == '+' || text[i] == '-'))
            number += text[i++];
        if (!takeDigits())
            return mantissa;
    }
    return number;
}

} // namespace

std::string trimBlanks(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos)
        return {};
    const std::size_t last = text.find_last_not_of(' ');
    return std::string(text.substr(first, last - first + 1));
}

std::size_t findIgnoringCase(std::string_view text, std::string_view what, std::size_t from) {
    if (what.empty())
        return std::string::npos;
    return upperCase(text).find(upperCase(what), from);
}

std::string replaceIgnoringCase(std::string_view text, std::string_view what, std::string_view with) {
    if (what.empty())
        return std::string(text);
    const std::string haystack = upperCase(text);
    const std::string needle = upperCase(what);
    std::string result;
    std::size_t position = 0;
    for (;;) {
        const std::size_t found = haystack.find(needle, position);
        if (found == std::string::npos)
            break;
        result += text.substr(position, found - position);
        result += with;
        position = found + needle.size();
    }
    result += text.substr(position);
    return result;
}

std::string_view lastCharacters(std::string_view text, std::size_t count) {
    return text.size() <= count ? text : text.substr(text.size() - count);
}

std::string hexOf16(std::int16_t value) {
    const unsigned bits = static_cast<std::uint16_t>(value);
    std::string digits;
    for (int shift = 12; shift >= 0; shift -= 4) {
        const unsigned digit = (bits >> shift) & 0xFU;
        if (digit != 0 || !digits.empty() || shift == 0)
            digits += "0123456789ABCDEF"[digit];
    }
    return digits;
}

std::int16_t evaluateHex(std::string_view text) {
    unsigned value = 0;
    for (const char c : text) {
        const int digit = hexDigit(c);
        if (digit < 0)
            break;
        value = ((value << 4) | static_cast<unsigned>(digit)) & 0xFFFFU;
    }
    return static_cast<std::int16_t>(static_cast<std::uint16_t>(value));
}

double numericValue(std::string_view text) {
    std::string solid;
    for (const char c : text) {
        if (c != ' ' && c != '\t' && c != '\n')
            solid += c;
    }
    if (solid.size() >= 2 && solid[0] == '&' && (solid[1] == 'H' || solid[1] == 'h'))
        return evaluateHex(std::string_view(solid).substr(2));
    const std::string number = decimalPrefix(solid);
    return number.empty() ? 0.0 : std::strtod(number.c_str(), nullptr);
}

std::int16_t convertToInteger(std::string_view text) {
    const std::string number = trimBlanks(text);
    const bool hexadecimal = number.size() > 2 && upperCase(number.substr(0, 2)) == "&H";
    if (hexadecimal && number.find_first_not_of("0123456789abcdefABCDEF", 2) == std::string::npos)
        return evaluateHex(std::string_view(number).substr(2));
    if (number.empty() || decimalPrefix(number).size() != number.size())
        throw RuntimeError(RuntimeErrorNumber::typeMismatch, number);
    const double value = std::strtod(decimalPrefix(number).c_str(), nullptr);
    constexpr double lowest = -32768.5; // a half goes to the even neighbour, which is the lowest integer
    if (value < lowest || value >= 32767.5)
        throw RuntimeError(RuntimeErrorNumber::overflow, number);
    return static_cast<std::int16_t>(roundHalfToEven(value));
}

long roundHalfToEven(double value) {
    const double below = std::floor(value);
    const double fraction = value - below;
    const long whole = static_cast<long>(below);
    if (fraction > 0.5)
        return whole + 1;
    if (fraction < 0.5)
        return whole;
    return whole % 2 == 0 ? whole : whole + 1;
}

} // namespace tavrel
