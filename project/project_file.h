// The project file (.tpj): four lines of ANSI text, each ended by CR LF.
#pragma once

#include <cstdint>
#include <string>

namespace tavrel {

struct ProjectFileContent {
    std::string name;
    std::int16_t startAddress = 0;
    std::int16_t endAddress = 0;
    std::string mainFile; ///< the whole fourth line; only the name counts, without any folder

    bool operator==(const ProjectFileContent&) const = default;
};

/// The file's bytes.
std::string encodeProjectFile(const ProjectFileContent& content);

/// Reads a project file; lines after the fourth are ignored. Throws RuntimeError, 62 for fewer than four
/// lines.
ProjectFileContent readProjectFile(const std::string& path);

/// Writes a project file over an existing one. Throws RuntimeError.
void writeProjectFile(const std::string& path, const ProjectFileContent& content);

} // namespace tavrel
