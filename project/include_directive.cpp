#include "project/include_directive.h"

#include "util/text.h"

namespace tavrel {

std::optional<std::string> includeName(std::string_view line) {
    constexpr std::string_view directive = "{$I";
    const std::string upper = upperCase(line);
    if (upper.find(directive) == std::string::npos)
        return std::nullopt;
    return trimBlanks(replaceIgnoringCase(replaceIgnoringCase(upper, directive, ""), "}", ""));
}

} // namespace tavrel
