#include "compiler.h"

#include "analysis.h"
#include "lower.h"
#include "parser.h"
#include "peephole.h"
#include "selector.h"

namespace tp3 {

namespace {

/// The first pass wants nothing of the bodies but that they are right.
class SurveyConsumer : public BodyConsumer {
  public:
    void enterRoutine(Routine&) override {}
    void globalVariable(Symbol&) override {}
    void typedConstant(Symbol&) override {}
    void body(Routine&, Stmt*, Arena::Mark) override {}
};

/// The second pass: code for every routine that the program reaches.
class CodeConsumer : public BodyConsumer {
  public:
    CodeConsumer(const Survey& survey, const CompileOptions& options, Arena& arena)
        : survey_(survey), arena_(arena), storage_(survey, options.end), image_(options.start, options.end),
          wantsLines_(options.wantsLines) {}

    void enterRoutine(Routine&) override {}

    void globalVariable(Symbol& variable) override { storage_.reserve(variable); }

    void typedConstant(Symbol& constant) override {
        if (constant.ordinal < survey_.variables.size() && survey_.variables[constant.ordinal].used) {
            image_.addConstant(constant.ordinal, constant.text, constant.type->size);
        }
    }

    bool wants(const Routine& routine) override {
        return routine.ordinal >= survey_.routines.size() || survey_.routines[routine.ordinal].used;
    }

    void body(Routine& routine, Stmt* statements, Arena::Mark tree) override {
        if (!survey_.routines[routine.ordinal].used || failed_.line != 0) {
            return;
        }
        Selector::Result selected = machineCode(routine, statements, tree);
        if (failed_.line != 0) {
            return;
        }
        peephole(selected.code);
        addCode(routine.ordinal, selected);
    }

    [[nodiscard]] Position failed() const { return failed_; }
    Image& image() { return image_; }
    Storage& storage() { return storage_; }

  private:
    Function intermediateCode(Routine& routine, Stmt* statements) {
        Lowering lowering(storage_, routine);
        Function function = lowering.run(statements);
        failed_ = lowering.untranslatable();
        return function;
    }

    /// The tree is gone when instructions are chosen, and the intermediate code when the peephole begins: in
    /// DOS a long body would not have room for all of them.
    Selector::Result machineCode(Routine& routine, Stmt* statements, Arena::Mark tree) {
        Function function = intermediateCode(routine, statements);
        if (failed_.line != 0) {
            return {};
        }
        arena_.release(tree);
        arena_.trim();
        coalesceCopies(function);
        tidyBlocks(function);
        sinkStackCheck(function);
        const Liveness liveness = analyseLiveness(function);
        pinLoopValues(function, liveness);
        return Selector(function, liveness, storage_).run();
    }

    void addCode(std::uint16_t ordinal, const Selector::Result& selected) {
        z80::Encoded code = z80::encode(selected.code, selected.pool, selected.poolFixups, false);
        if (wantsLines_)
            addLines(code);
        image_.addRoutine(ordinal, code);
    }

    void addLines(const z80::Encoded& code) {
        Position last;
        for (const z80::LineMark& mark : code.lines) {
            if (mark.position.line != last.line || mark.position.file != last.file) {
                image_.addLine(mark.offset, mark.position);
                last = mark.position;
            }
        }
    }

