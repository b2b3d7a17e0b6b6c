#include "settings/recent_list.h"

#include "util/text.h"

#include <algorithm>
#include <utility>

namespace tavrel {

bool addToRecentList(Settings& settings, const std::string& path) {
    const std::string wanted = upperCase(path);
    const auto same = [&](const std::string& entry) { return upperCase(entry) == wanted; };
    if (std::any_of(settings.Recent.begin(), settings.Recent.end(), same))
        return false;
    std::move_backward(settings.Recent.begin(), settings.Recent.end() - 1, settings.Recent.end());
    settings.Recent.front() = path;
    return true;
}

void removeFromRecentList(Settings& settings, std::size_t index) {
    if (index >= settings.Recent.size())
        return;
    for (std::size_t i = index; i + 1 < settings.Recent.size(); ++i)
        settings.Recent[i] = std::move(settings.Recent[i + 1]);
    settings.Recent.back().clear();
}

} // namespace tavrel
