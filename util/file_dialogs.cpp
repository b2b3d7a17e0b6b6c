#include "util/file_dialogs.h"

#include "util/text.h"

#include <algorithm>

namespace tavrel {

std::string dialogFilter(std::string_view filter) {
    std::string result(filter);
    if (result.empty() || result.back() != '|')
        result += '|';
    std::replace(result.begin(), result.end(), '|', '\0');
    return result;
}

std::string systemFilter(std::string_view filter) {
    std::string result = dialogFilter(filter);
    if (std::count(result.begin(), result.end(), '\0') == 1)
        result += result;
    return result + '\0';
}

std::string pathFromDialogBuffer(std::string_view buffer) {
    std::string path = trimBlanks(buffer);
    if (!path.empty() && path.back() == '\0')
        path.pop_back();
    return path;
}

unsigned long openDialogFlags(bool multipleSelection) {
    constexpr unsigned long hideReadOnly = 0x4;
    constexpr unsigned long allowMultipleSelection = 0x200;
    constexpr unsigned long explorer = 0x80000;
    return multipleSelection ? hideReadOnly | allowMultipleSelection | explorer : hideReadOnly;
}

} // namespace tavrel
