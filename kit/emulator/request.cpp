#include "emulator/request.h"

#include <algorithm>

namespace emulator {

const std::array<std::string_view, machineCount> machineOptions = {"-msx1", "-msx2", "-msx2+"};

namespace {

constexpr std::string_view blanks = " \t";

bool isBlank(char character) {
    return blanks.find(character) != blanks.npos;
}

char lowerCase(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

bool sameIgnoringCase(std::string_view left, std::string_view right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char a, char b) { return lowerCase(a) == lowerCase(b); });
}

/// Where the program's own name ends.
std::size_t endOfProgramName(std::string_view line, std::string_view programName) {
    if (line.starts_with('"')) {
        const std::size_t quote = line.find('"', 1);
        return quote == line.npos ? line.size() : quote + 1;
    }
    for (std::size_t place = 0; place + programName.size() <= line.size(); ++place) {
        const std::size_t end = place + programName.size();
        const bool begins = place == 0 || line[place - 1] == '\\' || line[place - 1] == '/';
        if (begins && (end == line.size() || isBlank(line[end])) &&
            sameIgnoringCase(line.substr(place, programName.size()), programName))
            return end;
    }
    return std::min(line.find_first_of(blanks), line.size());
}

/// Takes the next word off the line, which begins with it.
std::string takeWord(std::string_view& line) {
    std::string word;
    bool quoted = false;
    while (!line.empty() && (quoted || !isBlank(line.front()))) {
        const std::size_t slashes = std::min(line.find_first_not_of('\\'), line.size());
        const bool beforeQuote = slashes < line.size() && line[slashes] == '"';
        word.append(beforeQuote ? slashes / 2 : slashes, '\\');
        line.remove_prefix(slashes);
        if (line.empty() || (!beforeQuote && slashes != 0))
            continue;
        if (beforeQuote && slashes % 2 == 0)
            quoted = !quoted;
        else
            word += line.front();
        line.remove_prefix(1);
    }
    return word;
}

using Words = std::vector<std::string>;

/// The path that begins at `first`; moves `first` past it.
std::string takePath(const Words& words, std::size_t& first, const IsFile& isFile) {
    std::string path = words[first];
    for (std::size_t end = first + 1;; ++end) {
        if (isFile(path)) {
            first = end;
            return path;
        }
        if (end == words.size())
            break;
        path += " " + words[end];
    }
    path = words[first++];
    while (first < words.size() && !words[first].starts_with('-'))
        path += " " + words[first++];
    return path;
}

} // namespace

Words argumentsOf(std::string_view commandLine, std::string_view programName) {
    commandLine.remove_prefix(endOfProgramName(commandLine, programName));
    Words words;
    for (;;) {
        const std::size_t start = commandLine.find_first_not_of(blanks);
        if (start == commandLine.npos)
            return words;
        commandLine.remove_prefix(start);
        words.push_back(takeWord(commandLine));
    }
}

Request parseRequest(const Words& arguments, const IsFile& isFile) {
    Request request;
    for (std::size_t i = 0; i < arguments.size();) {
        const auto option = std::find(machineOptions.begin(), machineOptions.end(), arguments[i]);
        if (option != machineOptions.end()) {
            request.machine = static_cast<Machine>(option - machineOptions.begin());
            ++i;
        } else if (arguments[i] == "-diska" && i + 1 < arguments.size()) {
            request.image = takePath(arguments, ++i, isFile);
        } else {
            request.rest.push_back(arguments[i++]);
        }
    }
    return request;
}

// Fields end with NUL, which no argument can hold: the machine's option, the image, the rest.
std::string encodeRequest(const Request& request) {
    std::string text(machineOptions[static_cast<std::size_t>(request.machine)]);
    text += '\0' + request.image + '\0';
    for (const std::string& word : request.rest)
        text += word + '\0';
    return text;
}

Request decodeRequest(std::string_view text) {
    Words fields;
    for (std::size_t end = text.find('\0'); end != text.npos; end = text.find('\0')) {
        fields.emplace_back(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    Request request;
    if (fields.size() < 2)
        return request;
    const auto option = std::find(machineOptions.begin(), machineOptions.end(), fields[0]);
    if (option == machineOptions.end())
        return request;
    request.machine = static_cast<Machine>(option - machineOptions.begin());
    request.image = fields[1];
    request.rest.assign(fields.begin() + 2, fields.end());
    return request;
}

} // namespace emulator
