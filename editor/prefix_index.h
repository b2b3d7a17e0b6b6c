// Finding by its beginning, in any letter case, the first of many texts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tavrel {

/// True when the text begins with the word, which is upper case, in any letter case. Every text begins with
/// "".
bool beginsWithWord(std::string_view text, std::string_view upperCaseWord);

/// An order of a list of texts in which all that begin alike stand together, so that a search need not look
/// at every text. The list stays elsewhere and is handed to each call.
class PrefixIndex {
  public:
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    /// Takes in the texts as they are now.
    void build(const std::vector<std::string>& texts);
    /// Index of the first of the texts that begins with the word, which is upper case; `none` when there is
    /// none. Texts that were added since build() are found as well, only slower.
    std::size_t first(const std::vector<std::string>& texts, std::string_view upperCaseWord) const;

  private:
    std::vector<std::uint32_t> order_; ///< indices into the list, sorted by the upper-case texts
};

} // namespace tavrel