    const Survey& survey_;
    Arena& arena_;
    Storage storage_;
    Image image_;
    bool wantsLines_;
    Position failed_;
};

void decimal(std::string& out, std::uint32_t value) {
    char digits[10];
    unsigned count = 0;
    do {
        digits[count++] = static_cast<char>('0' + value % 10);
        value /= 10;
    } while (value != 0);
    while (count > 0) {
        out += digits[--count];
    }
}

void hexadecimal(std::string& out, std::uint16_t value) {
    for (int shift = 12; shift >= 0; shift -= 4) {
        out += "0123456789ABCDEF"[value >> shift & 0xF];
    }
}

void sizeLine(std::string& out, std::string_view name, std::uint32_t from, std::uint32_t to) {
    out += name;
    decimal(out, to - from);
    out += " bytes (";
    hexadecimal(out, static_cast<std::uint16_t>(from));
    out += '-';
    hexadecimal(out, static_cast<std::uint16_t>(to == from ? to : to - 1));
    out += ")\n";
}

/// The header's flags for the library, from the directives in force where the main program begins.
std::uint8_t headerFlags(std::uint8_t options) {
    const unsigned flags = ((options & optionControlC) != 0 ? 1U : 0U) |
                           ((options & optionBufferedConsole) != 0 ? 2U : 0U) |
                           ((options & optionUserInterrupt) != 0 ? 4U : 0U);
    return static_cast<std::uint8_t>(flags);
}

void finish(CompileResult& result, CodeConsumer& code, const CompileOptions& options, std::uint8_t flags) {
    result.dataBottom = code.storage().bottom();
    if (code.storage().exhausted() || !code.image().finish(result.dataBottom, options.end, flags)) {
        result.diagnostic.error = Error::outOfMemory;
        result.diagnostic.position.line = 1;
        result.diagnostic.position.column = 1;
        result.diagnostic.file = result.files.empty() ? std::string(options.mainFile) : result.files.front();
        result.diagnostic.detail = "code and variables do not fit between start and end address";
        return;
    }
    result.image = code.image().takeBytes();
    result.lines = code.image().lines();
    result.codeEnd = code.image().address(result.image.size());
    result.ok = true;
}

} // namespace

CompileResult compile(Host& host, const CompileOptions& options) {
    CompileResult result;
    Survey survey;
    ParserOptions parserOptions;
    parserOptions.mainFile = options.mainFile;
    std::vector<std::uint16_t> hiddenVariables;
    {
        Arena arena;
        SurveyConsumer consumer;
        Parser parser(host, arena, parserOptions, consumer);
        const bool ok = parser.run();
        result.files = parser.files();
        result.lineCount = parser.lineCount();
        if (!ok) {
            result.diagnostic = parser.diagnostic();
            return result;
        }
        survey.variables = parser.variableFacts();
        hiddenVariables = parser.hiddenVariables();
        survey.chains = parser.chains();
        survey.handsOutRoutines = !parser.handedOut().empty();
        survey.routines.resize(parser.callees().size());
        for (const std::uint16_t routine : parser.handedOut()) {
            survey.routines[routine].checksStack = true; // what the library has on the stack comes on top
        }
        analyseCalls(parser.callees(), survey.routines);
    }
    parserOptions.pass = 2;
    parserOptions.hiddenVariables = &hiddenVariables;
    Arena arena;
    CodeConsumer consumer(survey, options, arena);
    Parser parser(host, arena, parserOptions, consumer);
    const bool ok = parser.run();
    if (ok && consumer.failed().line != 0) {
        parser.report(Error::unknownIdentifier, consumer.failed(), "not in this version of the compiler");
    }
    if (!ok || consumer.failed().line != 0) {
        result.diagnostic = parser.diagnostic();
        return result;
    }
    finish(result, consumer, options, headerFlags(parser.programOptions()));
    return result;
}

std::string sizeReport(const CompileResult& result, const CompileOptions& options) {
    std::string out;
    sizeLine(out, "Code: ", options.start, result.codeEnd);
    sizeLine(out, "Free: ", result.codeEnd, result.dataBottom);
    sizeLine(out, "Data: ", result.dataBottom, options.end);
    return out;
}

std::string errorMessage(const Diagnostic& diagnostic) {
    std::string text(errorText(diagnostic.error));
    if (!diagnostic.detail.empty()) {
        text += ": ";
        for (const char c : diagnostic.detail) {
            text += c == '"' || c == '\r' || c == '\n' ? ' ' : c;
        }
    }
    return text;
}

std::string errorRecord(const Diagnostic& diagnostic) {
    const bool elsewhere = !diagnostic.shownFile.empty();
    const Position& position = elsewhere ? diagnostic.shownPosition : diagnostic.position;
    std::string out = "\"" + (elsewhere ? diagnostic.shownFile : diagnostic.file) + "\",";
    decimal(out, position.line);
    out += ',';
    decimal(out, position.column);
    out += ',';
    decimal(out, static_cast<std::uint32_t>(diagnostic.error));
    out += ",\"" + errorMessage(diagnostic);
    if (elsewhere) {
        out += " in " + diagnostic.file + ", line ";
        decimal(out, diagnostic.position.line);
        out += ", column ";
        decimal(out, diagnostic.position.column);
    }
    out += "\"\r\n";
    return out;
}

} // namespace tp3
