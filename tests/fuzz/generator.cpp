#include "generator.h"

#include <algorithm>

namespace fuzz {

Generator::Generator(const Options& options)
    : options_(options), random_(options.seed), decoration_(options.seed) {}

std::string Generator::newName(const char* prefix) {
    return prefix + std::to_string(++nameCount_);
}

bool Generator::dropNext() {
    std::size_t n = static_cast<std::size_t>(number_++);
    return n < options_.dropped.size() && options_.dropped[n];
}

std::string Generator::readMark(const Type* type, const std::string& text) const {
    return free() ? readBegin + type->name + typeEnd + text + markEnd : text;
}

std::string Generator::callMark(const Type* type, const std::string& text) const {
    return free() ? callBegin + type->name + typeEnd + text + markEnd : text;
}

/// The text up to the end of a mark or of all. What stands between marks is first kept in variables when
/// `hoist`.
std::string Generator::withoutMarks(const std::string& text, std::size_t& at, bool hoist) {
    std::string result;
    while (at < text.size() && text[at] != markEnd) {
        char c = text[at++];
        if (c != readBegin && c != callBegin) {
            result += c;
            continue;
        }
        std::size_t end = text.find(typeEnd, at);
        std::string type = text.substr(at, end - at);
        at = end + 1;
        std::string inner = withoutMarks(text, at, hoist);
        ++at;
        if (!hoist) {
            result += inner;
            continue;
        }
        int number = ++keptNow_[type];
        keptMost_[type] = std::max(keptMost_[type], number);
        std::string name = "kept" + type + "_" + std::to_string(number);
        plainLine(name + " := " + inner + ";");
        result += name;
    }
    return result;
}

/// The variables of the current block that keep values.
void Generator::declareKept() {
    for (const auto& [type, most] : keptMost_) {
        for (int i = 1; i <= most; ++i) {
            plainLine("var kept" + type + "_" + std::to_string(i) + ": " + type + ";");
        }
    }
}

void Generator::line(const std::string& text) {
    keptNow_.clear();
    std::size_t at = 0;
    plainLine(withoutMarks(text, at, hasCallMark(text)));
}

/// Lines of Pascal are at most 127 characters long: breaks at blanks outside quotes.
void Generator::plainLine(const std::string& text) {
    std::string current(static_cast<std::size_t>(2 * indent_), ' ');
    std::size_t word = 0;
    bool quoted = false;
    auto flush = [&](std::size_t end) {
        std::string piece = text.substr(word, end - word);
        if (current.size() + piece.size() > 110 && current.find_first_not_of(' ') != std::string::npos) {
            text_ += current + "\n";
            current.assign(static_cast<std::size_t>(2 * indent_ + 2), ' ');
        }
        current += piece;
        word = end;
    };
    for (std::size_t i = 0; i < text.size(); ++i) {
        quoted = quoted != (text[i] == '\'');
        if (text[i] == ' ' && !quoted) {
            flush(i + 1);
        }
    }
    flush(text.size());
    text_ += current + "\n";
}

std::string Generator::source() {
    text_.clear();
    // Free Pascal would leave out the second operand of `and` and `or`; ours knows that letter for something
    // else.
    line(options_.rangeChecks && !free() ? "{$R+}" : free() ? "{$B+,R-,Q-}" : "{$R-}");
    line("program Generated;");
    if (free()) {
        line("const zero: Integer = 0; zeroReal: Real = 0.0;");
    }
    program();
    return text_;
}

/// Declarations and statements.
void Generator::program() {
    makeTypes();
    for (int i = random_.below(3); i > 0; --i) {
        typedConstant();
    }
    declareVariables(random_.between(4, 9), false);
    auto loopVariables = loopVariables_;
    mixName_ = newName("mix");
    sumName_ = newName("sum");
    line("var " + sumName_ + ": Integer; count: Integer;");
    line("procedure " + mixName_ + "(x: Integer);");
    line("begin " + sumName_ + " := " +
         (free() ? "Integer(Integer(" + sumName_ + " * 31) + x)" : sumName_ + " * 31 + x") + " end;");
    for (int i = random_.between(2, 7); i > 0; --i) {
        routine(false);
    }
    loopVariables_ = loopVariables;
    ownVariables_ = 0, labelName_.clear(), labelUsed_ = false;
    textFile_ = newName("file"), typedFile_ = newName("file");
    line("var " + textFile_ + ": Text; " + typedFile_ + ": file of Integer;");
    keptMost_.clear();
    std::string body;
    body.swap(text_);
    line("begin");
    ++indent_;
    for (const Variable& variable : variables_) {
        clear(variable);
    }
    int parts = random_.between(2, 4);
    for (int i = 0; i < parts; ++i) {
        statements(random_.between(2, 6));
        report();
    }
    --indent_;
    line("end.");
    body.swap(text_);
    if (labelUsed_) {
        line("label " + labelName_ + ";");
    }
    declareKept();
    text_ += body;
}

} // namespace fuzz
