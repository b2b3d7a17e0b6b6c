#include "lower.h"

namespace tp3 {

namespace {

constexpr std::int32_t unknown = -1;

bool isPowerOfTwo(std::int32_t n) {
    return n > 0 && (n & (n - 1)) == 0;
}

std::int32_t upperBound(const Expr* e);

std::int32_t upperBoundOfBinary(const Expr* e) {
    const std::int32_t left = upperBound(e->left);
    const std::int32_t right = upperBound(e->right);
    const bool both = left != unknown && right != unknown;
    switch (e->op) {
    case Operator::add:
        return both && left + right <= 32767 ? left + right : unknown;
    case Operator::multiply:
        return both && left * right <= 32767 ? left * right : unknown;
    case Operator::integerDivide:
    case Operator::modulo:
        if (e->op == Operator::modulo && both && e->right->kind == ExprKind::ordinal && right > 0 &&
            right - 1 < left) {
            return right - 1;
        }
        return both ? left : unknown;
    case Operator::bitAnd:
        if (left != unknown && right != unknown) {
            return left < right ? left : right;
        }
        return left != unknown ? left : right;
    case Operator::bitOr:
    case Operator::bitXor: {
        if (!both) {
            return unknown;
        }
        std::int32_t bound = 1;
        while (bound <= left || bound <= right) {
            bound *= 2;
        }
        return bound - 1;
    }
    case Operator::shiftRight:
        return left;
    default:
        return unknown;
    }
}

/// The greatest value that the expression can have when it cannot be negative, else unknown. Variables may
/// hold anything that fits in their bytes, whatever their subrange says, because checks may be off.
std::int32_t upperBound(const Expr* e) {
    if (e->kind == ExprKind::ordinal) {
        return e->value >= 0 ? e->value : unknown;
    }
    if (e->type != nullptr && e->type->size == 1) {
        return e->type->kind == TypeKind::boolean ? 1 : 255;
    }
    if (e->kind == ExprKind::binary && e->type != nullptr && e->type->isOrdinal()) {
        return upperBoundOfBinary(e);
    }
    if (e->kind == ExprKind::convert && e->type != nullptr && e->type->isOrdinal() &&
        e->left->type != nullptr && e->left->type->isOrdinal()) {
        return upperBound(e->left);
    }
    if (e->kind == ExprKind::standardCall) {
        switch (static_cast<StandardRoutine>(e->value)) {
        case StandardRoutine::hi:
        case StandardRoutine::lo:
        case StandardRoutine::length:
            return 255;
        default:
            return unknown;
        }
    }
    return unknown;
}

} // namespace

bool fitsByte(const Expr* e) {
    const std::int32_t bound = upperBound(e);
    return bound != unknown && bound <= 255;
}

Width naturalWidth(const Expr* e) {
    return fitsByte(e) ? Width::byte : Width::word;
}

bool isNonNegative(const Expr* e) {
    return upperBound(e) != unknown;
}

bool hasCall(const Expr* e) {
    if (e == nullptr) {
        return false;
    }
    if (e->kind == ExprKind::call) {
        return true;
    }
    if (e->kind == ExprKind::standardCall || e->kind == ExprKind::setConstructor) {
        for (const Expr* argument = e->left; argument != nullptr; argument = argument->next) {
            if (hasCall(argument)) {
                return true;
            }
        }
        return false;
    }
    return hasCall(e->left) || hasCall(e->right);
}

bool anyCall(const Expr* first) {
    for (const Expr* e = first; e != nullptr; e = e->next) {
        if (hasCall(e)) {
            return true;
        }
    }
    return false;
}

bool isPlain(const Expr* e) {
    if (e == nullptr) {
        return true;
    }
    if (e->checked || (e->type != nullptr && !e->type->isSimple() && e->kind != ExprKind::variable &&
                       e->kind != ExprKind::index && e->kind != ExprKind::field &&
                       e->kind != ExprKind::dereference && e->kind != ExprKind::string &&
                       e->kind != ExprKind::realConstant && e->kind != ExprKind::setConstructor)) {
        return false;
    }
    switch (e->kind) {
    case ExprKind::call:
    case ExprKind::port:
        return false;
    case ExprKind::convert:
        // A string that is no single character stops the program.
        if (e->type->kind == TypeKind::character && e->left->type->kind == TypeKind::string) {
            return false;
        }
        break;
    case ExprKind::setConstructor:
        for (const Expr* element = e->left; element != nullptr; element = element->next) {
            if (!isPlain(element)) {
                return false;
            }
        }
        return true;
    case ExprKind::standardCall:
        switch (static_cast<StandardRoutine>(e->value)) {
        case StandardRoutine::abs:
        case StandardRoutine::odd:
        case StandardRoutine::pred:
        case StandardRoutine::succ:
        case StandardRoutine::hi:
        case StandardRoutine::lo:
        case StandardRoutine::swap:
        case StandardRoutine::upCase:
        case StandardRoutine::length:
            break;
        default:
            return false;
        }
        for (const Expr* argument = e->left; argument != nullptr; argument = argument->next) {
            if (!isPlain(argument)) {
                return false;
            }
        }
        return true;
    case ExprKind::binary:
        // Division by zero stops the program, so it may not be skipped unless it cannot happen.
        if ((e->op == Operator::integerDivide || e->op == Operator::modulo) &&
            !(e->right->kind == ExprKind::ordinal && e->right->value != 0)) {
            return false;
        }
        break;
    default:
        break;
    }
    return isPlain(e->left) && isPlain(e->right);
}

bool isPowerOfTwoConstant(const Expr* e) {
    return e->kind == ExprKind::ordinal && isPowerOfTwo(e->value);
}

} // namespace tp3
