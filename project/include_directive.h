// Include directives: a line holding "{$I", a file name and "}".
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tavrel {

/// The upper-case include name when the line holds "{$I" in any letter case: what is left of the line without
/// every "{$I" and every "}", blanks trimmed. A directive must stand alone on its line, since other text
/// becomes part of the name. The test does not know comments or strings.
std::optional<std::string> includeName(std::string_view line);

} // namespace tavrel
