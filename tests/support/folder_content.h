// What lies in a folder before and after something that may fail.
#pragma once

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <utility>

namespace tavrel::test {

/// The bytes of all files of a folder and of those below, by their paths within it.
using FolderContent = std::map<std::string, std::string>;

inline FolderContent contentOf(const std::filesystem::path& folder) {
    FolderContent content;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (!entry.is_regular_file())
            continue;
        std::string bytes(static_cast<std::size_t>(entry.file_size()), '\0');
        std::ifstream(entry.path(), std::ios::binary)
            .read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        content[entry.path().lexically_relative(folder).generic_string()] = std::move(bytes);
    }
    return content;
}

/// Brings a folder back to a content. What has not changed keeps its time.
inline void restore(const std::filesystem::path& folder, const FolderContent& content) {
    const FolderContent found = contentOf(folder);
    for (const auto& [name, bytes] : found) {
        if (!content.contains(name))
            std::filesystem::remove(folder / name);
    }
    for (const auto& [name, bytes] : content) {
        const auto old = found.find(name);
        if (old == found.end() || old->second != bytes)
            std::ofstream(folder / name, std::ios::binary) << bytes;
    }
}

/// Each file is as it was or as it has to become, and none is lost. Others may be there only when nobody
/// could have taken them away.
inline void expectOldOrNew(const FolderContent& found, const FolderContent& before,
                           const FolderContent& whole, bool othersMayStay) {
    const auto isIn = [](const FolderContent& content, const auto& file) {
        const auto same = content.find(file.first);
        return same != content.end() && same->second == file.second;
    };
    for (const auto& file : found) {
        if (before.contains(file.first) || whole.contains(file.first)) {
            EXPECT_TRUE(isIn(before, file) || isIn(whole, file))
                << file.first << " is torn: " << file.second.size() << " bytes";
        } else {
            EXPECT_TRUE(othersMayStay) << file.first << " is left over";
        }
    }
    for (const auto& file : before) {
        if (whole.contains(file.first)) {
            EXPECT_TRUE(found.contains(file.first)) << file.first << " is lost";
        }
    }
}

} // namespace tavrel::test
