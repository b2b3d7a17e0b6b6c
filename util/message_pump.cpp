#include "util/message_pump.h"

#include <algorithm>
#include <vector>

namespace tavrel {

namespace {

std::vector<MessageFilter*>& filters() {
    static std::vector<MessageFilter*> list;
    return list;
}

void handle(MSG& message) {
    const std::vector<MessageFilter*> current = filters(); // a filter may go while it handles
    for (MessageFilter* const filter : current) {
        const std::vector<MessageFilter*>& live = filters();
        if (std::find(live.begin(), live.end(), filter) != live.end() && filter->handleFirst(message))
            return;
    }
    TranslateMessage(&message);
    DispatchMessageA(&message);
}

} // namespace

MessageFilter::MessageFilter() {
    filters().push_back(this);
}

MessageFilter::~MessageFilter() {
    std::erase(filters(), this);
}

int runMessageLoop() {
    MSG message = {};
    while (GetMessageA(&message, nullptr, 0, 0) > 0)
        handle(message);
    return static_cast<int>(message.wParam);
}

void pumpPendingMessages() {
    MSG message = {};
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
        if (message.message == WM_QUIT) {
            PostQuitMessage(static_cast<int>(message.wParam));
            throw ProgramEnds();
        }
        handle(message);
    }
}

} // namespace tavrel
