// What the system's own windows lose with each use, measured in a process that has nothing of Tavrel's in it.
#pragma once

#include "tests/acceptance/random/counts.h"

#include <string>

namespace tavrel::random {

/// Per use, on this system. Wine's file dialog loses a USER object, and a handle for a file that is chosen;
/// its help viewer loses GDI objects. Each is nothing on a system that loses nothing.
struct SystemLoss {
    Counts fileDialog; ///< a file dialog that ends with a file chosen
    Counts help;       ///< a help window that is opened and closed
};

/// Opens the system's file dialog and the help file some times. `file` is any file that is there.
SystemLoss measureSystemLoss(const std::string& file, const std::string& helpFile);

std::string describe(const SystemLoss& loss);

} // namespace tavrel::random
