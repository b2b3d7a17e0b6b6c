#include "build/disk_launch.h"

#include "project/project_commands.h"
#include "util/files.h"
#include "util/paths.h"
#include "util/text.h"

namespace tavrel {

std::string replacePlaceholder(std::string text, std::string_view placeholder, std::string_view replacement) {
    for (std::size_t found = findIgnoringCase(text, placeholder); found != std::string::npos && found != 0;
         found = findIgnoringCase(text, placeholder))
        text.replace(found, placeholder.size(), replacement);
    return text;
}

std::string diskImagePath(const std::string& diskImageFolder) {
    return AddBackslash(diskImageFolder) + "d.dsk";
}

std::string diskToolCommand(const std::string& programFolder, const std::string& diskImageFolder,
                            const std::string& projectFolder) {
    return AddBackslash(programFolder) + "dsk\\dsktool.exe A " + diskImagePath(diskImageFolder) + " " +
           AddBackslash(projectFolder) + "*.*";
}

std::string emulatorCommand(const Settings& settings) {
    const std::string image = diskImagePath(settings.DiskImageDir);
    std::string command = settings.EmulatorPath + " " + settings.EmulatorArgs;
    for (const std::string_view placeholder : {"%1", "%dsk"})
        command = replacePlaceholder(command, placeholder, image);
    return command;
}

void compileAndRunCommand(Workspace& workspace, const BuildTools& tools) {
    saveModifiedText(workspace);
    if (!DoCompilation(workspace, tools, Output::com))
        return;
    const std::string& diskImageFolder = workspace.settings.DiskImageDir;
    const std::string image = diskImagePath(diskImageFolder);
    if (FileExists(image))
        deleteFile(image + " "); // the system does not count a blank at the end of a name
    const std::string makeDisk = diskToolCommand(workspace.AppDir, diskImageFolder, workspace.project.Folder);
    tools.progress.close();
    tools.processes.ShellAndWait(makeDisk, false, true);
    tools.processes.ShellAndWait(emulatorCommand(workspace.settings), true, false);
}

} // namespace tavrel
