#include "about/history.h"

#include "util/paths.h"
#include "util/text_input.h"

namespace tavrel {

std::string readHistory(const std::string& AppDir) {
    TextInput file = TextInput::open(AddBackslash(AppDir) + "history.txt");
    std::string text;
    while (!file.atEnd())
        text += file.line() + "\r\n";
    return text;
}

} // namespace tavrel
