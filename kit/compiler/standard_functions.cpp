#include "source_parser.h"

namespace tp3 {
namespace {

std::int32_t wrap(std::int32_t value) {
    return static_cast<std::int16_t>(value & 0xFFFF);
}

} // namespace

// The value of a function of a constant, where that is known.
Expr* SourceParser::foldFunction(StandardRoutine routine, Expr* argument, Type* type, Position position) {
    const std::int32_t value = argument->value;
    std::int32_t result = 0;
    switch (routine) {
    case StandardRoutine::abs:
        result = wrap(value < 0 ? -value : value);
        break;
    case StandardRoutine::sqr:
        result = wrap(value * value);
        break;
    case StandardRoutine::odd:
        result = value & 1;
        break;
    case StandardRoutine::pred:
        result = wrap(value - 1);
        break;
    case StandardRoutine::succ:
        result = wrap(value + 1);
        break;
    case StandardRoutine::hi:
        result = (value >> 8) & 0xFF;
        break;
    case StandardRoutine::lo:
        result = value & 0xFF;
        break;
    case StandardRoutine::swap:
        result = wrap((value & 0xFF) << 8 | ((value >> 8) & 0xFF));
        break;
    case StandardRoutine::upCase:
        result = value >= 'a' && value <= 'z' ? value - 'a' + 'A' : value;
        break;
    default:
        return nullptr;
    }
    if (type->size == 1)
        result &= 0xFF;
    return ordinalNode(result, type, position);
}

// A call of a standard function; the token is its identifier.
Expr* SourceParser::standardFunction(Symbol& symbol, Position position) {
    const StandardName& entry = standardNames()[static_cast<std::size_t>(symbol.value)];
    if (entry.shape == CallShape::memoryArray || entry.shape == CallShape::portArray)
        return memoryElement(entry.shape, position);
    if (!isFunctionShape(entry.shape)) {
        failHere(Error::unknownIdentifier, symbol.name->text);
        return errorNode();
    }
    advance();
    switch (entry.shape) {
    case CallShape::booleanResult:
        return standardNode(entry.routine, &boolean_, position);
    case CallShape::integerResult:
        return standardNode(entry.routine, &integer_, position);
    case CallShape::integerToInteger:
    case CallShape::integerToBoolean:
    case CallShape::integerToString:
    case CallShape::chrFunction:
    case CallShape::ptrFunction:
        return functionOfInteger(entry.shape, entry.routine, position);
    case CallShape::charToChar:
    case CallShape::numeric:
    case CallShape::ordinal:
    case CallShape::ordFunction:
        return ordinalFunction(entry.shape, entry.routine, position);
    case CallShape::realToReal:
    case CallShape::realToInteger:
        return realFunction(entry.shape, entry.routine, position);
    case CallShape::addrFunction:
    case CallShape::sizeOfFunction:
        return functionOfName(entry.shape, position);
    case CallShape::randomFunction:
        return randomFunction(position);
    case CallShape::filePlace:
    case CallShape::eofFunction:
    case CallShape::textFunction:
        return fileFunction(entry.shape, entry.routine, position);
    case CallShape::system:
        return systemFunction(entry.routine, position);
    default:
        return functionOfString(entry.shape, entry.routine, position);
    }
}

Expr* SourceParser::functionOfInteger(CallShape shape, StandardRoutine routine, Position position) {
    openArguments();
    Expr* argument = integerExpression();
    closeArguments();
    if (errors.failed())
        return errorNode();
    if (shape == CallShape::chrFunction)
        return retype(argument, &char_);
    if (shape == CallShape::ptrFunction)
        return retype(argument, &anyPointer_);
    Type* type = shape == CallShape::integerToBoolean  ? &boolean_
                 : shape == CallShape::integerToString ? stringType(255)
                                                       : &integer_;
    if (argument->kind == ExprKind::ordinal)
        if (Expr* folded = foldFunction(routine, argument, type, position))
            return folded;
    Expr* call = standardNode(routine, type, position);
    append(call, argument);
    return call;
}

// Abs, Sqr, Pred, Succ, UpCase, Ord
Expr* SourceParser::ordinalFunction(CallShape shape, StandardRoutine routine, Position position) {
    openArguments();
    const Position start = token_.position;
    Expr* argument = parseExpression();
    if (shape != CallShape::numeric)
        argument = toChar(argument);
    closeArguments();
    if (errors.failed())
        return errorNode();
    Type& type = *argument->type;
    const bool real = shape == CallShape::numeric && type.kind == TypeKind::real;
    const bool pointer = shape == CallShape::ordFunction && type.kind == TypeKind::pointer;
    if (shape == CallShape::numeric && !real && type.host() != &integer_)
        fail(Error::numericExpressionExpected, start);
    else if (shape == CallShape::charToChar && type.host() != &char_)
        fail(Error::typeMismatch, start);
    else if (!real && !pointer && !type.isOrdinal())
        fail(Error::simpleExpressionExpected, start);
    if (errors.failed())
        return errorNode();
    if (shape == CallShape::ordFunction)
        return retype(argument, &integer_);
    // The result may leave a subrange: it is of the whole type.
    Type* result = type.base != nullptr && type.isOrdinal() ? type.base : &type;
    // Under {$R+} there is nothing behind the last value of an enumeration; numbers and characters go round.
    const bool checked = scanner_.directives().rangeCheck &&
                         (routine == StandardRoutine::succ || routine == StandardRoutine::pred) &&
                         (result->kind == TypeKind::enumeration || result->kind == TypeKind::boolean);
    if (argument->kind == ExprKind::ordinal)
        if (Expr* folded = foldFunction(routine, argument, result, position)) {
            if (checked && (folded->value < result->low || folded->value > result->high))
                fail(Error::constantOutOfRange, start);
            return folded;
        }
    Expr* call = standardNode(routine, result, position);
    append(call, argument);
    if (checked) {
        call = convertNode(call, result);
        call->checked = true;
    }
    return call;
}

Expr* SourceParser::realFunction(CallShape shape, StandardRoutine routine, Position position) {
    openArguments();
    const Position start = token_.position;
    Expr* argument = toReal(parseExpression());
    closeArguments();
    if (argument == nullptr) {
        fail(Error::numericExpressionExpected, start);
        return errorNode();
    }
    Expr* call = standardNode(routine, shape == CallShape::realToInteger ? &integer_ : &real_, position);
    append(call, argument);
    return call;
}

// Length, Pos, Copy, Concat
Expr* SourceParser::functionOfString(CallShape shape, StandardRoutine routine, Position position) {
    openArguments();
    Expr* first = stringExpression();
    if (shape == CallShape::concatFunction) {
        while (accept(TokenKind::comma)) {
            Expr* next = stringExpression();
            if (!errors.failed())
                first = concatenation(first, next, position);
        }
        closeArguments();
        return first;
    }
    const bool text = shape == CallShape::copyFunction;
    Expr* call = standardNode(routine, text ? first->type : &integer_, position);
    append(call, first);
    if (shape == CallShape::posFunction) {
        nextArgument();
        append(call, stringExpression());
    } else if (text) {
        for (int i = 0; i < 2; ++i) {
            nextArgument();
            append(call, integerExpression());
        }
    }
    closeArguments();
    if (shape == CallShape::lengthFunction && !errors.failed() && first->kind == ExprKind::string)
        return ordinalNode(first->textLength, &integer_, position);
    return call;
}

// Addr(variable or routine), SizeOf(variable or type)
Expr* SourceParser::functionOfName(CallShape shape, Position position) {
    openArguments();
    Expr* result = shape == CallShape::addrFunction ? addressOfName(position) : sizeOf(position);
    closeArguments();
    return errors.failed() ? errorNode() : result;
}

Expr* SourceParser::addressOfName(Position position) {
    Symbol* symbol = at(TokenKind::identifier) ? token_.name->meaning : nullptr;
    if (symbol != nullptr && symbol->kind == SymbolKind::routine && !isWithField(token_.name)) {
        advance();
        noteCall(*symbol->routine);
        handedOut.push_back(symbol->routine->ordinal);
        Expr* node = newExpr(ExprKind::routineAddress, &integer_, position);
        node->symbol = symbol;
        return node;
    }
    Expr* call = standardNode(StandardRoutine::addressOf, &integer_, position);
    append(call, parseVariable(Access::address));
    return call;
}

Expr* SourceParser::sizeOf(Position position) {
    const Symbol* symbol = at(TokenKind::identifier) ? token_.name->meaning : nullptr;
    const Type* type = nullptr;
    if (symbol != nullptr && symbol->kind == SymbolKind::typeName && !isWithField(token_.name)) {
        type = symbol->type;
        advance();
    } else {
        type = parseVariable(Access::read)->type;
    }
    return ordinalNode(static_cast<std::int16_t>(type->size), &integer_, position);
}

// Random(limit), or Random alone, which is real
Expr* SourceParser::randomFunction(Position position) {
    if (!at(TokenKind::leftParenthesis) && features_.reals)
        return standardNode(StandardRoutine::random, &real_, position);
    openArguments();
    Expr* call = standardNode(StandardRoutine::randomLimit, &integer_, position);
    append(call, integerExpression());
    closeArguments();
    return call;
}

// system = '(' expression [',' expression] ')'; what is not given is 0
Expr* SourceParser::systemFunction(StandardRoutine routine, Position position) {
    openArguments();
    Expr* call = standardNode(routine, &integer_, position);
    append(call, integerExpression());
    append(call, accept(TokenKind::comma) ? integerExpression() : ordinalNode(0, &integer_, position));
    closeArguments();
    return call;
}

} // namespace tp3
