#include "util/paths.h"

#include "util/text.h"

#include <algorithm>
#include <array>

namespace tavrel {

namespace {

/// Windows takes these for devices, whatever ending and blanks follow.
bool isDeviceName(std::string_view name) {
    const std::string stem = upperCase(trimBlanks(name.substr(0, name.find('.'))));
    constexpr std::array<std::string_view, 6> plain = {"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$"};
    if (std::find(plain.begin(), plain.end(), stem) != plain.end())
        return true;
    return stem.size() == 4 && (stem.starts_with("COM") || stem.starts_with("LPT")) && stem[3] >= '0' &&
           stem[3] <= '9';
}

} // namespace

std::string GetFilePath(std::string_view path) {
    const std::size_t last = path.rfind('\\');
    return last == std::string_view::npos ? std::string() : std::string(path.substr(0, last + 1));
}

std::string GetFileName(std::string_view path) {
    const std::size_t last = path.rfind('\\');
    return std::string(last == std::string_view::npos ? path : path.substr(last + 1));
}

std::string bareFileName(std::string_view path) {
    const std::size_t last = path.find_last_of("\\/:");
    return std::string(last == std::string_view::npos ? path : path.substr(last + 1));
}

bool isFileName(std::string_view text) {
    const auto forbidden = [](char c) {
        return static_cast<unsigned char>(c) < ' ' ||
               std::string_view("\\/:*?\"<>|").find(c) != std::string_view::npos;
    };
    const bool onlyPointsAndBlanks = text.find_first_not_of(". ") == std::string_view::npos; // "", "..", ". "
    return !onlyPointsAndBlanks && std::none_of(text.begin(), text.end(), forbidden) && !isDeviceName(text);
}

std::string AddBackslash(std::string_view text) {
    std::string result(text);
    if (result.empty() || result.back() != '\\')
        result += '\\';
    return result;
}

} // namespace tavrel
