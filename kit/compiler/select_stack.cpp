#include "selector.h"

namespace tp3 {

using z80::bits;
using z80::low;

/// Room on the stack and frames; all of them work through HL.
void Selector::stackOperation(Ir& ir) {
    const unsigned n = ir.n;
    const auto moveStack = [&](unsigned by) {
        emit(Op::ldPairN, code(Pair::hl), 0, by & 0xFFFFU);
        emit(Op::addHl, code(Pair::sp));
        emit(Op::ldSpHl);
    };
    if (ir.op == IrOp::stackCheck && isFree(Pair::de) && !isFree(Pair::hl) && !isPinned(Reg::h)) {
        emit(Op::exDeHl); // cheaper than to copy what HL holds
        for (const Reg half : {Reg::e, Reg::d}) {
            const unsigned other = code(half) + 2U;
            registers_.content[code(half)] = registers_.content[other];
            registers_.content[other] = {};
        }
    }
    makeFree(Pair::hl);
    switch (ir.op) {
    case IrOp::stackAllocate:
        moveStack(0x10000U - n);
        define(ir.dst, Pair::hl);
        break;
    case IrOp::stackFree:
        moveStack(n);
        break;
    case IrOp::stackCheck: {
        const std::uint16_t enough = newLabel();
        emit(Op::ldPairMem, code(Pair::hl), 0,
             runtimeAddresses[static_cast<std::size_t>(RuntimeEntry::stackLimit)]);
        emit(Op::addHl, code(Pair::sp));
        jump(Condition::c, enough);
        libraryCall(RuntimeEntry::stackError);
        label(enough);
        break;
    }
    case IrOp::frameEnter: {
        const unsigned home = homeOf(ir.dst.id);
        emit(Op::ldPairMem, code(Pair::hl), 0, home);
        emit(Op::push, code(Pair::hl));
        moveStack(0x10000U - n);
        emit(Op::ldMemPair, code(Pair::hl), 0, home);
        define(ir.dst, Pair::hl);
        inHome_[ir.dst.id] = 1;
        break;
    }
    case IrOp::frameLeave:
        moveStack(n);
        emit(Op::pop, code(Pair::hl));
        emitTo(Op::ldMemPair, code(Pair::hl), ir.a);
        break;
    default:
        break;
    }
}

/// Calls of code that is not the compiler's: everything goes over the stack, and every register may change.
void Selector::externalOperation(Ir& ir) {
    constexpr Mask allRegisters = 0xBF;
    constexpr Mask anyPair = 0x3F;
    switch (ir.op) {
    case IrOp::push:
        emit(Op::push, code(fetchPair(ir.a, anyPair)));
        return;
    case IrOp::pushResult:
        // The call has just been made, so that no register holds anything else.
        for (const Pair p : {Pair::bc, Pair::de, Pair::hl}) {
            emit(Op::push, code(p));
        }
        emit(Op::ldPairN, code(Pair::hl), 0, 0);
        emit(Op::addHl, code(Pair::sp));
        define(ir.dst, Pair::hl);
        return;
    case IrOp::pushString:
        spillAll(allRegisters);
        loadPair(Pair::hl, ir.a);
        emit(Op::ldRegReg, code(Reg::c), code(Reg::m));
        emit(Op::ldRegN, code(Reg::b), 0, 0);
        emit(Op::inc16, code(Pair::bc)); // the length byte too
        emit(Op::exDeHl);
        emit(Op::ldPairN, code(Pair::hl), 0, 0);
        alu(z80::Alu::bitOr, Reg::a);
        emit(Op::sbcHl, code(Pair::bc));
        emit(Op::addHl, code(Pair::sp));
        emit(Op::ldSpHl);
        emit(Op::exDeHl);
        emit(Op::ldir);
        consume(ir.a);
        registers_ = {};
        return;
    default:
        break;
    }
    for (const ValueId id : liveness_.crossing) {
        if (function_.values[id].callsMayUse && inRegister(id)) {
            storeHome(id);
        }
    }
    spillAll(allRegisters);
    emit(Op::call).n = ir.n;
    registers_ = {};
    if (ir.dst.isValue()) {
        define(ir.dst, Pair::hl);
    }
}

} // namespace tp3
