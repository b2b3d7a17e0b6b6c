// The two batch files that carry a build into DOSBox.
#pragma once

#include <cstdint>
#include <string>

namespace tavrel {

/// What the compiler is asked to make: a .COM program or a .CHN chain file.
enum class Output { com, chn };

/// The main program's name: the main file's name with every ".pas" removed, ignoring case.
std::string mainProgramName(const std::string& mainFileName);

/// "turbopc.bat": runs inside DOSBox in the project folder.
std::string compileScript(Output output, const std::string& programName, std::int16_t startAddress,
                          std::int16_t endAddress);

/// "rundb.bat": starts DOSBox without a window. Both folders may come with or without their final backslash;
/// the doubled backslashes that result are accepted by Windows and DOSBox.
std::string launchScript(const std::string& programFolder, const std::string& projectFolder);

} // namespace tavrel
