#include "msxrun/command_line.h"

#include <charconv>
#include <optional>

namespace msxrun {

const std::string_view helpText =
    "Usage: msxrun [options] FILE.COM [arguments]\n"
    "\n"
    "Runs an MSX-DOS program on a Z80. Standard input is the keyboard (a line feed is the RETURN key, the\n"
    "end is ^Z), standard output the screen.\n"
    "\n"
    "  --disk DIR      the folder that is drive A: (default: the current one)\n"
    "  --free BYTES    by how much its files may grow before the disk is full (default: 730112)\n"
    "  --read-only     the disk is write-protected\n"
    "  --remove-after N  the disk is taken out after N file calls\n"
    "  --limit T       stop after T T-states; k, M and G multiply\n"
    "  --tstates       print the number of T-states on standard error\n"
    "  --msx-waits     count one T-state more for each opcode fetch, as an MSX does\n"
    "  --tpa-top HEX   the address that 0006h names as the system's first one (default: D606)\n"
    "  --printer FILE  append what is printed to FILE\n"
    "  --help          print this text\n"
    "\n"
    "Exit code: 0 the program ended, 1 its output could not be written, 2 wrong use, 3 it ran into the\n"
    "limit or waits for ever, 4 it reported a run-time error.\n";

namespace {

template <typename Number> std::optional<Number> wholeNumber(std::string_view text, int base) {
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    if (error != std::errc{} || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return value;
}

/// A count with an optional k, M or G.
std::uint64_t count(const std::string& option, std::string_view text) {
    std::uint64_t factor = 1;
    if (text.ends_with('k')) {
        factor = 1000;
    } else if (text.ends_with('M')) {
        factor = 1000000;
    } else if (text.ends_with('G')) {
        factor = 1000000000;
    }
    const auto value = wholeNumber<std::uint64_t>(factor == 1 ? text : text.substr(0, text.size() - 1), 10);
    if (!value || *value > std::numeric_limits<std::uint64_t>::max() / factor) {
        throw UsageError(option + " needs a number, not '" + std::string(text) + "'");
    }
    return *value * factor;
}

std::uint16_t tpaTop(std::string_view text) {
    const auto value = wholeNumber<std::uint16_t>(text, 16);
    if (!value || *value < lowestTpaTop || *value > highestTpaTop) {
        throw UsageError("--tpa-top needs a hexadecimal address from 0200 to F93C, not '" +
                         std::string(text) + "'");
    }
    return *value;
}

} // namespace

CommandLine parseCommandLine(std::span<const std::string> arguments) {
    CommandLine line;
    std::size_t next = 0;
    const auto valueOf = [&](const std::string& option) -> const std::string& {
        if (next == arguments.size()) {
            throw UsageError(option + " needs a value");
        }
        return arguments[next++];
    };
    while (next < arguments.size() && arguments[next].starts_with("-")) {
        const std::string& option = arguments[next++];
        if (option == "--help") {
            line.help = true;
            return line;
        }
        if (option == "--tstates") {
            line.showTStates = true;
        } else if (option == "--read-only") {
            line.settings.faults.readOnly = true;
        } else if (option == "--remove-after") {
            line.settings.faults.removedAfter = count(option, valueOf(option));
        } else if (option == "--msx-waits") {
            line.settings.msxWaits = true;
        } else if (option == "--disk") {
            line.folder = valueOf(option);
        } else if (option == "--printer") {
            line.printerFile = valueOf(option);
        } else if (option == "--limit") {
            line.limit = count(option, valueOf(option));
        } else if (option == "--free") {
            line.freeBytes = count(option, valueOf(option));
        } else if (option == "--tpa-top") {
            line.settings.tpaTop = tpaTop(valueOf(option));
        } else {
            throw UsageError("unknown option '" + option + "'");
        }
    }
    if (next == arguments.size()) {
        throw UsageError("no program named");
    }
    line.program = arguments[next++];
    while (next < arguments.size()) {
        line.tail += ' ';
        line.tail += arguments[next++];
    }
    return line;
}

} // namespace msxrun
