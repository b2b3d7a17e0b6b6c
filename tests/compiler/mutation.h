#pragma once

#include <random>
#include <string>
#include <vector>

namespace tp3::test {

/// The text with one to four changes: bytes erased, put in, taken from elsewhere or from another text of the
/// pool, or the end cut off.
inline std::string mutate(std::string text, const std::vector<std::string>& pool, std::mt19937& random) {
    const auto below = [&](std::size_t limit) { return random() % (limit == 0 ? 1 : limit); };
    for (std::size_t changes = 1 + below(4); changes > 0; --changes) {
        const std::size_t at = below(text.size() + 1);
        switch (below(5)) {
        case 0:
            text.erase(at, below(12));
            break;
        case 1:
            text.insert(at, 1, static_cast<char>(below(256)));
            break;
        case 2: {
            const std::string& other = pool[below(pool.size())];
            const std::size_t from = below(other.size());
            text.insert(at, other.substr(from, below(30)));
            break;
        }
        case 3:
            text.insert(at, text.substr(below(text.size() + 1), below(60)));
            break;
        default:
            text.resize(at);
            break;
        }
    }
    return text;
}

} // namespace tp3::test
