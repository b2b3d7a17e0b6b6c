#include "project/include_directive.h"

#include "util/text.h"

namespace tavrel {

std::optional<std::string> includeName(std::string_view line) {
    constexpr std::string_view directive = "{$I";
    // Nearly every line ends here, before it is turned into upper case. Only the letter can come from there.
    if (line.find(directive.substr(0, 2)) == std::string_view::npos)
        return std::nullopt;
    const std::string upper = upperCase(line);
    if (upper.find(directive) == std::string::npos)
        return std::nullopt;
    return trimBlanks(replaceIgnoringCase(replaceIgnoringCase(upper, directive, ""), "}", ""));
}

} // namespace tavrel
