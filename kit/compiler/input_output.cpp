#include "source_parser.h"

namespace tp3 {

// writeStatement = ('Write' | 'WriteLn') ['(' writeItem {',' writeItem} ')']
Stmt* SourceParser::writeStatement(bool line, Position position) {
    StmtList list;
    if (accept(TokenKind::leftParenthesis)) {
        do
            list.add(writeItem());
        while (accept(TokenKind::comma));
        closeArguments();
    } else if (!line) {
        openArguments();
    }
    if (line)
        list.add(callStmt(standardNode(StandardRoutine::writeLine, &untyped_, position), position));
    return sequence(list, position);
}

// ':' expression; zero when it is not there
Expr* SourceParser::widthPart() {
    if (!at(TokenKind::colon))
        return ordinalNode(0, &integer_, token_.position);
    advance();
    return integerExpression();
}

// writeItem = expression [':' expression [':' expression]]
Stmt* SourceParser::writeItem() {
    const Position position = token_.position;
    Expr* value = parseExpression();
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
    Expr* call = standardNode(routine, &untyped_, position);
    append(call, value);
    if (routine != StandardRoutine::writeReal) {
        append(call, widthPart());
        return callStmt(call, position);
    }
    // Width and decimals that are not given are -1.
    for (int i = 0; i < 2; ++i)
        append(call, at(TokenKind::colon) ? widthPart() : ordinalNode(-1, &integer_, position));
    return callStmt(call, position);
}

// readStatement = ('Read' | 'ReadLn') ['(' variable {',' variable} ')']
Stmt* SourceParser::readStatement(bool line, Position position) {
    const auto control = [&](StandardRoutine routine) {
        return callStmt(standardNode(routine, &untyped_, position), position);
    };
    StmtList list;
    if (accept(TokenKind::leftParenthesis)) {
        list.add(control(StandardRoutine::readBegin));
        do
            list.add(readItem());
        while (accept(TokenKind::comma));
        closeArguments();
    } else if (!line) {
        openArguments();
    }
    list.add(control(line ? StandardRoutine::readLine : StandardRoutine::readEnd));
    return sequence(list, position);
}

Stmt* SourceParser::readItem() {
    const Position position = token_.position;
    Expr* target = parseVariable(Access::address);
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
    Expr* call = standardNode(routine, &untyped_, position);
    append(call, target);
    return callStmt(call, position);
}

} // namespace tp3
