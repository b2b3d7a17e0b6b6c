#include "selector.h"

namespace tp3 {

using z80::bit;
using z80::bits;
using z80::high;
using z80::low;

void Selector::consume(const Operand& operand) {
    if (operand.usesValue() && needed_[operand.id] != 0) {
        --needed_[operand.id];
    }
}

z80::Mask Selector::pinOf(ValueId id) const {
    for (const Loop::Pin& pin : function_.loops[function_.blocks[current_].loop].pins) {
        if (pin.value == id) {
            return pin.registers;
        }
    }
    return 0;
}

bool Selector::isBorrowed(Pair p) const {
    for (const Saved& saved : borrowed_) {
        if (saved.pair == p) {
            return true;
        }
    }
    return false;
}

/// Puts a word operand into a pair that has been made free.
void Selector::loadPair(Pair p, const Operand& operand) {
    if (operand.kind == Operand::Kind::constant) {
        emit(Op::ldPairN, code(p), 0, static_cast<unsigned>(operand.n) & 0xFFFFU);
        return;
    }
    if (operand.kind == Operand::Kind::address) {
        emitTo(Op::ldPairN, code(p), operand);
        return;
    }
    Pair from = Pair::hl;
    if (!findPair(operand.id, from)) {
        emit(Op::ldPairMem, code(p), 0, homeOf(operand.id));
    } else if (from != p) {
        const bool exchange = p != Pair::bc && from != Pair::bc && !live_[operand.id] &&
                              needed_[operand.id] <= 1 && !isPinned(low(from)) && !isPinned(high(from)) &&
                              !isLocked(low(from)) && !isLocked(high(from));
        if (exchange) {
            emit(Op::exDeHl);
            forget(from);
        } else {
            move(low(p), low(from));
            move(high(p), high(from));
        }
    }
    hold(p, operand.id);
}

/// Puts a byte operand into a register that has been made free.
void Selector::loadReg(Reg r, const Operand& operand) {
    if (operand.kind == Operand::Kind::constant) {
        loadN(r, operand.n);
        return;
    }
    Reg from = Reg::a;
    if (findReg(operand.id, from)) {
        move(r, from);
        hold(r, operand.id);
        return;
    }
    const unsigned home = homeOf(operand.id);
    if (r == Reg::a) {
        emit(Op::ldAMem, 0, 0, home);
    } else if (isFree(Reg::a)) {
        forget(Reg::a);
        emit(Op::ldAMem, 0, 0, home);
        move(r, Reg::a);
    } else {
        emit(Op::exAf);
        emit(Op::ldAMem, 0, 0, home);
        move(r, Reg::a);
        emit(Op::exAf);
    }
    hold(r, operand.id);
}

/// The operand in one of the allowed pairs, for reading; the pair is locked until the instruction ends.
Selector::Pair Selector::fetchPair(const Operand& operand, Mask allowed) {
    if (operand.isValue()) {
        for (const Pair p : {Pair::hl, Pair::de, Pair::bc}) {
            if ((allowed & bits(p)) == bits(p) && pairHolds(p, operand.id)) {
                lock(p);
                consume(operand);
                return p;
            }
        }
    }
    const Pair p = takePair(allowed);
    loadPair(p, operand);
    lock(p);
    consume(operand);
    return p;
}

Selector::Reg Selector::fetchReg(const Operand& operand, Mask allowed) {
    if (operand.isValue()) {
        for (unsigned i = 0; i < 8; ++i) {
            const Reg r = static_cast<Reg>(i);
            if ((allowed & bit(r)) != 0 && registers_.content[i] == Content{operand.id, Part::byte}) {
                lock(r);
                consume(operand);
                return r;
            }
        }
    }
    const Reg r = takeReg(allowed);
    loadReg(r, operand);
    lock(r);
    consume(operand);
    return r;
}

/// The operand in a pair that the caller may change; the pair holds no known value afterwards.
Selector::Pair Selector::fetchOwn(const Operand& operand, Mask allowed) {
    Pair p = Pair::hl;
    if (operand.isValue() && findPair(operand.id, p) && (allowed & bits(p)) == bits(p) && !isPinned(low(p)) &&
        !isPinned(high(p)) && !isLocked(low(p))) {
        const bool last = !live_[operand.id] && needed_[operand.id] <= 1;
        if (!last) {
            for (const Pair other : {Pair::hl, Pair::de, Pair::bc}) {
                if (other != p && (allowed & bits(other)) == bits(other) && isFree(other)) {
                    move(low(other), low(p));
                    move(high(other), high(p));
                    forget(other);
                    lock(other);
                    consume(operand);
                    return other;
                }
            }
            makeFree(p);
        }
        forget(p);
    } else {
        p = takePair(allowed);
        loadPair(p, operand);
        // A second copy in an owned pair must not count as a copy of the value.
        forget(p);
    }
    lock(p);
    consume(operand);
    return p;
}

/// The byte operand in A, which the caller may change.
void Selector::fetchAccumulator(const Operand& operand) {
    Reg r = Reg::a;
    const bool there = operand.isValue() && findReg(operand.id, r) &&
                       registers_.content[code(Reg::a)] == Content{operand.id, Part::byte};
    if (there) {
        if (live_[operand.id] || needed_[operand.id] > 1) {
            preserve(operand.id, bit(Reg::a));
        }
    } else {
        makeFree(Reg::a);
        loadReg(Reg::a, operand);
    }
    forget(Reg::a);
    lock(Reg::a);
    consume(operand);
}

/// The address that an indirect operand names, in one of the allowed pairs, for reading memory through it.
/// The pair holds the operand's value unchanged when the offset is 0, otherwise nothing known.
Selector::Pair Selector::fetchAddress(const Operand& indirect, Mask allowed) {
    Operand base = indirect;
    base.kind = Operand::Kind::value;
    const std::int32_t offset = static_cast<std::int16_t>(indirect.n);
    if (offset == 0) {
        return fetchPair(base, allowed);
    }
    constexpr std::int32_t mostSteps = 3;
    Pair from = Pair::hl;
    const bool inOther = findPair(base.id, from) && from != Pair::hl;
    if (offset >= -mostSteps && offset <= mostSteps && !(inOther && (live_[base.id] || offset > 2))) {
        const Pair p = fetchOwn(base, allowed);
        for (std::int32_t i = 0; i < offset; ++i) {
            emit(Op::inc16, code(p));
        }
        for (std::int32_t i = 0; i > offset; --i) {
            emit(Op::dec16, code(p));
        }
        return p;
    }
    if (inOther) {
        lock(from);
        makeFree(Pair::hl);
        emit(Op::ldPairN, code(Pair::hl), 0, static_cast<unsigned>(offset) & 0xFFFFU);
        emit(Op::addHl, code(from));
        unlock(bits(from));
        consume(base);
    } else {
        fetchOwn(base, bits(Pair::hl));
        const Pair addend = takePair(static_cast<Mask>(bits(Pair::de) | bits(Pair::bc)));
        emit(Op::ldPairN, code(addend), 0, static_cast<unsigned>(offset) & 0xFFFFU);
        emit(Op::addHl, code(addend));
    }
    lock(Pair::hl);
    return Pair::hl;
}

/// The result of an operation lies in the pair.
void Selector::define(const Operand& dst, Pair p) {
    const Mask pin = pinOf(dst.id);
    if (isBorrowed(p)) {
        const Mask others = static_cast<Mask>(0xFF & ~bits(p) & ~bit(Reg::a));
        lock(p);
        const Pair q = takePair(others);
        move(low(q), low(p));
        move(high(q), high(p));
        unlock(bits(p));
        p = q;
    }
    forgetValue(dst.id);
    forget(p);
    inHome_[dst.id] = 0;
    live_[dst.id] = resultUsed_ ? 1 : 0;
    if (pin != 0) {
        lock(p);
        returnBorrowed();
        const Pair target = pin == bits(Pair::bc) ? Pair::bc : Pair::de;
        move(low(target), low(p));
        move(high(target), high(p));
        hold(target, dst.id);
    } else if (live_[dst.id]) {
        hold(p, dst.id);
    }
}

void Selector::define(const Operand& dst, Reg r) {
    const Mask pin = pinOf(dst.id);
    forgetValue(dst.id);
    forget(r);
    inHome_[dst.id] = 0;
    live_[dst.id] = resultUsed_ ? 1 : 0;
    if (pin != 0) {
        lock(r);
        returnBorrowed();
        for (unsigned i = 0; i < 8; ++i) {
            const Reg target = static_cast<Reg>(i);
            if (pin == bit(target)) {
                move(target, r);
                hold(target, dst.id);
            }
        }
    } else if (live_[dst.id]) {
        hold(r, dst.id);
    }
}

} // namespace tp3
