#include "lower.h"

namespace tp3 {

namespace {

std::int32_t logarithm(std::int32_t power) {
    std::int32_t n = 0;
    while ((std::int32_t{1} << n) < power) {
        ++n;
    }
    return n;
}

bool isComparison(Operator op) {
    return op >= Operator::equal && op <= Operator::greaterEqual;
}

bool comparesScalars(const Expr* e) {
    return isScalar(e->left->type) && isScalar(e->right->type);
}

/// Both sides fit 8 bits, which are compared without sign.
bool comparesBytes(const Expr* e) {
    return fitsByte(e->left) && fitsByte(e->right);
}

} // namespace

Relation relationOf(Operator op) {
    switch (op) {
    case Operator::notEqual:
        return Relation::notEqual;
    case Operator::less:
        return Relation::less;
    case Operator::lessEqual:
        return Relation::lessEqual;
    case Operator::greater:
        return Relation::greater;
    case Operator::greaterEqual:
        return Relation::greaterEqual;
    default:
        return Relation::equal;
    }
}

/// The value of a scalar expression, or of its low byte when `want` is a byte.
Operand Lowering::evaluate(const Expr* e, Width want) {
    if (e->kind == ExprKind::ordinal) {
        return Operand::constant(want == Width::byte
                                     ? e->value & 0xFF
                                     : static_cast<std::int32_t>(static_cast<std::int16_t>(e->value)));
    }
    if (want == Width::word && fitsByte(e)) {
        return resize(evaluate(e, Width::byte), Width::byte, Width::word);
    }
    switch (e->kind) {
    case ExprKind::variable:
    case ExprKind::index:
    case ExprKind::character:
    case ExprKind::field:
    case ExprKind::dereference:
    case ExprKind::memory:
    case ExprKind::retypeVariable: {
        Operand from = place(e);
        if (from.isMemory() && want == Width::byte) {
            return load(from, Width::byte); // the low byte lies first
        }
        const Width width = widthOfType(e->type);
        return resize(load(from, width), width, want);
    }
    case ExprKind::port: {
        const Operand number = evaluate(e->left, Width::byte);
        return resize(b_.operation(IrOp::portIn, Width::byte, number), Width::byte, want);
    }
    case ExprKind::routineAddress: {
        Operand address;
        address.kind = Operand::Kind::address;
        address.target = z80::Target::routine;
        address.index = e->symbol->routine->ordinal;
        return resize(load(address, Width::word), Width::word, want);
    }
    case ExprKind::unary:
        return unary(e, want);
    case ExprKind::binary:
        return binary(e, want);
    case ExprKind::convert:
        return convert(e, want);
    case ExprKind::call:
        return resize(call(e, {}), widthOfType(e->type), want);
    case ExprKind::standardCall:
        return standardCall(e, want);
    default:
        cannot(e->position);
        return Operand::constant(0);
    }
}

Operand Lowering::resize(Operand operand, Width from, Width want) {
    if (from == want) {
        return operand;
    }
    if (operand.isConstant()) {
        return Operand::constant(operand.n & 0xFF);
    }
    return b_.operation(want == Width::word ? IrOp::widen : IrOp::narrow, want, operand);
}

/// Left before right, as written; a variable on the left is copied when the right side may change it.
std::pair<Operand, Operand> Lowering::operands(const Expr* left, const Expr* right, Width want) {
    Operand a = evaluate(left, want);
    if (hasCall(right)) {
        a = freeze(a, want);
    }
    const Operand b = evaluate(right, want);
    return {a, b};
}

Operand Lowering::unary(const Expr* e, Width want) {
    switch (e->op) {
    case Operator::negate:
        return b_.operation(IrOp::negate, want, evaluate(e->left, want));
    case Operator::bitNot:
        return b_.operation(IrOp::bitNot, want, evaluate(e->left, want));
    case Operator::logicalNot:
        return resize(
            b_.operation(IrOp::bitXor, Width::byte, evaluate(e->left, Width::byte), Operand::constant(1)),
            Width::byte, want);
    default:
        cannot(e->position);
        return Operand::constant(0);
    }
}

Operand Lowering::binaryOperation(IrOp op, const Expr* e, Width want) {
    auto [a, b] = operands(e->left, e->right, want);
    if (op != IrOp::subtract && a.isConstant()) {
        std::swap(a, b);
    }
    return b_.operation(op, want, a, b);
}

Operand Lowering::binary(const Expr* e, Width want) {
    if (e->op == Operator::in) {
        return resize(membership(e), Width::byte, want);
    }
    if (isComparison(e->op) && e->left->type->kind == TypeKind::set) {
        return resize(setComparison(e), Width::byte, want);
    }
    if (isComparison(e->op)) {
        return resize(comparison(e), Width::byte, want);
    }
    switch (e->op) {
    case Operator::add:
        return binaryOperation(IrOp::add, e, want);
    case Operator::subtract:
        if (e->right->kind == ExprKind::ordinal) {
            return b_.operation(IrOp::add, want, evaluate(e->left, want),
                                Operand::constant(-e->right->value));
        }
        return binaryOperation(IrOp::subtract, e, want);
    case Operator::bitAnd:
        return binaryOperation(IrOp::bitAnd, e, want);
    case Operator::bitOr:
        return binaryOperation(IrOp::bitOr, e, want);
    case Operator::bitXor:
        return binaryOperation(IrOp::bitXor, e, want);
    case Operator::multiply:
        return product(e, want);
    case Operator::integerDivide:
    case Operator::modulo:
        return quotient(e, want);
    case Operator::shiftLeft:
    case Operator::shiftRight:
        return shift(e, want);
    default:
        cannot(e->position);
        return Operand::constant(0);
    }
}

Operand Lowering::shift(const Expr* e, Width want) {
    const bool left = e->op == Operator::shiftLeft;
    if (e->right->kind != ExprKind::ordinal) {
        auto [a, b] = operands(e->left, e->right, Width::word);
        // Counts above 255 shift everything out just as 255 does; negative ones are such counts.
        const Operand count = b_.operation(IrOp::narrow, Width::byte, b);
        const Operand result = libraryWord(left ? RuntimeEntry::shiftLeft : RuntimeEntry::shiftRight,
                                           {word(z80::Pair::hl, a), byte(z80::Reg::a, count)});
        return resize(result, Width::word, want);
    }
    const std::int32_t count = e->right->value;
    const Width width = left ? want : (fitsByte(e->left) ? Width::byte : Width::word);
    if (count < 0 || count >= (width == Width::byte ? 8 : 16)) {
        evaluate(e->left, want);
        return Operand::constant(0);
    }
    const Operand a = evaluate(e->left, width);
    if (count == 0) {
        return resize(a, width, want);
    }
    return resize(b_.operation(left ? IrOp::shiftLeft : IrOp::shiftRight, width, a, Operand::constant(count)),
                  width, want);
}

Operand Lowering::product(const Expr* e, Width want) {
    const Expr* factor = e->right->kind == ExprKind::ordinal ? e->right : e->left;
    const Expr* other = factor == e->right ? e->left : e->right;
    if (isPowerOfTwoConstant(factor)) {
        const std::int32_t power = logarithm(factor->value);
        if (power < (want == Width::byte ? 8 : 16)) {
            const Operand a = evaluate(other, want);
            return power == 0 ? a : b_.operation(IrOp::shiftLeft, want, a, Operand::constant(power));
        }
    }
    if (factor->kind == ExprKind::ordinal) {
        const Operand a = evaluate(other, Width::word);
        return resize(b_.operation(IrOp::multiplyConstant, Width::word, a, Operand::constant(factor->value)),
                      Width::word, want);
    }
    auto [a, b] = operands(e->left, e->right, Width::word);
    return resize(libraryWord(RuntimeEntry::multiply, {word(z80::Pair::hl, a), word(z80::Pair::de, b)}),
                  Width::word, want);
}

Operand Lowering::quotient(const Expr* e, Width want) {
    const bool modulo = e->op == Operator::modulo;
    if (isPowerOfTwoConstant(e->right)) {
        const Operand power = Operand::constant(logarithm(e->right->value));
        const Operand mask = Operand::constant(e->right->value - 1);
        if (isNonNegative(e->left)) {
            const Width width = naturalWidth(e->left);
            const Operand a = evaluate(e->left, width);
            if (modulo) {
                return resize(b_.operation(IrOp::bitAnd, width, a, mask), width, want);
            }
            if (width == Width::byte && power.n >= 8) {
                return Operand::constant(0);
            }
            return power.n == 0 ? resize(a, width, want)
                                : resize(b_.operation(IrOp::shiftRight, width, a, power), width, want);
        }
        const Operand a = freeze(evaluate(e->left, Width::word), Width::word);
        const Operand result = power.n == 0 ? a : b_.operation(IrOp::dividePower, Width::word, a, power);
        if (!modulo) {
            return resize(result, Width::word, want);
        }
        const Operand whole =
            power.n == 0 ? result : b_.operation(IrOp::shiftLeft, Width::word, result, power);
        return resize(b_.operation(IrOp::subtract, Width::word, a, whole), Width::word, want);
    }
    auto [a, b] = operands(e->left, e->right, Width::word);
    const Operand result = libraryWord(RuntimeEntry::divide, {word(z80::Pair::hl, a), word(z80::Pair::de, b)},
                                       modulo ? z80::Pair::de : z80::Pair::hl);
    return resize(result, Width::word, want);
}

Operand Lowering::convert(const Expr* e, Width want) {
    if (e->type->kind == TypeKind::character && e->left->type->kind == TypeKind::string) {
        // A string is a character when it has one; anything else stops the program.
        const Operand text = stringAddress(e->left);
        const Operand at = text.isValue() ? Operand::indirect(text.id, 0) : memoryAt(text);
        constexpr std::uint16_t lengthError = 0x10;
        checkRange(load(at, Width::byte), Width::byte, 1, 1, RuntimeEntry::runError);
        function_.code.back().n = lengthError;
        return resize(load(offsetPlace(at, 1), Width::byte), Width::byte, want);
    }
    if (!isScalar(e->type) || !isScalar(e->left->type)) {
        cannot(e->position);
        return Operand::constant(0);
    }
    if (e->checked) {
        const Width natural = naturalWidth(e->left);
        const Operand value = freeze(evaluate(e->left, natural), natural);
        checkRange(value, natural, e->type->low, e->type->high, RuntimeEntry::rangeError);
        return resize(value, natural, want);
    }
    if (widthOfType(e->type) == Width::byte) {
        return resize(evaluate(e->left, Width::byte), Width::byte, want);
    }
    return evaluate(e->left, want);
}

void Lowering::checkRange(Operand value, Width width, std::int32_t low, std::int32_t high,
                          RuntimeEntry error) {
    if (value.isConstant()) {
        return; // the parser has judged constants
    }
    Ir& ir = b_.emit(IrOp::check, width);
    ir.a = value;
    ir.b = Operand::constant(low);
    ir.dst = Operand::constant(high);
    ir.index = static_cast<std::uint16_t>(error);
}

Operand Lowering::comparison(const Expr* e) {
    if (!comparesScalars(e)) {
        Ir& ir = compareStructured(e, IrOp::runtimeCompare);
        ir.dst = Operand::value(b_.temporary(Width::byte));
        return ir.dst;
    }
    const Width width = comparesBytes(e) ? Width::byte : Width::word;
    auto [a, b] = operands(e->left, e->right, width);
    const ValueId result = b_.temporary(Width::byte);
    Ir& ir = b_.emit(IrOp::compare, width);
    ir.relation = relationOf(e->op);
    if (a.isConstant()) {
        std::swap(a, b);
        ir.relation = mirrored(ir.relation);
    }
    ir.isSigned = width == Width::word;
    ir.dst = Operand::value(result);
    ir.a = a;
    ir.b = b;
    return ir.dst;
}

/// Branches on an expression that is a test of single bits: Odd(x), x mod 2^n = 0 and the like.
bool Lowering::conditionOnBits(const Expr* e, BlockId whenTrue, BlockId whenFalse) {
    const Expr* tested = nullptr;
    std::int32_t mask = 1;
    Relation relation = Relation::notEqual;
    if (e->kind == ExprKind::standardCall && static_cast<StandardRoutine>(e->value) == StandardRoutine::odd) {
        tested = e->left;
    } else if (e->kind == ExprKind::binary && (e->op == Operator::equal || e->op == Operator::notEqual) &&
               e->right->kind == ExprKind::ordinal && e->right->value == 0 &&
               e->left->kind == ExprKind::binary && e->left->op == Operator::modulo &&
               isPowerOfTwoConstant(e->left->right)) {
        tested = e->left->left;
        mask = e->left->right->value - 1;
        relation = relationOf(e->op);
    }
    if (tested == nullptr) {
        return false;
    }
    const Width width = mask <= 255 ? Width::byte : Width::word;
    const Operand bits = b_.operation(IrOp::bitAnd, width, evaluate(tested, width), Operand::constant(mask));
    releaseStack();
    b_.branch(width, relation, false, bits, Operand::constant(0), whenTrue, whenFalse);
    return true;
}

void Lowering::comparisonBranch(const Expr* e, BlockId whenTrue, BlockId whenFalse) {
    if (!comparesScalars(e)) {
        // Room on the stack must be given back before the two ways part, and that changes the flags.
        Ir& ir = compareStructured(e, IrOp::runtimeBranch);
        if (stackTaken_ == 0) {
            ir.target = whenTrue;
            ir.other = whenFalse;
            b_.closeBlock();
            return;
        }
        ir.op = IrOp::runtimeCompare;
        const Operand result = Operand::value(b_.temporary(Width::byte));
        ir.dst = result;
        releaseStack();
        b_.branch(Width::byte, Relation::notEqual, false, result, Operand::constant(0), whenTrue, whenFalse);
        return;
    }
    const Width width = comparesBytes(e) ? Width::byte : Width::word;
    auto [a, b] = operands(e->left, e->right, width);
    Relation relation = relationOf(e->op);
    if (a.isConstant()) {
        std::swap(a, b);
        relation = mirrored(relation);
    }
    releaseStack();
    if (a.isConstant()) {
        a = b_.operation(IrOp::copy, width, a);
    }
    b_.branch(width, relation, width == Width::word, a, b, whenTrue, whenFalse);
}

/// Goes on in one block or the other. `and` and `or` skip their right side when it is plain: the language
/// evaluates both sides always, but of a plain one nobody can tell.
void Lowering::condition(const Expr* e, BlockId whenTrue, BlockId whenFalse) {
    if (e->kind == ExprKind::ordinal) {
        releaseStack();
        b_.jump(e->value != 0 ? whenTrue : whenFalse);
        return;
    }
    if (e->kind == ExprKind::unary && e->op == Operator::logicalNot) {
        condition(e->left, whenFalse, whenTrue);
        return;
    }
    if (conditionOnBits(e, whenTrue, whenFalse)) {
        return;
    }
    if (e->kind == ExprKind::binary && (e->op == Operator::bitAnd || e->op == Operator::bitOr) &&
        isPlain(e->right)) {
        const BlockId second = b_.newBlock();
        if (e->op == Operator::bitAnd) {
            condition(e->left, second, whenFalse);
        } else {
            condition(e->left, whenTrue, second);
        }
        b_.startBlock(second);
        condition(e->right, whenTrue, whenFalse);
        return;
    }
    if (membershipBranch(e, whenTrue, whenFalse)) {
        return;
    }
    if (e->kind == ExprKind::binary && isComparison(e->op) && e->left->type->kind != TypeKind::set) {
        comparisonBranch(e, whenTrue, whenFalse);
        return;
    }
    const Operand value = evaluate(e, Width::byte);
    releaseStack();
    if (value.isConstant()) {
        b_.jump(value.n != 0 ? whenTrue : whenFalse);
        return;
    }
    b_.branch(Width::byte, Relation::notEqual, false, value, Operand::constant(0), whenTrue, whenFalse);
}

} // namespace tp3
