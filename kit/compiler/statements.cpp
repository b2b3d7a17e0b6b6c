#include "source_parser.h"

namespace tp3 {

void SourceParser::StmtList::add(Stmt* stmt) {
    if (last == nullptr)
        first = stmt;
    else
        last->next = stmt;
    last = stmt;
}

Stmt* SourceParser::newStmt(StmtKind kind, Position position) {
    Stmt* stmt = arena_.make<Stmt>();
    stmt->kind = kind;
    stmt->position = position;
    stmt->options = statementOptions_;
    return stmt;
}

// The directives in force where a statement begins; those that stand inside it or right behind it, as in
// {$I-} Reset(f) {$I+}, are not for it.
void SourceParser::noteOptions() {
    const Directives& directives = scanner_.directives();
    const auto option = [](bool on, StatementOption bit) { return on ? static_cast<unsigned>(bit) : 0U; };
    statementOptions_ = static_cast<std::uint8_t>(
        option(directives.ioCheck, optionIoCheck) | option(directives.userInterrupt, optionUserInterrupt) |
        option(directives.controlC, optionControlC) | option(directives.arraySpeed, optionArraySpeed) |
        option(directives.bufferedConsole, optionBufferedConsole) |
        option(directives.absoluteCode, optionAbsoluteCode) |
        option(directives.rangeCheck, optionRangeCheck));
}

// One statement for a list: itself if it is alone, otherwise a block.
Stmt* SourceParser::sequence(StmtList& list, Position position) {
    if (list.first != nullptr && list.first->next == nullptr)
        return list.first;
    Stmt* block = newStmt(StmtKind::block, position);
    block->body = list.first;
    return block;
}

// statement = {label ':'} unlabelledStatement
Stmt* SourceParser::parseStatement() {
    const Nesting nesting(*this);
    const Position position = token_.position;
    noteOptions();
    if (!nesting.ok)
        return newStmt(StmtKind::empty, position);
    StmtList list;
    while (at(TokenKind::integer) || at(TokenKind::identifier)) {
        const bool number = at(TokenKind::integer);
        if (!number && (token_.name->meaning == nullptr || token_.name->meaning->kind != SymbolKind::label))
            break;
        const Position labelPosition = token_.position;
        Symbol* label = findLabel(labelName());
        if (label == nullptr) {
            fail(Error::undefinedLabel, labelPosition);
            break;
        }
        placeLabel(*label, list);
        expect(TokenKind::colon, Error::colonExpected);
    }
    list.add(unlabelledStatement());
    return sequence(list, position);
}

// unlabelledStatement = assignment | call | compoundStatement | ifStatement | ... | empty
Stmt* SourceParser::unlabelledStatement() {
    switch (token_.kind) {
    case TokenKind::identifier:
        return identifierStatement();
    case TokenKind::wordBegin:
        return compoundStatement();
    case TokenKind::wordIf:
        return ifStatement();
    case TokenKind::wordWhile:
        return whileStatement();
    case TokenKind::wordRepeat:
        return repeatStatement();
    case TokenKind::wordCase:
        return caseStatement();
    case TokenKind::wordFor:
        return forStatement();
    case TokenKind::wordWith:
        return withStatement();
    case TokenKind::wordGoto:
        return gotoStatement();
    case TokenKind::wordInline:
        return inlineStatement();
    default:
        return newStmt(StmtKind::empty, token_.position);
    }
}

// statements = statement {';' statement}; up to `closing`, which is left for the caller
void SourceParser::statementList(StmtList& list, TokenKind closing) {
    while (true) {
        Stmt* stmt = parseStatement();
        if (stmt->kind != StmtKind::empty)
            list.add(stmt);
        if (accept(TokenKind::semicolon))
            continue;
        if (at(closing) || errors.failed())
            return;
        // A declaration or the end of the program show that an end is missing.
        switch (token_.kind) {
        case TokenKind::period:
        case TokenKind::wordUntil:
        case TokenKind::wordProcedure:
        case TokenKind::wordFunction:
        case TokenKind::wordOverlay:
        case TokenKind::wordConst:
        case TokenKind::wordType:
        case TokenKind::wordVar:
        case TokenKind::wordLabel:
            return failHere(Error::endExpected);
        default:
            return failHere(stmt->kind != StmtKind::empty ? Error::semicolonExpected
                                                          : Error::unknownIdentifier);
        }
    }
}

// compoundStatement = 'begin' statements 'end'
Stmt* SourceParser::compoundStatement() {
    Stmt* block = newStmt(StmtKind::block, token_.position);
    expect(TokenKind::wordBegin, Error::beginExpected);
    StmtList list;
    statementList(list, TokenKind::wordEnd);
    block->body = list.first;
    expect(TokenKind::wordEnd, Error::endExpected);
    return block;
}

Stmt* SourceParser::assignment(Expr* target, Position position) {
    Stmt* stmt = newStmt(StmtKind::assign, position);
    expect(TokenKind::assign, Error::assignExpected);
    const Position valuePosition = token_.position;
    stmt->target = target;
    stmt->value = assignable(parseExpression(), target->type, valuePosition);
    return stmt;
}

// Statements that begin with an identifier: assignments and calls.
Stmt* SourceParser::identifierStatement() {
    const Position position = token_.position;
    Name* name = token_.name;
    Symbol* symbol = statementMeaning(*name);
    if (isWithField(name) || (symbol != nullptr && symbol->kind == SymbolKind::variable))
        return assignment(parseVariable(Access::write), position);
    if (symbol == nullptr) {
        failHere(Error::unknownIdentifier, name->text);
        return newStmt(StmtKind::empty, position);
    }
    switch (symbol->kind) {
    case SymbolKind::routine:
        advance();
        return routineStatement(*symbol, position);
    case SymbolKind::standardRoutine: {
        const CallShape shape = standardNames()[static_cast<std::size_t>(symbol->value)].shape;
        if (shape == CallShape::memoryArray || shape == CallShape::portArray)
            return assignment(memoryElement(shape, position), position);
        if (isProcedureShape(shape)) {
            advance();
            return standardProcedure(*symbol, position);
        }
        failHere(Error::unknownIdentifier, name->text);
        break;
    }
    case SymbolKind::constant:
        failHere(Error::constantNotAllowed, name->text);
        break;
    default:
        failHere(Error::unknownIdentifier, name->text);
        break;
    }
    return newStmt(StmtKind::empty, position);
}

// routineStatement = procedure call | function identifier ':=' expression
Stmt* SourceParser::routineStatement(Symbol& symbol, Position position) {
    Symbol* result = symbol.routine->result;
    if (result == nullptr) {
        if (at(TokenKind::assign))
            failHere(Error::illegalAssignment);
        return callStmt(routineCall(symbol, position), position);
    }
    bool inside = false;
    for (const Routine* routine = current_; routine != nullptr; routine = routine->parent)
        inside = inside || routine == symbol.routine;
    if (!at(TokenKind::assign)) {
        failHere(Error::assignExpected);
        return newStmt(StmtKind::empty, position);
    }
    if (!inside)
        noteCall(*symbol.routine); // or nobody would know what it results in when nobody calls it
    // Elsewhere there is no result to keep it: the value is worked out and forgotten.
    Symbol* target = inside ? result : newHidden(result->type);
    noteUse(*target, Access::write);
    return assignment(variableNode(*target, position), position);
}

Expr* SourceParser::condition() {
    const Position position = token_.position;
    Expr* value = parseExpression();
    if (value->type->host() != &boolean_)
        fail(Error::booleanExpressionExpected, position);
    return value;
}

// ifStatement = 'if' expression 'then' statement ['else' statement]
// A chain of else if is followed by a loop, however long it is.
Stmt* SourceParser::ifStatement() {
    Stmt* first = nullptr;
    Stmt** place = &first;
    while (at(TokenKind::wordIf)) {
        noteOptions();
        Stmt* stmt = newStmt(StmtKind::conditional, token_.position);
        *place = stmt;
        advance();
        stmt->value = condition();
        expect(TokenKind::wordThen, Error::thenExpected);
        stmt->body = parseStatement();
        if (!accept(TokenKind::wordElse))
            return first;
        place = &stmt->other;
    }
    *place = parseStatement();
    return first;
}

// whileStatement = 'while' expression 'do' statement
Stmt* SourceParser::whileStatement() {
    Stmt* stmt = newStmt(StmtKind::whileDo, token_.position);
    advance();
    stmt->value = condition();
    expect(TokenKind::wordDo, Error::doExpected);
    stmt->body = parseStatement();
    return stmt;
}

// repeatStatement = 'repeat' statements 'until' expression
Stmt* SourceParser::repeatStatement() {
    Stmt* stmt = newStmt(StmtKind::repeatUntil, token_.position);
    advance();
    StmtList list;
    statementList(list, TokenKind::wordUntil);
    stmt->body = list.first;
    expect(TokenKind::wordUntil, Error::unknownIdentifier);
    stmt->value = condition();
    return stmt;
}

// caseStatement = 'case' expression 'of' arm {';' arm} [[';'] 'else' statements] [';'] 'end'
// arm = caseLabels ':' statement
Stmt* SourceParser::caseStatement() {
    Stmt* stmt = newStmt(StmtKind::caseOf, token_.position);
    advance();
    stmt->value = ordinalExpression();
    expect(TokenKind::wordOf, Error::ofExpected);
    StmtList arms;
    while (!errors.failed() && !at(TokenKind::wordEnd) && !at(TokenKind::wordElse)) {
        if (accept(TokenKind::semicolon))
            continue;
        noteOptions();
        Stmt* arm = newStmt(StmtKind::caseArm, token_.position);
        arm->labels = caseLabels(*stmt->value->type);
        expect(TokenKind::colon, Error::colonExpected);
        arm->body = parseStatement();
        arms.add(arm);
        if (!at(TokenKind::wordEnd) && !at(TokenKind::wordElse))
            expectSemicolon();
    }
    stmt->body = arms.first;
    const Position position = token_.position;
    if (accept(TokenKind::wordElse)) {
        StmtList list;
        statementList(list, TokenKind::wordEnd);
        stmt->other = sequence(list, position);
    }
    expect(TokenKind::wordEnd, Error::endExpected);
    return stmt;
}

// caseLabels = constant ['..' constant] {',' constant ['..' constant]}
CaseLabel* SourceParser::caseLabels(const Type& selector) {
    CaseLabel* first = nullptr;
    CaseLabel* last = nullptr;
    do {
        CaseLabel* label = arena_.make<CaseLabel>();
        label->low = caseConstant(selector);
        label->high = label->low;
        if (accept(TokenKind::range)) {
            const Position position = token_.position;
            label->high = caseConstant(selector);
            if (label->high < label->low)
                fail(Error::lowAboveHigh, position);
        }
        if (last == nullptr)
            first = label;
        else
            last->next = label;
        last = label;
    } while (accept(TokenKind::comma));
    return first;
}

std::int32_t SourceParser::caseConstant(const Type& selector) {
    const ConstantValue constant = parseConstant();
    if (!errors.failed() && constant.type->host() != selector.host())
        fail(Error::caseLabelType, constant.position);
    return constant.value;
}

// forStatement = 'for' variable identifier ':=' expression ('to' | 'downto') expression 'do' statement
Stmt* SourceParser::forStatement() {
    Stmt* stmt = newStmt(StmtKind::forLoop, token_.position);
    advance();
    const Position position = token_.position;
    const Symbol* symbol = at(TokenKind::identifier) ? token_.name->meaning : nullptr;
    Expr* target = parseVariable(Access::write);
    if (!errors.failed()) {
        // A part of a variable, or what a pointer leads to, is not a simple variable.
        if (target->kind != ExprKind::variable || symbol == nullptr || !target->type->isOrdinal())
            fail(Error::simpleTypeExpected, position);
        else
            noteUse(*target->symbol, Access::read);
    }
    stmt->target = target;
    expect(TokenKind::assign, Error::assignExpected);
    const Position firstPosition = token_.position;
    stmt->value = assignable(parseExpression(), target->type, firstPosition);
    stmt->down = at(TokenKind::wordDownto);
    if (!accept(TokenKind::wordDownto))
        expect(TokenKind::wordTo, Error::toOrDowntoExpected);
    const Position lastPosition = token_.position;
    stmt->limit = assignable(parseExpression(), target->type, lastPosition);
    expect(TokenKind::wordDo, Error::doExpected);
    openEnclosure();
    stmt->body = parseStatement();
    closeEnclosure();
    return stmt;
}

} // namespace tp3
