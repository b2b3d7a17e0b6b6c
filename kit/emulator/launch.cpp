#include "emulator/launch.h"

#include <algorithm>

namespace emulator {

namespace {

std::string quoted(std::string_view text) {
    std::string result = "\"";
    std::size_t slashes = 0;
    for (const char character : text) {
        if (character == '"')
            result.append(slashes + 1, '\\'); // those in front of a quote count double
        slashes = character == '\\' ? slashes + 1 : 0;
        result += character;
    }
    return result.append(slashes, '\\') + '"';
}

} // namespace

std::vector<std::string> openmsxArguments(const Request& request, const StarterSettings& settings,
                                          const Surroundings& surroundings) {
    std::vector<std::string> arguments;
    const auto add = [&](std::string_view option, const std::string& value) {
        arguments.emplace_back(option);
        arguments.push_back(value);
    };
    const auto& rest = request.rest;
    if (std::find(rest.begin(), rest.end(), "-machine") == rest.end())
        add("-machine", settings.machines[static_cast<std::size_t>(request.machine)]);
    if (!settings.disk.empty())
        add("-ext", settings.disk);
    if (!surroundings.pipe.empty())
        add("-control", "pipe:" + surroundings.pipe);
    add("-script", surroundings.script);
    if (!surroundings.image.empty())
        add("-diska", surroundings.image);
    arguments.insert(arguments.end(), settings.options.begin(), settings.options.end());
    arguments.insert(arguments.end(), rest.begin(), rest.end());
    return arguments;
}

std::string commandLine(const std::string& program, const std::vector<std::string>& arguments) {
    std::string line = quoted(program);
    for (const std::string& argument : arguments)
        line += " " + quoted(argument);
    return line;
}

unsigned scaleForScreen(int width, int height) {
    // A tenth of the screen stays free for the window's frame and for the editor to be seen.
    constexpr unsigned smallest = 2;
    constexpr unsigned largest = 4;
    unsigned scale = largest;
    while (scale > smallest && (static_cast<int>(320 * scale) > width / 10 * 9 ||
                                static_cast<int>(240 * scale) > height / 10 * 9))
        --scale;
    return scale;
}

bool isUnixProgram(std::string_view path) {
    const std::size_t slash = path.find_last_of("/\\");
    const std::string_view name = slash == path.npos ? path : path.substr(slash + 1);
    return !name.empty() && name.find('.') == name.npos;
}

std::string unixPath(const std::string& path) {
    if (path.size() < 2 || (path[0] != 'Z' && path[0] != 'z') || path[1] != ':')
        return path;
    std::string result = path.substr(2);
    std::replace(result.begin(), result.end(), '\\', '/');
    return result;
}

} // namespace emulator
