// The classic runtime's rules for text and numbers. Texts are 8-bit, in the system's ANSI code page.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tavrel {

/// Removes blanks (20h only, never tabs or line ends) from both ends.
std::string trimBlanks(std::string_view text);

/// Upper and lower case in the ANSI code page (natively: Windows-1252).
std::string upperCase(std::string_view text);
std::string lowerCase(std::string_view text);

/// Position (from 0) of the first `what` at or after `from`, compared without regard to case;
/// std::string::npos when there is none or `what` is empty.
std::size_t findIgnoringCase(std::string_view text, std::string_view what, std::size_t from = 0);

/// Replaces every occurrence of `what`, compared without regard to case, in one pass from left to right:
/// a replacement is not searched again.
std::string replaceIgnoringCase(std::string_view text, std::string_view what, std::string_view with);

/// The last `count` characters, or all when there are fewer.
std::string_view lastCharacters(std::string_view text, std::size_t count);

/// Hexadecimal digits of a 16-bit value: upper case, no prefix, no leading zeros ("0" for 0).
std::string hexOf16(std::int16_t value);

/// What "&H" followed by the text evaluates to: hexadecimal digits up to the first other character, the low
/// 16 bits of their value as a signed number; 0 when there is no digit.
std::int16_t evaluateHex(std::string_view text);

/// The number at the start of a text: blanks, tabs and line feeds are passed over wherever they stand,
/// reading stops at the first character that cannot be part of a number; 0 when there is none.
double numericValue(std::string_view text);

/// The 16-bit integer that a text stands for: a decimal number (with sign, decimals, exponent) rounded to the
/// nearest integer, or "&H" and hexadecimal digits; blanks around it do not count. Throws RuntimeError 13
/// when it is nothing of that, 6 when the number does not fit.
std::int16_t convertToInteger(std::string_view text);

/// Nearest integer, a half goes to the even neighbour (banker's rounding). The value must fit.
long roundHalfToEven(double value);

} // namespace tavrel
