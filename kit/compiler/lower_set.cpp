#include "lower.h"

#include <array>

namespace tp3 {

namespace {

constexpr std::uint16_t setSize =
    32; ///< of a whole set; variables hold only the bytes that their base type needs

using SetBits = std::array<std::uint8_t, setSize>;

std::uint16_t firstByte(const Type* type) {
    return static_cast<std::uint16_t>(type->low / 8);
}

bool isConstantElement(const Expr* element) {
    return element->kind == ExprKind::range
               ? element->left->kind == ExprKind::ordinal && element->right->kind == ExprKind::ordinal
               : element->kind == ExprKind::ordinal;
}

/// Adds the constant elements of a constructor; true when there are no others.
bool addConstants(const Expr* e, SetBits& bits) {
    bool all = true;
    for (const Expr* element = e->left; element != nullptr; element = element->next) {
        if (!isConstantElement(element)) {
            all = false;
            continue;
        }
        const bool range = element->kind == ExprKind::range;
        const std::int32_t low = (range ? element->left : element)->value & 0xFF;
        const std::int32_t high = (range ? element->right : element)->value & 0xFF;
        for (std::int32_t i = low; i <= high; ++i) {
            std::uint8_t& byte = bits[static_cast<std::size_t>(i) / 8];
            byte = static_cast<std::uint8_t>(byte | 1U << (static_cast<unsigned>(i) % 8));
        }
    }
    return all;
}

/// The set's bits when they are known.
bool constantSet(const Expr* e, SetBits& bits) {
    bits = {};
    if (e->kind == ExprKind::setConstant) {
        for (std::size_t i = 0; i < setSize; ++i) {
            bits[i] = static_cast<std::uint8_t>(e->text[i]);
        }
        return true;
    }
    return e->kind == ExprKind::setConstructor && addConstants(e, bits);
}

bool contains(const SetBits& bits, std::int32_t element) {
    return element >= 0 && element <= 255 &&
           (unsigned{bits[static_cast<std::size_t>(element) / 8]} >> (static_cast<unsigned>(element) % 8) &
            1U) != 0;
}

struct Interval {
    std::int32_t low;
    std::int32_t high;
};

std::vector<Interval> intervals(const SetBits& bits) {
    std::vector<Interval> list;
    for (std::int32_t i = 0; i <= 255; ++i) {
        if (!contains(bits, i)) {
            continue;
        }
        if (!list.empty() && list.back().high == i - 1) {
            list.back().high = i;
        } else {
            list.push_back({i, i});
        }
    }
    return list;
}

} // namespace

Operand Lowering::setLiteral(const std::uint8_t* bytes, std::uint16_t count) {
    return literal(reinterpret_cast<const char*>(bytes), count, false);
}

/// The address of all 32 bytes of a set, which are only to be read.
Operand Lowering::setAddress(const Expr* e) {
    SetBits bits;
    if (constantSet(e, bits)) {
        return setLiteral(bits.data(), setSize);
    }
    if (isInVariable(e) && e->type->size == setSize) {
        return addressOf(place(e));
    }
    return setTemporary(e);
}

/// The 32 bytes of a set in a temporary, where they may be changed.
Operand Lowering::setTemporary(const Expr* e) {
    SetBits bits;
    if (constantSet(e, bits)) {
        const Operand target = temporary(setSize);
        moveBlock(setLiteral(bits.data(), setSize), target, setSize);
        return target;
    }
    if (isInVariable(e)) {
        const Operand from = addressOf(place(e));
        const Operand target = temporary(setSize);
        if (e->type->size == setSize) {
            moveBlock(from, target, setSize);
        } else {
            library(RuntimeEntry::setExpand,
                    {word(z80::Pair::hl, from), word(z80::Pair::de, target),
                     word(z80::Pair::bc, Operand::constant(firstByte(e->type) * 256 + e->type->size))});
        }
        return target;
    }
    if (e->kind == ExprKind::setConstructor) {
        return setOfElements(e);
    }
    if (e->kind != ExprKind::binary) {
        cannot(e->position);
        return Operand::constant(0);
    }
    const Operand left = setTemporary(e->left);
    const Operand right = setAddress(e->right);
    const RuntimeEntry entry = e->op == Operator::add        ? RuntimeEntry::setUnion
                               : e->op == Operator::multiply ? RuntimeEntry::setIntersection
                                                             : RuntimeEntry::setDifference;
    library(entry, {word(z80::Pair::hl, left), word(z80::Pair::de, right)});
    giveBack(right);
    return left;
}

/// A constructor: the constant elements at once, then the others as they are written.
Operand Lowering::setOfElements(const Expr* e) {
    SetBits bits{};
    addConstants(e, bits);
    const Operand target = temporary(setSize);
    if (bits == SetBits{}) {
        library(RuntimeEntry::setClear, {word(z80::Pair::hl, target)});
    } else {
        moveBlock(setLiteral(bits.data(), setSize), target, setSize);
    }
    for (const Expr* element = e->left; element != nullptr; element = element->next) {
        if (isConstantElement(element)) {
            continue;
        }
        if (element->kind == ExprKind::range) {
            auto [low, high] = operands(element->left, element->right, Width::byte);
            library(RuntimeEntry::setIncludeRange,
                    {word(z80::Pair::hl, target), byte(z80::Reg::d, low), byte(z80::Reg::e, high)});
        } else {
            const Operand value = evaluate(element, Width::byte);
            library(RuntimeEntry::setInclude, {word(z80::Pair::hl, target), byte(z80::Reg::a, value)});
        }
    }
    return target;
}

/// The address of a set in the form of variables of `type`, as value parameters are handed over; safe from
/// what the arguments from `later` on do when they are evaluated.
Operand Lowering::trimmedSet(const Expr* e, const Type* type, const Expr* later) {
    SetBits bits;
    if (constantSet(e, bits)) {
        return setLiteral(bits.data() + firstByte(type), type->size);
    }
    const bool calls = anyCall(later);
    if (!calls && isInVariable(e) && firstByte(e->type) == firstByte(type) && e->type->size == type->size) {
        return addressOf(place(e));
    }
    const Operand whole = calls ? setTemporary(e) : setAddress(e);
    if (firstByte(type) == 0) {
        return whole;
    }
    if (whole.isValue()) {
        return b_.operation(IrOp::add, Width::word, whole, Operand::constant(firstByte(type)));
    }
    Operand address = whole;
    address.n += firstByte(type);
    return address;
}

void Lowering::assignSet(const Expr* target, const Expr* value, std::uint8_t options) {
    const Type* type = target->type;
    Operand to;
    if (target->kind != ExprKind::variable && (hasCall(value) || hasCall(target))) {
        to = freeze(addressOf(place(target)), Width::word);
    }
    const auto placeOfTarget = [&] { return to.kind == Operand::Kind::none ? addressOf(place(target)) : to; };
    const bool fits = isInVariable(value) && value->type->low >= type->low && value->type->high <= type->high;
    if ((options & optionRangeCheck) != 0 && !fits) {
        const Operand from = setAddress(value);
        library(RuntimeEntry::setCheckShrink,
                {word(z80::Pair::hl, from), word(z80::Pair::de, placeOfTarget()),
                 word(z80::Pair::bc, Operand::constant(firstByte(type) * 256 + type->size))});
        return;
    }
    const Operand from = trimmedSet(value, type);
    moveBlock(from, placeOfTarget(), type->size);
}

/// = <> <= >= of two sets as a byte.
Operand Lowering::setComparison(const Expr* e) {
    const Operand left = hasCall(e->right) ? setTemporary(e->left) : setAddress(e->left);
    const Operand right = setAddress(e->right);
    const bool equality = e->op == Operator::equal || e->op == Operator::notEqual;
    const bool swapped = e->op == Operator::greaterEqual;
    const Operand result = libraryByte(
        equality ? RuntimeEntry::setEqual : RuntimeEntry::setSubset,
        {word(z80::Pair::hl, swapped ? right : left), word(z80::Pair::de, swapped ? left : right)});
    return e->op == Operator::notEqual ? b_.operation(IrOp::bitXor, Width::byte, result, Operand::constant(1))
                                       : result;
}

/// `element in set` as a byte.
Operand Lowering::membership(const Expr* e) {
    const Expr* set = e->right;
    SetBits bits;
    if (isInVariable(set) && e->left->kind == ExprKind::ordinal) {
        const std::int32_t element = e->left->value;
        const Operand at = place(set);
        const std::int32_t offset = element / 8 - firstByte(set->type);
        if (element < 0 || element > 255 || offset < 0 || offset >= set->type->size) {
            return Operand::constant(0);
        }
        const Operand tested =
            b_.operation(IrOp::bitAnd, Width::byte, load(offsetPlace(at, offset), Width::byte),
                         Operand::constant(1 << (element % 8)));
        const ValueId result = b_.temporary(Width::byte);
        Ir& ir = b_.emit(IrOp::compare, Width::byte);
        ir.relation = Relation::notEqual;
        ir.dst = Operand::value(result);
        ir.a = tested;
        ir.b = Operand::constant(0);
        return ir.dst;
    }
    Operand element = evaluate(e->left, Width::word);
    if (hasCall(set)) {
        element = freeze(element, Width::word);
    }
    Operand from;
    std::int32_t bytes = setSize;
    if (constantSet(set, bits)) {
        std::uint16_t first = 0;
        std::uint16_t end = setSize;
        while (first < end && bits[first] == 0) {
            ++first;
        }
        while (end > first && bits[end - 1U] == 0) {
            --end;
        }
        if (first == end) {
            return Operand::constant(0);
        }
        from = setLiteral(bits.data() + first, static_cast<std::uint16_t>(end - first));
        bytes = first * 256 + (end - first);
    } else if (isInVariable(set)) {
        from = addressOf(place(set));
        bytes = firstByte(set->type) * 256 + set->type->size;
    } else {
        from = setAddress(set);
    }
    return libraryByte(RuntimeEntry::setContains, {word(z80::Pair::hl, from), word(z80::Pair::de, element),
                                                   word(z80::Pair::bc, Operand::constant(bytes))});
}

/// Branches on `element in [constants]` by comparing, when these are few ranges. False when it is left to
/// others.
bool Lowering::membershipBranch(const Expr* e, BlockId whenTrue, BlockId whenFalse) {
    constexpr std::size_t mostIntervals = 6;
    SetBits bits;
    if (e->kind != ExprKind::binary || e->op != Operator::in || !constantSet(e->right, bits)) {
        return false;
    }
    const std::vector<Interval> list = intervals(bits);
    if (list.size() > mostIntervals || list.empty()) {
        return false;
    }
    const Width width = naturalWidth(e->left);
    const bool isSigned = width == Width::word;
    Operand value = evaluate(e->left, width);
    if (value.isConstant()) {
        releaseStack();
        b_.jump(contains(bits, value.n) ? whenTrue : whenFalse);
        return true;
    }
    if (!function_.values[value.id].crossesBlocks && list.size() == 1 && list[0].low == list[0].high) {
        releaseStack();
        b_.branch(width, Relation::equal, false, value, Operand::constant(list[0].low), whenTrue, whenFalse);
        return true;
    }
    if (!function_.values[value.id].crossesBlocks) {
        const Operand kept = Operand::value(b_.crossing(width));
        b_.copy(kept, value, width);
        value = kept;
    }
    releaseStack();
    for (std::size_t i = 0; i < list.size(); ++i) {
        const auto [low, high] = list[i];
        const BlockId next = i + 1 < list.size() ? b_.newBlock() : whenFalse;
        if (low == high) {
            b_.branch(width, Relation::equal, false, value, Operand::constant(low), whenTrue, next);
        } else {
            // The ranges ascend, so a value below one is in none of the others.
            if (low > 0 || isSigned) {
                const BlockId above = b_.newBlock();
                b_.branch(width, Relation::less, isSigned, value, Operand::constant(low), whenFalse, above);
                b_.startBlock(above);
            }
            if (high == 255 && !isSigned) {
                b_.jump(whenTrue);
            } else {
                b_.branch(width, Relation::lessEqual, isSigned, value, Operand::constant(high), whenTrue,
                          next);
            }
        }
        if (i + 1 < list.size()) {
            b_.startBlock(next);
        }
    }
    return true;
}

} // namespace tp3
