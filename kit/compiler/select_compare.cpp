#include "selector.h"

namespace tp3 {

using z80::Alu;
using z80::bit;
using z80::bits;
using z80::high;
using z80::low;

namespace {

constexpr z80::Mask anyPair = 0x3F;
constexpr z80::Mask notA = 0x3F;

} // namespace

/// Sets the flags for the relation of an instruction; afterwards only loads and jumps may follow.
Selector::Flags Selector::compareFlags(Ir& ir) {
    return ir.width == Width::byte ? compareBytes(ir) : compareWords(ir);
}

/// The test at the end of a loop that runs up to a large constant mostly says the same, and mostly the high
/// byte alone tells: one below the constant's means that the loop goes on. Only otherwise comes the whole
/// comparison.
void Selector::stayInLoopEarly(Ir& ir) {
    const std::uint16_t here = function_.blocks[current_].loop;
    const bool whenTrue = ir.relation == Relation::less || ir.relation == Relation::lessEqual;
    const bool whenFalse = ir.relation == Relation::greaterEqual || ir.relation == Relation::greater;
    if (ir.op != IrOp::branch || ir.width != Width::word || !ir.isSigned || !ir.b.isConstant() ||
        !ir.a.isValue() || here == 0 || (!whenTrue && !whenFalse)) {
        return;
    }
    const BlockId inside = whenTrue ? ir.target : ir.other;
    const BlockId outside = whenTrue ? ir.other : ir.target;
    const bool reachesBound = ir.relation == Relation::lessEqual || ir.relation == Relation::greater;
    const std::int32_t highByte = (ir.b.n + (reachesBound ? 1 : 0)) >> 8;
    if (function_.blocks[inside].loop != here || function_.blocks[outside].loop == here || highByte < 1 ||
        highByte > 0x7F || takesState(inside) || layoutPosition_[inside] > layoutIndex_) {
        return;
    }
    Pair p = Pair::hl;
    if (isPinned(Reg::a) || !findPair(ir.a.id, p)) {
        return;
    }
    makeFree(Reg::a);
    forget(Reg::a);
    move(Reg::a, high(p));
    aluN(Alu::compare, highByte);
    jump(Condition::c, inside);
}

Selector::Flags Selector::compareBytes(Ir& ir) {
    Operand a = ir.a;
    Operand b = ir.b;
    Relation relation = ir.relation;
    Flags flags;
    if (b.isConstant()) {
        std::int32_t n = b.n;
        if (relation == Relation::greater || relation == Relation::lessEqual) {
            ++n; // a > n is a >= n + 1
            relation = relation == Relation::greater ? Relation::greaterEqual : Relation::less;
        }
        if (relation == Relation::less || relation == Relation::greaterEqual) {
            const bool less = relation == Relation::less;
            if (n <= 0 || n > 255) {
                consume(a);
                flags.always = less == (n > 255);
                flags.never = !flags.always;
                return flags;
            }
            fetchReg(a, bit(Reg::a));
            aluN(Alu::compare, n);
            flags.condition = less ? Condition::c : Condition::nc;
            return flags;
        }
        fetchReg(a, bit(Reg::a));
        if ((n & 0xFF) == 0) {
            alu(Alu::bitOr, Reg::a);
        } else {
            aluN(Alu::compare, n);
        }
        flags.condition = relation == Relation::equal ? Condition::z : Condition::nz;
        return flags;
    }
    if (relation == Relation::greater || relation == Relation::lessEqual) {
        std::swap(a, b);
        relation = mirrored(relation);
    } else if ((relation == Relation::equal || relation == Relation::notEqual) && b.isValue() &&
               registers_.content[code(Reg::a)] == Content{b.id, Part::byte}) {
        std::swap(a, b);
    }
    if (a.isValue() && b.isValue() && a.id == b.id) {
        consume(a);
        consume(b);
        flags.always = relation == Relation::equal || relation == Relation::greaterEqual;
        flags.never = !flags.always;
        return flags;
    }
    const Reg second = fetchReg(b, notA);
    fetchReg(a, bit(Reg::a));
    alu(Alu::compare, second);
    switch (relation) {
    case Relation::equal:
        flags.condition = Condition::z;
        break;
    case Relation::notEqual:
        flags.condition = Condition::nz;
        break;
    case Relation::less:
        flags.condition = Condition::c;
        break;
    default:
        flags.condition = Condition::nc;
        break;
    }
    return flags;
}

Selector::Flags Selector::compareWords(Ir& ir) {
    if (ir.relation == Relation::equal || ir.relation == Relation::notEqual) {
        return equalWords(ir);
    }
    return lessWords(ir);
}

Selector::Flags Selector::equalWords(Ir& ir) {
    Flags flags;
    flags.condition = ir.relation == Relation::equal ? Condition::z : Condition::nz;
    Operand a = ir.a;
    Operand b = ir.b;
    if (!a.isValue()) {
        std::swap(a, b);
    }
    if (a.isValue() && b.isValue() && a.id == b.id) {
        consume(a);
        consume(b);
        flags.always = ir.relation == Relation::equal;
        flags.never = !flags.always;
        return flags;
    }
    const Pair first = fetchPair(a, anyPair);
    if (b.isConstant()) {
        const unsigned lowByte = static_cast<unsigned>(b.n) & 0xFFU;
        const unsigned highByte = static_cast<unsigned>(b.n) >> 8U & 0xFFU;
        makeFree(Reg::a);
        move(Reg::a, low(first));
        if (highByte == 0) {
            if (lowByte == 1) {
                emit(Op::dec8, code(Reg::a));
            } else if (lowByte != 0) {
                aluN(Alu::bitXor, static_cast<std::int32_t>(lowByte));
            }
            alu(Alu::bitOr, high(first));
            return flags;
        }
        const std::uint16_t decided = newLabel();
        aluN(Alu::compare, static_cast<std::int32_t>(lowByte));
        jump(Condition::nz, decided);
        move(Reg::a, high(first));
        aluN(Alu::compare, static_cast<std::int32_t>(highByte));
        label(decided);
        return flags;
    }
    const Pair second = fetchPair(b, static_cast<Mask>(anyPair & ~bits(first)));
    makeFree(Reg::a);
    const std::uint16_t decided = newLabel();
    move(Reg::a, low(first));
    alu(Alu::compare, low(second));
    jump(Condition::nz, decided);
    move(Reg::a, high(first));
    alu(Alu::compare, high(second));
    label(decided);
    return flags;
}

/// Signed p < n (or p >= n): the carry of a subtraction after the signs have been turned.
Selector::Flags Selector::lessThanConstant(Pair p, std::int32_t n, bool wantLess) {
    Flags flags;
    if (n == 0) {
        emit(Op::bitTest, 7, code(high(p)));
        flags.condition = wantLess ? Condition::nz : Condition::z;
        return flags;
    }
    makeFree(Reg::a);
    const std::int32_t turned = (n >> 8 & 0xFF) ^ 0x80;
    if ((n & 0xFF) == 0) {
        move(Reg::a, high(p));
        aluN(Alu::bitXor, 0x80);
        aluN(Alu::compare, turned);
    } else {
        move(Reg::a, low(p));
        aluN(Alu::sub, n & 0xFF);
        move(Reg::a, high(p));
        emit(Op::rla);
        emit(Op::ccf);
        emit(Op::rra);
        aluN(Alu::sbc, turned);
    }
    flags.condition = wantLess ? Condition::c : Condition::nc;
    return flags;
}

Selector::Flags Selector::lessWords(Ir& ir) {
    Operand a = ir.a;
    Operand b = ir.b;
    Relation relation = ir.relation;
    Flags flags;
    if (b.isConstant()) {
        std::int32_t n = static_cast<std::int16_t>(b.n);
        if (relation == Relation::greater || relation == Relation::lessEqual) {
            ++n;
            relation = relation == Relation::greater ? Relation::greaterEqual : Relation::less;
        }
        const bool less = relation == Relation::less;
        if (n > 32767 || n == -32768) {
            consume(a);
            flags.always = less == (n > 32767);
            flags.never = !flags.always;
            return flags;
        }
        return lessThanConstant(fetchPair(a, anyPair), n, less);
    }
    if (relation == Relation::greater || relation == Relation::lessEqual) {
        std::swap(a, b);
        relation = mirrored(relation);
    }
    if (a.isValue() && b.isValue() && a.id == b.id) {
        consume(a);
        consume(b);
        flags.always = relation == Relation::greaterEqual;
        flags.never = !flags.always;
        return flags;
    }
    const Pair first = fetchPair(a, anyPair);
    const Pair second = fetchPair(b, static_cast<Mask>(anyPair & ~bits(first)));
    makeFree(Reg::a);
    move(Reg::a, low(first));
    alu(Alu::sub, low(second));
    move(Reg::a, high(first));
    alu(Alu::sbc, high(second));
    const std::uint16_t noOverflow = newLabel();
    jump(Condition::po, noOverflow);
    aluN(Alu::bitXor, 0x80);
    label(noOverflow);
    flags.condition = relation == Relation::less ? Condition::m : Condition::p;
    return flags;
}

/// dst := 1 or 0.
void Selector::compare(Ir& ir) {
    if (!ir.a.isValue() && !ir.b.isValue()) {
        // Two constants: the tree's folding left it, so it is decided here.
        const std::int32_t x = ir.a.n;
        const std::int32_t y = ir.b.n;
        const bool less = x < y;
        const bool result = ir.relation == Relation::equal          ? x == y
                            : ir.relation == Relation::notEqual     ? x != y
                            : ir.relation == Relation::less         ? less
                            : ir.relation == Relation::greaterEqual ? !less
                            : ir.relation == Relation::greater      ? x > y
                                                                    : x <= y;
        makeFree(Reg::a);
        loadN(Reg::a, result ? 1 : 0);
        define(ir.dst, Reg::a);
        return;
    }
    const Flags flags = compareFlags(ir);
    if (flags.always || flags.never) {
        makeFree(Reg::a);
        loadN(Reg::a, flags.always ? 1 : 0);
        define(ir.dst, Reg::a);
        return;
    }
    // The operand in A has done its work; saving it, should it be needed on, leaves the flags alone.
    unlock(bit(Reg::a));
    makeFree(Reg::a);
    if (flags.condition == Condition::c || flags.condition == Condition::nc) {
        if (flags.condition == Condition::nc) {
            emit(Op::ccf);
        }
        loadN(Reg::a, 0);
        emit(Op::rla);
    } else {
        const std::uint16_t done = newLabel();
        loadN(Reg::a, 1);
        jump(flags.condition, done);
        loadN(Reg::a, 0);
        label(done);
    }
    define(ir.dst, Reg::a);
}

/// Calls an error entry unless the value lies in its range; the entry does not come back, so nothing is saved
/// for it.
void Selector::check(Ir& ir) {
    const std::uint16_t bad = newLabel();
    const std::uint16_t good = newLabel();
    const std::int32_t least = ir.b.n;
    const std::int32_t greatest = ir.dst.n;
    bool tested = false;
    if (ir.width == Width::byte) {
        const bool low = least > 0;
        const bool high = greatest < 255;
        if (low || high) {
            fetchReg(ir.a, bit(Reg::a));
            if (low) {
                aluN(Alu::compare, least);
                jump(high ? Condition::c : Condition::nc, high ? bad : good);
            }
            if (high) {
                aluN(Alu::compare, greatest + 1);
                jump(Condition::c, good);
            }
            tested = true;
        }
    } else {
        const bool low = least > -32768;
        const bool high = greatest < 32767;
        if (low || high) {
            const Pair p = fetchPair(ir.a, anyPair);
            if (low) {
                const Flags flags = lessThanConstant(p, least, high);
                jump(flags.condition, high ? bad : good);
            }
            if (high) {
                jump(lessThanConstant(p, greatest + 1, true).condition, good);
            }
            tested = true;
        }
    }
    if (tested) {
        label(bad);
        if (ir.n != 0) {
            loadN(Reg::a, ir.n); // the entry wants the error's number
        }
        libraryCall(static_cast<RuntimeEntry>(ir.index));
        label(good);
    }
}

} // namespace tp3
