#include "source_parser.h"

namespace tp3 {

Expr* SourceParser::newExpr(ExprKind kind, Type* type, Position position) {
    Expr* expr = arena_.make<Expr>();
    expr->kind = kind;
    expr->type = type;
    expr->position = position;
    return expr;
}

Expr* SourceParser::ordinalNode(std::int32_t value, Type* type, Position position) {
    Expr* node = newExpr(ExprKind::ordinal, type, position);
    node->value = value;
    return node;
}

Expr* SourceParser::variableNode(Symbol& variable, Position position) {
    Expr* node = newExpr(ExprKind::variable, variable.type, position);
    node->symbol = &variable;
    return node;
}

Expr* SourceParser::stringNode(const char* text, std::size_t length, Position position) {
    Expr* node = newExpr(ExprKind::string, stringType(length), position);
    node->text = text;
    node->textLength = static_cast<std::uint16_t>(length);
    return node;
}

// Called when the operands of a node are in place: keeps the depth of the tree in bounds.
Expr* SourceParser::finish(Expr* expr) {
    unsigned depth = expr->right != nullptr ? expr->right->depth : 0;
    for (const Expr* operand = expr->left; operand != nullptr; operand = operand->next)
        if (operand->depth > depth)
            depth = operand->depth;
    if (depth >= maximumTreeDepth) {
        fail(Error::tableOverflow, expr->position, "expression too deep");
        depth = maximumTreeDepth - 1;
    }
    expr->depth = static_cast<std::uint8_t>(depth + 1);
    return expr;
}

// expression = simpleExpression {('=' | '<>' | '<' | '>' | '<=' | '>=' | 'in') simpleExpression}
Expr* SourceParser::parseExpression() {
    Expr* left = simpleExpression();
    while (true) {
        Operator op = Operator::none;
        switch (token_.kind) {
        case TokenKind::equal:
            op = Operator::equal;
            break;
        case TokenKind::notEqual:
            op = Operator::notEqual;
            break;
        case TokenKind::less:
            op = Operator::less;
            break;
        case TokenKind::greater:
            op = Operator::greater;
            break;
        case TokenKind::lessEqual:
            op = Operator::lessEqual;
            break;
        case TokenKind::greaterEqual:
            op = Operator::greaterEqual;
            break;
        case TokenKind::wordIn:
            op = Operator::in;
            break;
        default:
            return left;
        }
        const Position position = token_.position;
        advance();
        left = binary(op, left, simpleExpression(), position);
    }
}

// simpleExpression = term {('+' | '-' | 'or' | 'xor') term}
Expr* SourceParser::simpleExpression() {
    Expr* left = term();
    while (true) {
        Operator op = Operator::none;
        switch (token_.kind) {
        case TokenKind::plus:
            op = Operator::add;
            break;
        case TokenKind::minus:
            op = Operator::subtract;
            break;
        case TokenKind::wordOr:
            op = Operator::bitOr;
            break;
        case TokenKind::wordXor:
            op = Operator::bitXor;
            break;
        default:
            return left;
        }
        const Position position = token_.position;
        advance();
        left = binary(op, left, term(), position);
    }
}

// term = factor {('*' | '/' | 'div' | 'mod' | 'and' | 'shl' | 'shr') factor}
Expr* SourceParser::term() {
    Expr* left = factor();
    while (true) {
        Operator op = Operator::none;
        switch (token_.kind) {
        case TokenKind::star:
            op = Operator::multiply;
            break;
        case TokenKind::slash:
            op = Operator::divide;
            break;
        case TokenKind::wordDiv:
            op = Operator::integerDivide;
            break;
        case TokenKind::wordMod:
            op = Operator::modulo;
            break;
        case TokenKind::wordAnd:
            op = Operator::bitAnd;
            break;
        case TokenKind::wordShl:
            op = Operator::shiftLeft;
            break;
        case TokenKind::wordShr:
            op = Operator::shiftRight;
            break;
        default:
            return left;
        }
        const Position position = token_.position;
        advance();
        left = binary(op, left, factor(), position);
    }
}

// factor = ('+' | '-' | 'not') factor | '(' expression ')' | '[' elements ']' | 'nil' | literal |
// identifierFactor Signs bind tighter than anything else in this language.
Expr* SourceParser::factor() {
    const Nesting nesting(*this);
    if (!nesting.ok)
        return errorNode();
    const Position position = token_.position;
    switch (token_.kind) {
    case TokenKind::minus:
        advance();
        if (at(TokenKind::integer) && token_.value == 32768) {
            advance();
            return ordinalNode(-32768, &integer_, position);
        }
        return unary(Operator::negate, factor(), position);
    case TokenKind::plus: {
        advance();
        Expr* operand = factor();
        if (operand->type->host() != &integer_ && operand->type->kind != TypeKind::real)
            return operandError(position);
        return operand;
    }
    case TokenKind::wordNot:
        advance();
        return unary(Operator::logicalNot, factor(), position);
    case TokenKind::leftParenthesis: {
        advance();
        Expr* inner = parseExpression();
        expect(TokenKind::rightParenthesis, Error::rightParenthesisExpected);
        return inner;
    }
    case TokenKind::leftBracket:
        return setConstructor();
    case TokenKind::wordNil:
        advance();
        return ordinalNode(0, &anyPointer_, position);
    case TokenKind::integer:
    case TokenKind::real:
    case TokenKind::string:
    case TokenKind::caret:
        return constantNode(unsignedConstant());
    case TokenKind::identifier:
        return identifierFactor();
    default:
        failHere(Error::unknownIdentifier);
        return errorNode();
    }
}

Expr* SourceParser::constantNode(const ConstantValue& constant) {
    if (errors.failed())
        return errorNode();
    if (constant.type->kind == TypeKind::real) {
        Expr* node = newExpr(ExprKind::realConstant, constant.type, constant.position);
        node->text = constant.text;
        return node;
    }
    if (constant.type->kind == TypeKind::string)
        return stringNode(constant.text, constant.length, constant.position);
    return ordinalNode(constant.value, constant.type, constant.position);
}

// identifierFactor = constant | variable selectors | function call | typeIdentifier '(' expression ')'
Expr* SourceParser::identifierFactor() {
    const Position position = token_.position;
    Name* name = token_.name;
    if (!withRecords_.empty()) {
        if (Expr* field = findInWith(name, position)) {
            advance();
            Expr* whole = selectors(field);
            noteAccess(*whole, Access::read);
            return whole;
        }
    }
    Symbol* symbol = name->meaning;
    if (symbol == nullptr) {
        failHere(Error::unknownIdentifier, name->text);
        return errorNode();
    }
    switch (symbol->kind) {
    case SymbolKind::constant:
        return constantNode(unsignedConstant());
    case SymbolKind::variable: {
        advance();
        Expr* whole = designator(*symbol, position);
        noteAccess(*whole, Access::read);
        return whole;
    }
    case SymbolKind::routine:
        if (symbol->routine->result == nullptr)
            break;
        advance();
        return routineCall(*symbol, position);
    case SymbolKind::standardRoutine:
        return standardFunction(*symbol, position);
    case SymbolKind::typeName: {
        advance();
        openArguments();
        Expr* value = ordinalExpression();
        closeArguments();
        if (!errors.failed() && !symbol->type->isOrdinal())
            fail(Error::simpleTypeExpected, position);
        return errors.failed() ? errorNode() : retype(value, symbol->type);
    }
    default:
        break;
    }
    failHere(Error::unknownIdentifier, name->text);
    return errorNode();
}

Expr* SourceParser::integerExpression() {
    const Position position = token_.position;
    Expr* value = parseExpression();
    if (value->type->host() != &integer_)
        fail(Error::integerExpressionExpected, position);
    return value;
}

// Always of a string type.
Expr* SourceParser::stringExpression() {
    const Position position = token_.position;
    Expr* value = parseExpression();
    Expr* text = toString(value);
    if (text != nullptr)
        return text;
    fail(Error::stringExpressionExpected, position);
    return errorNode();
}

Expr* SourceParser::ordinalExpression() {
    const Position position = token_.position;
    Expr* value = toChar(parseExpression());
    if (!value->type->isOrdinal())
        fail(Error::simpleExpressionExpected, position);
    return value;
}

} // namespace tp3
