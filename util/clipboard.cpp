#include "util/clipboard.h"

#include <algorithm>

namespace tavrel {

bool putTextOnClipboard(HWND owner, const std::string& text) {
    if (OpenClipboard(owner) == 0)
        return false;
    EmptyClipboard();
    HGLOBAL const memory = GlobalAlloc(GMEM_MOVEABLE, text.size() + 1);
    bool done = false;
    if (memory != nullptr) {
        if (auto* const bytes = static_cast<char*>(GlobalLock(memory))) {
            std::copy_n(text.c_str(), text.size() + 1, bytes);
            GlobalUnlock(memory);
            done = SetClipboardData(CF_TEXT, memory) != nullptr;
        }
        if (!done)
            GlobalFree(memory); // otherwise it belongs to the clipboard
    }
    CloseClipboard();
    return done;
}

} // namespace tavrel
