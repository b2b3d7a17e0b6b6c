#include "build/disk_launch.h"

#include "project/project_commands.h"
#include "util/files.h"
#include "util/paths.h"
#include "util/runtime_error.h"
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

std::string leftOutPath(const std::string& diskImageFolder) {
    return diskImagePath(diskImageFolder) + ".txt";
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

namespace {

void say(Workspace& workspace, const std::string& sentence) {
    workspace.display.setPanel(StatusPanel::message, sentence);
}

/// False when something holds the old image, most often the emulator that runs with it.
bool deleteOldImage(const std::string& image) {
    try {
        deleteFile(image + " "); // the system does not count a blank at the end of a name
    } catch (const RuntimeError& error) {
        return error.number() == RuntimeErrorNumber::fileNotFound ||
               error.number() == RuntimeErrorNumber::pathNotFound;
    }
    return true;
}

/// Packs the folder. What there is to say of the image, nothing when all is well.
std::string makeImage(Workspace& workspace, ProcessRunner& processes) {
    const std::string& folder = workspace.settings.DiskImageDir;
    const std::string image = diskImagePath(folder);
    processes.ShellAndWait(diskToolCommand(workspace.AppDir, folder, workspace.project.Folder), false, true);
    if (!FileExists(image))
        return "There is no disk image: " + image + " cannot be written";
    if (FileExists(leftOutPath(folder)))
        return "Not every file is on the disk image: see " + leftOutPath(folder);
    return "";
}

/// Starts the emulator. What there is to say of that, nothing when it runs.
std::string startEmulator(const Workspace& workspace, ProcessRunner& processes) {
    const std::string& emulator = workspace.settings.EmulatorPath;
    if (trimBlanks(emulator).empty()) // else the first word of the arguments would be taken for a program
        return "No emulator is set: choose one in the preferences";
    processes.ShellAndWait(emulatorCommand(workspace.settings), true, false);
    return processes.started() ? "" : "The emulator cannot be started: " + emulator;
}

} // namespace

void compileAndRunCommand(Workspace& workspace, const BuildTools& tools) {
    if (!saveModifiedText(workspace) || !DoCompilation(workspace, tools, Output::com))
        return;
    const std::string diskTool = workspace.AppDir + "dsk\\dsktool.exe";
    if (!FileExists(diskTool))
        throw RuntimeError(RuntimeErrorNumber::fileNotFound, diskTool);
    const std::string image = diskImagePath(workspace.settings.DiskImageDir);
    if (!deleteOldImage(image)) {
        tools.progress.close();
        return say(workspace, "The disk image is in use: close the emulator that runs with " + image);
    }
    tools.progress.close();
    try {
        const std::string ofImage = makeImage(workspace, tools.processes);
        const std::string ofEmulator = startEmulator(workspace, tools.processes);
        const bool both = !ofImage.empty() && !ofEmulator.empty();
        say(workspace, ofImage + (both ? ". " : "") + ofEmulator);
    } catch (const WaitBrokenOff&) {
        say(workspace, "The making of the disk image was broken off");
    }
}

} // namespace tavrel
