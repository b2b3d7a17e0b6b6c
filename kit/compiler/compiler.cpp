#include "compiler.h"

#include "analysis.h"
#include "lower.h"
#include "overlays.h"
#include "parser.h"
#include "peephole.h"
#include "selector.h"

#include <algorithm>

namespace tp3 {

namespace {

/// The first pass wants nothing of the bodies but that they are right, and which routines are overlays.
class SurveyConsumer : public BodyConsumer {
  public:
    explicit SurveyConsumer(Overlays& overlays) : overlays_(overlays) {}
    void enterRoutine(Routine& routine) override { overlays_.enter(routine); }
    void globalVariable(Symbol&) override {}
    void typedConstant(Symbol&) override {}
    void body(Routine&, Stmt*, Arena::Mark) override {}

  private:
    Overlays& overlays_;
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
    /// What failed is too long, not unknown.
    [[nodiscard]] bool tooLarge() const { return tooLarge_; }
    Image& image() { return image_; }
    Storage& storage() { return storage_; }

  private:
    Function intermediateCode(Routine& routine, Stmt* statements) {
        Lowering lowering(storage_, routine);
        Function function = lowering.run(statements);
        failed_ = lowering.untranslatable();
        if (!isNumbered(function)) {
            tooLarge_ = true;
            failed_ = routine.symbol != nullptr ? routine.symbol->position : Position{1, 0, 1};
        }
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
            addLines(ordinal, code);
        image_.addRoutine(ordinal, code);
    }

    void addLines(std::uint16_t ordinal, const z80::Encoded& code) {
        Position last;
        for (const z80::LineMark& mark : code.lines) {
            if (mark.position.line != last.line || mark.position.file != last.file) {
                image_.addLine(ordinal, mark.offset, mark.position);
                last = mark.position;
            }
        }
    }

    /// Values, blocks and arguments have numbers of 16 bits; a body that has more of them is too long.
    static bool isNumbered(const Function& function) {
        constexpr std::size_t most = 0xFFFF;
        return function.values.size() < most && function.blocks.size() < most &&
               function.arguments.size() < most && function.bytes.size() < most;
    }

    const Survey& survey_;
    Arena& arena_;
    Storage storage_;
    Image image_;
    bool wantsLines_;
    bool tooLarge_ = false;
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

/// The name that a program's overlay files have before the period, as a directory has it.
std::string overlayFileName(std::string_view mainFile) {
    constexpr std::size_t length = 8;
    std::string name(mainFile.substr(0, std::min(mainFile.find('.'), length)));
    name.resize(length, ' ');
    return name;
}

/// Whether code and data fit; the result is complete then.
bool finish(CompileResult& result, CodeConsumer& code, const CompileOptions& options, std::uint8_t flags) {
    result.dataBottom = code.storage().bottom();
    if (code.storage().exhausted() || !code.image().finish(result.dataBottom, options.end, flags)) {
        return false;
    }
    result.codeEnd = code.image().codeEnd();
    result.overlayFiles = code.image().takeOverlayFiles();
    result.image = code.image().takeBytes();
    result.lines = code.image().lines();
    result.ok = true;
    return true;
}

void reportMemory(CompileResult& result, const CompileOptions& options) {
    result.diagnostic.error = Error::outOfMemory;
    result.diagnostic.position.line = 1;
    result.diagnostic.position.column = 1;
    result.diagnostic.file = result.files.empty() ? std::string(options.mainFile) : result.files.front();
    result.diagnostic.detail = "code and variables do not fit between start and end address";
}

/// The first pass. False after an error, which the result holds.
bool surveyProgram(Host& host, const CompileOptions& options, ParserOptions parserOptions,
                   CompileResult& result, Survey& survey, Overlays& overlays,
                   std::vector<std::uint16_t>& hiddenVariables) {
    Arena arena;
    SurveyConsumer consumer(overlays);
    parserOptions.mainFile = options.mainFile;
    Parser parser(host, arena, parserOptions, consumer);
    const bool ok = parser.run();
    result.files = parser.files();
    result.lineCount = parser.lineCount();
    if (!ok) {
        result.diagnostic = parser.diagnostic();
        return false;
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
    overlays.divide(parser.callees(), parser.handedOut());
    return true;
}

/// The second pass. False when the program is right but too large.
bool makeCode(Host& host, const CompileOptions& options, const ParserOptions& parserOptions,
              const Survey& survey, const Overlays* overlays, CompileResult& result) {
    Arena arena;
    CodeConsumer consumer(survey, options, arena);
    const std::string fileName = overlayFileName(options.mainFile);
    if (overlays != nullptr) {
        consumer.image().useOverlays(*overlays, fileName);
    }
    Parser parser(host, arena, parserOptions, consumer);
    const bool ok = parser.run();
    if (ok && consumer.tooLarge()) {
        parser.report(Error::outOfMemory, consumer.failed(), "too many statements in one body");
    } else if (ok && consumer.failed().line != 0) {
        parser.report(Error::unknownIdentifier, consumer.failed(), "not in this version of the compiler");
    }
    if (!ok || consumer.failed().line != 0) {
        result.diagnostic = parser.diagnostic();
        return true;
    }
    return finish(result, consumer, options, headerFlags(parser.programOptions()));
}

} // namespace

CompileResult compile(Host& host, const CompileOptions& options) {
    CompileResult result;
    Survey survey;
    Overlays overlays;
    ParserOptions parserOptions;
    parserOptions.mainFile = options.mainFile;
    std::vector<std::uint16_t> hiddenVariables;
    if (!surveyProgram(host, options, parserOptions, result, survey, overlays, hiddenVariables)) {
        return result;
    }
    parserOptions.pass = 2;
    parserOptions.hiddenVariables = &hiddenVariables;
    // Overlays stay in memory when there is room for all of them.
    if (makeCode(host, options, parserOptions, survey, nullptr, result)) {
        return result;
    }
    const bool mayOverlay = !overlays.units().empty() && overlays.groups() <= mostOverlayGroups;
    if (!mayOverlay || !makeCode(host, options, parserOptions, survey, &overlays, result)) {
        reportMemory(result, options);
    }
    return result;
}

std::string overlayExtension(std::size_t number) {
    std::string extension = ".";
    for (const unsigned power : {100U, 10U, 1U}) {
        extension += static_cast<char>('0' + number / power % 10);
    }
    return extension;
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
