#include "project/unwritable_folder.h"

#include "project/workspace.h"
#include "util/runtime_error.h"
#include "util/text.h"

namespace tavrel {

bool isUnwritableProgramFolder(const Workspace& workspace, const RuntimeError& error) {
    // "Permission denied" is a file that another program holds, which is no matter of the folder.
    return error.number() == RuntimeErrorNumber::pathFileAccessError &&
           upperCase(error.detail()).starts_with(upperCase(workspace.AppDir));
}

std::string explainedMessage(Workspace& workspace, const RuntimeError& error) {
    if (workspace.toldUnwritable || !isUnwritableProgramFolder(workspace, error))
        return error.message();
    workspace.toldUnwritable = true;
    return error.message() + "\r\n\r\nTavrel keeps its settings, its compiler's work and disk images in its "
                             "own folder. Where that "
                             "may not be written, open and edit files as you like; to compile and to keep "
                             "settings, unpack Tavrel "
                             "into a folder of your own, C:\\Tavrel for example.";
}

} // namespace tavrel
