#include "disk/host_files.h"

#include "msxrun/name83.h"

#include <algorithm>
#include <system_error>

namespace disk {

namespace {

/// '*' stands for any characters, '?' for one.
bool glob(std::string_view name, std::string_view pattern) {
    std::size_t inName = 0;
    std::size_t inPattern = 0;
    std::size_t star = std::string_view::npos; // the last one passed, and where its text began
    std::size_t starText = 0;
    while (inName < name.size()) {
        if (inPattern < pattern.size() && pattern[inPattern] == '*') {
            star = inPattern++;
            starText = inName;
        } else if (inPattern < pattern.size() &&
                   (pattern[inPattern] == '?' ||
                    msxrun::upperCase(pattern[inPattern]) == msxrun::upperCase(name[inName]))) {
            ++inName;
            ++inPattern;
        } else if (star != std::string_view::npos) {
            inPattern = star + 1;
            inName = ++starText;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', inPattern) == std::string_view::npos;
}

Path folderOf(const Path& path) {
    const Path folder = path.parent_path();
    return folder.empty() ? Path(".") : folder;
}

} // namespace

bool hasWildcards(const std::string& text) {
    return textOf(pathOf(text).filename()).find_first_of("*?") != std::string::npos;
}

bool fitsPattern(std::string_view name, std::string_view pattern) {
    constexpr std::string_view anyType = ".*";
    if (glob(name, pattern))
        return true;
    return pattern.ends_with(anyType) && glob(name, pattern.substr(0, pattern.size() - anyType.size()));
}

std::vector<Path> filesThatFit(const std::string& pattern) {
    const Path whole = pathOf(pattern);
    const std::string name = textOf(whole.filename());
    std::vector<Path> found;
    std::error_code error;
    std::filesystem::directory_iterator entry(folderOf(whole), error);
    for (const std::filesystem::directory_iterator end; !error && entry != end; entry.increment(error)) {
        std::error_code ignored;
        if (!entry->is_directory(ignored) && fitsPattern(textOf(entry->path().filename()), name))
            found.push_back(whole.parent_path() / entry->path().filename());
    }
    if (error)
        throw FileError(files::Reason::refused, folderOf(whole), error.value());
    std::sort(found.begin(), found.end());
    return found;
}

bool namesFiles(const std::string& text) {
    std::error_code ignored;
    const Path path = pathOf(text);
    if (hasWildcards(text))
        return std::filesystem::is_directory(folderOf(path), ignored);
    return std::filesystem::exists(path, ignored) && !std::filesystem::is_directory(path, ignored);
}

bool isThere(const Path& path) {
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (!std::filesystem::status_known(status))
        throw FileError(files::Reason::refused, path, error.value());
    return std::filesystem::exists(status);
}

} // namespace disk
