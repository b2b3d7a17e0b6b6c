#include "source_parser.h"

namespace tp3 {

// What cannot be in a set stops the program under {$R+}; otherwise its low byte counts.
Expr* SourceParser::setElement() {
    const Position position = token_.position;
    Expr* element = ordinalExpression();
    const Type& type = *element->type;
    constexpr std::int32_t highest = 255;
    if (errors.failed() || !scanner_.directives().rangeCheck || (type.low >= 0 && type.high <= highest))
        return element;
    if (element->kind == ExprKind::ordinal) {
        if (element->value < 0 || element->value > highest)
            fail(Error::constantOutOfRange, position);
        return element;
    }
    Type* member = newType(type.kind);
    member->high = highest;
    member->size = 1;
    member->base = type.base != nullptr ? type.base : element->type;
    Expr* node = convertNode(element, member);
    node->checked = true;
    return node;
}

// elements = '[' [expression ['..' expression] {',' expression ['..' expression]}] ']'
Expr* SourceParser::setConstructor() {
    const Position position = token_.position;
    if (!feature(features_.sets, "sets"))
        return errorNode();
    advance();
    Expr* set = newExpr(ExprKind::setConstructor, &emptySet_, position);
    if (accept(TokenKind::rightBracket))
        return set;
    do {
        const Position start = token_.position;
        Expr* element = setElement();
        if (accept(TokenKind::range)) {
            Expr* range = newExpr(ExprKind::range, element->type, start);
            range->left = element;
            range->right = setElement();
            if (!errors.failed() && range->left->type->host() != range->right->type->host())
                fail(Error::typeMismatch, range->right->position);
            element = finish(range);
        }
        if (errors.failed())
            return errorNode();
        if (set->left == nullptr) {
            Type* type = newType(TypeKind::set);
            type->base = element->type->base != nullptr ? element->type->base : element->type;
            type->high = 255;
            type->size = 32;
            set->type = type;
        } else if (set->left->type->host() != element->type->host()) {
            fail(Error::typeMismatch, start);
            return errorNode();
        }
        append(set, element);
    } while (accept(TokenKind::comma));
    expect(TokenKind::rightBracket, Error::rightBracketExpected);
    return set;
}

// + - * give a set, comparisons a Boolean. The empty set goes with all.
Expr* SourceParser::setOperation(Operator op, Expr* left, Expr* right, Position position) {
    if (left->type->kind != TypeKind::set || right->type->kind != TypeKind::set)
        return operandError(position);
    const Type* a = left->type->base;
    const Type* b = right->type->base;
    if (a != nullptr && b != nullptr && a->host() != b->host()) {
        fail(Error::typeMismatch, position);
        return errorNode();
    }
    switch (op) {
    case Operator::add:
    case Operator::subtract:
    case Operator::multiply:
        return binaryNode(op, left, right, a != nullptr ? left->type : right->type, position);
    case Operator::equal:
    case Operator::notEqual:
    case Operator::lessEqual:
    case Operator::greaterEqual:
        return binaryNode(op, left, right, &boolean_, position);
    default:
        return operandError(position);
    }
}

Expr* SourceParser::setMembership(Expr* element, Expr* set, Position position) {
    element = toChar(element);
    if (set->type->kind != TypeKind::set || !element->type->isOrdinal())
        return operandError(position);
    if (set->type->base != nullptr && set->type->base->host() != element->type->host()) {
        fail(Error::typeMismatch, position);
        return errorNode();
    }
    return binaryNode(Operator::in, element, set, &boolean_, position);
}

Expr* SourceParser::assignableSet(Expr* value, Type* target, Position) {
    if (value->type->kind != TypeKind::set)
        return nullptr;
    const Type* base = value->type->base;
    return base == nullptr || base->host() == target->base->host() ? value : nullptr;
}

} // namespace tp3
