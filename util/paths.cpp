#include "util/paths.h"

namespace tavrel {

std::string GetFilePath(std::string_view path) {
    const std::size_t last = path.rfind('\\');
    return last == std::string_view::npos ? std::string() : std::string(path.substr(0, last + 1));
}

std::string GetFileName(std::string_view path) {
    const std::size_t last = path.rfind('\\');
    return std::string(last == std::string_view::npos ? path : path.substr(last + 1));
}

std::string AddBackslash(std::string_view text) {
    std::string result(text);
    if (result.empty() || result.back() != '\\')
        result += '\\';
    return result;
}

} // namespace tavrel
