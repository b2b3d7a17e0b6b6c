#pragma once

#include "ir.h"

#include <cstdint>
#include <vector>

namespace tp3 {

/// A flag for each value that lives from block to block, 32 to a word.
inline bool hasBit(const std::uint32_t* bits, std::size_t index) {
    return (bits[index / 32] >> (index % 32) & 1U) != 0;
}
inline void setBit(std::uint32_t* bits, std::size_t index, bool value) {
    const std::uint32_t mask = std::uint32_t{1} << (index % 32);
    bits[index / 32] = value ? bits[index / 32] | mask : bits[index / 32] & ~mask;
}

/// Which values are live where one block goes over into another.
struct Liveness {
    std::vector<ValueId> crossing; ///< values that live from block to block
    std::size_t words = 0;         ///< of the flags of one block
    std::vector<std::uint32_t> in; ///< flags by index into `crossing`, block after block

    [[nodiscard]] bool livesInto(BlockId block, std::size_t index) const {
        return hasBit(&in[block * words], index);
    }
};

/// Lets an operation write straight into the variable that its result is copied to.
void coalesceCopies(Function& function);
/// Drops blocks that nothing reaches, leads jumps past empty blocks, fills in successors and predecessors.
void tidyBlocks(Function& function);
/// Moves the look at the stack of a recursive routine from its beginning to where all ways that call on part
/// from those that do not: the innermost calls, which are the most, then go without.
void sinkStackCheck(Function& function);
/// Marks last uses and unused results, and counts how much each value is used.
Liveness analyseLiveness(Function& function);
/// Chooses the values that keep registers throughout the innermost loops.
void pinLoopValues(Function& function, const Liveness& liveness);

/// Calls `f(Operand&)` for every operand that is read: a, b, an indirect destination and the arguments of
/// calls.
template <typename F> void forEachUse(Function& function, Ir& ir, F f) {
    if (ir.op == IrOp::parameters) {
        return;
    }
    for (unsigned i = ir.argumentCount; i-- > 0;) {
        f(function.arguments[ir.firstArgument + i].operand);
    }
    f(ir.b);
    f(ir.a);
    if (ir.dst.kind == Operand::Kind::indirect) {
        f(ir.dst);
    }
}

/// Other code of the program runs here, or a program that shares the variables: it may read and change every
/// value that `callsMayUse`.
bool runsForeignCode(const Function& function, const Ir& ir);

} // namespace tp3
