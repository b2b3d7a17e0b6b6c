#include "source_parser.h"

#include <cstring>

namespace tp3 {
namespace {

// Integers wrap around at 16 bits, as they do when the program runs.
std::int32_t wrap(std::int32_t value) {
    return static_cast<std::int16_t>(value & 0xFFFF);
}

std::uint32_t bits(std::int32_t value) {
    return static_cast<std::uint32_t>(value) & 0xFFFF;
}

std::int32_t foldInteger(Operator op, std::int32_t a, std::int32_t b) {
    switch (op) {
    case Operator::add:
        return wrap(a + b);
    case Operator::subtract:
        return wrap(a - b);
    case Operator::multiply:
        return wrap(a * b);
    case Operator::integerDivide:
        return wrap(a / b);
    case Operator::modulo:
        return wrap(a % b);
    case Operator::bitAnd:
        return a & b;
    case Operator::bitOr:
        return a | b;
    case Operator::bitXor:
        return a ^ b;
    case Operator::shiftLeft:
        return bits(b) > 15 ? 0 : wrap(static_cast<std::int32_t>(bits(a) << bits(b)));
    case Operator::shiftRight:
        return bits(b) > 15 ? 0 : wrap(static_cast<std::int32_t>(bits(a) >> bits(b)));
    default:
        return 0;
    }
}

bool foldComparison(Operator op, int order) {
    switch (op) {
    case Operator::equal:
        return order == 0;
    case Operator::notEqual:
        return order != 0;
    case Operator::less:
        return order < 0;
    case Operator::lessEqual:
        return order <= 0;
    case Operator::greater:
        return order > 0;
    default:
        return order >= 0;
    }
}

// By character code; a shorter string is less than one that it begins.
int compareText(const Expr& left, const Expr& right) {
    const std::size_t common = left.textLength < right.textLength ? left.textLength : right.textLength;
    const int order = common == 0 ? 0 : std::memcmp(left.text, right.text, common);
    return order != 0 ? order : left.textLength - right.textLength;
}

bool isComparison(Operator op) {
    return op >= Operator::equal && op <= Operator::greaterEqual;
}

} // namespace

Expr* SourceParser::operandError(Position position) {
    fail(Error::operandType, position);
    return errorNode();
}

// Refuses what is no operand of any operator: files and whole structures; pointers can only be compared.
bool SourceParser::isOperand(const Type& type, Operator op, Position position) {
    const bool comparison = op == Operator::equal || op == Operator::notEqual;
    if (type.isFile() || (type.kind == TypeKind::pointer && !comparison))
        fail(Error::fileOrPointerNotAllowed, position);
    else if (type.kind == TypeKind::record || (type.kind == TypeKind::array && !isCharArray(type)))
        fail(Error::structuredNotAllowed, position);
    return !errors.failed();
}

Expr* SourceParser::binaryNode(Operator op, Expr* left, Expr* right, Type* type, Position position) {
    Expr* node = newExpr(ExprKind::binary, type, position);
    node->op = op;
    node->left = left;
    node->right = right;
    return finish(node);
}

// `position` is the operator's.
Expr* SourceParser::binary(Operator op, Expr* left, Expr* right, Position position) {
    if (errors.failed())
        return errorNode();
    const Type& a = *left->type;
    const Type& b = *right->type;
    if (!isOperand(a, op, position) || !isOperand(b, op, position))
        return errorNode();
    if (op == Operator::in)
        return setMembership(left, right, position);
    if (a.kind == TypeKind::set || b.kind == TypeKind::set)
        return setOperation(op, left, right, position);
    if (isComparison(op))
        return comparison(op, left, right, position);
    if (op == Operator::add && isStringLike(a) && isStringLike(b))
        return concatenation(left, right, position);
    if (a.kind == TypeKind::real || b.kind == TypeKind::real || op == Operator::divide)
        return realOperation(op, left, right, position);
    if (a.host() == &integer_ && b.host() == &integer_)
        return integerOperation(op, left, right, position);
    if (a.host() == &boolean_ && b.host() == &boolean_)
        return booleanOperation(op, left, right, position);
    const auto usable = [&](const Type& type) {
        const bool arithmetic = op != Operator::bitAnd && op != Operator::bitOr && op != Operator::bitXor;
        return type.host() == &integer_ || (!arithmetic && type.host() == &boolean_) ||
               (op == Operator::add && isStringLike(type));
    };
    fail(usable(a) && usable(b) ? Error::typeMismatch : Error::operandType, position);
    return errorNode();
}

Expr* SourceParser::integerOperation(Operator op, Expr* left, Expr* right, Position position) {
    const bool constant = left->kind == ExprKind::ordinal && right->kind == ExprKind::ordinal;
    const bool division = op == Operator::integerDivide || op == Operator::modulo;
    // A division by the constant zero stays in the program, which stops there if it comes by.
    if (constant && !(division && right->value == 0))
        return ordinalNode(foldInteger(op, left->value, right->value), &integer_, left->position);
    return binaryNode(op, left, right, &integer_, position);
}

Expr* SourceParser::booleanOperation(Operator op, Expr* left, Expr* right, Position position) {
    if (op != Operator::bitAnd && op != Operator::bitOr && op != Operator::bitXor)
        return operandError(position);
    if (left->kind == ExprKind::ordinal && right->kind == ExprKind::ordinal)
        return ordinalNode(foldInteger(op, left->value, right->value), &boolean_, left->position);
    return binaryNode(op, left, right, &boolean_, position);
}

Expr* SourceParser::realOperation(Operator op, Expr* left, Expr* right, Position position) {
    if (!features_.reals) {
        fail(Error::unknownIdentifier, position, "reals");
        return errorNode();
    }
    Expr* a = toReal(left);
    Expr* b = toReal(right);
    if (a == nullptr || b == nullptr || op < Operator::add || op > Operator::divide)
        return operandError(position);
    return binaryNode(op, a, b, &real_, position);
}

Expr* SourceParser::concatenation(Expr* left, Expr* right, Position position) {
    Expr* a = toString(left);
    Expr* b = toString(right);
    if (a == nullptr || b == nullptr)
        return operandError(position);
    const std::size_t length = static_cast<std::size_t>(a->type->high + b->type->high);
    if (a->kind == ExprKind::string && b->kind == ExprKind::string && length <= 255) {
        char* text = static_cast<char*>(arena_.allocate(length + 1));
        if (a->textLength > 0)
            std::memcpy(text, a->text, a->textLength);
        if (b->textLength > 0)
            std::memcpy(text + a->textLength, b->text, b->textLength);
        return stringNode(text, length, left->position);
    }
    return binaryNode(Operator::add, a, b, stringType(length), position);
}

Expr* SourceParser::comparison(Operator op, Expr* left, Expr* right, Position position) {
    const Type& a = *left->type;
    const Type& b = *right->type;
    if (a.isOrdinal() && b.isOrdinal()) {
        if (a.host() != b.host()) {
            fail(Error::typeMismatch, position);
            return errorNode();
        }
        if (left->kind == ExprKind::ordinal && right->kind == ExprKind::ordinal)
            return ordinalNode(foldComparison(op, left->value - right->value) ? 1 : 0, &boolean_,
                               left->position);
        return binaryNode(op, left, right, &boolean_, position);
    }
    if (isStringLike(a) && isStringLike(b)) {
        Expr* x = toString(left);
        Expr* y = toString(right);
        if (x == nullptr || y == nullptr)
            return operandError(position);
        if (x->kind == ExprKind::string && y->kind == ExprKind::string)
            return ordinalNode(foldComparison(op, compareText(*x, *y)) ? 1 : 0, &boolean_, left->position);
        return binaryNode(op, x, y, &boolean_, position);
    }
    if (a.kind == TypeKind::pointer && b.kind == TypeKind::pointer) {
        if (op != Operator::equal && op != Operator::notEqual)
            return operandError(position);
        if (&a != &b && &a != &anyPointer_ && &b != &anyPointer_) {
            fail(Error::typeMismatch, position);
            return errorNode();
        }
        return binaryNode(op, left, right, &boolean_, position);
    }
    Expr* x = toReal(left);
    Expr* y = toReal(right);
    if (x != nullptr && y != nullptr)
        return binaryNode(op, x, y, &boolean_, position);
    const auto comparable = [&](const Type& type) {
        return type.isSimple() || type.kind == TypeKind::real || isStringLike(type);
    };
    fail(comparable(a) && comparable(b) ? Error::typeMismatch : Error::operandType, position);
    return errorNode();
}

Expr* SourceParser::unary(Operator op, Expr* operand, Position position) {
    if (errors.failed() || !isOperand(*operand->type, op, position))
        return errorNode();
    Type* type = operand->type->host() == &integer_   ? &integer_
                 : operand->type->host() == &boolean_ ? &boolean_
                                                      : operand->type;
    if (op == Operator::logicalNot && type == &integer_)
        op = Operator::bitNot;
    const bool fits = op == Operator::negate       ? type == &integer_ || type->kind == TypeKind::real
                      : op == Operator::logicalNot ? type == &boolean_
                                                   : true;
    if (!fits)
        return operandError(position);
    if (operand->kind == ExprKind::ordinal) {
        const std::int32_t value = op == Operator::negate   ? wrap(-operand->value)
                                   : op == Operator::bitNot ? wrap(~operand->value)
                                                            : 1 - operand->value;
        return ordinalNode(value, type, position);
    }
    if (operand->kind == ExprKind::realConstant) {
        ConstantValue constant{&real_, 0, operand->text, 6, position};
        negate(constant);
        return constantNode(constant);
    }
    Expr* node = newExpr(ExprKind::unary, type, position);
    node->op = op;
    node->left = operand;
    return finish(node);
}

} // namespace tp3
