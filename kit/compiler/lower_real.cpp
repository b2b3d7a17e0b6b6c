#include "lower.h"

namespace tp3 {

namespace {

constexpr std::uint16_t realSize = 6;

/// The library's entry for a standard function of one real that gives a real.
bool realFunction(StandardRoutine routine, RuntimeEntry& entry) {
    switch (routine) {
    case StandardRoutine::abs:
        entry = RuntimeEntry::realAbs;
        return true;
    case StandardRoutine::sqr:
        entry = RuntimeEntry::realSqr;
        return true;
    case StandardRoutine::sqrt:
        entry = RuntimeEntry::realSqrt;
        return true;
    case StandardRoutine::sin:
        entry = RuntimeEntry::realSin;
        return true;
    case StandardRoutine::cos:
        entry = RuntimeEntry::realCos;
        return true;
    case StandardRoutine::arcTan:
        entry = RuntimeEntry::realArcTan;
        return true;
    case StandardRoutine::ln:
        entry = RuntimeEntry::realLn;
        return true;
    case StandardRoutine::exp:
        entry = RuntimeEntry::realExp;
        return true;
    case StandardRoutine::frac:
        entry = RuntimeEntry::realFrac;
        return true;
    case StandardRoutine::intPart:
        entry = RuntimeEntry::realInt;
        return true;
    default:
        return false;
    }
}

bool realOperation(Operator op, RuntimeEntry& entry) {
    switch (op) {
    case Operator::add:
        entry = RuntimeEntry::realAdd;
        return true;
    case Operator::subtract:
        entry = RuntimeEntry::realSubtract;
        return true;
    case Operator::multiply:
        entry = RuntimeEntry::realMultiply;
        return true;
    case Operator::divide:
        entry = RuntimeEntry::realDivide;
        return true;
    default:
        return false;
    }
}

} // namespace

/// The value lies in a variable, which something that happens later may change.
bool isInVariable(const Expr* e) {
    switch (e->kind) {
    case ExprKind::variable:
    case ExprKind::index:
    case ExprKind::field:
    case ExprKind::dereference:
    case ExprKind::retypeVariable:
        return true;
    default:
        return false;
    }
}

/// The address of a real expression's value: of a variable, a constant or a temporary.
Operand Lowering::realAddress(const Expr* e) {
    if (isInVariable(e)) {
        return addressOf(place(e));
    }
    if (e->kind == ExprKind::realConstant) {
        return literal(e->text, realSize, false);
    }
    return realInto(e, {});
}

/// The same, safe from what `later` does when it is evaluated.
Operand Lowering::steadyReal(const Expr* e, const Expr* later) {
    const Operand address = realAddress(e);
    if (!isInVariable(e) || !anyCall(later)) {
        return address;
    }
    const Operand copy = temporary(realSize);
    moveBlock(address, copy, realSize);
    return copy;
}

/// Where a result goes: the library reads its operands before it writes, so it may be the place of one of
/// them.
Operand Lowering::realTarget(const RealTarget& target, std::initializer_list<Operand> operands) {
    Operand to = target.address;
    if (target.designator != nullptr) {
        to = addressOf(place(target.designator));
    }
    for (const Operand& operand : operands) {
        giveBack(operand);
    }
    return to.kind == Operand::Kind::none ? temporary(realSize) : to;
}

/// Computes a real expression, whose result goes to the target or, without one, to a temporary; gives its
/// address.
Operand Lowering::realInto(const Expr* e, const RealTarget& target) {
    RuntimeEntry entry = RuntimeEntry::realAdd;
    if (e->kind == ExprKind::binary && realOperation(e->op, entry)) {
        const Operand left = steadyReal(e->left, e->right);
        const Operand right = realAddress(e->right);
        const Operand to = realTarget(target, {left, right});
        library(entry, {word(z80::Pair::hl, left), word(z80::Pair::de, right), word(z80::Pair::bc, to)});
        return to;
    }
    if (e->kind == ExprKind::unary && e->op == Operator::negate) {
        return realUnary(RuntimeEntry::realNegate, e->left, target);
    }
    if (e->kind == ExprKind::convert && e->left->type->isOrdinal()) {
        const Operand value = evaluate(e->left, Width::word);
        const Operand to = realTarget(target, {});
        library(RuntimeEntry::realFromInteger, {word(z80::Pair::hl, value), word(z80::Pair::de, to)});
        return to;
    }
    if (e->kind == ExprKind::standardCall) {
        const auto routine = static_cast<StandardRoutine>(e->value);
        if (routine == StandardRoutine::random) {
            const Operand to = realTarget(target, {});
            library(RuntimeEntry::realRandom, {word(z80::Pair::hl, to)});
            return to;
        }
        if (realFunction(routine, entry)) {
            return realUnary(entry, e->left, target);
        }
    }
    Operand value;
    if (e->kind == ExprKind::call) {
        value = call(e, temporary(realSize));
    } else if (isInVariable(e) || e->kind == ExprKind::realConstant) {
        value = realAddress(e);
    } else {
        cannot(e->position);
        return Operand::constant(0);
    }
    if (target.designator == nullptr && target.address.kind == Operand::Kind::none) {
        return value;
    }
    const Operand to = realTarget(target, {});
    moveBlock(value, to, realSize);
    return to;
}

Operand Lowering::realUnary(RuntimeEntry entry, const Expr* operand, const RealTarget& target) {
    const Operand value = realAddress(operand);
    const Operand to = realTarget(target, {value});
    library(entry, {word(z80::Pair::hl, value), word(z80::Pair::de, to)});
    return to;
}

void Lowering::assignReal(const Expr* target, const Expr* value) {
    if (target->kind == ExprKind::variable || (!hasCall(value) && !hasCall(target))) {
        realInto(value, {target, {}});
        return;
    }
    Operand to = addressOf(place(target));
    if (to.isValue()) {
        to = freeze(to, Width::word);
    }
    realInto(value, {nullptr, to});
}

/// Writes, reads and conversions to and from text. False for what has nothing to do with reals.
bool Lowering::standardReal(const Expr* e, std::uint8_t options) {
    constexpr std::int32_t defaultWidth = 18;
    const auto isMissing = [](const Expr* format) {
        return format == nullptr || (format->kind == ExprKind::ordinal && format->value == -1);
    };
    const auto formatOf = [&](const Expr* format) {
        return isMissing(format) ? Operand::constant(defaultWidth)
                                 : freeze(evaluate(format, Width::word), Width::word);
    };
    const Expr* first = e->left;
    const Expr* second = first != nullptr ? first->next : nullptr;
    const Expr* third = second != nullptr ? second->next : nullptr;
    switch (static_cast<StandardRoutine>(e->value)) {
    case StandardRoutine::writeReal: {
        const Operand value = steadyReal(first, second);
        const Operand width = formatOf(second);
        if (isMissing(third)) {
            library(RuntimeEntry::writeReal, {word(z80::Pair::hl, value), word(z80::Pair::de, width)});
        } else {
            const Operand decimals = evaluate(third, Width::word);
            library(RuntimeEntry::writeRealFixed,
                    {word(z80::Pair::hl, value), word(z80::Pair::de, width), word(z80::Pair::bc, decimals)});
        }
        return true;
    }
    case StandardRoutine::readReal:
        library(RuntimeEntry::readReal, {word(z80::Pair::hl, addressOfDesignator(first))});
        if ((options & optionIoCheck) != 0) {
            library(RuntimeEntry::ioCheck, {});
        }
        return true;
    case StandardRoutine::strReal: {
        const Expr* text = third->next;
        const Operand value = steadyReal(first, second);
        const Operand width = formatOf(second);
        RuntimeEntry entry = RuntimeEntry::stringFromReal;
        if (!isMissing(third)) {
            entry = RuntimeEntry::stringFromRealFixed;
            b_.copy(Operand::memory(runtimeAddresses[static_cast<std::size_t>(RuntimeEntry::realDecimals)]),
                    evaluate(third, Width::word), Width::word);
        }
        library(entry, {word(z80::Pair::hl, value), word(z80::Pair::de, addressOfDesignator(text)),
                        word(z80::Pair::bc, width), byte(z80::Reg::a, Operand::constant(text->type->high))});
        return true;
    }
    case StandardRoutine::valReal: {
        const Operand text = steadyString(first, second);
        const Operand number = steadyAddress(second, third);
        library(RuntimeEntry::stringToReal, {word(z80::Pair::hl, text), word(z80::Pair::de, number),
                                             word(z80::Pair::bc, addressOfDesignator(third))});
        return true;
    }
    default:
        return false;
    }
}

} // namespace tp3
