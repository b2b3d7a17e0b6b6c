// The probe: a program with a window that tests start.
#pragma once

#include "util/paths.h"

#include <array>
#include <string>
#include <windows.h>

namespace tavrel::test {

/// Path of the probe, which lies beside the test.
inline std::string probePath() {
    std::array<char, MAX_PATH + 1> own{};
    GetModuleFileNameA(nullptr, own.data(), MAX_PATH);
    return GetFilePath(own.data()) + "probe.exe";
}

inline HWND probeWindow() {
    return FindWindowA("TavrelProbe", nullptr);
}

/// Whether a condition comes to hold within some seconds.
template <typename Condition> bool comes(const Condition& condition) {
    const ULONGLONG start = GetTickCount64();
    while (!condition() && GetTickCount64() - start < 20'000)
        Sleep(20);
    return condition();
}

} // namespace tavrel::test
