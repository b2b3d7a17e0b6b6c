// Which routine signature belongs to the word before an opening parenthesis or bracket.
#pragma once

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

/// True when the text begins with the word, which is upper case, in any letter case. Every text begins with
/// "".
bool beginsWithWord(std::string_view text, std::string_view upperCaseWord);

/// The first signature that begins with the searched word: of the library's routines, then of the project's,
/// file by file in the order of the tree. `nodeCount` is the number of nodes of the project tree; a project
/// without files has one at most. A file whose list is empty is passed over after `refresh` was called for
/// it, even when that filled the list.
std::optional<std::string> findSignature(std::string_view word,
                                         const std::vector<std::string>& AutocompleteList,
                                         const std::vector<FileRoutineList>& FileRoutineLists,
                                         std::size_t nodeCount, const std::function<void()>& refresh);

} // namespace tavrel
