#include "tests/acceptance/drive/remote.h"

#include <algorithm>
#include <bit>
#include <stdexcept>

namespace tavrel::drive {

RemoteMemory::RemoteMemory(HWND window, std::size_t size) {
    DWORD identifier = 0;
    GetWindowThreadProcessId(window, &identifier);
    process_ = OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE, identifier);
    memory_ = VirtualAllocEx(process_, nullptr, size, MEM_COMMIT, PAGE_READWRITE);
    if (memory_ == nullptr)
        throw std::runtime_error("the program's memory cannot be reached");
}

RemoteMemory::~RemoteMemory() {
    VirtualFreeEx(process_, memory_, 0, MEM_RELEASE);
    CloseHandle(process_);
}

LPARAM RemoteMemory::address() const {
    return std::bit_cast<LPARAM>(memory_);
}

LPARAM RemoteMemory::addressAt(std::size_t offset) const {
    return address() + static_cast<LPARAM>(offset);
}

void RemoteMemory::write(const void* bytes, std::size_t size, std::size_t offset) const {
    WriteProcessMemory(process_, std::bit_cast<void*>(addressAt(offset)), bytes, size, nullptr);
}

void RemoteMemory::read(void* bytes, std::size_t size) const {
    ReadProcessMemory(process_, memory_, bytes, size, nullptr);
}

std::string RemoteMemory::text(std::size_t offset, std::size_t size) const {
    std::string bytes(size, '\0');
    ReadProcessMemory(process_, std::bit_cast<const void*>(addressAt(offset)), bytes.data(), size, nullptr);
    return bytes.substr(0, bytes.find('\0'));
}

namespace {

constexpr std::size_t textRoom = 1024;

HTREEITEM neighbour(HWND tree, UINT which, HTREEITEM item) {
    return std::bit_cast<HTREEITEM>(SendMessageA(tree, TVM_GETNEXTITEM, which, std::bit_cast<LPARAM>(item)));
}

TreeEntry readEntry(HWND tree, const RemoteMemory& memory, HTREEITEM item, int depth) {
    TVITEMA request = {};
    request.mask = TVIF_TEXT | TVIF_IMAGE | TVIF_HANDLE;
    request.hItem = item;
    request.pszText = std::bit_cast<char*>(memory.addressAt(sizeof request));
    request.cchTextMax = static_cast<int>(textRoom);
    memory.write(&request, sizeof request);
    SendMessageA(tree, TVM_GETITEMA, 0, memory.address());
    TreeEntry entry{memory.text(sizeof request, textRoom), item, depth, 0, false};
    memory.read(&request, sizeof request);
    entry.image = request.iImage + 1;
    entry.selected = neighbour(tree, TVGN_CARET, nullptr) == item;
    return entry;
}

void collect(HWND tree, const RemoteMemory& memory, HTREEITEM item, int depth,
             std::vector<TreeEntry>& entries) {
    for (; item != nullptr; item = neighbour(tree, TVGN_NEXT, item)) {
        entries.push_back(readEntry(tree, memory, item, depth));
        collect(tree, memory, neighbour(tree, TVGN_CHILD, item), depth + 1, entries);
    }
}

} // namespace

std::vector<TreeEntry> treeEntries(HWND tree) {
    const RemoteMemory memory(tree, sizeof(TVITEMA) + textRoom);
    std::vector<TreeEntry> entries;
    collect(tree, memory, neighbour(tree, TVGN_ROOT, nullptr), 0, entries);
    return entries;
}

bool selectListItem(HWND list, const std::string& text) {
    const RemoteMemory memory(list, sizeof(LVITEMA) + textRoom);
    LVITEMA request = {};
    request.pszText = std::bit_cast<char*>(memory.addressAt(sizeof request));
    request.cchTextMax = static_cast<int>(textRoom);
    const LRESULT count = SendMessageA(list, LVM_GETITEMCOUNT, 0, 0);
    for (LRESULT item = 0; item < count; ++item) {
        memory.write(&request, sizeof request);
        SendMessageA(list, LVM_GETITEMTEXTA, static_cast<WPARAM>(item), memory.address());
        if (memory.text(sizeof request, textRoom) != text)
            continue;
        LVITEMA selected = {};
        selected.state = LVIS_SELECTED | LVIS_FOCUSED;
        selected.stateMask = selected.state;
        memory.write(&selected, sizeof selected);
        SendMessageA(list, LVM_SETITEMSTATE, static_cast<WPARAM>(item), memory.address());
        return true;
    }
    return false;
}

std::string statusText(HWND statusBar, int part) {
    const RemoteMemory memory(statusBar, textRoom);
    SendMessageA(statusBar, SB_GETTEXTA, static_cast<WPARAM>(part), memory.address());
    return memory.text(0, textRoom);
}

std::string windowText(HWND window) {
    const LRESULT length = SendMessageA(window, WM_GETTEXTLENGTH, 0, 0);
    std::string text(static_cast<std::size_t>(std::max<LRESULT>(length, 0)) + 1, '\0');
    const LRESULT copied = SendMessageA(window, WM_GETTEXT, text.size(), std::bit_cast<LPARAM>(text.data()));
    text.resize(static_cast<std::size_t>(copied));
    return text;
}

} // namespace tavrel::drive
