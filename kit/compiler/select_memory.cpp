#include "selector.h"

namespace tp3 {

using z80::bit;
using z80::bits;
using z80::high;
using z80::low;

namespace {

constexpr z80::Mask anyPair = 0x3F;
constexpr z80::Mask hlOnly = bits(z80::Pair::hl);
constexpr z80::Mask notHl = bits(z80::Pair::de) | bits(z80::Pair::bc);
constexpr z80::Mask anyReg = 0xBF; // all but M
constexpr z80::Mask notHlOrA = 0x0F;

} // namespace

/// dst := a, where dst is a value.
void Selector::copy(Ir& ir) {
    if (ir.a.isMemory()) {
        loadMemory(ir);
        return;
    }
    const bool word = ir.width == Width::word;
    const bool pinned = pinOf(ir.dst.id) != 0;
    if (ir.a.isValue() && ir.a.id == ir.dst.id) {
        consume(ir.a);
        live_[ir.dst.id] = resultUsed_ ? 1 : 0;
        return;
    }
    // A value that goes on being needed is copied to the variable's home, so that no second register is
    // taken.
    const ValueInfo& target = function_.values[ir.dst.id];
    if (ir.a.isValue() && live_[ir.a.id] && !pinned && target.hasHome) {
        if (word) {
            const Pair p = fetchPair(ir.a, anyPair);
            storePair(p, Operand::memory(target.home));
        } else {
            const Reg r = fetchReg(ir.a, anyReg);
            storeReg(r, Operand::memory(target.home));
        }
        forgetValue(ir.dst.id);
        inHome_[ir.dst.id] = 1;
        live_[ir.dst.id] = resultUsed_ ? 1 : 0;
        return;
    }
    if (pinned) {
        const Mask pin = pinOf(ir.dst.id);
        if (word && !ir.a.isValue()) {
            const Pair p = pin == bits(Pair::bc) ? Pair::bc : Pair::de;
            loadPair(p, ir.a);
            define(ir.dst, p);
            return;
        }
        if (!word && ir.a.isConstant()) {
            Reg r = Reg::a;
            for (unsigned i = 0; i < 8; ++i) {
                if (pin == bit(static_cast<Reg>(i))) {
                    r = static_cast<Reg>(i);
                }
            }
            loadN(r, ir.a.n);
            define(ir.dst, r);
            return;
        }
    }
    if (word) {
        define(ir.dst, fetchOwn(ir.a, anyPair));
        return;
    }
    Reg r = Reg::a;
    if (ir.a.isValue() && findReg(ir.a.id, r) && !live_[ir.a.id] && !isPinned(r)) {
        consume(ir.a);
        define(ir.dst, r);
        return;
    }
    fetchAccumulator(ir.a);
    define(ir.dst, Reg::a);
}

void Selector::loadMemory(Ir& ir) {
    const Operand& from = ir.a;
    if (ir.width == Width::byte) {
        if (from.kind == Operand::Kind::memory) {
            makeFree(Reg::a);
            emitTo(Op::ldAMem, 0, from);
            define(ir.dst, Reg::a);
            return;
        }
        const Pair p = fetchAddress(from, anyPair);
        if (p != Pair::hl) {
            makeFree(Reg::a);
            emit(Op::ldAPair, code(p));
            define(ir.dst, Reg::a);
            return;
        }
        const Reg r = evictionCost(Reg::a) == 0 ? Reg::a : takeReg(static_cast<Mask>(notHlOrA | bit(Reg::a)));
        makeFree(r);
        move(r, Reg::m);
        define(ir.dst, r);
        return;
    }
    if (from.kind == Operand::Kind::memory) {
        const Pair p = takePair(anyPair);
        emitTo(Op::ldPairMem, code(p), from);
        define(ir.dst, p);
        return;
    }
    // The address in HL is stepped to the second byte: it must be ours, or be stepped back.
    Operand base = from;
    base.kind = Operand::Kind::value;
    const bool keep = live_[from.id] && from.n == 0;
    Pair address = Pair::hl;
    if (from.n != 0 || keep) {
        address = fetchAddress(from, hlOnly);
    } else {
        address = fetchOwn(base, hlOnly);
    }
    if (!keep && evictionCost(Pair::de) != 0 && evictionCost(Pair::bc) != 0) {
        makeFree(Reg::a);
        move(Reg::a, Reg::m);
        emit(Op::inc16, code(address));
        move(Reg::h, Reg::m);
        move(Reg::l, Reg::a);
        define(ir.dst, Pair::hl);
        return;
    }
    const Pair p = takePair(notHl);
    move(low(p), Reg::m);
    emit(Op::inc16, code(address));
    move(high(p), Reg::m);
    if (keep) {
        emit(Op::dec16, code(address));
    }
    define(ir.dst, p);
}

/// Memory := a.
void Selector::store(Ir& ir) {
    if (ir.width == Width::byte) {
        storeByte(ir);
    } else {
        storeWord(ir);
    }
}

void Selector::storeByte(Ir& ir) {
    if (ir.dst.kind == Operand::Kind::memory) {
        if (ir.a.isConstant() && evictionCost(Reg::a) != 0 && isFree(Pair::hl)) {
            emitTo(Op::ldPairN, code(Pair::hl), ir.dst);
            forget(Pair::hl);
            emit(Op::ldRegN, code(Reg::m), 0, static_cast<unsigned>(ir.a.n) & 0xFFU);
            return;
        }
        if (ir.a.isConstant()) {
            makeFree(Reg::a);
            loadN(Reg::a, ir.a.n);
            emitTo(Op::ldMemA, 0, ir.dst);
            return;
        }
        storeReg(fetchReg(ir.a, anyReg), ir.dst);
        return;
    }
    if (ir.a.isConstant()) {
        fetchAddress(ir.dst, hlOnly);
        emit(Op::ldRegN, code(Reg::m), 0, static_cast<unsigned>(ir.a.n) & 0xFFU);
        return;
    }
    Reg r = Reg::a;
    if (findReg(ir.a.id, r) && (r == Reg::h || r == Reg::l)) {
        r = takeReg(static_cast<Mask>(notHlOrA | bit(Reg::a)));
        loadReg(r, ir.a);
        lock(r);
        consume(ir.a);
    } else {
        r = fetchReg(ir.a, static_cast<Mask>(notHlOrA | bit(Reg::a)));
    }
    Pair p = Pair::hl;
    if (r == Reg::a && ir.dst.n == 0 && findPair(ir.dst.id, p) && p != Pair::hl) {
        lock(p);
        consume(ir.dst);
        emit(Op::ldPairA, code(p));
        return;
    }
    fetchAddress(ir.dst, hlOnly);
    move(Reg::m, r);
}

void Selector::storeWord(Ir& ir) {
    if (ir.dst.kind == Operand::Kind::memory) {
        storePair(fetchPair(ir.a, anyPair), ir.dst);
        return;
    }
    Pair value = Pair::sp;
    if (!ir.a.isConstant()) {
        value = fetchPair(ir.a, notHl);
    }
    const bool keep = live_[ir.dst.id] && ir.dst.n == 0;
    Operand base = ir.dst;
    base.kind = Operand::Kind::value;
    if (ir.dst.n != 0 || keep) {
        fetchAddress(ir.dst, hlOnly);
    } else {
        fetchOwn(base, hlOnly);
    }
    for (const bool upper : {false, true}) {
        if (upper) {
            emit(Op::inc16, code(Pair::hl));
        }
        if (value == Pair::sp) {
            const unsigned n = static_cast<unsigned>(ir.a.n) & 0xFFFFU;
            emit(Op::ldRegN, code(Reg::m), 0, upper ? n >> 8U : n & 0xFFU);
        } else {
            move(Reg::m, upper ? high(value) : low(value));
        }
    }
    if (keep) {
        emit(Op::dec16, code(Pair::hl));
    } else {
        forget(Pair::hl);
    }
}

} // namespace tp3
