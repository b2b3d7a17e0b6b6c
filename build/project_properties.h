// Rules of the project properties: how the two compiler addresses are kept within their limits.
#pragma once

#include <cstdint>
#include <string>

namespace tavrel {

/// An address field when it loses the focus: "0" is appended on the right up to four characters.
std::string filledAddressField(const std::string& text);

/// The addresses that "Ok" takes. Both comparisons are between signed 16-bit numbers, so start addresses from
/// 8000h and end addresses below 8000h are replaced by the limit as well.
std::int16_t acceptedStartAddress(const std::string& text);
std::int16_t acceptedEndAddress(const std::string& text);

} // namespace tavrel
