#include "selector.h"

namespace tp3 {

using z80::bit;
using z80::bits;
using z80::high;
using z80::low;

Selector::Selector(Function& function, const Liveness& liveness, Storage& storage)
    : function_(function), liveness_(liveness), storage_(storage), inHome_(function.values.size()),
      live_(function.values.size()), needed_(function.values.size()), entryState_(function.blocks.size()),
      layoutPosition_(function.blocks.size()) {
    for (std::size_t i = 0; i < function.layout.size(); ++i) {
        layoutPosition_[function.layout[i]] = i;
    }
    literalBase_ = static_cast<std::uint16_t>(function.blocks.size());
    nextLabel_ = static_cast<std::uint16_t>(literalBase_ + function.literals.size());
}

Selector::Result Selector::run() {
    for (layoutIndex_ = 0; layoutIndex_ < function_.layout.size(); ++layoutIndex_) {
        block(layoutIndex_);
    }
    finishStackCheck();
    for (std::size_t i = 0; i < function_.literals.size(); ++i) {
        const Function::Literal& literal = function_.literals[i];
        label(static_cast<std::uint16_t>(literalBase_ + i));
        for (unsigned offset = 0; offset < literal.count; offset += 255) {
            emit(Op::bytes, literal.count - offset < 255U ? literal.count - offset : 255U, 0,
                 literal.first + offset);
        }
    }
    result_.pool = static_cast<std::vector<std::uint8_t>&&>(function_.bytes);
    result_.poolFixups = static_cast<std::vector<z80::Fixup>&&>(function_.byteFixups);
    return static_cast<Result&&>(result_);
}

BlockId Selector::nextBlock() const {
    return layoutIndex_ + 1 < function_.layout.size() ? function_.layout[layoutIndex_ + 1] : noBlock;
}

void Selector::block(std::size_t layoutIndex) {
    current_ = function_.layout[layoutIndex];
    startState(current_);
    label(current_);
    const Block& b = function_.blocks[current_];
    if (b.checksStack) {
        Ir check;
        check.op = IrOp::stackCheck;
        check.position = function_.code[b.first].position;
        instruction(check);
    }
    for (std::uint32_t i = b.first; i < b.last; ++i) {
        if (!function_.code[i].dead) {
            instruction(function_.code[i]);
        }
    }
}

/// Homes hold everything that is live, but for the values that the block's loop keeps in registers.
void Selector::startState(BlockId id) {
    const State& state = entryState_[id];
    const bool continued = !state.inHome.empty();
    registers_ = continued ? state.registers : Registers{};
    pinned_ = 0;
    locked_ = 0;
    live_.assign(live_.size(), 0);
    inHome_.assign(inHome_.size(), 0);
    for (std::size_t i = 0; i < liveness_.crossing.size(); ++i) {
        live_[liveness_.crossing[i]] = liveness_.livesInto(id, i) ? 1 : 0;
        inHome_[liveness_.crossing[i]] = !continued || hasBit(state.inHome.data(), i) ? 1 : 0;
    }
    for (unsigned i = 0; i < 8; ++i) {
        if (registers_.content[i].part != Part::none && !live_[registers_.content[i].value]) {
            registers_.content[i] = {};
        }
    }
    for (const Loop::Pin& pin : function_.loops[function_.blocks[id].loop].pins) {
        forgetValue(pin.value);
        for (unsigned i = 0; i < 8; ++i) {
            if ((pin.registers & bit(static_cast<Reg>(i))) == 0) {
                continue;
            }
            if (!isWord(pin.value)) {
                hold(static_cast<Reg>(i), pin.value);
            } else if (i % 2 == 0) {
                hold(static_cast<Pair>(i / 2), pin.value);
            }
        }
        pinned_ = static_cast<Mask>(pinned_ | pin.registers);
        inHome_[pin.value] = pin.changed ? 0 : 1;
    }
}

void Selector::instruction(Ir& ir) {
    position_ = ir.position;
    resultUsed_ = ir.resultUsed;
    forEachUse(function_, ir, [&](Operand& operand) {
        if (operand.usesValue()) {
            ++needed_[operand.id];
            if (operand.dies) {
                live_[operand.id] = 0;
            }
        }
    });
    switch (ir.op) {
    case IrOp::copy:
        copy(ir);
        break;
    case IrOp::store:
        store(ir);
        break;
    case IrOp::widen:
        widen(ir);
        break;
    case IrOp::narrow:
    case IrOp::highByte:
        narrow(ir, ir.op == IrOp::highByte);
        break;
    case IrOp::joinBytes:
        joinBytes(ir);
        break;
    case IrOp::compare:
        compare(ir);
        break;
    case IrOp::check:
        check(ir);
        break;
    case IrOp::jump:
        settleFor(ir.target);
        jumpTo(ir.target, nextBlock());
        break;
    case IrOp::branch:
    case IrOp::runtimeBranch:
        branch(ir);
        break;
    case IrOp::call:
    case IrOp::runtime:
    case IrOp::runtimeText:
    case IrOp::runtimeCompare:
    case IrOp::blockMove:
        call(ir);
        break;
    case IrOp::parameters:
        parameters(ir);
        break;
    case IrOp::stackAllocate:
    case IrOp::stackFree:
    case IrOp::stackCheck:
    case IrOp::stackProbe:
    case IrOp::frameEnter:
    case IrOp::frameLeave:
        stackOperation(ir);
        break;
    case IrOp::push:
    case IrOp::pushString:
    case IrOp::pushResult:
    case IrOp::externalCall:
        externalOperation(ir);
        break;
    case IrOp::portIn:
    case IrOp::portOut:
        portAccess(ir);
        break;
    case IrOp::inlineCode:
        inlineCode(ir);
        break;
    case IrOp::leave:
        leave(ir);
        break;
    default:
        if (ir.width == Width::word) {
            wordOperation(ir);
        } else {
            byteOperation(ir);
        }
        break;
    }
    returnBorrowed();
    locked_ = 0;
    forEachUse(function_, ir, [&](Operand& operand) {
        if (operand.usesValue()) {
            needed_[operand.id] = 0;
        }
    });
}

/// Jumps to the target lead to a block whose loop keeps the same values in the same registers.
bool Selector::samePins(BlockId target) const {
    const std::uint16_t here = function_.blocks[current_].loop;
    const std::uint16_t there = function_.blocks[target].loop;
    return here == there || (function_.loops[here].pins.empty() && function_.loops[there].pins.empty());
}

/// The block goes on with the registers as this one leaves them: no other leads to it, and its code comes
/// later.
bool Selector::takesState(BlockId target) const {
    return function_.blocks[target].predecessors == 1 && layoutPosition_[target] > layoutIndex_ &&
           samePins(target);
}

/// Stores every value that the target wants and that only registers hold, but for those that stay in
/// registers.
void Selector::syncFor(BlockId target) {
    if (takesState(target)) {
        return;
    }
    for (std::size_t i = 0; i < liveness_.crossing.size(); ++i) {
        const ValueId id = liveness_.crossing[i];
        if (liveness_.livesInto(target, i) && pinOf(id) == 0 && inRegister(id)) {
            storeHome(id);
        }
    }
}

/// Brings everything to where the target block expects it.
void Selector::settleFor(BlockId target) {
    if (samePins(target)) {
        syncFor(target);
        keepStateFor(target);
        return;
    }
    const auto& pins = function_.loops[function_.blocks[target].loop].pins;
    const auto isThere = [&](const Loop::Pin& pin) {
        Pair p = Pair::hl;
        Reg r = Reg::a;
        return isWord(pin.value) ? findPair(pin.value, p) && bits(p) == pin.registers
                                 : findReg(pin.value, r) && bit(r) == pin.registers;
    };
    pinned_ = 0;
    for (std::size_t i = 0; i < liveness_.crossing.size(); ++i) {
        const ValueId id = liveness_.crossing[i];
        bool stays = false;
        for (const Loop::Pin& pin : pins) {
            stays = stays || (pin.value == id && pin.changed && isThere(pin));
        }
        if (liveness_.livesInto(target, i) && !stays && inRegister(id)) {
            storeHome(id);
        }
    }
    for (const Loop::Pin& pin : pins) {
        std::size_t index = 0;
        while (liveness_.crossing[index] != pin.value) {
            ++index;
        }
        if (!liveness_.livesInto(target, index) || isThere(pin)) {
            continue;
        }
        if (isWord(pin.value)) {
            const Pair p = pin.registers == bits(Pair::bc) ? Pair::bc : Pair::de;
            emit(Op::ldPairMem, code(p), 0, homeOf(pin.value));
            hold(p, pin.value);
        } else {
            emit(Op::ldAMem, 0, 0, homeOf(pin.value));
            forget(Reg::a);
            for (unsigned i = 0; i < 8; ++i) {
                if (pin.registers == bit(static_cast<Reg>(i))) {
                    move(static_cast<Reg>(i), Reg::a);
                    hold(static_cast<Reg>(i), pin.value);
                }
            }
        }
    }
}

void Selector::keepStateFor(BlockId target) {
    if (takesState(target)) {
        State& state = entryState_[target];
        state.registers = registers_;
        state.inHome.assign(liveness_.words, 0);
        for (std::size_t i = 0; i < liveness_.crossing.size(); ++i) {
            setBit(state.inHome.data(), i, inHome_[liveness_.crossing[i]] != 0);
        }
    }
}

void Selector::jumpTo(BlockId target, BlockId next) {
    if (target != next) {
        jump(Condition::always, target);
    }
}

void Selector::emitJumps(Condition condition, BlockId target, BlockId other) {
    const BlockId next = nextBlock();
    if (target == next) {
        jump(z80::inverse(condition), other);
        return;
    }
    jump(condition, target);
    jumpTo(other, next);
}

void Selector::branch(Ir& ir) {
    syncFor(ir.target);
    syncFor(ir.other);
    stayInLoopEarly(ir);
    Flags flags;
    if (ir.op == IrOp::runtimeBranch) {
        call(ir);
        flags.condition = ir.relation == Relation::equal      ? Condition::z
                          : ir.relation == Relation::notEqual ? Condition::nz
                          : ir.relation == Relation::less     ? Condition::c
                                                              : Condition::nc;
    } else {
        flags = compareFlags(ir);
    }
    returnBorrowed();
    locked_ = 0;
    if (flags.always || flags.never) {
        const BlockId only = flags.always ? ir.target : ir.other;
        settleFor(only);
        jumpTo(only, nextBlock());
        return;
    }
    const bool targetSame = samePins(ir.target);
    const bool otherSame = samePins(ir.other);
    if (targetSame && otherSame) {
        keepStateFor(ir.target);
        keepStateFor(ir.other);
        emitJumps(flags.condition, ir.target, ir.other);
        return;
    }
    // The way that leaves or enters a loop gets the loads and stores that this takes.
    const Registers registers = registers_;
    const std::vector<std::uint8_t> inHome = inHome_;
    if (targetSame || otherSame) {
        const BlockId direct = targetSame ? ir.target : ir.other;
        const BlockId settled = targetSame ? ir.other : ir.target;
        jump(targetSame ? flags.condition : z80::inverse(flags.condition), direct);
        keepStateFor(direct);
        settleFor(settled);
        jumpTo(settled, nextBlock());
        return;
    }
    const std::uint16_t way = newLabel();
    const Mask pinned = pinned_;
    jump(flags.condition, way);
    settleFor(ir.other);
    jump(Condition::always, ir.other);
    label(way);
    registers_ = registers;
    inHome_ = inHome;
    pinned_ = pinned;
    settleFor(ir.target);
    jumpTo(ir.target, nextBlock());
}

} // namespace tp3
