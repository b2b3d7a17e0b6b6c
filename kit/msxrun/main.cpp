// msxrun: runs an MSX-DOS program on a Z80, for tests and benchmarks.
#include "msxrun/command_line.h"
#include "msxrun/machine.h"
#include "msxrun/terminal_console.h"

#include <cstdio>
#include <exception>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

enum ExitCode : int { normalEnd = 0, outputLost = 1, wrongUse = 2, limitReached = 3, runTimeError = 4 };

void say(const std::string& line) {
    std::fprintf(stderr, "msxrun: %s\n", line.c_str());
}

std::vector<std::uint8_t> readProgram(const std::string& path, std::size_t atMost) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw msxrun::UsageError("cannot open '" + path + "'");
    }
    // One byte more than fits tells a program that is too large, whatever else the file is.
    std::vector<std::uint8_t> bytes(atMost + 1);
    file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (file.bad() || (file.fail() && !file.eof())) {
        throw msxrun::UsageError("cannot read '" + path + "'");
    }
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    return bytes;
}

int report(const msxrun::CommandLine& line, const msxrun::Machine& machine, msxrun::Ending ending,
           msxrun::TerminalConsole& console) {
    if (!console.flush()) {
        say("the output could not be written");
        return outputLost;
    }
    if (line.showTStates) {
        std::fprintf(stderr, "tstates: %llu\n", static_cast<unsigned long long>(machine.tStates()));
    }
    switch (ending) {
    case msxrun::Ending::limit:
        say("stopped after " + std::to_string(machine.tStates()) + " T-states");
        return limitReached;
    case msxrun::Ending::hung:
        say("the program waits for an interrupt with interrupts disabled");
        return limitReached;
    case msxrun::Ending::finished:
        break;
    }
    return console.reportedError() ? runTimeError : normalEnd;
}

int runProgram(const msxrun::CommandLine& line) {
    msxrun::Disk disk(line.folder, line.freeBytes);
    msxrun::TerminalConsole console(line.printerFile);
    msxrun::Machine machine(console, disk, line.settings, say);
    machine.load(readProgram(line.program, machine.room()));
    machine.setCommandTail(line.tail);
    const msxrun::Ending ending = machine.run(line.limit);
    const int code = report(line, machine, ending, console);
    for (const std::string& name : disk.settle()) {
        say(name + " was written but not closed: its directory entry keeps the old length");
    }
    return code;
}

} // namespace

int main(int argc, char** argv) {
    try {
        const std::vector<std::string> arguments(argv + 1, argv + argc);
        const msxrun::CommandLine line = msxrun::parseCommandLine(arguments);
        if (line.help) {
            std::fwrite(msxrun::helpText.data(), 1, msxrun::helpText.size(), stdout);
            return normalEnd;
        }
        return runProgram(line);
    } catch (const std::exception& error) {
        say(error.what());
        return wrongUse;
    }
}
