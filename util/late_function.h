// Functions of Windows that the start of the program does without. Linked as usual, their libraries (the
// dialogs', the shell's, and a dozen behind these) would be loaded before the window is up, a tenth of the
// whole start.
#pragma once

#include <bit>
#include <stdexcept>
#include <string>
#include <windows.h>

namespace tavrel {

/// The function of this name; its library is loaded at the first call and stays. `Function` is its type, such
/// as decltype(ShellExecuteA). Throws std::runtime_error when Windows does not have it.
template <typename Function> Function* lateFunction(const char* library, const char* name) {
    HMODULE const loaded = LoadLibraryA(library);
    const FARPROC function = loaded == nullptr ? nullptr : GetProcAddress(loaded, name);
    if (function == nullptr)
        throw std::runtime_error(std::string("Windows has no ") + name + " in " + library + ".");
    return std::bit_cast<Function*>(function);
}

} // namespace tavrel
