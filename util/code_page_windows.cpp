#include "util/code_page.h"

#include <windows.h>

namespace tavrel {

std::optional<std::string> oemText(const std::string& ansiText) {
    if (ansiText.empty())
        return ansiText;
    const int length = static_cast<int>(ansiText.size());
    std::wstring wide(ansiText.size(), L'\0');
    const int wideLength =
        MultiByteToWideChar(CP_ACP, MB_ERR_INVALID_CHARS, ansiText.data(), length, wide.data(), length);
    if (wideLength == 0)
        return std::nullopt;
    wide.resize(static_cast<std::size_t>(wideLength));
    std::string oem(wide.size() * 4, '\0');
    BOOL lacking = FALSE;
    const int oemLength = WideCharToMultiByte(CP_OEMCP, WC_NO_BEST_FIT_CHARS, wide.data(), wideLength,
                                              oem.data(), static_cast<int>(oem.size()), nullptr, &lacking);
    if (oemLength == 0 || lacking != FALSE)
        return std::nullopt;
    oem.resize(static_cast<std::size_t>(oemLength));
    return oem;
}

} // namespace tavrel
