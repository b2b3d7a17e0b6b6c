#include "source_parser.h"

namespace tp3 {
namespace {

constexpr std::size_t maximumRoutines = 65535; // ordinals have 16 bits
constexpr std::size_t maximumParameters = 255;
constexpr std::uint8_t maximumLevel = 100;

} // namespace

// routineDeclaration = heading ';' ('forward' | 'external' constant | block) ';'
// Whether overlays stay resident is decided when all code is known (overlays.h).
void SourceParser::routineDeclaration(bool overlay) {
    const Nesting nesting(*this);
    if (!nesting.ok)
        return;
    const bool function = at(TokenKind::wordFunction);
    advance();
    const Position position = token_.position;
    Arena::Mark heading;
    Symbol* symbol = routineHeading(function, heading);
    if (symbol == nullptr || errors.failed())
        return;
    Routine& routine = *symbol->routine;
    if (overlay && routine.isForward)
        return fail(Error::overlayForward, position);
    if (at(TokenKind::wordForward)) {
        if (overlay)
            return failHere(Error::overlayForward);
        if (routine.isForward)
            return failHere(Error::duplicateIdentifier);
        advance();
        routine.isForward = true;
    } else if (at(TokenKind::wordExternal)) {
        externalPart(routine);
    } else {
        routine.isOverlay = overlay;
        routineBody(routine);
        if (isPassedOver(routine) && !errors.failed()) {
            routine.parameters = nullptr; // nobody calls it
            routine.result = nullptr;
            symbol->type = &untyped_;
            arena_.release(heading);
        }
    }
    expectSemicolon();
}

Symbol* SourceParser::newRoutine(Name* name, Position position) {
    Symbol* symbol = declare(name, SymbolKind::routine, position);
    Routine* routine = arena_.make<Routine>();
    if (routineCount_ >= maximumRoutines || current_->level >= maximumLevel)
        fail(Error::tableOverflow, position, "routines");
    symbol->routine = routine;
    symbol->owner = current_;
    routine->symbol = symbol;
    routine->parent = current_;
    routine->level = static_cast<std::uint8_t>(current_->level + 1);
    routine->ordinal = static_cast<std::uint16_t>(routineCount_++);
    symbol->ordinal = routine->ordinal;
    if (knownHidden_ == nullptr)
        callees.emplace_back();
    return symbol;
}

// heading = ('procedure' | 'function') identifier [parameters] [':' typeIdentifier] ';'
// The body of a forward routine repeats the identifier only. `mark`: what comes behind it is the routine's
// alone.
Symbol* SourceParser::routineHeading(bool function, Arena::Mark& mark) {
    const Position position = token_.position;
    Name* name = expectIdentifier();
    if (name == nullptr)
        return nullptr;
    Symbol* before = name->meaning;
    if (before != nullptr && before->kind == SymbolKind::routine && before->routine->isForward &&
        before->scopeLevel == scopes_.size() - 1) {
        if (function != (before->routine->result != nullptr))
            fail(Error::duplicateIdentifier, position, name->text);
        expectSemicolon();
        mark = arena_.mark();
        return before;
    }
    Symbol* symbol = newRoutine(name, position);
    mark = arena_.mark();
    Routine& routine = *symbol->routine;
    Routine* outer = current_;
    current_ = &routine; // it owns its parameters
    if (at(TokenKind::leftParenthesis))
        parameterList(routine);
    if (function)
        functionResult(routine);
    current_ = outer;
    symbol->type = routine.result != nullptr ? routine.result->type : &untyped_;
    expectSemicolon();
    return symbol;
}

// parameters = '(' parameterGroup {';' parameterGroup} ')'
void SourceParser::parameterList(Routine& routine) {
    advance();
    Symbol* last = nullptr;
    do
        parameterGroup(routine, last);
    while (accept(TokenKind::semicolon));
    expect(TokenKind::rightParenthesis, Error::rightParenthesisExpected);
}

// parameterGroup = ['var'] identifier {',' identifier} ':' typeIdentifier | 'var' identifier {',' identifier}
void SourceParser::parameterGroup(Routine& routine, Symbol*& last) {
    const bool byAddress = accept(TokenKind::wordVar);
    Symbol* first = nullptr;
    do {
        const Position position = token_.position;
        Name* name = expectIdentifier();
        Symbol* parameter = newVariable(
            name, byAddress ? StorageKind::varParameter : StorageKind::valueParameter, &untyped_, position);
        for (const Symbol* other = routine.parameters; other != nullptr; other = other->next)
            if (other->name == name)
                fail(Error::duplicateIdentifier, position);
        if (routine.parameterCount == maximumParameters)
            return fail(Error::tableOverflow, position, "parameters");
        ++routine.parameterCount;
        if (last == nullptr)
            routine.parameters = parameter;
        else
            last->next = parameter;
        last = parameter;
        if (first == nullptr)
            first = parameter;
    } while (accept(TokenKind::comma));
    if (byAddress && !at(TokenKind::colon))
        return; // without a type: anything may be passed
    expect(TokenKind::colon, Error::colonExpected);
    const Position position = token_.position;
    Type* type = parseTypeIdentifier();
    // A record may bring its files along: the routine gets a copy of them as they are.
    if (!byAddress && type->kind != TypeKind::record && containsFile(*type))
        fail(Error::fileMustBeVar, position);
    for (Symbol* parameter = first; parameter != nullptr; parameter = parameter->next)
        parameter->type = type;
}

// ':' typeIdentifier
void SourceParser::functionResult(Routine& routine) {
    expect(TokenKind::colon, Error::colonExpected);
    const Position position = token_.position;
    Type* type = parseTypeIdentifier();
    if (!errors.failed() && !type->isSimple() && type->kind != TypeKind::real &&
        type->kind != TypeKind::string)
        fail(Error::resultType, position);
    routine.result = newVariable(routine.symbol->name, StorageKind::result, type, position);
}

// The tree, the locals and the nested routines are given back when the consumer has seen them.
void SourceParser::routineBody(Routine& routine) {
    routine.isForward = false;
    const Arena::Mark mark = arena_.mark();
    openScope();
    for (Symbol* parameter = routine.parameters; parameter != nullptr; parameter = parameter->next)
        if (parameter->name != nullptr)
            enter(*parameter);
    block(routine);
    if (errors.failed())
        return; // the scopes stay as they are: nothing is looked up any more
    closeScope();
    routine.locals = nullptr;
    arena_.release(mark);
}

// 'external' integer constant
void SourceParser::externalPart(Routine& routine) {
    advance();
    std::int32_t address = 0;
    integerConstant(address);
    routine.isForward = false;
    routine.isExternal = true;
    routine.externalAddress = static_cast<std::uint16_t>(address & 0xFFFF);
}

// Every forward heading of the block must have found its body.
void SourceParser::checkForwards() {
    if (errors.failed())
        return;
    for (const Symbol* symbol = scopes_.back().first; symbol != nullptr; symbol = symbol->nextInScope)
        if (symbol->kind == SymbolKind::routine && symbol->routine->isForward)
            return fail(Error::undefinedForward, symbol->position, symbol->name->text);
}

} // namespace tp3
