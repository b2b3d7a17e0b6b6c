// Letter case outside Windows, for tests: Windows-1252, where letters above 7Fh lie 20h apart but for four.
#include "util/text.h"

namespace tavrel {

namespace {

unsigned char upper1252(unsigned char c) {
    if ((c >= 'a' && c <= 'z') || (c >= 0xE0 && c <= 0xFE && c != 0xF7))
        return static_cast<unsigned char>(c - 0x20);
    switch (c) {
    case 0x9A: // s with caron
    case 0x9C: // oe
    case 0x9E: // z with caron
        return static_cast<unsigned char>(c - 0x10);
    case 0xFF: // y with diaeresis
        return 0x9F;
    default:
        return c;
    }
}

unsigned char lower1252(unsigned char c) {
    if ((c >= 'A' && c <= 'Z') || (c >= 0xC0 && c <= 0xDE && c != 0xD7))
        return static_cast<unsigned char>(c + 0x20);
    switch (c) {
    case 0x8A:
    case 0x8C:
    case 0x8E:
        return static_cast<unsigned char>(c + 0x10);
    case 0x9F:
        return 0xFF;
    default:
        return c;
    }
}

} // namespace

std::string upperCase(std::string_view text) {
    std::string result(text);
    for (char& c : result)
        c = static_cast<char>(upper1252(static_cast<unsigned char>(c)));
    return result;
}

std::string lowerCase(std::string_view text) {
    std::string result(text);
    for (char& c : result)
        c = static_cast<char>(lower1252(static_cast<unsigned char>(c)));
    return result;
}

} // namespace tavrel
