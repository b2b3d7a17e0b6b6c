#include "project/rescue_copies.h"

#include "util/files.h"
#include "util/folders.h"
#include "util/paths.h"
#include "util/runtime_error.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>
#include <tuple>
#include <utility>

namespace tavrel {

namespace {

constexpr std::string_view timePattern = "0000-00-00 000000"; // a 0 stands for any digit

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

bool matchesTimePattern(std::string_view text) {
    return std::equal(timePattern.begin(), timePattern.end(), text.begin(), text.end(),
                      [](char pattern, char character) {
                          return pattern == '0' ? isDigit(character) : character == pattern;
                      });
}

int numberAt(std::string_view text, std::size_t position, std::size_t digits) {
    int value = 0;
    for (const char digit : text.substr(position, digits))
        value = value * 10 + (digit - '0');
    return value;
}

/// Takes "-2" from the front of the text; 1 when it begins with something else, nothing when what follows the
/// hyphen is no number from 2 up.
std::optional<unsigned> takeNumber(std::string_view& text) {
    if (!text.starts_with('-'))
        return 1U;
    text.remove_prefix(1);
    constexpr std::size_t mostDigits = 6;
    std::size_t digits = 0;
    while (digits < text.size() && isDigit(text[digits]))
        ++digits;
    if (digits == 0 || digits > mostDigits || text[0] == '0')
        return std::nullopt;
    const int value = numberAt(text, 0, digits);
    text.remove_prefix(digits);
    return value >= 2 ? std::optional<unsigned>(static_cast<unsigned>(value)) : std::nullopt;
}

/// `newest` stays even when the clock was set back since the others were made.
void deleteOldCopies(const std::string& newest) {
    if (newest.empty())
        return;
    const std::string folder = GetFilePath(newest);
    std::vector<std::string> names;
    for (const FolderEntry& entry : listFolder(folder, "*")) {
        if (!entry.isFolder && folder + entry.name != newest)
            names.push_back(entry.name);
    }
    for (const std::string& old : rescueCopiesToDelete(names, keptRescueCopies - 1))
        deleteFileIfPossible(folder + old);
}

} // namespace

RescueTime localTimeNow() {
    const std::time_t now = std::time(nullptr);
    const std::tm* const local = std::localtime(&now);
    if (local == nullptr)
        return {};
    return {local->tm_year + 1900, local->tm_mon + 1, local->tm_mday,
            local->tm_hour,        local->tm_min,     local->tm_sec};
}

std::string rescueFileName(const RescueName& name) {
    std::array<char, 80> text{};
    const RescueTime& time = name.time;
    std::snprintf(text.data(), text.size(), "%04d-%02d-%02d %02d%02d%02d", time.year, time.month, time.day,
                  time.hour, time.minute, time.second);
    std::string result = text.data();
    if (name.number > 1)
        result += "-" + std::to_string(name.number);
    return result + " " + name.fileName;
}

std::optional<RescueName> readRescueFileName(std::string_view name) {
    const std::string_view time = name.substr(0, timePattern.size());
    if (!matchesTimePattern(time))
        return std::nullopt;
    name.remove_prefix(time.size());
    const std::optional<unsigned> number = takeNumber(name);
    if (!number || !name.starts_with(' ') || name.size() < 2)
        return std::nullopt;
    return RescueName{{numberAt(time, 0, 4), numberAt(time, 5, 2), numberAt(time, 8, 2),
                       numberAt(time, 11, 2), numberAt(time, 13, 2), numberAt(time, 15, 2)},
                      *number,
                      std::string(name.substr(1))};
}

std::vector<std::string> rescueCopiesToDelete(const std::vector<std::string>& names, std::size_t kept) {
    std::vector<std::pair<RescueName, std::string>> copies;
    for (const std::string& name : names) {
        if (auto copy = readRescueFileName(name))
            copies.emplace_back(std::move(*copy), name);
    }
    const auto newerFirst = [](const auto& a, const auto& b) {
        return std::tie(b.first.time, b.first.number) < std::tie(a.first.time, a.first.number);
    };
    std::sort(copies.begin(), copies.end(), newerFirst);
    std::vector<std::string> old;
    for (std::size_t i = kept; i < copies.size(); ++i)
        old.push_back(std::move(copies[i].second));
    return old;
}

std::string RescueCopies::writeInto(const std::string& folder, RescueName name, std::string_view text,
                                    Durability durability) {
    const std::string path = folder.substr(0, folder.size() - 1);
    makeFolder(GetFilePath(path)); // fails when it is there, which is as good
    if (!makeFolder(path))
        return {};
    while (FileExists(folder + rescueFileName(name)))
        ++name.number;
    const std::string copy = folder + rescueFileName(name);
    if (durability == Durability::onDisk)
        writeWholeFile(copy, text);
    else
        writeTemporaryFile(copy, text);
    return copy;
}

std::string RescueCopies::write(const std::string& fileName, std::string_view text, Durability durability) {
    for (const std::string& folder : folders_) {
        try {
            const std::string path = writeInto(folder, {now(), 1, fileName}, text, durability);
            if (!path.empty())
                return path;
        } catch (const RuntimeError&) {
            // The next folder may take it.
        }
    }
    return {};
}

std::string RescueCopies::keep(const std::string& fileName, std::string_view text) {
    const std::string path = write(fileName, text, Durability::onDisk);
    deleteOldCopies(path);
    return path;
}

bool RescueCopies::keepWhileTyping(const std::string& fileName, std::string_view text) {
    // Nobody may have to wait for the disk while typing.
    const std::string path = write(fileName, text, Durability::soon);
    if (path.empty())
        return false;
    dropTypingCopy(); // not before the new one is there
    typingCopy_ = path;
    deleteOldCopies(path);
    return true;
}

void RescueCopies::dropTypingCopy() {
    if (!typingCopy_.empty())
        deleteFileIfPossible(typingCopy_);
    typingCopy_.clear();
}

} // namespace tavrel
