#pragma once

#include <cstdint>
#include <string_view>

namespace tp3 {

/// Reals as they lie in memory: byte 0 is the exponent plus 80h (0 for the value 0), bytes 1 to 5 the
/// mantissa, least significant first, its leading one replaced by the sign. The value is 0.1xxx (binary)
/// times 2 to the exponent.

/// Writes the value of a literal such as 12.5E-3 into six bytes, correctly rounded. False when it is too
/// large.
bool realFromText(std::string_view text, char* bytes);

/// Writes an integer.
void realFromInteger(std::int32_t value, char* bytes);

} // namespace tp3
