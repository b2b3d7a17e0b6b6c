#include "dos_name.h"

namespace tp3 {
namespace {

// Letters, digits and the punctuation that DOS takes in file names.
constexpr bool isFileCharacter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           std::string_view("!#$%&'()-@^_`{}~").find(c) != std::string_view::npos;
}

} // namespace

bool isDosName(std::string_view name) {
    const std::size_t dot = name.find('.');
    const std::string_view stem = name.substr(0, dot);
    const std::string_view extension =
        dot == std::string_view::npos ? std::string_view() : name.substr(dot + 1);
    if (stem.empty() || stem.size() > 8 || extension.size() > 3)
        return false;
    for (const char c : stem)
        if (!isFileCharacter(c))
            return false;
    for (const char c : extension)
        if (!isFileCharacter(c))
            return false;
    return true;
}

bool isDosDevice(std::string_view path) {
    const std::size_t folder = path.find_last_of("\\/:");
    std::string_view stem = path.substr(folder == std::string_view::npos ? 0 : folder + 1);
    stem = stem.substr(0, stem.find('.'));
    while (!stem.empty() && stem.back() == ' ')
        stem.remove_suffix(1);
    const bool numbered = stem.size() == 4 && stem.back() >= '1' && stem.back() <= '9';
    const std::string_view kind = stem.substr(0, 3);
    return stem == "CON" || stem == "NUL" || stem == "AUX" || stem == "PRN" || stem == "CLOCK$" ||
           (numbered && (kind == "COM" || kind == "LPT"));
}

std::string notADosName(std::string_view name) {
    return std::string(name) + " (DOS takes names of 8 characters, a dot and 3)";
}

} // namespace tp3
