#include "settings/settings_merge.h"

#include "settings/recent_list.h"
#include "util/text.h"

#include <algorithm>

namespace tavrel {

namespace {

template <typename Field> void merge(Field& stored, const Field& former, const Field& mine) {
    if (mine != former)
        stored = mine;
}

bool holds(const Settings& settings, const std::string& path) {
    return std::any_of(settings.Recent.begin(), settings.Recent.end(),
                       [&](const std::string& entry) { return upperCase(entry) == upperCase(path); });
}

void removeRecent(Settings& settings, const std::string& path) {
    for (std::size_t i = 0; i < settings.Recent.size(); ++i) {
        if (upperCase(settings.Recent[i]) == upperCase(path))
            return removeFromRecentList(settings, i);
    }
}

void mergeRecentFiles(Settings& stored, const Settings& former, const Settings& mine) {
    bool added = false;
    for (std::size_t i = mine.Recent.size(); i-- > 0;) { // the newest last, so that it comes first
        if (mine.Recent[i].empty() || holds(former, mine.Recent[i]))
            continue;
        added = true;
        addToRecentList(stored, mine.Recent[i]);
    }
    if (added) // what is missing was pushed out of the list's end
        return;
    for (const std::string& path : former.Recent) {
        if (!path.empty() && !holds(mine, path))
            removeRecent(stored, path);
    }
}

} // namespace

Settings mergeSettings(const Settings& former, const Settings& mine, const Settings& stored) {
    Settings merged = stored;
    merge(merged.EmulatorPath, former.EmulatorPath, mine.EmulatorPath);
    merge(merged.EmulatorArgs, former.EmulatorArgs, mine.EmulatorArgs);
    mergeRecentFiles(merged, former, mine);
    merge(merged.DiskImageDir, former.DiskImageDir, mine.DiskImageDir);
    merge(merged.RegisterTpj, former.RegisterTpj, mine.RegisterTpj);
    merge(merged.AutoSave, former.AutoSave, mine.AutoSave);
    merge(merged.OpenNewProjectAtStart, former.OpenNewProjectAtStart, mine.OpenNewProjectAtStart);
    merge(merged.UseTooltips, former.UseTooltips, mine.UseTooltips);
    merge(merged.FontSize, former.FontSize, mine.FontSize);
    merge(merged.FontName, former.FontName, mine.FontName);
    return merged;
}

} // namespace tavrel
