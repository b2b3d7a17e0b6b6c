#include "editor/project_search.h"

#include "util/text.h"

#include <algorithm>

namespace tavrel {

std::optional<FoundPlace> findInTexts(const std::vector<std::string>& texts, std::string_view wanted,
                                      SourcePlace from) {
    std::vector<SourcePlace> hits;
    for (std::size_t file = 0; file < texts.size(); ++file) {
        std::size_t at = findIgnoringCase(texts[file], wanted);
        while (at != std::string::npos) {
            hits.push_back({file, at});
            at = findIgnoringCase(texts[file], wanted, at + wanted.size());
        }
    }
    if (hits.empty())
        return std::nullopt;
    auto next = std::lower_bound(hits.begin(), hits.end(), from);
    if (next == hits.end())
        next = hits.begin();
    return FoundPlace{*next, static_cast<std::size_t>(next - hits.begin()) + 1, hits.size()};
}

} // namespace tavrel
