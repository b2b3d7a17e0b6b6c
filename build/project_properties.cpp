#include "build/project_properties.h"

#include "util/text.h"

namespace tavrel {

namespace {
constexpr std::int16_t lowestStart = 0x2E9B; // the runtime ends there
constexpr std::int16_t highestEnd = static_cast<std::int16_t>(0xF93C);
} // namespace

std::string filledAddressField(const std::string& text) {
    std::string filled = text;
    while (filled.size() < 4)
        filled += '0';
    return filled;
}

std::int16_t acceptedStartAddress(const std::string& text) {
    const std::int16_t value = evaluateHex(text);
    return value < lowestStart ? lowestStart : value;
}

std::int16_t acceptedEndAddress(const std::string& text) {
    const std::int16_t value = evaluateHex(text);
    return value > highestEnd ? highestEnd : value;
}

} // namespace tavrel
