#include "build/batch_files.h"

#include "util/paths.h"
#include "util/text.h"

namespace tavrel {

std::string mainProgramName(const std::string& mainFileName) {
    return replaceIgnoringCase(mainFileName, ".pas", "");
}

std::string compileScript(Output output, const std::string& programName, std::int16_t startAddress,
                          std::int16_t endAddress) {
    const std::string bareName = GetFileName(programName);
    const std::string switches =
        " /S" + hexOf16(startAddress) + " /E" + hexOf16(endAddress) + " /Rerrors.txt > result.txt\r\n";
    std::string script = "DOS2CASH\r\n";
    if (output == Output::chn)
        return script + "TP3 " + bareName + " /H" + switches;
    script += "TP3 " + programName + switches;
    return script + "copy runtime.com/b + " + bareName + ".chn/b " + bareName + ".com\r\n";
}

std::string launchScript(const std::string& programFolder, const std::string& projectFolder) {
    const std::string program = AddBackslash(programFolder);
    const std::string project = AddBackslash(projectFolder);
    return "SET SDL_VIDEODRIVER=dummy\r\n" + program + "compiler\\DOSBox-0.74\\DOSBox.exe -conf " + program +
           "\\compiler\\temp.conf \"" + project + "\\turbopc.bat\" -noconsole -exit\r\n" +
           "SET SDL_VIDEODRIVER=\r\n";
}

} // namespace tavrel
