#include "app/menu_letters.h"

#include "util/text.h"

namespace tavrel {

MenuChoice menuItemByLetter(const std::vector<std::string>& captions, char letter, std::size_t highlighted) {
    const std::string wanted = upperCase(std::string(1, letter));
    const std::size_t count = captions.size();
    std::size_t hits = 0;
    MenuChoice choice;
    for (std::size_t step = 1; step <= count; ++step) {
        const std::size_t item = highlighted < count ? (highlighted + step) % count : step - 1;
        if (upperCase(captions[item].substr(0, 1)) != wanted)
            continue;
        ++hits;
        if (!choice.found)
            choice = {true, false, item};
    }
    choice.alone = hits == 1;
    return choice;
}

} // namespace tavrel
