#include "selector.h"

#include <algorithm>

namespace tp3 {

using z80::bit;
using z80::bits;
using z80::high;
using z80::low;

namespace {

constexpr z80::Mask anyPair = 0x3F;
constexpr z80::Mask allRegisters = 0xBF;

z80::Mask targetOf(const Argument& argument) {
    return argument.width == Width::word ? bits(argument.pair) : bit(argument.reg);
}

/// Registers that a library entry may change, where that is less than all.
z80::Mask clobberedBy(const Ir& ir) {
    const bool library = ir.op == IrOp::runtime;
    if (!library) {
        return allRegisters;
    }
    switch (static_cast<RuntimeEntry>(ir.index)) {
    case RuntimeEntry::upCase:
        return bit(z80::Reg::a);
    case RuntimeEntry::ioCheck:
    case RuntimeEntry::userBreakPoll:
        return 0;
    default:
        return allRegisters;
    }
}

} // namespace

/// Brings the arguments into their registers, none overwriting another that is still to be moved.
void Selector::placeArguments(Ir& ir) {
    std::vector<Argument*> pending;
    for (unsigned i = 0; i < ir.argumentCount; ++i) {
        pending.push_back(&function_.arguments[ir.firstArgument + i]);
    }
    const auto sourceMask = [&](const Argument& argument) {
        Pair p = Pair::hl;
        Reg r = Reg::a;
        if (!argument.operand.isValue()) {
            return Mask{0};
        }
        if (argument.width == Width::word) {
            return findPair(argument.operand.id, p) ? bits(p) : Mask{0};
        }
        return findReg(argument.operand.id, r) ? bit(r) : Mask{0};
    };
    const auto needsA = [&](const Argument& argument) {
        return argument.width == Width::byte && argument.reg != Reg::a && argument.operand.isValue() &&
               sourceMask(argument) == 0;
    };
    const auto isBlocked = [&](const Argument& argument) {
        for (const Argument* other : pending) {
            if (other == &argument) {
                continue;
            }
            if ((sourceMask(*other) & targetOf(argument)) != 0 ||
                (argument.reg == Reg::a && argument.width == Width::byte && needsA(*other))) {
                return true;
            }
        }
        return false;
    };
    const auto place = [&](const Argument& argument) {
        Pair p = Pair::hl;
        Reg r = Reg::a;
        if (argument.width == Width::word) {
            const bool there = argument.operand.isValue() && findPair(argument.operand.id, p) &&
                               pairHolds(argument.pair, argument.operand.id);
            if (!there) {
                forget(argument.pair);
                loadPair(argument.pair, argument.operand);
            }
            lock(argument.pair);
        } else {
            const bool there =
                argument.operand.isValue() && findReg(argument.operand.id, r) &&
                registers_.content[code(argument.reg)] == Content{argument.operand.id, Part::byte};
            if (!there) {
                forget(argument.reg);
                loadReg(argument.reg, argument.operand);
            }
            lock(argument.reg);
        }
        consume(argument.operand);
    };
    while (!pending.empty()) {
        bool progress = false;
        for (std::size_t i = 0; i < pending.size(); ++i) {
            if (!isBlocked(*pending[i])) {
                place(*pending[i]);
                pending.erase(pending.begin() + static_cast<std::ptrdiff_t>(i));
                progress = true;
                break;
            }
        }
        if (progress) {
            continue;
        }
        // A ring: what stands in the way of the first argument goes to memory and comes from there.
        for (Argument* other : pending) {
            if (other != pending.front() && (sourceMask(*other) & targetOf(*pending.front())) != 0) {
                storeHome(other->operand.id);
                forgetValue(other->operand.id);
            }
        }
        if (isBlocked(*pending.front())) {
            // Only a byte that wants A on its way can still be in front: let it go first.
            std::swap(pending.front(), pending.back());
        }
    }
}

/// Pushes everything that must survive a call that may run this routine again; statically stored values do
/// not.
std::vector<Selector::Saved> Selector::pushLive() {
    std::vector<Saved> saved;
    std::vector<bool> done(function_.values.size());
    for (std::size_t index = 1; index < function_.values.size(); ++index) {
        const ValueId id = static_cast<ValueId>(index);
        const ValueInfo& info = function_.values[id];
        if (!live_[id] || done[id] || info.callsMayUse || info.keptByCalls || info.liveAtExit) {
            continue;
        }
        Pair p = Pair::hl;
        Reg r = Reg::a;
        if (isWord(id) ? !findPair(id, p) : !findReg(id, r)) {
            p = takePair(anyPair);
            emit(Op::ldPairMem, code(p), 0, homeOf(id));
            emit(Op::push, code(p));
            saved.push_back(
                {p, {id, isWord(id) ? Part::low : Part::byte}, {id, isWord(id) ? Part::high : Part::none}});
            if (!isWord(id)) {
                saved.back().high = {};
            }
            done[id] = true;
            continue;
        }
        if (isWord(id)) {
            emit(Op::push, code(p));
            saved.push_back({p, {id, Part::low}, {id, Part::high}});
        } else if (r == Reg::a) {
            emit(Op::push, 3);
            saved.push_back({Pair::sp, {}, {id, Part::byte}});
        } else {
            p = static_cast<Pair>(code(r) / 2);
            emit(Op::push, code(p));
            Saved pair{p, {}, {}};
            for (const Reg half : {low(p), high(p)}) {
                const Content& content = registers_.content[code(half)];
                const bool wanted =
                    content.part == Part::byte && live_[content.value] && !done[content.value];
                if (wanted && !function_.values[content.value].callsMayUse) {
                    (half == low(p) ? pair.low : pair.high) = content;
                    done[content.value] = true;
                }
            }
            saved.push_back(pair);
        }
        done[id] = true;
    }
    savedMost_ = std::max(savedMost_, 2 * saved.size());
    return saved;
}

void Selector::popLive(std::vector<Saved>& saved, Mask result) {
    locked_ = result;
    while (!saved.empty()) {
        const Saved entry = saved.back();
        saved.pop_back();
        Pair target = Pair::sp;
        unsigned freePairs = 0;
        for (const Pair p : {Pair::bc, Pair::de, Pair::hl}) {
            if (isFree(p)) {
                ++freePairs;
                if (target == Pair::sp || p == entry.pair) {
                    target = p;
                }
            }
        }
        emit(Op::pop, code(target));
        forget(target);
        registers_.content[code(low(target))] = entry.low;
        registers_.content[code(high(target))] = entry.high;
        for (const Content& content : {entry.low, entry.high}) {
            if (content.part != Part::none) {
                inHome_[content.value] = 0;
            }
        }
        if (freePairs == 1 && !saved.empty()) {
            lock(target);
            for (const Content& content : {entry.low, entry.high}) {
                if (content.part != Part::none) {
                    storeHome(content.value);
                }
            }
            unlock(bits(target));
            forget(target);
        }
    }
    locked_ = result;
}

/// Calls a routine of the program or of the library, or moves a block of memory: all registers may change.
void Selector::call(Ir& ir) {
    const Mask clobbered = clobberedBy(ir);
    const bool foreign = runsForeignCode(function_, ir);
    if (foreign) {
        for (const ValueId id : liveness_.crossing) {
            if (function_.values[id].callsMayUse && inRegister(id)) {
                storeHome(id);
            }
        }
    }
    std::vector<Saved> saved;
    if (ir.reenters) {
        saved = pushLive();
    } else {
        for (unsigned i = 0; i < 8; ++i) {
            const Content content = registers_.content[i];
            if ((clobbered & bit(static_cast<Reg>(i))) != 0 && content.part != Part::none &&
                live_[content.value]) {
                storeHome(content.value);
            }
        }
    }
    placeArguments(ir);
    switch (ir.op) {
    case IrOp::call: {
        z80::Instruction& instruction = emit(Op::call);
        instruction.target = z80::Target::routine;
        instruction.index = ir.index;
        break;
    }
    case IrOp::blockMove:
        emit(Op::ldPairN, code(Pair::bc), 0, ir.n);
        emit(Op::ldir);
        break;
    case IrOp::runtimeText:
        libraryCall(static_cast<RuntimeEntry>(ir.index));
        result_.code.back().y = 1;
        for (unsigned offset = 0; offset < ir.n; offset += 255) {
            emit(Op::bytes, ir.n - offset < 255U ? ir.n - offset : 255U, 0, ir.firstArgument + offset);
        }
        break;
    default:
        libraryCall(static_cast<RuntimeEntry>(ir.index));
        break;
    }
    locked_ = 0;
    for (unsigned i = 0; i < 8; ++i) {
        if ((clobbered & bit(static_cast<Reg>(i))) != 0) {
            registers_.content[i] = {};
        }
    }
    const bool word = ir.width == Width::word;
    const Mask result = ir.dst.isValue() && ir.op != IrOp::runtimeCompare
                            ? (word ? bits(ir.resultPair) : bit(ir.resultReg))
                            : Mask{0};
    popLive(saved, result);
    if (ir.op == IrOp::runtimeCompare) {
        const bool carry = ir.relation == Relation::less || ir.relation == Relation::greaterEqual;
        if (carry) {
            if (ir.relation == Relation::greaterEqual) {
                emit(Op::ccf);
            }
            loadN(Reg::a, 0);
            emit(Op::rla);
        } else {
            const std::uint16_t done = newLabel();
            loadN(Reg::a, 1);
            jump(ir.relation == Relation::equal ? Condition::z : Condition::nz, done);
            loadN(Reg::a, 0);
            label(done);
        }
        define(ir.dst, Reg::a);
    } else if (result != 0) {
        if (word) {
            define(ir.dst, ir.resultPair);
        } else {
            define(ir.dst, ir.resultReg);
        }
    }
}

void Selector::parameters(Ir& ir) {
    for (unsigned i = 0; i < ir.argumentCount; ++i) {
        const Argument& argument = function_.arguments[ir.firstArgument + i];
        const ValueId id = argument.operand.id;
        live_[id] = argument.operand.dies ? 0 : 1;
        inHome_[id] = 0;
        if (live_[id] && argument.width == Width::word) {
            hold(argument.pair, id);
        } else if (live_[id]) {
            hold(argument.reg, id);
        }
    }
}

void Selector::inlineCode(Ir& ir) {
    for (const ValueId id : liveness_.crossing) {
        if (function_.values[id].callsMayUse && inRegister(id)) {
            storeHome(id);
        }
    }
    spillAll(allRegisters);
    for (unsigned offset = 0; offset < ir.n; offset += 255) {
        emit(Op::bytes, ir.n - offset < 255U ? ir.n - offset : 255U, 0, ir.firstArgument + offset);
    }
}

void Selector::leave(Ir& ir) {
    for (const ValueId id : liveness_.crossing) {
        if (function_.values[id].liveAtExit && inRegister(id)) {
            storeHome(id);
        }
    }
    if (function_.isMain) {
        z80::Instruction& instruction = emit(Op::jump, static_cast<unsigned>(Condition::always));
        instruction.n = runtimeAddresses[static_cast<std::size_t>(RuntimeEntry::halt)];
        return;
    }
    if (ir.a.kind != Operand::Kind::none) {
        if (ir.width == Width::word) {
            fetchPair(ir.a, bits(Pair::hl));
        } else {
            fetchReg(ir.a, bit(Reg::a));
        }
    }
    emit(Op::ret, static_cast<unsigned>(Condition::always));
}

void Selector::portAccess(Ir& ir) {
    if (ir.op == IrOp::portIn) {
        if (ir.a.isConstant()) {
            makeFree(Reg::a);
            emit(Op::inN, 0, 0, static_cast<unsigned>(ir.a.n) & 0xFFU);
        } else {
            fetchReg(ir.a, bit(Reg::c));
            makeFree(Reg::a);
            emit(Op::inC, code(Reg::a));
        }
        define(ir.dst, Reg::a);
        return;
    }
    if (ir.a.isConstant()) {
        fetchReg(ir.b, bit(Reg::a));
        emit(Op::outN, 0, 0, static_cast<unsigned>(ir.a.n) & 0xFFU);
        return;
    }
    fetchReg(ir.a, bit(Reg::c));
    fetchReg(ir.b, bit(Reg::a));
    emit(Op::outC, code(Reg::a));
}

} // namespace tp3
