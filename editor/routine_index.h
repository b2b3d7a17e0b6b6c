// The headers of the project's routines, per source file.
#pragma once

#include "editor/prefix_index.h"
#include "editor/source_editor.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavrel {

/// The routines of one source file.
struct FileRoutineList {
    std::vector<std::string> Headers; ///< in the order found
    std::int32_t Count = 0;           ///< headers added since the list was last cleared
    PrefixIndex index;                ///< of the headers, made when the file has been scanned
};

/// What stands behind the keyword when the line is a function or procedure header. The keyword must open the
/// line (after blanks, not tabs), in any letter case, with a blank behind it.
std::optional<std::string> routineHeader(std::string_view line);

/// Appends a header to a list.
void appendHeader(FileRoutineList& list, std::string header);

/// Appends the headers found in a file to the list `index`, which grows `lists` when it is not there yet.
/// Throws RuntimeError when the file cannot be read, and 62 when it is empty.
void GetFileFunctions(std::vector<FileRoutineList>& lists, std::size_t index, const std::string& fileName);

/// Clears and refills from the editor's text the list of the file selected in the project tree. `nodeTexts`
/// are the texts of all nodes, the root first; node i (from 1) has list i - 2. A tree of one node or none is
/// left alone. False when no list belongs to the selected text.
bool RefreshTooltips(std::vector<FileRoutineList>& lists, const std::vector<std::string>& nodeTexts,
                     const std::string& selectedText, const SourceEditor& editor);

} // namespace tavrel
