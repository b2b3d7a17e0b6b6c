#include "msxrun/error_report.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace msxrun {

namespace {

constexpr std::string_view hexDigits = "0123456789ABCDEF";

/// The lines of a text without blanks at their ends; empty lines are left out.
std::vector<std::string_view> linesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
        std::string_view line = text.substr(0, end);
        line = line.substr(0, line.find_last_not_of(" \x1A") + 1);
        if (!line.empty()) {
            lines.push_back(line);
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

/// Takes `expected` off the front.
bool skip(std::string_view& text, std::string_view expected) {
    if (!text.starts_with(expected)) {
        return false;
    }
    text.remove_prefix(expected.size());
    return true;
}

bool skipHex(std::string_view& text, std::size_t digits) {
    if (text.size() < digits ||
        text.substr(0, digits).find_first_not_of(hexDigits) != std::string_view::npos) {
        return false;
    }
    text.remove_prefix(digits);
    return true;
}

bool isErrorLine(std::string_view line) {
    return (skip(line, "Run-time error ") || skip(line, "I/O error ")) && skipHex(line, 2) &&
           skip(line, ", PC=") && skipHex(line, 4) && line.empty();
}

} // namespace

void ErrorReport::add(std::uint8_t character) {
    if (tail_.size() >= 2 * kept) {
        tail_.erase(0, kept);
    }
    tail_ += static_cast<char>(character);
}

bool ErrorReport::ends() const {
    const auto lines = linesOf(tail_);
    return lines.size() >= 2 && lines.back() == "Program aborted" && isErrorLine(lines[lines.size() - 2]);
}

} // namespace msxrun
