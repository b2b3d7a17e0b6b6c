#include "analysis.h"

#include <runtime_entries.h>

#include <algorithm>

namespace tp3 {

namespace {

bool isPure(IrOp op) {
    switch (op) {
    case IrOp::copy:
    case IrOp::add:
    case IrOp::subtract:
    case IrOp::bitAnd:
    case IrOp::bitOr:
    case IrOp::bitXor:
    case IrOp::negate:
    case IrOp::bitNot:
    case IrOp::shiftLeft:
    case IrOp::shiftRight:
    case IrOp::multiplyConstant:
    case IrOp::absolute:
    case IrOp::dividePower:
    case IrOp::widen:
    case IrOp::narrow:
    case IrOp::highByte:
    case IrOp::joinBytes:
    case IrOp::compare:
        return true;
    default:
        return false;
    }
}

bool isBranch(IrOp op) {
    return op == IrOp::branch || op == IrOp::runtimeBranch;
}

/// Backward walk over one block's instructions with a set of live values.
class BlockWalk {
  public:
    BlockWalk(Function& function, const std::vector<std::uint16_t>& indexOf,
              const std::vector<ValueId>& crossing)
        : function_(function), indexOf_(indexOf), crossing_(crossing), temporaries_(function.values.size()) {}

    /// Steps `live` from behind the block to before it; with `mark`, writes what it finds into the
    /// instructions.
    void run(const Block& block, std::uint32_t* live, bool mark) {
        for (std::uint32_t i = block.last; i-- > block.first;) {
            step(function_.code[i], live, mark);
        }
    }

  private:
    bool isLive(const std::uint32_t* live, ValueId id) const {
        return function_.values[id].crossesBlocks ? hasBit(live, indexOf_[id]) : temporaries_[id] != 0;
    }
    void setLive(std::uint32_t* live, ValueId id, bool value) {
        if (function_.values[id].crossesBlocks) {
            setBit(live, indexOf_[id], value);
        } else {
            temporaries_[id] = value ? 1 : 0;
        }
    }

    void step(Ir& ir, std::uint32_t* live, bool mark) {
        if (ir.dead) {
            return;
        }
        if (ir.dst.isValue()) {
            const bool used = isLive(live, ir.dst.id);
            if (mark) {
                ir.resultUsed = used;
            }
            if (!used && isPure(ir.op)) {
                ir.dead = ir.dead || mark;
                return;
            }
            setLive(live, ir.dst.id, false);
        }
        if (ir.op == IrOp::parameters) {
            for (unsigned i = 0; i < ir.argumentCount; ++i) {
                Operand& operand = function_.arguments[ir.firstArgument + i].operand;
                if (mark) {
                    operand.dies = !isLive(live, operand.id);
                }
                setLive(live, operand.id, false);
            }
            return;
        }
        if (runsForeignCode(function_, ir) || ir.op == IrOp::leave) {
            for (const ValueId id : crossing_) {
                const ValueInfo& info = function_.values[id];
                if (ir.op == IrOp::leave ? info.liveAtExit : info.callsMayUse) {
                    setLive(live, id, true);
                }
            }
        }
        forEachUse(function_, ir, [&](Operand& operand) {
            if (!operand.usesValue()) {
                return;
            }
            if (mark) {
                operand.dies = !isLive(live, operand.id);
            }
            setLive(live, operand.id, true);
        });
    }

