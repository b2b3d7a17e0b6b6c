// The sources' comments: every routine says what goes in and out, what it destroys and how long it takes.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace {

using Lines = std::vector<std::string>;

Lines linesOf(const std::filesystem::path& path) {
    std::ifstream file(path);
    Lines lines;
    for (std::string line; std::getline(file, line);) {
        lines.push_back(line);
    }
    return lines;
}

std::map<std::string, Lines> sources() {
    std::map<std::string, Lines> result;
    for (const auto& entry : std::filesystem::directory_iterator(TP3_RUNTIME_SOURCES)) {
        if (entry.path().extension() == ".asm") {
            result[entry.path().filename().string()] = linesOf(entry.path());
        }
    }
    return result;
}

/// What programs or other routines call: the entries, and the targets of CALL and of the macro that calls for
/// reals. Labels with _ are parts of a routine.
std::set<std::string> routineNames(const std::map<std::string, Lines>& files) {
    static const std::regex call(
        R"(^\s+(?:call\s+(?:(?:nz|z|nc|c|po|pe|p|m),)?|realOperation\s+)(@?[A-Za-z]\w*).*)");
    static const std::regex entry(R"(^RUNTIME_ENTRY\((\w+)\).*)");
    std::set<std::string> names;
    std::smatch match;
    for (const auto& [file, lines] : files) {
        for (const std::string& line : lines) {
            if (std::regex_match(line, match, call)) {
                names.insert(match[1]);
            }
        }
    }
    for (const std::string& line : linesOf(std::filesystem::path(TP3_RUNTIME_SOURCES) / "entries.def")) {
        if (std::regex_match(line, match, entry)) {
            names.insert("@" + match[1].str());
        }
    }
    return names;
}

/// The comment blocks of a file by the names that begin a sentence in them: "name: ..." or "name, other:
/// ...".
std::map<std::string, std::string> comments(const Lines& lines) {
    static const std::regex names(R"((?:^|[.] )((?:\w+, )*\w+): )");
    static const std::regex name(R"(\w+)");
    std::map<std::string, std::string> result;
    std::string block;
    for (const std::string& line : lines) {
        if (!line.empty() && line.front() == ';') {
            block += (block.empty() ? "" : " ") + line.substr(std::min<std::size_t>(2, line.size()));
            continue;
        }
        for (std::sregex_iterator found(block.begin(), block.end(), names), end; found != end; ++found) {
            const std::string list = (*found)[1];
            for (std::sregex_iterator each(list.begin(), list.end(), name); each != end; ++each) {
                result.emplace(each->str(), block);
            }
        }
        block.clear();
    }
    return result;
}

bool isData(const std::string& text) {
    static const std::regex data(R"(^\s*(?:def[bsw]|standardFile)\b.*)");
    return std::regex_match(text, data);
}

TEST(SourceComments, TellRegistersAndTStatesOfEveryRoutine) {
    static const std::regex label(R"(^(@?[A-Za-z]\w*):(.*))");
    static const std::regex registers(R"(.*(\bIn:|\bOut:|->|[Nn]othing in or out|: [Aa]s ).*)");
    static const std::regex destroys(
        R"(.*([Dd]estroys?\b|[Kk]eeps?\b|[Cc]omes? back|not return|never comes back).*)");
    static const std::regex tStates(R"(.*\b\d+ T\b.*)");
    const auto files = sources();
    const std::set<std::string> routines = routineNames(files);
    std::size_t checked = 0;
    for (const auto& [file, lines] : files) {
        const auto documented = comments(lines);
        for (std::size_t at = 0; at < lines.size(); ++at) {
            std::smatch match;
            if (!std::regex_match(lines[at], match, label) || !routines.contains(match[1])) {
                continue;
            }
            // Several labels may stand before the first instruction or datum.
            std::size_t next = at;
            std::string behind = match[2];
            while (behind.empty() && ++next < lines.size()) {
                behind = std::regex_match(lines[next], label) ? "" : lines[next];
            }
            if (isData(behind)) {
                continue;
            }
            ++checked;
            const std::string name = match[1].str().substr(match[1].str().front() == '@' ? 1 : 0);
            const auto comment = documented.find(name);
            ASSERT_NE(comment, documented.end()) << file << ": " << name << " has no comment";
            EXPECT_TRUE(std::regex_match(comment->second, registers))
                << file << ": " << name << ": in and out";
            EXPECT_TRUE(std::regex_match(comment->second, destroys))
                << file << ": " << name << ": what it destroys";
            EXPECT_TRUE(std::regex_match(comment->second, tStates)) << file << ": " << name << ": T-states";
        }
    }
    EXPECT_GT(checked, 200U);
}

} // namespace
