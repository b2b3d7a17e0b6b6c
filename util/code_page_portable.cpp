#include "util/code_page.h"

#include <algorithm>

namespace tavrel {

std::optional<std::string> oemText(const std::string& ansiText) {
    const bool ascii = std::all_of(ansiText.begin(), ansiText.end(),
                                   [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    return ascii ? std::optional(ansiText) : std::nullopt;
}

} // namespace tavrel
