// What the program was started with.
#pragma once

#include <string>
#include <string_view>

namespace tavrel {

/// The argument text: all of the command line behind the program's own name (which may stand in quotes),
/// without the blanks around it. It is not split into words and keeps its quotes.
std::string argumentText(std::string_view commandLine);

enum class StartAction { openProject, offerNewProject, nothing };

/// What start-up does with the argument. A project argument ends in "TPJ" in any case; one that does not
/// exist is treated like no argument.
StartAction startAction(const std::string& argument, bool openNewProjectAtStart);

} // namespace tavrel
