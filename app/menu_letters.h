// Menus by the first letters of their entries: the captions have no underlined ones.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace tavrel {

struct MenuChoice {
    bool found = false;
    bool alone = false; ///< no other entry begins so, and it can be carried out at once
    std::size_t item = 0;
    bool operator==(const MenuChoice&) const = default;
};

/// The entry that a letter typed in a menu means: the next one after `highlighted` (which may be past the
/// end) that begins with it, in either case, around the end. Separators have an empty caption.
MenuChoice menuItemByLetter(const std::vector<std::string>& captions, char letter, std::size_t highlighted);

} // namespace tavrel
