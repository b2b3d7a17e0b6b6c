#include "editor/autocomplete_list.h"

#include "util/text_input.h"

namespace tavrel {

std::vector<std::string> readAutocompleteList(const std::string& AppDir) {
    TextInput file = TextInput::open(AppDir + "help\\autocomplete.txt");
    std::vector<std::string> list;
    do {
        list.push_back(file.line());
    } while (!file.atEnd());
    return list;
}

} // namespace tavrel
