#include "tests/acceptance/random/counts.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <stdexcept>
#include <vector>

#include <winternl.h>

namespace tavrel::random {

namespace {

struct WindowCount {
    DWORD process = 0;
    int windows = 0;
};

BOOL CALLBACK countChild(HWND, LPARAM counted) {
    ++std::bit_cast<WindowCount*>(counted)->windows;
    return TRUE;
}

BOOL CALLBACK countTopLevel(HWND window, LPARAM counted) {
    auto& count = *std::bit_cast<WindowCount*>(counted);
    DWORD owner = 0;
    GetWindowThreadProcessId(window, &owner);
    if (owner != count.process)
        return TRUE;
    ++count.windows;
    EnumChildWindows(window, countChild, counted);
    return TRUE;
}

int countWindows(DWORD process) {
    WindowCount count{process, 0};
    EnumWindows(countTopLevel, std::bit_cast<LPARAM>(&count));
    return count.windows;
}

/// An entry of the GDI handle table, as Wine and 64-bit Windows lay it out.
struct GdiEntry {
    std::uint64_t object;
    std::uint32_t owner;
    std::uint16_t unique;
    std::uint8_t type; ///< 0 for a free one
    std::uint8_t flags;
    std::uint64_t user;
};
static_assert(sizeof(GdiEntry) == 24);

template <typename T> void readMemory(HANDLE process, std::uintptr_t address, T* values, std::size_t count) {
    SIZE_T read = 0;
    if (ReadProcessMemory(process, std::bit_cast<void*>(address), values, count * sizeof(T), &read) == 0)
        throw std::runtime_error("the program's memory cannot be read");
}

/// Wine gives each process a table of its own, so every entry in use is this process's.
int countGdiEntries(HANDLE process) {
    constexpr std::size_t tableOffset =
        0xF8; // GdiSharedHandleTable in the process environment block, 64 bits
    constexpr std::size_t tableLength = 0x4000;
    PROCESS_BASIC_INFORMATION information = {};
    NtQueryInformationProcess(process, ProcessBasicInformation, &information, sizeof information, nullptr);
    std::uintptr_t table = 0;
    readMemory(process, std::bit_cast<std::uintptr_t>(information.PebBaseAddress) + tableOffset, &table, 1);
    std::vector<GdiEntry> entries(tableLength);
    readMemory(process, table, entries.data(), entries.size());
    return static_cast<int>(
        std::count_if(entries.begin(), entries.end(), [](const GdiEntry& entry) { return entry.type != 0; }));
}

/// Wine's server hands out USER handles from one list, those given back first. Once fresh ones come in a row,
/// all below the last are in use, these menus among them.
int countUserHandles() {
    constexpr unsigned firstHandle = 0x20;
    constexpr int inARow = 64;
    constexpr std::size_t most = 10000;
    std::vector<HMENU> menus;
    unsigned last = 0;
    unsigned highest = 0;
    for (int row = 0; row < inARow && menus.size() < most;) {
        menus.push_back(CreateMenu());
        const auto handle = static_cast<unsigned>(LOWORD(std::bit_cast<std::uintptr_t>(menus.back())));
        const unsigned index = (handle - firstHandle) / 2;
        row = index == last + 1 && index > highest ? row + 1 : 0;
        last = index;
        highest = std::max(highest, index);
    }
    for (HMENU const menu : menus)
        DestroyMenu(menu);
    return static_cast<int>(highest + 1 - menus.size());
}

/// The system's list of all handles, as Wine lays it out.
struct HandleEntry {
    ULONG process;
    UCHAR type;
    UCHAR flags;
    USHORT value;
    void* object;
    ULONG access;
};
struct HandleList {
    ULONG count;
    void* first; ///< where the entries begin
};

/// For where GetProcessHandleCount always answers 0 (Wine 8.0).
int countListedHandles(DWORD process) {
    constexpr auto handleInformation = static_cast<SYSTEM_INFORMATION_CLASS>(16);
    constexpr auto tooShort = static_cast<NTSTATUS>(0xC0000004);
    std::vector<HandleEntry> room(4096);
    ULONG needed = 0;
    NTSTATUS status = 0;
    while ((status = NtQuerySystemInformation(handleInformation, room.data(),
                                              static_cast<ULONG>(room.size() * sizeof(HandleEntry)),
                                              &needed)) == tooShort)
        room.resize(room.size() * 2);
    if (status != 0)
        throw std::runtime_error("the system does not list its handles");
    const auto* const list = std::bit_cast<const HandleList*>(room.data());
    const auto* const first = std::bit_cast<const HandleEntry*>(&list->first);
    return static_cast<int>(std::count_if(first, first + list->count, [process](const HandleEntry& entry) {
        return entry.process == process;
    }));
}

int countHandles(HANDLE process) {
    DWORD count = 0;
    if (GetProcessHandleCount(process, &count) != 0 && count != 0)
        return static_cast<int>(count);
    return countListedHandles(GetProcessId(process));
}
} // namespace

Counts countResources(HANDLE process) {
    const DWORD identifier = GetProcessId(process);
    Counts counts;
    counts.windows = countWindows(identifier);
    counts.gdi = static_cast<int>(GetGuiResources(process, GR_GDIOBJECTS));
    if (counts.gdi == 0)
        counts.gdi = countGdiEntries(process);
    counts.user = static_cast<int>(GetGuiResources(process, GR_USEROBJECTS));
    if (counts.user == 0)
        counts.user = countUserHandles();
    counts.handles = countHandles(process);
    return counts;
}

std::string describe(const Counts& counts) {
    return "windows " + std::to_string(counts.windows) + ", GDI objects " + std::to_string(counts.gdi) +
           ", USER objects " + std::to_string(counts.user) + ", handles " + std::to_string(counts.handles);
}

} // namespace tavrel::random
