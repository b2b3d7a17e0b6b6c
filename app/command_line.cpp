#include "app/command_line.h"

#include "util/files.h"
#include "util/text.h"

namespace tavrel {

std::string argumentText(std::string_view commandLine) {
    std::size_t end = 0;
    bool quoted = false;
    while (end < commandLine.size() && (quoted || (commandLine[end] != ' ' && commandLine[end] != '\t'))) {
        if (commandLine[end] == '"')
            quoted = !quoted;
        ++end;
    }
    return trimBlanks(commandLine.substr(end));
}

StartAction startAction(const std::string& argument, bool openNewProjectAtStart) {
    if (!argument.empty()) {
        if (upperCase(lastCharacters(argument, 3)) != "TPJ")
            return StartAction::nothing;
        if (FileExists(argument))
            return StartAction::openProject;
    }
    return openNewProjectAtStart ? StartAction::offerNewProject : StartAction::nothing;
}

} // namespace tavrel
