#include "util/text.h"

#include <windows.h>

namespace tavrel {

std::string upperCase(std::string_view text) {
    std::string result(text);
    CharUpperBuffA(result.data(), static_cast<DWORD>(result.size()));
    return result;
}

std::string lowerCase(std::string_view text) {
    std::string result(text);
    CharLowerBuffA(result.data(), static_cast<DWORD>(result.size()));
    return result;
}

} // namespace tavrel
