#include "source_parser.h"

namespace tp3 {
namespace {

constexpr std::size_t maximumNesting = 250;     // parentheses, statements, types within each other
constexpr std::size_t stackReserve = 12 * 1024; // what the deepest leaf of parser or generator may need

} // namespace

SourceParser::SourceParser(Host& host, Arena& arena, const ParserOptions& options, BodyConsumer& consumer)
    : host_(host), arena_(arena), consumer_(consumer), features_(options.features),
      knownHidden_(options.hiddenVariables), mainFile_(options.mainFile),
      scanner_(host, names_, errors, options.pass) {
    integer_ = {TypeKind::integer, 2, -32768, 32767, nullptr, nullptr, nullptr};
    byte_ = {TypeKind::integer, 1, 0, 255, &integer_, nullptr, nullptr};
    char_ = {TypeKind::character, 1, 0, 255, nullptr, nullptr, nullptr};
    boolean_ = {TypeKind::boolean, 1, 0, 1, nullptr, nullptr, nullptr};
    real_ = {TypeKind::real, 6, 0, 0, nullptr, nullptr, nullptr};
    text_ = {TypeKind::textFile, 176, 0, 0, nullptr, nullptr, nullptr};
    anyPointer_ = {TypeKind::pointer, 2, 0, 0, nullptr, nullptr, nullptr};
    emptySet_ = {TypeKind::set, 32, 0, 255, nullptr, nullptr, nullptr};
    errorNode_.type = &untyped_;
}

SourceParser::Nesting::Nesting(SourceParser& parser) : parser_(parser) {
    if (++parser_.nesting_ > maximumNesting || parser_.host_.stackLeft() < stackReserve) {
        parser_.fail(Error::tableOverflow, parser_.token_.position, "nested too deep");
        ok = false;
    }
}

void SourceParser::fail(Error error, Position position, std::string_view detail) {
    errors.report(error, position, detail);
    token_.kind = TokenKind::endOfSource;
}

// For errors at the token that is next. The end of the source has a number of its own.
void SourceParser::failHere(Error error, std::string_view detail) {
    if (at(TokenKind::endOfSource))
        error = Error::unexpectedEnd;
    fail(error, token_.position, detail);
}

bool SourceParser::accept(TokenKind kind) {
    if (token_.kind != kind)
        return false;
    advance();
    return true;
}

bool SourceParser::expect(TokenKind kind, Error error) {
    if (accept(kind))
        return true;
    failHere(error);
    return false;
}

// A name that is about to be declared or called. Null after an error.
Name* SourceParser::expectIdentifier() {
    if (!at(TokenKind::identifier)) {
        failHere(token_.isReservedWord() ? Error::reservedWord : Error::unknownIdentifier);
        return nullptr;
    }
    Name* name = token_.name;
    advance();
    return name;
}

bool SourceParser::run() {
    scopes_.emplace_back();
    declareStandardNames();
    if (scanner_.open(mainFile_)) {
        advance();
        program();
    }
    return !errors.failed();
}

// program = ['program' {any character} ';'] block '.'
void SourceParser::program() {
    Routine* main = arena_.make<Routine>();
    callees.emplace_back();
    ++routineCount_;
    openScope();
    if (at(TokenKind::wordProgram)) {
        scanner_.passHeading(token_);
        expectSemicolon();
    }
    block(*main);
    // Nothing behind the last period is looked at, not even for its characters.
    if (!errors.failed() && !at(TokenKind::period))
        failHere(Error::periodExpected);
}

// block = {declaration} compoundStatement
void SourceParser::block(Routine& routine) {
    Routine* outer = current_;
    Symbol* outerLast = lastLocal_;
    current_ = &routine;
    lastLocal_ = nullptr;
    if (!errors.failed())
        consumer_.enterRoutine(routine);
    declarations();
    checkForwards();
    if (!at(TokenKind::wordBegin))
        failHere(Error::beginExpected);
    noteOptions();
    if (routine.level == 0)
        programOptions = statementOptions_;
    if (!errors.failed() && isPassedOver(routine))
        passOverStatements(routine);
    else
        statementPart(routine);
    current_ = outer;
    lastLocal_ = outerLast;
}

void SourceParser::statementPart(Routine& routine) {
    const std::size_t variables = variableFacts.size();
    const Arena::Mark tree = arena_.mark();
    Stmt* statements = compoundStatement();
    checkGotos();
    if (errors.failed())
        return;
    if (knownHidden_ == nullptr) {
        if (hiddenVariables.size() <= routine.ordinal)
            hiddenVariables.resize(routine.ordinal + std::size_t{1});
        hiddenVariables[routine.ordinal] = static_cast<std::uint16_t>(variableFacts.size() - variables);
    }
    consumer_.body(routine, statements, tree);
}

// From the first "begin" to its "end". What was right once needs only its brackets counted; the ordinals of
// the variables that its statements made are left out, so that those behind it stay the same.
void SourceParser::passOverStatements(const Routine& routine) {
    std::size_t open = 0;
    do {
        const TokenKind kind = token_.kind;
        if (kind == TokenKind::wordBegin || kind == TokenKind::wordCase)
            ++open;
        else if (kind == TokenKind::wordEnd)
            --open;
        advance();
        // Behind an operand a caret follows a pointer; elsewhere it begins a control character, such as ^[.
        const bool operand = kind == TokenKind::identifier || kind == TokenKind::rightBracket ||
                             kind == TokenKind::rightParenthesis || kind == TokenKind::caret;
        if (at(TokenKind::caret) && !operand)
            scanner_.controlCharacter(token_);
    } while (open > 0 && !at(TokenKind::endOfSource));
    if (open > 0)
        failHere(Error::unexpectedEnd);
    if (routine.ordinal < knownHidden_->size())
        variableFacts.resize(variableFacts.size() + (*knownHidden_)[routine.ordinal]);
}

// declaration = labelSection | constSection | typeSection | varSection | ['overlay'] routineDeclaration
void SourceParser::declarations() {
    while (true) {
        switch (token_.kind) {
        case TokenKind::wordLabel:
            labelSection();
            break;
        case TokenKind::wordConst:
            constSection();
            break;
        case TokenKind::wordType:
            typeSection();
            break;
        case TokenKind::wordVar:
            varSection();
            break;
        case TokenKind::wordProcedure:
        case TokenKind::wordFunction:
            routineDeclaration(false);
            break;
        case TokenKind::wordOverlay:
            advance();
            if (!at(TokenKind::wordProcedure) && !at(TokenKind::wordFunction))
                failHere(Error::routineExpected);
            routineDeclaration(true);
            break;
        default:
            return;
        }
    }
}

// The driver's view of the parser.
struct Parser::State {
    SourceParser parser;
};

Parser::Parser(Host& host, Arena& arena, const ParserOptions& options, BodyConsumer& consumer)
    : state_(new State{SourceParser(host, arena, options, consumer)}) {}

Parser::~Parser() = default;

bool Parser::run() {
    return state_->parser.run();
}

const Diagnostic& Parser::diagnostic() const {
    return state_->parser.errors.first;
}

void Parser::report(Error error, Position position, std::string_view detail) {
    state_->parser.fail(error, position, detail);
}

bool Parser::chains() const {
    return state_->parser.chains;
}

const std::vector<std::uint16_t>& Parser::handedOut() const {
    return state_->parser.handedOut;
}

const std::vector<VariableFacts>& Parser::variableFacts() const {
    return state_->parser.variableFacts;
}

const std::vector<std::vector<std::uint16_t>>& Parser::callees() const {
    return state_->parser.callees;
}

const std::vector<std::uint16_t>& Parser::hiddenVariables() const {
    return state_->parser.hiddenVariables;
}

const std::vector<std::string>& Parser::files() const {
    return state_->parser.errors.files;
}

std::uint8_t Parser::programOptions() const {
    return state_->parser.programOptions;
}

std::uint32_t Parser::lineCount() const {
    return state_->parser.lineCount();
}

} // namespace tp3
