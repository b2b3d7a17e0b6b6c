#include "emulator/starter_settings.h"

#include <algorithm>

namespace emulator {

namespace {

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == text.npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// One line that says something, taken apart.
struct Entry {
    std::size_t line;
    std::string_view name;
    std::string_view value;
};

[[noreturn]] void refuse(std::size_t line, const std::string& what) {
    throw SettingsError("line " + std::to_string(line) + ": " + what);
}

bool choice(const Entry& entry, std::string_view yes, std::string_view no) {
    if (entry.value != yes && entry.value != no)
        refuse(entry.line, std::string(entry.name) + " is " + std::string(yes) + " or " + std::string(no));
    return entry.value == yes;
}

unsigned scaleOf(const Entry& entry) {
    if (entry.value == "auto")
        return 0;
    if (entry.value.size() != 1 || entry.value[0] < '2' || entry.value[0] > '8')
        refuse(entry.line, "scale is auto or a number from 2 to 8");
    return static_cast<unsigned>(entry.value[0] - '0');
}

void apply(const Entry& entry, StarterSettings& settings) {
    const std::string value(entry.value);
    if (value.find('\0') != value.npos)
        refuse(entry.line, "there is a NUL character");
    const auto machine =
        std::find(machineOptions.begin(), machineOptions.end(), "-" + std::string(entry.name));
    if (machine != machineOptions.end())
        settings.machines[static_cast<std::size_t>(machine - machineOptions.begin())] = value;
    else if (entry.name == "openmsx")
        settings.openmsx = value;
    else if (entry.name == "disk")
        settings.disk = value == "none" ? "" : value;
    else if (entry.name == "data")
        settings.ownData = choice(entry, "own", "user");
    else if (entry.name == "scale")
        settings.scale = scaleOf(entry);
    else if (entry.name == "option")
        settings.options.push_back(value);
    else
        refuse(entry.line, "the name '" + std::string(entry.name) + "' is not known");
}

void readLine(std::string_view line, std::size_t number, StarterSettings& settings) {
    line = trimmed(line);
    if (line.empty() || line[0] == ';' || line[0] == '#')
        return;
    const std::size_t equals = line.find('=');
    if (equals == line.npos)
        refuse(number, "there is no '='");
    const Entry entry = {number, trimmed(line.substr(0, equals)), trimmed(line.substr(equals + 1))};
    if (entry.value.empty())
        refuse(number, "there is nothing after the '='");
    apply(entry, settings);
}

} // namespace

StarterSettings parseStarterSettings(std::string_view text) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF"; // which the Windows editor writes
    if (text.starts_with(byteOrderMark))
        text.remove_prefix(byteOrderMark.size());
    StarterSettings settings;
    for (std::size_t number = 1; !text.empty(); ++number) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        readLine(text.substr(0, end), number, settings);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return settings;
}

} // namespace emulator
