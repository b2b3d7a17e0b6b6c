#include "selector.h"

namespace tp3 {

using z80::Alu;
using z80::bit;
using z80::bits;
using z80::high;
using z80::low;

namespace {

constexpr z80::Mask notA = 0x3F;

} // namespace

void Selector::byteOperation(Ir& ir) {
    switch (ir.op) {
    case IrOp::add:
        byteAlu(ir, Alu::add);
        break;
    case IrOp::subtract:
        byteAlu(ir, Alu::sub);
        break;
    case IrOp::bitAnd:
        byteAlu(ir, Alu::bitAnd);
        break;
    case IrOp::bitOr:
        byteAlu(ir, Alu::bitOr);
        break;
    case IrOp::bitXor:
        byteAlu(ir, Alu::bitXor);
        break;
    case IrOp::negate:
        fetchAccumulator(ir.a);
        emit(Op::neg);
        define(ir.dst, Reg::a);
        break;
    case IrOp::bitNot:
        fetchAccumulator(ir.a);
        emit(Op::cpl);
        define(ir.dst, Reg::a);
        break;
    case IrOp::shiftLeft:
    case IrOp::shiftRight:
        shiftByte(ir);
        break;
    default:
        break;
    }
}

void Selector::byteAlu(Ir& ir, Alu op) {
    Operand a = ir.a;
    Operand b = ir.b;
    const std::int32_t n = static_cast<std::int8_t>(b.n);
    Reg r = Reg::a;
    if (op == Alu::add && b.isConstant() && (n == 1 || n == -1) && a.isValue() && a.id == ir.dst.id &&
        pinOf(a.id) != 0 && findReg(a.id, r)) {
        emit(n > 0 ? Op::inc8 : Op::dec8, code(r)); // a loop's register is stepped in place
        live_[a.id] = 1;
        inHome_[a.id] = 0;
        return;
    }
    const bool commutes = op != Alu::sub;
    if (commutes && b.isValue() &&
        (!a.isValue() || registers_.content[code(Reg::a)] == Content{b.id, Part::byte})) {
        std::swap(a, b);
    }
    if (a.isValue() && b.isValue() && a.id == b.id) {
        fetchAccumulator(a);
        consume(b);
        alu(op, Reg::a);
        define(ir.dst, Reg::a);
        return;
    }
    if (b.isConstant()) {
        fetchAccumulator(a);
        if (op == Alu::add && (n == 1 || n == -1)) {
            emit(n > 0 ? Op::inc8 : Op::dec8, code(Reg::a));
        } else if (!(n == 0 && (op == Alu::add || op == Alu::bitOr || op == Alu::bitXor))) {
            aluN(op, b.n);
        }
        define(ir.dst, Reg::a);
        return;
    }
    const Reg second = fetchReg(b, notA);
    fetchAccumulator(a);
    alu(op, second);
    define(ir.dst, Reg::a);
}

void Selector::shiftByte(Ir& ir) {
    const std::int32_t count = ir.b.n;
    fetchAccumulator(ir.a);
    if (ir.op == IrOp::shiftLeft) {
        // Five doublings and more are dearer than turning the other way and masking.
        if (count <= 4) {
            for (std::int32_t i = 0; i < count; ++i) {
                alu(Alu::add, Reg::a);
            }
        } else {
            for (std::int32_t i = count; i < 8; ++i) {
                emit(Op::rrca);
            }
            aluN(Alu::bitAnd, 0xFF << count & 0xFF);
        }
    } else if (count == 1) {
        shift(z80::Shift::srl, Reg::a);
    } else {
        if (count <= 4) {
            for (std::int32_t i = 0; i < count; ++i) {
                emit(Op::rrca);
            }
        } else {
            for (std::int32_t i = count; i < 8; ++i) {
                emit(Op::rlca);
            }
        }
        aluN(Alu::bitAnd, 0xFF >> count);
    }
    define(ir.dst, Reg::a);
}

/// The low or high byte of a word.
void Selector::narrow(Ir& ir, bool upper) {
    Pair p = Pair::hl;
    if (ir.a.isConstant()) {
        makeFree(Reg::a);
        loadN(Reg::a, upper ? ir.a.n >> 8 : ir.a.n);
        define(ir.dst, Reg::a);
        return;
    }
    if (!ir.a.isValue()) {
        p = fetchPair(ir.a, notA);
    } else if (!findPair(ir.a.id, p)) {
        makeFree(Reg::a);
        emit(Op::ldAMem, 0, 0, static_cast<unsigned>(homeOf(ir.a.id)) + (upper ? 1U : 0U));
        consume(ir.a);
        define(ir.dst, Reg::a);
        return;
    }
    const Reg r = upper ? high(p) : low(p);
    consume(ir.a);
    if (ir.a.isValue() && !live_[ir.a.id] && !isPinned(r) && pinOf(ir.dst.id) == 0) {
        forget(p);
        define(ir.dst, r);
        return;
    }
    lock(p);
    makeFree(Reg::a);
    move(Reg::a, r);
    define(ir.dst, Reg::a);
}

} // namespace tp3
