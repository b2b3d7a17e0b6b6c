#include "generator.h"

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

/// Lines of Pascal are at most 127 characters long: breaks at blanks outside quotes.
void Generator::line(const std::string& text) {
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
        line("const zero: Integer = 0;");
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
    text_ += body;
}

} // namespace fuzz
