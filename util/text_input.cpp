#include "util/text_input.h"

#include "util/files.h"
#include "util/runtime_error.h"

#include <utility>

namespace tavrel {

namespace {
constexpr char endOfFileMark = '\x1A';

bool isLineEnd(char c) {
    return c == '\r' || c == '\n';
}
} // namespace

TextInput::TextInput(std::string bytes, std::string name) : bytes_(std::move(bytes)), name_(std::move(name)) {
    const std::size_t mark = bytes_.find(endOfFileMark);
    if (mark != std::string::npos)
        bytes_.resize(mark);
}

TextInput TextInput::open(const std::string& path) {
    return TextInput(readWholeFile(path), path);
}

bool TextInput::atEnd() const {
    return position_ >= bytes_.size();
}

std::string TextInput::line() {
    if (atEnd())
        failAtEnd();
    const std::size_t start = position_;
    while (!atEnd() && !isLineEnd(bytes_[position_]))
        ++position_;
    std::string text = bytes_.substr(start, position_ - start);
    passLineEnd();
    return text;
}

std::string TextInput::item() {
    if (atEnd())
        failAtEnd();
    while (!atEnd() && (bytes_[position_] == ' ' || bytes_[position_] == '\t'))
        ++position_;
    if (!atEnd() && bytes_[position_] == '"')
        return quotedItem();
    const std::size_t start = position_;
    while (!atEnd() && bytes_[position_] != ',' && !isLineEnd(bytes_[position_]))
        ++position_;
    std::string text = bytes_.substr(start, position_ - start);
    if (!atEnd() && bytes_[position_] == ',')
        ++position_;
    else
        passLineEnd();
    return text;
}

std::string TextInput::quotedItem() {
    const std::size_t start = ++position_;
    while (!atEnd() && bytes_[position_] != '"')
        ++position_;
    std::string text = bytes_.substr(start, position_ - start);
    // What stands between the closing quote and the separator belongs to no item.
    while (!atEnd() && bytes_[position_] != ',' && !isLineEnd(bytes_[position_]))
        ++position_;
    if (!atEnd() && bytes_[position_] == ',')
        ++position_;
    else
        passLineEnd();
    return text;
}

void TextInput::passLineEnd() {
    if (atEnd())
        return;
    const bool carriageReturn = bytes_[position_] == '\r';
    ++position_;
    if (carriageReturn && !atEnd() && bytes_[position_] == '\n')
        ++position_;
}

void TextInput::failAtEnd() const {
    throw RuntimeError(RuntimeErrorNumber::inputPastEndOfFile, name_);
}

} // namespace tavrel
