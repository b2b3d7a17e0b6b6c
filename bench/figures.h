// What the benchmarks share: a clock and medians.
#pragma once

#include <algorithm>
#include <vector>
#include <windows.h>

namespace tavrel::bench {

/// Milliseconds of a clock that only runs forward.
inline double now() {
    LARGE_INTEGER ticks = {};
    LARGE_INTEGER perSecond = {};
    QueryPerformanceCounter(&ticks);
    QueryPerformanceFrequency(&perSecond);
    return 1000.0 * static_cast<double>(ticks.QuadPart) / static_cast<double>(perSecond.QuadPart);
}

/// The middle value; of an even number of them the mean of the two in the middle.
inline double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const std::size_t half = values.size() / 2;
    return values.size() % 2 != 0 ? values[half] : (values[half - 1] + values[half]) / 2;
}

/// The median of the quotients of each round.
inline double medianRatio(const std::vector<double>& values, const std::vector<double>& floors) {
    std::vector<double> ratios;
    for (std::size_t i = 0; i < values.size(); ++i)
        ratios.push_back(values[i] / floors[i]);
    return median(ratios);
}

} // namespace tavrel::bench
