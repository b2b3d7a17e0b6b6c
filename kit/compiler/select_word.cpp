#include "selector.h"

namespace tp3 {

using z80::Alu;
using z80::bit;
using z80::bits;
using z80::high;
using z80::low;
using z80::Shift;

namespace {

constexpr z80::Mask anyPair = 0x3F;
constexpr z80::Mask hlOnly = bits(z80::Pair::hl);
constexpr z80::Mask notHl = bits(z80::Pair::de) | bits(z80::Pair::bc);

} // namespace

void Selector::wordOperation(Ir& ir) {
    switch (ir.op) {
    case IrOp::add:
        addWord(ir);
        break;
    case IrOp::subtract:
        subtractWord(ir);
        break;
    case IrOp::bitAnd:
    case IrOp::bitOr:
    case IrOp::bitXor:
        logicWord(ir);
        break;
    case IrOp::negate:
    case IrOp::bitNot:
    case IrOp::absolute:
        negateWord(ir);
        break;
    case IrOp::shiftLeft:
    case IrOp::shiftRight:
        shiftWord(ir);
        break;
    case IrOp::multiplyConstant:
        multiplyConstant(ir);
        break;
    case IrOp::dividePower:
        dividePower(ir);
        break;
    default:
        break;
    }
}

void Selector::addWord(Ir& ir) {
    Operand a = ir.a;
    Operand b = ir.b;
    if (!a.isValue()) {
        std::swap(a, b);
    }
    const std::int32_t n = static_cast<std::int16_t>(b.n);
    constexpr std::int32_t mostSteps = 3;
    if (b.isConstant() && n >= -mostSteps && n <= mostSteps && a.isValue()) {
        Pair p = Pair::hl;
        const Op step = n < 0 ? Op::dec16 : Op::inc16;
        const bool inPlace = a.id == ir.dst.id && pinOf(a.id) != 0 && findPair(a.id, p);
        if (!inPlace) {
            p = fetchOwn(a, anyPair);
        }
        for (std::int32_t i = 0; i < (n < 0 ? -n : n); ++i) {
            emit(step, code(p));
        }
        if (inPlace) {
            live_[a.id] = 1; // the register is the loop's, whether or not the last value is looked at
            inHome_[a.id] = 0;
        } else {
            define(ir.dst, p);
        }
        return;
    }
    if (a.isValue() && b.isValue() && a.id == b.id) {
        consume(b);
        const Pair p = fetchOwn(a, hlOnly);
        emit(Op::addHl, code(Pair::hl));
        define(ir.dst, p);
        return;
    }
    // Whichever lies in DE or BC is the addend; the other goes to HL.
    Pair p = Pair::hl;
    const bool aOutside = a.isValue() && findPair(a.id, p) && p != Pair::hl;
    const bool bInHl = b.isValue() && pairHolds(Pair::hl, b.id);
    if (bInHl || (aOutside && !b.isValue()) || (aOutside && b.isValue() && !findPair(b.id, p))) {
        std::swap(a, b);
    }
    const Pair addend = b.isValue() && findPair(b.id, p) && p != Pair::hl ? fetchPair(b, notHl) : Pair::sp;
    fetchOwn(a, hlOnly);
    emit(Op::addHl, code(addend != Pair::sp ? addend : fetchPair(b, notHl)));
    define(ir.dst, Pair::hl);
}

void Selector::subtractWord(Ir& ir) {
    if (ir.a.isValue() && ir.b.isValue() && ir.a.id == ir.b.id) {
        consume(ir.a);
        consume(ir.b);
        const Pair p = takePair(anyPair);
        emit(Op::ldPairN, code(p));
        define(ir.dst, p);
        return;
    }
    Pair p = Pair::hl;
    // The subtrahend in HL and the minuend in DE only need to change places.
    if (ir.a.isValue() && ir.b.isValue() && pairHolds(Pair::hl, ir.b.id) && pairHolds(Pair::de, ir.a.id) &&
        !isPinned(Reg::e) && !isPinned(Reg::d) && !live_[ir.a.id] && !live_[ir.b.id]) {
        emit(Op::exDeHl);
        forget(Pair::hl);
        forget(Pair::de);
        hold(Pair::hl, ir.a.id);
        hold(Pair::de, ir.b.id);
    }
    const bool known = ir.b.isValue() && findPair(ir.b.id, p) && p != Pair::hl;
    const Pair subtrahend = known ? fetchPair(ir.b, notHl) : Pair::sp;
    if (!known && ir.b.isValue() && pairHolds(Pair::hl, ir.b.id)) {
        const Pair moved = fetchPair(ir.b, notHl);
        fetchOwn(ir.a, hlOnly);
        alu(Alu::bitOr, Reg::a);
        emit(Op::sbcHl, code(moved));
        define(ir.dst, Pair::hl);
        return;
    }
    fetchOwn(ir.a, hlOnly);
    const Pair second = known ? subtrahend : fetchPair(ir.b, notHl);
    alu(Alu::bitOr, Reg::a);
    emit(Op::sbcHl, code(second));
    define(ir.dst, Pair::hl);
}

void Selector::logicWord(Ir& ir) {
    const Alu op = ir.op == IrOp::bitAnd ? Alu::bitAnd : ir.op == IrOp::bitOr ? Alu::bitOr : Alu::bitXor;
    Operand a = ir.a;
    Operand b = ir.b;
    if (!a.isValue()) {
        std::swap(a, b);
    }
    if (a.isValue() && b.isValue() && a.id == b.id) {
        consume(b);
        b = Operand::constant(op == Alu::bitXor ? 0 : -1);
        if (op == Alu::bitOr) {
            b = Operand::constant(0);
        } else if (op == Alu::bitXor) {
            const Pair p = fetchOwn(a, anyPair);
            emit(Op::ldPairN, code(p));
            define(ir.dst, p);
            return;
        }
    }
    if (!b.isValue() && !b.isConstant()) {
        // The address of something: only code that computes with Addr gets here.
        const Pair second = fetchPair(b, notHl);
        const Pair first = fetchOwn(a, static_cast<Mask>(anyPair & ~bits(second)));
        makeFree(Reg::a);
        for (const bool upper : {false, true}) {
            move(Reg::a, upper ? high(first) : low(first));
            alu(op, upper ? high(second) : low(second));
            move(upper ? high(first) : low(first), Reg::a);
        }
        define(ir.dst, first);
        return;
    }
    Pair second = Pair::sp;
    if (b.isValue()) {
        second = fetchPair(b, anyPair);
    }
    const Pair first = fetchOwn(a, second == Pair::sp ? anyPair : static_cast<Mask>(anyPair & ~bits(second)));
    makeFree(Reg::a);
    for (const bool upper : {false, true}) {
        const Reg r = upper ? high(first) : low(first);
        const std::int32_t n = upper ? b.n >> 8 & 0xFF : b.n & 0xFF;
        if (second == Pair::sp) {
            const bool neutral = op == Alu::bitAnd ? n == 0xFF : n == 0;
            if (neutral) {
                continue;
            }
            if (op == Alu::bitAnd && n == 0) {
                loadN(r, 0);
                continue;
            }
            move(Reg::a, r);
            aluN(op, n);
        } else {
            move(Reg::a, r);
            alu(op, upper ? high(second) : low(second));
        }
        move(r, Reg::a);
    }
    define(ir.dst, first);
}

void Selector::negateWord(Ir& ir) {
    const Pair p = fetchOwn(ir.a, anyPair);
    makeFree(Reg::a);
    if (ir.op == IrOp::bitNot) {
        for (const Reg r : {low(p), high(p)}) {
            move(Reg::a, r);
            emit(Op::cpl);
            move(r, Reg::a);
        }
        define(ir.dst, p);
        return;
    }
    const std::uint16_t done = ir.op == IrOp::absolute ? newLabel() : std::uint16_t{0};
    if (ir.op == IrOp::absolute) {
        emit(Op::bitTest, 7, code(high(p)));
        jump(Condition::z, done);
    }
    alu(Alu::bitXor, Reg::a);
    alu(Alu::sub, low(p));
    move(low(p), Reg::a);
    alu(Alu::sbc, Reg::a);
    alu(Alu::sub, high(p));
    move(high(p), Reg::a);
    if (ir.op == IrOp::absolute) {
        label(done);
    }
    define(ir.dst, p);
}

void Selector::shiftWord(Ir& ir) {
    std::int32_t count = ir.b.n;
    if (ir.op == IrOp::shiftLeft) {
        const Pair p = fetchOwn(ir.a, count >= 8 ? anyPair : hlOnly);
        if (count >= 8) {
            move(high(p), low(p));
            loadN(low(p), 0);
            for (; count > 8; --count) {
                shift(Shift::sla, high(p));
            }
        } else {
            for (; count > 0; --count) {
                emit(Op::addHl, code(Pair::hl));
            }
        }
        define(ir.dst, p);
        return;
    }
    const Pair p = fetchOwn(ir.a, anyPair);
    if (count >= 8) {
        move(low(p), high(p));
        loadN(high(p), 0);
        for (; count > 8; --count) {
            shift(Shift::srl, low(p));
        }
    } else {
        for (; count > 0; --count) {
            shift(Shift::srl, high(p));
            shift(Shift::rr, low(p));
        }
    }
    define(ir.dst, p);
}

/// Doubles and adds from the highest bit of the factor down.
void Selector::multiplyConstant(Ir& ir) {
    const std::int32_t signedFactor = static_cast<std::int16_t>(ir.b.n);
    const bool negative = signedFactor < 0;
    const std::uint32_t factor = static_cast<std::uint32_t>(negative ? -signedFactor : signedFactor);
    if (factor == 0) {
        consume(ir.a);
        const Pair p = takePair(hlOnly);
        emit(Op::ldPairN, code(p));
        define(ir.dst, p);
        return;
    }
    fetchOwn(ir.a, hlOnly);
    int top = 15;
    while ((factor >> top & 1U) == 0) {
        --top;
    }
    const bool needsCopy = (factor & (factor - 1)) != 0;
    Pair copy = Pair::sp;
    if (needsCopy) {
        copy = takePair(notHl);
        move(low(copy), Reg::l);
        move(high(copy), Reg::h);
        lock(copy);
    }
    for (int position = top - 1; position >= 0; --position) {
        emit(Op::addHl, code(Pair::hl));
        if ((factor >> position & 1U) != 0) {
            emit(Op::addHl, code(copy));
        }
    }
    if (negative) {
        makeFree(Reg::a);
        alu(Alu::bitXor, Reg::a);
        alu(Alu::sub, Reg::l);
        move(Reg::l, Reg::a);
        alu(Alu::sbc, Reg::a);
        alu(Alu::sub, Reg::h);
        move(Reg::h, Reg::a);
    }
    define(ir.dst, Pair::hl);
}

/// A negative number gets 2^n - 1 added, so that the arithmetic shift rounds towards zero.
void Selector::dividePower(Ir& ir) {
    const std::int32_t power = ir.b.n;
    fetchOwn(ir.a, hlOnly);
    const Pair bias = power > 1 ? takePair(notHl) : Pair::sp;
    if (bias != Pair::sp) {
        lock(bias);
    }
    if (power >= 8) {
        makeFree(Reg::a);
    }
    const std::uint16_t positive = newLabel();
    emit(Op::bitTest, 7, code(Reg::h));
    jump(Condition::z, positive);
    if (power == 1) {
        emit(Op::inc16, code(Pair::hl));
    } else {
        emit(Op::ldPairN, code(bias), 0, (1U << power) - 1U);
        emit(Op::addHl, code(bias));
    }
    label(positive);
    std::int32_t rest = power;
    if (power >= 8) {
        move(Reg::l, Reg::h);
        move(Reg::a, Reg::h);
        emit(Op::rla);
        alu(Alu::sbc, Reg::a);
        move(Reg::h, Reg::a);
        rest -= 8;
    }
    for (; rest > 0; --rest) {
        shift(Shift::sra, Reg::h);
        shift(Shift::rr, Reg::l);
    }
    define(ir.dst, Pair::hl);
}

void Selector::widen(Ir& ir) {
    Reg r = Reg::a;
    const bool inLow = ir.a.isValue() && findReg(ir.a.id, r) && (r == Reg::l || r == Reg::e || r == Reg::c) &&
                       !isPinned(r) && !live_[ir.a.id];
    if (inLow) {
        const Pair p = static_cast<Pair>(code(r) / 2);
        lock(r);
        if (isFree(high(p))) {
            consume(ir.a);
            forget(r);
            loadN(high(p), 0);
            forget(high(p));
            define(ir.dst, p);
            return;
        }
        unlock(bit(r));
    }
    if (ir.a.isValue() && findReg(ir.a.id, r)) {
        lock(r);
    }
    const Pair p = takePair(static_cast<Mask>(anyPair));
    lock(p);
    if (ir.a.isValue() && findReg(ir.a.id, r)) {
        move(low(p), r);
        consume(ir.a);
    } else {
        makeFree(Reg::a);
        loadReg(Reg::a, ir.a);
        consume(ir.a);
        move(low(p), Reg::a);
    }
    loadN(high(p), 0);
    define(ir.dst, p);
}

void Selector::joinBytes(Ir& ir) {
    fetchAccumulator(ir.a);
    const Reg second = fetchReg(ir.b, static_cast<Mask>(bit(Reg::e) | bit(Reg::d) | bit(Reg::c) |
                                                        bit(Reg::b) | bit(Reg::l) | bit(Reg::h)));
    const Mask pairOfSecond = bits(static_cast<Pair>(code(second) / 2));
    const Pair p = takePair(static_cast<Mask>(anyPair & ~pairOfSecond));
    move(low(p), second);
    move(high(p), Reg::a);
    define(ir.dst, p);
}

} // namespace tp3
