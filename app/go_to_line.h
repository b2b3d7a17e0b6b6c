// The Go to line dialog.
#pragma once

#include <optional>
#include <windows.h>

namespace tavrel {

/// Asks for a line number, `current` being offered, and waits. Lines count from 1; a number behind the last
/// line is the last line. Nothing on Cancel.
std::optional<long> askForLine(HWND owner, long current, long last);

} // namespace tavrel
