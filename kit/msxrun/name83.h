// File names of eight and three characters, as directory entries and file control blocks hold them.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace msxrun {

/// Name and type, upper-case, each padded with blanks; '?' stands for any character in a pattern.
using Name83 = std::array<char, 11>;

/// The upper-case form of an ASCII letter; any other character as it is.
char upperCase(char character);

/// True when the name holds a '?'.
bool hasWildcards(const Name83& name);

/// True when the name can be that of a file: no wildcard, a first character, no blank inside, and no
/// character that has a meaning in a path.
bool isFileName(const Name83& name);

/// True when `name` fits `pattern`.
bool matches(const Name83& pattern, const Name83& name);

/// The 8.3 form of a host file's name, or nothing when it has none ("long.extension", "a.b.c").
std::optional<Name83> nameFromHost(std::string_view hostName);

/// "NAME.TYP", without the point when there is no type.
std::string nameForHost(const Name83& name);

/// A command line word as DOS puts it into a file control block.
struct ParsedWord {
    unsigned drive = 0; ///< 0 the current one, 1 A:, ...
    Name83 name{};      ///< '*' spread to '?', too long parts cut
};
ParsedWord parseWord(std::string_view word);

} // namespace msxrun
