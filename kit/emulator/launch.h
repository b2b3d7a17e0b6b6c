// How openMSX is called.
#pragma once

#include "emulator/request.h"
#include "emulator/starter_settings.h"

#include <string>
#include <string_view>
#include <vector>

namespace emulator {

/// What openMSX is started with, besides what the user wants.
struct Surroundings {
    std::string script; ///< path of start.tcl
    std::string pipe;   ///< name of the control pipe; empty to start without one
    std::string image;  ///< path of the disk image; empty for none
};

/// The arguments for openMSX. A machine among the further words takes the place of the usual one.
std::vector<std::string> openmsxArguments(const Request& request, const StarterSettings& settings,
                                          const Surroundings& surroundings);

/// A Windows command line: the program and its arguments, quoted so that CommandLineToArgvW and the C library
/// take them apart again.
std::string commandLine(const std::string& program, const std::vector<std::string>& arguments);

/// How many times 320 by 240 pixels the window gets on a screen with this much free room: what fits well,
/// from 2 to 4.
unsigned scaleForScreen(int width, int height);

/// Whether a path names a program of Unix, which Wine can start: it has no ending. Such a program knows
/// neither drives nor backslashes.
bool isUnixProgram(std::string_view path);

/// A path of Wine's drive Z: as Unix knows it; other texts stay as they are.
std::string unixPath(const std::string& path);

} // namespace emulator
