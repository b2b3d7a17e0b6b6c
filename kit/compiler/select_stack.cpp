#include "selector.h"

namespace tp3 {

using z80::bits;
using z80::low;

/// Room on the stack and frames; all of them work through HL.
void Selector::stackOperation(Ir& ir) {
    constexpr unsigned largestString = 256;
    const unsigned n = ir.n;
    const auto negative = [&](unsigned by) { emit(Op::ldPairN, code(Pair::hl), 0, 0x10000U - by); };
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
        if (n == largestString) {
            libraryCall(RuntimeEntry::stackReserveString);
        } else {
            negative(n);
            libraryCall(RuntimeEntry::stackReserve);
        }
        define(ir.dst, Pair::hl);
        break;
    case IrOp::stackProbe:
        negative(n);
        libraryCall(RuntimeEntry::stackProbe);
        break;
    case IrOp::stackFree:
        moveStack(n);
        break;
    case IrOp::stackCheck: {
        stackCheckAt_ = result_.code.size();
        if (n != 0) {
            negative(n);
            libraryCall(RuntimeEntry::stackProbe);
            break;
        }
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

/// How much a routine saves around its calls is known when all of them are selected: the check at its start
/// then asks for that too. A few words fit into the margin that the library keeps.
void Selector::finishStackCheck() {
    constexpr std::size_t fewBytes = 16;
    if (!stackCheckAt_ || savedMost_ <= fewBytes) {
        return;
    }
    const auto at = result_.code.begin() + static_cast<std::ptrdiff_t>(*stackCheckAt_);
    const bool plain = at->op == Op::ldPairMem;
    const std::size_t wanted = savedMost_ + (plain ? 0U : 0x10000U - at->n);
    at->op = Op::ldPairN;
    at->n = static_cast<std::uint16_t>(0x10000U - wanted);
    if (plain) { // the look in line becomes a call: ADD HL,SP; JR C; CALL; label
        at[1].op = Op::call;
        at[1].x = 0;
        at[1].n = runtimeAddresses[static_cast<std::size_t>(RuntimeEntry::stackProbe)];
        result_.code.erase(at + 2, at + 5);
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
