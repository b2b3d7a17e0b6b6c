// Ownership of a handle of Windows.
#pragma once

#include <memory>
#include <windows.h>

namespace emulator {

struct HandleCloser {
    using pointer = HANDLE;
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using Handle = std::unique_ptr<HANDLE, HandleCloser>;

} // namespace emulator
