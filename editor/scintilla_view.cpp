#include "editor/scintilla_view.h"

#include <bit>
#include <stdexcept>

namespace tavrel {

namespace {

void registerScintilla() {
    static const int registered = Scintilla_RegisterClasses(GetModuleHandleA(nullptr));
    if (registered == 0)
        throw std::runtime_error("The editor component cannot be registered.");
}

} // namespace

ScintillaView::ScintillaView(HWND parent) {
    registerScintilla();
    window_ =
        CreateWindowExA(0, "Scintilla", "", WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | WS_HSCROLL, 0,
                        0, 0, 0, parent, nullptr, GetModuleHandleA(nullptr), nullptr);
    if (window_ == nullptr)
        throw std::runtime_error("The editor component cannot be made.");
    function_ = std::bit_cast<SciFnDirectStatus>(SendMessageA(window_, SCI_GETDIRECTSTATUSFUNCTION, 0, 0));
    pointer_ = SendMessageA(window_, SCI_GETDIRECTPOINTER, 0, 0);
}

sptr_t ScintillaView::call(unsigned message, uptr_t first, sptr_t second) const {
    int status = 0;
    const sptr_t result = function_(pointer_, message, first, second, &status);
    // Above the failures lie mere warnings, such as a wrong regular expression.
    if (status > SC_STATUS_OK && status < SC_STATUS_WARN_START) {
        function_(pointer_, SCI_SETSTATUS, SC_STATUS_OK, 0, &status);
        throw std::runtime_error("The editor failed to carry out a command.");
    }
    return result;
}

sptr_t ScintillaView::call(unsigned message, uptr_t first, const char* text) const {
    return call(message, first, std::bit_cast<sptr_t>(text));
}

std::string ScintillaView::allText() const {
    return range(0, call(SCI_GETLENGTH));
}

std::string ScintillaView::range(sptr_t start, sptr_t end) const {
    if (end <= start)
        return {};
    const sptr_t length = end - start;
    const auto* const bytes =
        std::bit_cast<const char*>(call(SCI_GETRANGEPOINTER, static_cast<uptr_t>(start), length));
    return std::string(bytes, static_cast<std::size_t>(length));
}

void ScintillaView::insert(sptr_t position, std::string_view bytes) const {
    call(SCI_SETTARGETRANGE, static_cast<uptr_t>(position), position);
    call(SCI_REPLACETARGET, bytes.size(), bytes.data());
}

} // namespace tavrel
