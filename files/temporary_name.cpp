#include "files/temporary_name.h"

namespace files {

namespace {

constexpr std::string_view shape = "~tavrel-########.tmp"; // # stands for a digit
constexpr std::string_view digits = "0123456789abcdef";

} // namespace

std::string temporaryFileName(std::uint32_t number) {
    unsigned shift = 32;
    std::string name;
    for (const char c : shape)
        name += c == '#' ? digits[number >> (shift -= 4) & 0xF] : c;
    return name;
}

bool isTemporaryFileName(std::string_view name) {
    if (name.size() != shape.size())
        return false;
    for (std::size_t i = 0; i < name.size(); ++i) {
        const bool fits =
            shape[i] == '#' ? digits.find(name[i]) != std::string_view::npos : name[i] == shape[i];
        if (!fits)
            return false;
    }
    return true;
}

} // namespace files
