// A program folder that may not be written: told once, with the way out.
#pragma once

#include <string>

namespace tavrel {

class RuntimeError;
struct Workspace;

/// Is the error about a file that may not be written below the program folder?
bool isUnwritableProgramFolder(const Workspace& workspace, const RuntimeError& error);

/// What a message box says of an error; the first time that it is about the program folder with the way out.
std::string explainedMessage(Workspace& workspace, const RuntimeError& error);

} // namespace tavrel
