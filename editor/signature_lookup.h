// Which routine signature belongs to the word before an opening parenthesis or bracket.
#pragma once

#include "editor/prefix_index.h"
#include "editor/routine_index.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavrel {

/// The word that is searched for the word at the caret: upper case, what stands behind its first comma, and
/// of that what stands behind its first semicolon.
std::string searchedWord(std::string_view wordAtCaret);

/// Where signatures are searched: first among the library's routines, then among the project's, file by file
/// in the order of the tree.
struct SignatureSources {
    const std::vector<std::string>& AutocompleteList;
    const PrefixIndex& autocompleteIndex; ///< of that list
    const std::vector<FileRoutineList>& FileRoutineLists;
    std::size_t nodeCount; ///< of the project tree; a project without files has one node at most
};

/// The first signature that begins with the searched word. A file whose list is empty is passed over after
/// `refresh` was called for it, even when that filled the list.
std::optional<std::string> findSignature(std::string_view word, const SignatureSources& sources,
                                         const std::function<void()>& refresh);

} // namespace tavrel
