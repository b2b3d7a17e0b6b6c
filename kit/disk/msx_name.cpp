#include "disk/msx_name.h"

#include <algorithm>
#include <array>

namespace disk {

namespace {

constexpr std::size_t stemLength = 8;
constexpr std::size_t typeLength = 3;

bool isAscii(char character) {
    return character > ' ' && character < '\x7F';
}

bool isOneOf(std::string_view text, std::initializer_list<std::string_view> names) {
    return std::find(names.begin(), names.end(), text) != names.end();
}

std::string capitals(std::string_view text) {
    std::string result(text);
    std::ranges::transform(result, result.begin(), msxrun::upperCase);
    return result;
}

/// Opening such a name on an MSX gives the device, whatever its type.
bool isMsxDevice(std::string_view stem) {
    return isOneOf(capitals(stem), {"CON", "AUX", "NUL", "LST", "PRN"});
}

bool isWindowsDevice(std::string_view stem) {
    const std::string name = capitals(stem);
    if (isOneOf(name, {"CON", "AUX", "NUL", "PRN", "CONIN$", "CONOUT$"}))
        return true;
    return name.size() == 4 && (name.starts_with("COM") || name.starts_with("LPT")) && name[3] >= '0' &&
           name[3] <= '9';
}

MsxName impossible(std::string problem) {
    return {.name = std::nullopt, .cut = false, .problem = std::move(problem)};
}

} // namespace

MsxName msxNameOf(std::string_view hostName) {
    const std::size_t point = hostName.find('.');
    const std::string_view stem = hostName.substr(0, point);
    std::string_view type = point == std::string_view::npos ? "" : hostName.substr(point + 1);
    type = type.substr(0, type.find('.'));
    if (stem.empty())
        return impossible("nothing stands before the point");
    for (const char character : std::string(stem) + std::string(type)) {
        if (!isAscii(character) ||
            std::string_view(":;,=+\"/\\[]|<>*?").find(character) != std::string_view::npos)
            return impossible(character == ' '     ? "it holds a blank"
                              : isAscii(character) ? std::string("it holds a '") + character + "'"
                                                   : "it holds a letter that is not ASCII");
    }
    if (isMsxDevice(stem.substr(0, stemLength)))
        return impossible("on an MSX it is the name of a device");
    std::string text(stem.substr(0, stemLength));
    if (!type.empty())
        text += "." + std::string(type.substr(0, typeLength));
    const bool cut = text.size() < hostName.size() && text + "." != hostName;
    return {.name = msxrun::nameFromHost(text), .cut = cut, .problem = {}};
}

std::string displayName(const Name83& name) {
    std::string text = msxrun::nameForHost(name);
    std::ranges::replace_if(
        text, [](char c) { return c != ' ' && !isAscii(c); }, '?');
    return text;
}

std::string safeHostName(const Name83& name) {
    Name83 safe = name;
    for (std::size_t i = 0; i < safe.size(); ++i) {
        const std::size_t end = i < stemLength ? stemLength : safe.size();
        const auto at = [&](std::size_t index) { return safe.begin() + static_cast<std::ptrdiff_t>(index); };
        // Blanks fill the parts up; before a character they are part of the name.
        const bool filler = std::all_of(at(i), at(end), [](char c) { return c == ' '; });
        if (!filler &&
            (!isAscii(safe[i]) || std::string_view(".:\"/\\|<>*?").find(safe[i]) != std::string_view::npos))
            safe[i] = '_';
    }
    if (safe[0] == ' ')
        safe[0] = '_';
    const std::string text = msxrun::nameForHost(safe);
    return isWindowsDevice(text.substr(0, text.find('.'))) ? "_" + text : text;
}

} // namespace disk
