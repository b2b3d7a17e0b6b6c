// Any bytes as the starter's settings file, as its command line, as a request from another process and as
// what the emulator says.
#include "emulator/control.h"
#include "emulator/launch.h"
#include "emulator/request.h"
#include "emulator/starter_settings.h"
#include "fuzzer.h"

#include <algorithm>

using tavrel::fuzzing::require;

namespace {

void readSettings(std::string_view text) {
    try {
        const emulator::StarterSettings settings = emulator::parseStarterSettings(text);
        require(settings.scale == 0 || (settings.scale >= 2 && settings.scale <= 8));
        for (const std::string& machine : settings.machines)
            require(!machine.empty());
    } catch (const emulator::SettingsError& error) {
        require(std::string_view(error.what()).starts_with("line "));
    }
}

/// What a command line says survives being quoted again and being passed on.
void readCommandLine(std::string_view text) {
    const std::vector<std::string> words = emulator::argumentsOf(text, "msx.exe");
    require(emulator::argumentsOf(emulator::commandLine("C:\\a b\\msx.exe", words), "msx.exe") == words);
    const emulator::Request request =
        emulator::parseRequest(words, [](const std::string& path) { return path.ends_with("k"); });
    if (text.find('\0') == text.npos)
        require(emulator::decodeRequest(emulator::encodeRequest(request)) == request);
}

/// The size of the pieces makes no difference.
void readOutput(std::string_view text) {
    emulator::OutputReader whole;
    emulator::OutputReader pieces;
    whole.add(text);
    std::size_t size = 1;
    while (!text.empty()) {
        pieces.add(text.substr(0, size));
        text.remove_prefix(std::min(size, text.size()));
        while (const std::optional<emulator::Said> said = pieces.next())
            require(whole.next() == said);
        size = size % 7 + 1;
    }
    require(!whole.next());
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    readSettings(text);
    readCommandLine(text);
    emulator::decodeRequest(text);
    readOutput(text);
    return 0;
}
