#include "app/program_folder.h"

#include "util/paths.h"

#include <windows.h>

namespace tavrel {

namespace {

std::optional<std::string> exactAnsi(const std::wstring& text) {
    if (text.empty())
        return std::string();
    const int length = static_cast<int>(text.size());
    BOOL replaced = FALSE;
    const auto convert = [&](char* target, int size) {
        return WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, text.data(), length, target, size, nullptr,
                                   &replaced);
    };
    std::string bytes(static_cast<std::size_t>(convert(nullptr, 0)), '\0');
    convert(bytes.data(), static_cast<int>(bytes.size()));
    if (bytes.empty() || replaced != FALSE)
        return std::nullopt;
    return bytes;
}

std::wstring shortPath(const std::wstring& path) {
    std::wstring text(GetShortPathNameW(path.c_str(), nullptr, 0), L'\0');
    text.resize(GetShortPathNameW(path.c_str(), text.data(), static_cast<DWORD>(text.size())));
    return text;
}

} // namespace

std::optional<std::string> ansiPath(const std::wstring& path) {
    if (auto exact = exactAnsi(path))
        return exact;
    const std::wstring other = shortPath(path);
    return other.empty() ? std::nullopt : exactAnsi(other);
}

std::optional<std::string> programFolder() {
    constexpr std::size_t longest = 32'768; // characters of any path
    std::wstring path(longest, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    path.resize(path.rfind(L'\\') + 1);
    const auto folder = ansiPath(path);
    return folder ? std::optional(AddBackslash(*folder)) : std::nullopt;
}

std::string userDataFolder() {
    std::wstring path(GetEnvironmentVariableW(L"APPDATA", nullptr, 0), L'\0');
    path.resize(GetEnvironmentVariableW(L"APPDATA", path.data(), static_cast<DWORD>(path.size())));
    const auto folder = ansiPath(path);
    return !folder || folder->empty() ? std::string() : AddBackslash(*folder);
}

} // namespace tavrel
