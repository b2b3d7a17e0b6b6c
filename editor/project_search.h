// A text in all files of the project.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavrel {

struct SourcePlace {
    std::size_t file = 0;
    std::size_t offset = 0;
    auto operator<=>(const SourcePlace&) const = default;
};

struct FoundPlace {
    SourcePlace place;
    std::size_t number = 0; ///< of this hit among all, from 1
    std::size_t count = 0;  ///< of all hits
    bool operator==(const FoundPlace&) const = default;
};

/// The first hit at or after `from`, else the first of all; letter case does not count. Nothing when there
/// is none.
std::optional<FoundPlace> findInTexts(const std::vector<std::string>& texts, std::string_view wanted,
                                      SourcePlace from);

} // namespace tavrel
