#include "source_parser.h"

namespace tp3 {

// True for what a file must not be part of: values that are copied.
bool SourceParser::containsFile(const Type& type) const {
    if (type.isFile())
        return true;
    if (type.kind == TypeKind::array)
        return type.base != nullptr && containsFile(*type.base);
    if (type.kind != TypeKind::record)
        return false;
    for (const Symbol* field = type.members; field != nullptr; field = field->next)
        if (field->type != nullptr && containsFile(*field->type))
            return true;
    return false;
}

// Two names for the type of a file's components: what is written as one can be read as the other.
bool SourceParser::sameComponent(const Type& a, const Type& b) const {
    if (&a == &b)
        return true;
    if (a.kind == TypeKind::string && b.kind == TypeKind::string)
        return a.high == b.high;
    return a.isOrdinal() && b.isOrdinal() && a.host() == b.host() && a.size == b.size;
}

// A call behind which the I/O result is looked at, unless {$I-} stood before the statement.
Expr* SourceParser::ioCall(StandardRoutine routine, Type* type, Position position) {
    Expr* call = standardNode(routine, type, position);
    call->checked = (statementOptions_ & optionIoCheck) != 0;
    return call;
}

// A file of a kind that the routine takes.
Expr* SourceParser::fileArgument(CallShape shape) {
    const Position position = token_.position;
    Expr* file = parseVariable(Access::address);
    const TypeKind kind = file->type->kind;
    if (!file->type->isFile())
        fail(Error::fileVariableExpected, position);
    else if (shape == CallShape::textFunction && kind != TypeKind::textFile)
        fail(Error::textFileExpected, position);
    else if (shape == CallShape::blockTransfer && kind != TypeKind::untypedFile)
        fail(Error::untypedFileExpected, position);
    else if (shape == CallShape::flushFile && kind != TypeKind::typedFile)
        fail(Error::textOrUntypedFileNotAllowed, position);
    else if ((shape == CallShape::filePlace || shape == CallShape::seekFile) && kind == TypeKind::textFile)
        fail(Error::textFileNotAllowed, position);
    return file;
}

// FilePos, FileSize; Eof, Eoln, SeekEof and SeekEoln, which ask Input when no file is given
Expr* SourceParser::fileFunction(CallShape shape, StandardRoutine routine, Position position) {
    Type* type = shape == CallShape::filePlace ? &integer_ : &boolean_;
    if (shape != CallShape::filePlace && !at(TokenKind::leftParenthesis)) {
        Expr* call = standardNode(routine, type, position);
        append(call, variableNode(*input_, position));
        return call;
    }
    Expr* call = ioCall(routine, type, position);
    openArguments();
    append(call, fileArgument(shape));
    closeArguments();
    return call;
}

// Assign(file, name), Reset(file), Rewrite(file), Close(file), Erase(file), Rename(file, name), Flush(file),
// Seek(file, number), BlockRead and BlockWrite(file, variable, count [, integer variable]), Chain(file),
// Execute(file); the parentheses are the caller's
void SourceParser::fileProcedure(CallShape shape, Expr* call) {
    call->checked = (statementOptions_ & optionIoCheck) != 0;
    Expr* file = fileArgument(shape);
    append(call, file);
    chains = chains || call->value == static_cast<std::int32_t>(StandardRoutine::chain) ||
             call->value == static_cast<std::int32_t>(StandardRoutine::execute);
    const TypeKind kind = file->type->kind;
    switch (shape) {
    case CallShape::assignFile:
        call->value =
            static_cast<std::int32_t>(kind == TypeKind::textFile    ? StandardRoutine::fileAssignText
                                      : kind == TypeKind::typedFile ? StandardRoutine::fileAssignTyped
                                                                    : StandardRoutine::fileAssignUntyped);
        [[fallthrough]];
    case CallShape::renameFile:
        nextArgument();
        append(call, stringExpression());
        break;
    case CallShape::openFile: {
        constexpr std::int32_t blockSize = 128;
        const std::int32_t size = kind == TypeKind::textFile    ? 0
                                  : kind == TypeKind::typedFile ? file->type->base->size
                                                                : blockSize;
        append(call, ordinalNode(static_cast<std::int16_t>(size), &integer_, file->position));
        break;
    }
    case CallShape::seekFile:
        nextArgument();
        append(call, integerExpression());
        break;
    case CallShape::blockTransfer:
        nextArgument();
        append(call, parseVariable(Access::address));
        nextArgument();
        append(call, integerExpression());
        if (accept(TokenKind::comma))
            append(call, integerVariable());
        break;
    default:
        break;
    }
}

} // namespace tp3
