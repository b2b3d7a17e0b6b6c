#pragma once

#include "arena.h"
#include "errors.h"
#include "host.h"
#include "language_features.h"
#include "tree.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tp3 {

/// Options given on the command line that the parser needs.
struct ParserOptions {
    std::string_view mainFile; ///< NAME.PAS as the host opens it
    int pass = 1;              ///< told to Host::progress
    /// What Parser::hiddenVariables() gave for the same source, if the consumer does not want every body.
    const std::vector<std::uint16_t>* hiddenVariables = nullptr;
    Features features = shippedFeatures;
};

/// Gets each routine's body as soon as it is parsed, nested routines before those that hold them, the main
/// program last. When the call returns, the body, the routine's locals and all its nested routines are given
/// back to the arena (the routine's own Symbol, Routine and parameters stay).
class BodyConsumer {
  public:
    virtual ~BodyConsumer() = default;
    /// Before a routine's declarations are parsed (the parameters are known).
    virtual void enterRoutine(Routine& routine) = 0;
    /// A global variable that has a place of its own, in order of declaration.
    virtual void globalVariable(Symbol& variable) = 0;
    /// A typed constant whose bytes are complete (Symbol::text, Type::size bytes).
    virtual void typedConstant(Symbol& constant) = 0;
    /// All that the arena holds from `tree` on belongs to the statements, and the consumer may give it back
    /// early.
    virtual void body(Routine& routine, Stmt* statements, Arena::Mark tree) = 0;
    /// Whether the statements of a routine are wanted. Those that are not are passed over: they must be known
    /// to be right, and there is no call of body().
    virtual bool wants(const Routine&) { return true; }
};

/// Parses one program, includes followed. The same source gives the same calls with the same ordinals each
/// time, which is what makes two passes possible: the first finds out what is used and what is recursive and
/// reports every error, the second makes code while holding one routine's tree at a time.
class Parser {
  public:
    Parser(Host& host, Arena& arena, const ParserOptions& options, BodyConsumer& consumer);
    ~Parser();
    Parser(const Parser&) = delete;
    Parser& operator=(const Parser&) = delete;

    /// Parses the whole program. True when there was no error.
    bool run();

    [[nodiscard]] const Diagnostic& diagnostic() const;
    /// Reports an error that the consumer found; the first error of all is kept, and parsing ends soon after.
    void report(Error error, Position position, std::string_view detail = {});

    /// Facts by Symbol::ordinal of variables, gathered while parsing.
    [[nodiscard]] const std::vector<VariableFacts>& variableFacts() const;
    /// Whether the program hands its variables on to another one.
    [[nodiscard]] bool chains() const;
    /// Ordinals of the routines whose address the program takes.
    [[nodiscard]] const std::vector<std::uint16_t>& handedOut() const;
    /// callees()[r] = ordinals of the routines that routine r calls, each once.
    [[nodiscard]] const std::vector<std::vector<std::uint16_t>>& callees() const;
    /// How many variables of its own the parser made for the statements of each routine, by ordinal.
    [[nodiscard]] const std::vector<std::uint16_t>& hiddenVariables() const;
    /// Names of the source files in the order of Position::file.
    [[nodiscard]] const std::vector<std::string>& files() const;
    [[nodiscard]] std::uint32_t lineCount() const;
    /// StatementOption bits where the main program's statements begin: {$B}, {$C} and {$U} are for all of it.
    [[nodiscard]] std::uint8_t programOptions() const;

  private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace tp3
