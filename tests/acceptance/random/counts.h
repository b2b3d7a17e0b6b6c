// What a process holds of the system's resources, counted from outside.
#pragma once

#include <string>
#include <windows.h>

namespace tavrel::random {

struct Counts {
    int windows = 0; ///< top-level ones and all below them
    int gdi = 0;     ///< GDI objects
    int user = 0;    ///< USER objects: windows, menus, accelerators, ...
    int handles = 0; ///< kernel handles: files, processes, events, ...
};

/// Counts for a process that is at rest. Where GetGuiResources always answers 0 (Wine 8.0), GDI objects are
/// counted in the table that the process's block points to, and USER objects are those of the whole session.
/// Throws std::runtime_error when the process cannot be asked.
Counts countResources(HANDLE process);

/// "windows 12, GDI objects 34, USER objects 56, handles 78"
std::string describe(const Counts& counts);

} // namespace tavrel::random
