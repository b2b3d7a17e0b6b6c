#include "editor/editor_events.h"

namespace tavrel {

std::optional<EditorKey> editorKey(int key, int shift) {
    struct Row {
        int shift;
        int key;
        EditorKey meaning;
    };
    constexpr int tab = 9;
    constexpr int f2 = 113;
    constexpr int f3 = 114;
    constexpr Row rows[] = {
        {shiftState::control, tab, EditorKey::nextPane},
        {shiftState::control + shiftState::shift, tab, EditorKey::previousPane},
        {shiftState::control, f2, EditorKey::calculator},
        {shiftState::control, f3, EditorKey::imageConverter},
        {shiftState::control, 'S', EditorKey::saveFile},
    };
    for (const Row& row : rows) {
        if (row.shift == shift && row.key == key)
            return row.meaning;
    }
    return std::nullopt;
}

int nextPane(int active, int paneCount) {
    if (paneCount <= 0)
        return active;
    return active + 1 > paneCount - 1 ? 0 : active + 1;
}

int previousPane(int active, int paneCount) {
    if (paneCount <= 0)
        return active;
    return active - 1 < 0 ? paneCount - 1 : active - 1;
}

} // namespace tavrel