    Function& function_;
    const std::vector<std::uint16_t>& indexOf_;
    const std::vector<ValueId>& crossing_;
    std::vector<std::uint8_t> temporaries_; // 1: live
};

void countUses(Function& function) {
    for (const BlockId id : function.layout) {
        const Block& block = function.blocks[id];
        std::uint32_t weight = 1;
        for (unsigned depth = block.loop == 0 ? 0 : function.loops[block.loop].depth;
             depth > 0 && weight < 4096; --depth) {
            weight *= 8;
        }
        for (std::uint32_t i = block.first; i < block.last; ++i) {
            Ir& ir = function.code[i];
            if (ir.dead) {
                continue;
            }
            if (ir.dst.isValue()) {
                function.values[ir.dst.id].weight += weight;
            }
            forEachUse(function, ir, [&](Operand& operand) {
                if (operand.usesValue()) {
                    function.values[operand.id].weight += weight;
                }
            });
        }
    }
}

} // namespace

bool runsForeignCode(const Function& function, const Ir& ir) {
    switch (ir.op) {
    case IrOp::call:
    case IrOp::inlineCode:
    case IrOp::externalCall:
        return true;
    case IrOp::runtime:
        return function.libraryCallsBack || ir.index == static_cast<std::uint16_t>(RuntimeEntry::chain) ||
               ir.index == static_cast<std::uint16_t>(RuntimeEntry::execute);
    case IrOp::runtimeText:
    case IrOp::runtimeBranch:
    case IrOp::runtimeCompare:
        return function.libraryCallsBack;
    default:
        return false;
    }
}

void coalesceCopies(Function& function) {
    std::vector<std::uint16_t> uses(function.values.size());
    for (Ir& ir : function.code) {
        forEachUse(function, ir, [&](Operand& operand) {
            if (operand.usesValue()) {
                ++uses[operand.id];
            }
        });
    }
    for (std::size_t i = 0; i + 1 < function.code.size(); ++i) {
        Ir& ir = function.code[i];
        Ir& next = function.code[i + 1];
        if (ir.dst.isValue() && !function.values[ir.dst.id].crossesBlocks && next.op == IrOp::copy &&
            next.a.isValue() && next.a.id == ir.dst.id && uses[ir.dst.id] == 1 && next.dst.isValue() &&
            function.values[next.dst.id].width == function.values[ir.dst.id].width) {
            ir.dst = next.dst;
            next.dead = true;
        }
    }
}

void tidyBlocks(Function& function) {
    const auto terminator = [&](BlockId id) -> Ir& { return function.code[function.blocks[id].last - 1]; };
    const auto threaded = [&](BlockId target) {
        for (unsigned steps = 0; steps < 8; ++steps) {
            const Block& block = function.blocks[target];
            if (block.last - block.first != 1 || terminator(target).op != IrOp::jump) {
                break;
            }
            target = terminator(target).target;
        }
        return target;
    };
    std::vector<BlockId> work{function.layout.front()};
    std::vector<bool> reached(function.blocks.size());
    reached[function.layout.front()] = true;
    while (!work.empty()) {
        Block& block = function.blocks[work.back()];
        Ir& last = terminator(work.back());
        work.pop_back();
        if (last.op == IrOp::jump || isBranch(last.op)) {
            last.target = threaded(last.target);
            const Block& target = function.blocks[last.target];
            if (last.op == IrOp::jump && target.last - target.first == 1 &&
                terminator(last.target).op == IrOp::leave) {
                last = terminator(last.target); // a return is no longer than a jump to one
            } else {
                block.successors[0] = last.target;
            }
        }
        if (isBranch(last.op)) {
            last.other = threaded(last.other);
            block.successors[1] = last.other;
        }
        for (const BlockId successor : block.successors) {
            if (successor == noBlock) {
                continue;
            }
            ++function.blocks[successor].predecessors;
            if (!reached[successor]) {
                reached[successor] = true;
                work.push_back(successor);
            }
        }
    }
    std::erase_if(function.layout, [&](BlockId id) { return !reached[id]; });
}

void sinkStackCheck(Function& function) {
    const Block& entry = function.blocks[function.layout.front()];
    Ir* check = nullptr;
    for (std::uint32_t i = entry.first; i < entry.last; ++i) {
        Ir& ir = function.code[i];
        if (ir.op == IrOp::frameEnter && !ir.dead) {
            return; // a frame takes room at once
        }
        if (ir.op == IrOp::stackCheck) {
            check = &ir;
        }
    }
    if (check == nullptr || function.checksStackAtOnce) {
        return;
    }
    std::vector<bool> callsOn(function.blocks.size()); // it or a block behind it makes such a call
    for (bool changed = true; changed;) {
        changed = false;
        for (std::size_t i = function.layout.size(); i-- > 0;) {
            const BlockId id = function.layout[i];
            const Block& block = function.blocks[id];
            bool calls = false;
            for (std::uint32_t at = block.first; at < block.last; ++at) {
                calls = calls || (function.code[at].op == IrOp::call && function.code[at].reenters);
            }
            for (const BlockId successor : block.successors) {
                calls = calls || (successor != noBlock && callsOn[successor]);
            }
            changed = changed || (calls && !callsOn[id]);
            callsOn[id] = callsOn[id] || calls;
        }
    }
    BlockId place = function.layout.front();
    while (true) {
        const Block& block = function.blocks[place];
        for (std::uint32_t at = block.first; at < block.last; ++at) {
            if (function.code[at].op == IrOp::call && function.code[at].reenters) {
                function.blocks[place].checksStack = place != function.layout.front();
                check->dead = place != function.layout.front();
                return;
            }
        }
        BlockId next = noBlock;
        for (const BlockId successor : block.successors) {
            if (successor == noBlock || !callsOn[successor]) {
                continue;
            }
            if (next != noBlock || function.blocks[successor].predecessors != 1) {
                next = place; // two ways, or one that others come upon
                break;
            }
            next = successor;
        }
        if (next == place || next == noBlock) {
            function.blocks[place].checksStack = place != function.layout.front();
            check->dead = place != function.layout.front() || next == noBlock;
            return;
        }
        place = next;
    }
}

Liveness analyseLiveness(Function& function) {
    Liveness liveness;
    std::vector<std::uint16_t> indexOf(function.values.size());
    for (std::size_t id = 1; id < function.values.size(); ++id) {
        if (function.values[id].crossesBlocks) {
            indexOf[id] = static_cast<std::uint16_t>(liveness.crossing.size());
            liveness.crossing.push_back(static_cast<ValueId>(id));
        }
    }
    const std::size_t words = liveness.crossing.size() / 32 + 1;
    liveness.words = words;
    liveness.in.resize(function.blocks.size() * words);
    std::vector<std::uint32_t> out(liveness.in.size());
    std::vector<std::uint32_t> live(words);
    std::vector<std::uint8_t> seen(function.blocks.size()); // 1: walked with what is now in `out`
    BlockWalk walk(function, indexOf, liveness.crossing);
    bool changed = true;
    while (changed) {
        changed = false;
        for (std::size_t i = function.layout.size(); i-- > 0;) {
            const BlockId id = function.layout[i];
            std::uint32_t* const before = &liveness.in[id * words];
            std::uint32_t* const behind = &out[id * words];
            for (const BlockId successor : function.blocks[id].successors) {
                for (std::size_t w = 0; successor != noBlock && w < words; ++w) {
                    const std::uint32_t more = liveness.in[successor * words + w] & ~behind[w];
                    behind[w] |= more;
                    seen[id] = more == 0 ? seen[id] : 0;
                }
            }
            if (seen[id] != 0) {
                continue;
            }
            seen[id] = 1;
            std::copy_n(behind, words, live.data());
            walk.run(function.blocks[id], live.data(), false);
            if (!std::equal(live.begin(), live.end(), before)) {
                std::copy(live.begin(), live.end(), before);
                changed = true;
            }
        }
    }
    for (const BlockId id : function.layout) {
        std::copy_n(&out[id * words], words, live.data());
        walk.run(function.blocks[id], live.data(), true);
    }
    countUses(function);
    return liveness;
}

namespace {

/// The loop's work needs no pair besides HL when `first` and `second` have the other two: nothing but
/// additions and constants, no words behind computed addresses.
bool worksInOnePair(Function& function, std::size_t loop, ValueId first, ValueId second) {
    for (const BlockId id : function.layout) {
        const Block& block = function.blocks[id];
        for (std::uint32_t i = block.first; block.loop == loop && i < block.last; ++i) {
            Ir& ir = function.code[i];
            if (ir.dead) {
                continue;
            }
            const bool word = ir.width == Width::word;
            bool simple = ir.op == IrOp::jump || ir.op == IrOp::copy || ir.op == IrOp::store ||
                          ir.op == IrOp::add || (ir.op == IrOp::branch && ir.b.isConstant());
            simple =
                simple &&
                !(word && (ir.a.kind == Operand::Kind::indirect || ir.dst.kind == Operand::Kind::indirect));
            forEachUse(function, ir, [&](Operand& operand) {
                const bool known = !operand.usesValue() || operand.id == first || operand.id == second ||
                                   !function.values[operand.id].crossesBlocks;
                simple = simple && known && operand.kind != Operand::Kind::memory;
            });
            if (!simple) {
                return false;
            }
        }
    }
    return true;
}

bool hasOwnCall(const Function& function, std::size_t loop) {
    for (const BlockId id : function.layout) {
        const Block& block = function.blocks[id];
        for (std::uint32_t i = block.first; block.loop == loop && i < block.last; ++i) {
            switch (function.code[i].op) {
            case IrOp::call:
            case IrOp::runtime:
            case IrOp::runtimeText:
            case IrOp::runtimeBranch:
            case IrOp::runtimeCompare:
            case IrOp::inlineCode:
            case IrOp::blockMove:
            case IrOp::pushString:
            case IrOp::externalCall:
                return true;
            default:
                break;
            }
        }
    }
    return false;
}

} // namespace

void pinLoopValues(Function& function, const Liveness& liveness) {
    struct Candidate {
        ValueId id;
        std::uint32_t uses;
    };
    for (std::size_t loop = 1; loop < function.loops.size(); ++loop) {
        Loop& info = function.loops[loop];
        if (hasOwnCall(function, loop) || (info.hasCall && !info.hasInner)) {
            continue; // calls change every register
        }
        std::vector<std::uint32_t> uses(function.values.size());
        std::vector<bool> changed(function.values.size());
        for (const BlockId id : function.layout) {
            const Block& block = function.blocks[id];
            for (std::uint32_t i = block.first; block.loop == loop && i < block.last; ++i) {
                Ir& ir = function.code[i];
                if (ir.dead) {
                    continue;
                }
                if (ir.dst.isValue()) {
                    ++uses[ir.dst.id];
                    changed[ir.dst.id] = true;
                }
                forEachUse(function, ir, [&](Operand& operand) {
                    if (operand.usesValue()) {
                        ++uses[operand.id];
                    }
                });
            }
        }
        std::vector<Candidate> candidates;
        for (const ValueId id : liveness.crossing) {
            // At the border of an inner loop the value goes to memory and back.
            const std::uint32_t fewest = info.hasInner ? 4 : changed[id] ? 2 : 1;
            if (uses[id] >= fewest) {
                candidates.push_back({id, uses[id]});
            }
        }
        std::stable_sort(candidates.begin(), candidates.end(),
                         [](const Candidate& x, const Candidate& y) { return x.uses > y.uses; });
        // HL and A are left for the work; of DE only what can be spared is given away.
        z80::Mask free = static_cast<z80::Mask>(z80::bits(z80::Pair::bc) | z80::bits(z80::Pair::de));
        for (const Candidate& candidate : candidates) {
            const bool word = function.values[candidate.id].width == Width::word;
            z80::Mask taken = 0;
            if (word) {
                if ((free & z80::bits(z80::Pair::bc)) == z80::bits(z80::Pair::bc)) {
                    taken = z80::bits(z80::Pair::bc);
                } else if (free == z80::bits(z80::Pair::de) && info.pins.size() == 1 &&
                           worksInOnePair(function, loop, info.pins.front().value, candidate.id)) {
                    taken = z80::bits(z80::Pair::de);
                }
            } else {
                for (const z80::Reg r : {z80::Reg::b, z80::Reg::c, z80::Reg::d, z80::Reg::e}) {
                    if ((free & z80::bit(r)) != 0) {
                        taken = z80::bit(r);
                        break;
                    }
                }
                // One of the pairs must stay free as a second operand of word arithmetic.
                const bool breaksSecond = (taken & z80::bits(z80::Pair::de)) != 0;
                if (breaksSecond) {
                    taken = 0;
                }
            }
            if (taken != 0) {
                free = static_cast<z80::Mask>(free & ~taken);
                info.pins.push_back({candidate.id, taken, changed[candidate.id]});
            }
        }
    }
}

} // namespace tp3
