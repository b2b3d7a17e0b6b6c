#include "source_parser.h"

namespace tp3 {

// call = identifier ['(' argument {',' argument} ')']; the identifier has been read
Expr* SourceParser::routineCall(Symbol& symbol, Position position) {
    const Routine& routine = *symbol.routine;
    Expr* call = newExpr(ExprKind::call, symbol.type, position);
    call->symbol = &symbol;
    noteCall(routine);
    if (routine.parameters == nullptr)
        return call;
    openArguments();
    Expr* last = nullptr;
    for (const Symbol* parameter = routine.parameters; parameter != nullptr && !errors.failed();
         parameter = parameter->next) {
        if (last != nullptr)
            nextArgument();
        Expr* argument = parameter->storage == StorageKind::varParameter ? variableArgument(*parameter)
                                                                         : valueArgument(*parameter);
        if (errors.failed())
            break; // an error node must not be linked twice
        if (last == nullptr)
            call->left = argument;
        else
            last->next = argument;
        last = argument;
    }
    closeArguments();
    return finish(call);
}

Expr* SourceParser::valueArgument(const Symbol& parameter) {
    const Position position = token_.position;
    Expr* value = parseExpression();
    if (parameter.type->kind == TypeKind::record && value->type == parameter.type)
        return value; // with its files, which an assignment would refuse
    return assignable(value, parameter.type, position);
}

// The actual variable must be of the very type of the formal one. Strings may differ with {$V-}, and a
// parameter without a type takes anything.
Expr* SourceParser::variableArgument(const Symbol& parameter) {
    const Position position = token_.position;
    Expr* argument = parseVariable(Access::address);
    if (errors.failed() || parameter.type == &untyped_)
        return argument;
    const Type& formal = *parameter.type;
    const Type& actual = *argument->type;
    bool fits = &formal == &actual;
    if (formal.kind == TypeKind::string && actual.kind == TypeKind::string)
        fits = formal.high == actual.high || !scanner_.directives().varStringCheck;
    // Files are told apart by what they hold.
    if (formal.isFile() && formal.kind == actual.kind)
        fits = formal.base == actual.base;
    if (!fits)
        fail(Error::typeMismatch, position);
    return argument;
}

Expr* SourceParser::standardNode(StandardRoutine routine, Type* type, Position position) {
    Expr* call = newExpr(ExprKind::standardCall, type, position);
    call->value = static_cast<std::int32_t>(routine);
    return call;
}

// Adds an argument at the end of a call's list.
void SourceParser::append(Expr* call, Expr* argument) {
    if (errors.failed())
        return;
    Expr** place = &call->left;
    while (*place != nullptr)
        place = &(*place)->next;
    *place = argument;
    finish(call);
}

Stmt* SourceParser::callStmt(Expr* call, Position position) {
    Stmt* stmt = newStmt(StmtKind::call, position);
    stmt->value = call;
    return stmt;
}

} // namespace tp3
