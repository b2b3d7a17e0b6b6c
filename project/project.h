// The project that is open: one record for the whole program.
#pragma once

#include "editor/source_editor.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tavrel {

/// The name of a project that has not been named yet.
inline const std::string unnamedProject = "Project";

constexpr std::int16_t defaultStartAddress = 0x2E9B;
constexpr std::int16_t defaultEndAddress = static_cast<std::int16_t>(0xD200);

struct ProjectFileEntry {
    std::string FileName;   ///< as written in the tree or in the directive, without folder
    std::string Key;        ///< the tree node's key
    std::int32_t Index = 0; ///< the tree node's index
    EditorPosition Position;
};

struct Project {
    std::string Name = unnamedProject;
    std::int16_t StartAddress = defaultStartAddress;
    std::int16_t EndAddress = defaultEndAddress;
    std::string Folder;                  ///< of the main file, ends in a backslash
    std::vector<ProjectFileEntry> Files; ///< index 0 holds nothing, 1 the main file, 2 up its direct includes
    std::size_t CurrentFile = 1;
    std::string SelectedKey; ///< key of the tree node last added or selected
};

} // namespace tavrel
