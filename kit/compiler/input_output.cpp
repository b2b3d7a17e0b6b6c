#include "source_parser.h"

namespace tp3 {
namespace {

// Whether a routine of the program is called on the way to a value.
bool callsRoutine(const Expr* expr) {
    if (expr == nullptr)
        return false;
    if (expr->kind == ExprKind::call || callsRoutine(expr->right))
        return true;
    for (const Expr* operand = expr->left; operand != nullptr; operand = operand->next)
        if (callsRoutine(operand))
            return true;
    return false;
}

} // namespace

// A new variable that holds a value, and the statement that puts it there.
Expr* SourceParser::heldValue(Expr* value, Type* type, StmtList& list) {
    Symbol* hidden = newHidden(type);
    noteUse(*hidden, Access::write);
    noteUse(*hidden, Access::read);
    Stmt* stmt = newStmt(StmtKind::assign, value->position);
    stmt->target = variableNode(*hidden, value->position);
    stmt->value = value;
    list.add(stmt);
    return variableNode(*hidden, value->position);
}

// A place whose address is worked out now, by a statement of its own.
Expr* SourceParser::heldPlace(Expr* place, StmtList& list) {
    Type* pointer = newType(TypeKind::pointer);
    pointer->size = 2;
    pointer->base = place->type;
    Expr* address = standardNode(StandardRoutine::addressOf, pointer, place->position);
    append(address, place);
    Expr* node = newExpr(ExprKind::dereference, place->type, place->position);
    node->left = heldValue(address, pointer, list);
    return finish(node);
}

// Begins a transfer to or from a file. One that does not stay where it is, such as an element of an array, is
// looked up once.
void SourceParser::openTransfer(Transfer& transfer, Expr* file) {
    if (errors.failed())
        return;
    noteAccess(*file, Access::address);
    transfer.file = isStaticDesignator(file) ? file : heldPlace(file, transfer.list);
}

void SourceParser::select(Transfer& transfer, bool on) {
    if (transfer.file == nullptr || transfer.selected == on || errors.failed())
        return;
    transfer.selected = on;
    const StandardRoutine routine =
        transfer.output ? (on ? StandardRoutine::selectOutput : StandardRoutine::selectStandardOutput)
                        : (on ? StandardRoutine::selectInput : StandardRoutine::selectStandardInput);
    Expr* call = standardNode(routine, &untyped_, transfer.position);
    if (on)
        append(call, copyDesignator(transfer.file));
    transfer.list.add(callStmt(call, transfer.position));
}

// Ends the items of a transfer.
Stmt* SourceParser::closeTransfer(Transfer& transfer) {
    if (transfer.selected) {
        select(transfer, false);
        if (!errors.failed())
            transfer.list.last->value->checked = (statementOptions_ & optionIoCheck) != 0;
    }
    return sequence(transfer.list, transfer.position);
}

// What an item of a Write to a file consists of. Routines of the program may write or read themselves, so
// they are called while no file is selected; what stands before the last call is worked out before it, too.
void SourceParser::holdCalls(std::span<Expr*> parts, Transfer& transfer) {
    std::size_t held = parts.size();
    while (held > 0 && !callsRoutine(parts[held - 1]))
        --held;
    if (transfer.file == nullptr || errors.failed() || held == 0)
        return;
    select(transfer, false);
    for (Expr*& part : parts.first(held))
        if (part->kind != ExprKind::ordinal && part->kind != ExprKind::string)
            part = heldValue(part, part->type, transfer.list);
}

// fileItems = {',' variable}; each is one component
void SourceParser::fileItems(StandardRoutine routine, Transfer& transfer) {
    while (accept(TokenKind::comma)) {
        const Position position = token_.position;
        Expr* component = parseVariable(Access::address);
        if (!errors.failed() && !sameComponent(*transfer.file->type->base, *component->type))
            fail(Error::typeMismatch, position);
        if (errors.failed())
            return;
        Expr* call = ioCall(routine, &untyped_, position);
        append(call, copyDesignator(transfer.file));
        append(call, component);
        transfer.list.add(callStmt(call, position));
    }
}

// The file that stands first in a Read or Write; what comes behind it is left to the caller, except for the
// components of a typed file. `line` for ReadLn and WriteLn.
void SourceParser::transferFile(Transfer& transfer, Expr* file, bool line, Position position) {
    const TypeKind kind = file->type->kind;
    if (line && kind != TypeKind::textFile)
        return fail(Error::textFileExpected, position);
    if (kind == TypeKind::untypedFile)
        return fail(Error::untypedFileNotAllowed, position);
    // The standard files need not be selected.
    if (file->kind == ExprKind::variable && file->symbol == (transfer.output ? output_ : input_))
        return;
    openTransfer(transfer, file);
    if (kind == TypeKind::typedFile)
        fileItems(transfer.output ? StandardRoutine::fileWrite : StandardRoutine::fileRead, transfer);
}

// writeStatement = ('Write' | 'WriteLn') ['(' [file ','] writeItem {',' writeItem} ')']
Stmt* SourceParser::writeStatement(bool line, Position position) {
    Transfer transfer;
    transfer.output = true;
    transfer.position = position;
    if (accept(TokenKind::leftParenthesis)) {
        const Position start = token_.position;
        Expr* first = parseExpression();
        if (first->type->isFile())
            transferFile(transfer, first, line, start);
        else
            writeItem(first, transfer, start);
        while (accept(TokenKind::comma)) {
            const Position itemPosition = token_.position;
            writeItem(parseExpression(), transfer, itemPosition);
        }
        closeArguments();
        if (transfer.file != nullptr && transfer.file->type->kind == TypeKind::typedFile)
            return sequence(transfer.list, position);
    } else if (!line) {
        return newStmt(StmtKind::empty, position); // nothing is written
    }
    if (line) {
        select(transfer, true);
        transfer.list.add(callStmt(standardNode(StandardRoutine::writeLine, &untyped_, position), position));
    }
    return closeTransfer(transfer);
}

// ':' expression; zero when it is not there
Expr* SourceParser::widthPart() {
    if (!at(TokenKind::colon))
        return ordinalNode(0, &integer_, token_.position);
    advance();
    return integerExpression();
}

// writeItem = expression [':' expression [':' expression]]; the first expression has been read
void SourceParser::writeItem(Expr* value, Transfer& transfer, Position position) {
    const Type& type = *value->type;
    StandardRoutine routine = StandardRoutine::writeString;
    if (type.host() == &integer_)
        routine = StandardRoutine::writeInteger;
    else if (type.host() == &char_)
        routine = StandardRoutine::writeChar;
    else if (type.host() == &boolean_)
        routine = StandardRoutine::writeBoolean;
    else if (type.kind == TypeKind::real)
        routine = StandardRoutine::writeReal;
    else if (!isStringLike(type))
        fail(Error::notReadableOrWritable, position);
    std::array<Expr*, 3> parts{value, nullptr, nullptr};
    std::size_t count = 1;
    if (routine != StandardRoutine::writeReal)
        parts[count++] = widthPart();
    else
        while (count < parts.size()) // width and decimals that are not given are -1
            parts[count++] = at(TokenKind::colon) ? widthPart() : ordinalNode(-1, &integer_, position);
    holdCalls({parts.data(), count}, transfer);
    Expr* call = standardNode(routine, &untyped_, position);
    for (std::size_t i = 0; i < count; ++i)
        append(call, parts[i]);
    select(transfer, true);
    transfer.list.add(callStmt(call, position));
}

// readStatement = ('Read' | 'ReadLn') ['(' [file ','] variable {',' variable} ')']
Stmt* SourceParser::readStatement(bool line, Position position) {
    const auto control = [&](StandardRoutine routine) {
        return callStmt(standardNode(routine, &untyped_, position), position);
    };
    Transfer transfer;
    transfer.position = position;
    if (accept(TokenKind::leftParenthesis)) {
        const Position start = token_.position;
        Expr* first = parseVariable(Access::address);
        const bool file = first->type->isFile();
        if (file)
            transferFile(transfer, first, line, start);
        if (transfer.file != nullptr && transfer.file->type->kind == TypeKind::typedFile) {
            closeArguments();
            return sequence(transfer.list, position);
        }
        if (file && !line && !at(TokenKind::comma)) {
            closeArguments(); // nothing is read
            return sequence(transfer.list, position);
        }
        if (transfer.file == nullptr && (!file || at(TokenKind::comma)))
            transfer.list.add(control(StandardRoutine::readBegin));
        if (!file)
            readItem(first, transfer, start);
        while (accept(TokenKind::comma)) {
            const Position itemPosition = token_.position;
            readItem(parseVariable(Access::address), transfer, itemPosition);
        }
        closeArguments();
    } else if (!line) {
        openArguments();
    }
    select(transfer, true);
    transfer.list.add(control(line ? StandardRoutine::readLine : StandardRoutine::readEnd));
    return closeTransfer(transfer);
}

void SourceParser::readItem(Expr* target, Transfer& transfer, Position position) {
    const Type& type = *target->type;
    StandardRoutine routine = StandardRoutine::readInteger;
    if (type.host() == &char_)
        routine = StandardRoutine::readChar;
    else if (type.kind == TypeKind::string)
        routine = StandardRoutine::readString;
    else if (type.kind == TypeKind::real)
        routine = StandardRoutine::readReal;
    else if (type.host() != &integer_)
        fail(Error::notReadableOrWritable, position);
    if (errors.failed())
        return;
    if (transfer.file != nullptr && callsRoutine(target)) {
        select(transfer, false);
        target = heldPlace(target, transfer.list);
    }
    select(transfer, true);
    Expr* call = standardNode(routine, &untyped_, position);
    append(call, target);
    transfer.list.add(callStmt(call, position));
}

} // namespace tp3
