#include "source_parser.h"

namespace tp3 {

// A call of a standard procedure; its identifier has been read.
Stmt* SourceParser::standardProcedure(Symbol& symbol, Position position) {
    const StandardName& entry = standardNames()[static_cast<std::size_t>(symbol.value)];
    switch (entry.shape) {
    case CallShape::write:
        return writeStatement(false, position);
    case CallShape::writeLine:
        return writeStatement(true, position);
    case CallShape::read:
        return readStatement(false, position);
    case CallShape::readLine:
        return readStatement(true, position);
    case CallShape::exitProcedure:
        return newStmt(StmtKind::exit, position);
    case CallShape::system:
        return callStmt(systemFunction(entry.routine, position), position);
    case CallShape::none:
        return callStmt(standardNode(entry.routine, &untyped_, position), position);
    default:
        break;
    }
    Expr* call = standardNode(entry.routine, &untyped_, position);
    openArguments();
    switch (entry.shape) {
    case CallShape::integer:
        append(call, integerExpression());
        break;
    case CallShape::twoIntegers:
        append(call, integerExpression());
        nextArgument();
        append(call, integerExpression());
        break;
    case CallShape::deleteProcedure:
    case CallShape::insertProcedure:
        stringProcedure(entry.shape, call);
        break;
    case CallShape::strProcedure:
        strProcedure(call);
        break;
    case CallShape::valProcedure:
        valProcedure(call);
        break;
    case CallShape::moveProcedure:
    case CallShape::fillCharProcedure:
        memoryProcedure(entry.shape, call);
        break;
    case CallShape::anyFile:
    case CallShape::assignFile:
    case CallShape::openFile:
    case CallShape::flushFile:
    case CallShape::renameFile:
    case CallShape::seekFile:
    case CallShape::blockTransfer:
        fileProcedure(entry.shape, call);
        break;
    default:
        heapProcedure(entry.shape, call);
        break;
    }
    closeArguments();
    return callStmt(call, position);
}

Expr* SourceParser::stringVariable() {
    const Position position = token_.position;
    Expr* variable = parseVariable(Access::address);
    if (variable->type->kind != TypeKind::string)
        fail(Error::stringVariableExpected, position);
    return variable;
}

Expr* SourceParser::integerVariable() {
    const Position position = token_.position;
    Expr* variable = parseVariable(Access::address);
    if (variable->type->host() != &integer_)
        fail(Error::integerVariableExpected, position);
    return variable;
}

// Delete(string variable, position, count), Insert(string, string variable, position)
void SourceParser::stringProcedure(CallShape shape, Expr* call) {
    const bool insertion = shape == CallShape::insertProcedure;
    append(call, insertion ? stringExpression() : stringVariable());
    nextArgument();
    append(call, insertion ? stringVariable() : integerExpression());
    nextArgument();
    append(call, integerExpression());
}

// Str(number [':' width [':' decimals]], string variable)
void SourceParser::strProcedure(Expr* call) {
    const Position position = token_.position;
    Expr* value = parseExpression();
    const bool real = value->type->kind == TypeKind::real;
    if (!real && value->type->host() != &integer_)
        fail(Error::numericExpressionExpected, position);
    append(call, value);
    if (real) {
        call->value = static_cast<std::int32_t>(StandardRoutine::strReal);
        for (int i = 0; i < 2; ++i)
            append(call, at(TokenKind::colon) ? widthPart() : ordinalNode(-1, &integer_, position));
    } else {
        append(call, widthPart());
    }
    nextArgument();
    append(call, stringVariable());
}

// Val(string, number variable, integer variable)
void SourceParser::valProcedure(Expr* call) {
    append(call, stringExpression());
    nextArgument();
    const Position position = token_.position;
    Expr* number = parseVariable(Access::address);
    if (number->type->kind == TypeKind::real)
        call->value = static_cast<std::int32_t>(StandardRoutine::valReal);
    else if (number->type->host() != &integer_)
        fail(Error::numericVariableExpected, position);
    append(call, number);
    nextArgument();
    append(call, integerVariable());
}

// Move(variable, variable, count), FillChar(variable, count, value)
void SourceParser::memoryProcedure(CallShape shape, Expr* call) {
    append(call, parseVariable(Access::address));
    nextArgument();
    if (shape == CallShape::moveProcedure) {
        append(call, parseVariable(Access::address));
        nextArgument();
        append(call, integerExpression());
        return;
    }
    append(call, integerExpression());
    nextArgument();
    Expr* value = ordinalExpression();
    if (!errors.failed())
        append(call, value->type->host() == &integer_ ? value : retype(value, &integer_));
}

// New(pointer), Dispose(pointer), GetMem(pointer, size), FreeMem(pointer, size), Mark(pointer),
// Release(pointer)
void SourceParser::heapProcedure(CallShape shape, Expr* call) {
    const Position position = token_.position;
    Expr* pointer = parseVariable(Access::address);
    if (pointer->type->kind != TypeKind::pointer)
        fail(Error::pointerVariableExpected, position);
    append(call, pointer);
    if (shape == CallShape::pointerSize) {
        nextArgument();
        append(call, integerExpression());
    } else if (shape == CallShape::pointer && !errors.failed()) {
        const Type* target = pointer->type->base;
        append(call, ordinalNode(target != nullptr ? target->size : 0, &integer_, position));
    }
}

} // namespace tp3
