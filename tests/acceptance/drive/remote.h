// Reading another process's controls.
#pragma once

#include <cstddef>
#include <string>
#include <vector>
#include <windows.h>

#include <commctrl.h>

namespace tavrel::drive {

/// A piece of memory in the process that owns a window, for messages that take pointers.
class RemoteMemory {
  public:
    RemoteMemory(HWND window, std::size_t size);
    ~RemoteMemory();
    RemoteMemory(const RemoteMemory&) = delete;
    RemoteMemory& operator=(const RemoteMemory&) = delete;

    LPARAM address() const;
    LPARAM addressAt(std::size_t offset) const;
    void write(const void* bytes, std::size_t size, std::size_t offset = 0) const;
    void read(void* bytes, std::size_t size) const;
    std::string text(std::size_t offset, std::size_t size) const;

  private:
    HANDLE process_ = nullptr;
    void* memory_ = nullptr;
};

struct TreeEntry {
    std::string text;
    HTREEITEM item = nullptr;
    int depth = 0;
    int image = 0; ///< from 1
    bool selected = false;
};

/// All nodes of a tree view, parents before children.
std::vector<TreeEntry> treeEntries(HWND tree);

/// Selects the item of a list view that has this text. False when there is none.
bool selectListItem(HWND list, const std::string& text);

/// Text of a status bar's part (from 0).
std::string statusText(HWND statusBar, int part);

/// Text of any window of the other process.
std::string windowText(HWND window);

} // namespace tavrel::drive
