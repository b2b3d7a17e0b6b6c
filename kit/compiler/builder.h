#pragma once

#include "ir.h"

#include <utility>

namespace tp3 {

/// Appends instructions and blocks to a Function. Every block ends in exactly one jump, branch or leave.
class Builder {
  public:
    explicit Builder(Function& function) : function_(function) {}

    Function& function() { return function_; }
    void setPosition(Position position) { position_ = position; }
    [[nodiscard]] Position position() const { return position_; }

    /// A new value that lives inside one block.
    ValueId temporary(Width width) { return makeValue(width, false); }
    /// A new value that may live from block to block.
    ValueId crossing(Width width) { return makeValue(width, true); }
    [[nodiscard]] Width widthOf(ValueId id) const { return function_.values[id].width; }

    BlockId newBlock() {
        function_.blocks.push_back({});
        return static_cast<BlockId>(function_.blocks.size() - 1);
    }
    /// Code goes on in `block`; an open block falls through to it.
    void startBlock(BlockId block) {
        if (open_) {
            jump(block);
        }
        Block& b = function_.blocks[block];
        b.started = true;
        b.loop = loop_;
        b.first = b.last = static_cast<std::uint32_t>(function_.code.size());
        function_.layout.push_back(block);
        current_ = block;
        open_ = true;
    }
    [[nodiscard]] bool isOpen() const { return open_; }

    std::uint16_t beginLoop() {
        Loop loop;
        loop.parent = loop_;
        loop.depth = static_cast<std::uint8_t>(function_.loops[loop_].depth + (loop_ == 0 ? 0 : 1));
        for (std::uint16_t outer = loop_; outer != 0; outer = function_.loops[outer].parent) {
            function_.loops[outer].hasInner = true;
        }
        function_.loops.push_back(loop);
        loop_ = static_cast<std::uint16_t>(function_.loops.size() - 1);
        return loop_;
    }
    void endLoop() { loop_ = function_.loops[loop_].parent; }
    [[nodiscard]] std::uint16_t currentLoop() const { return loop_; }

    Ir& emit(IrOp op, Width width = Width::word) {
        if (!open_) {
            startBlock(newBlock()); // unreachable code; dropped later, as nothing jumps to it
        }
        function_.code.push_back({});
        Ir& ir = function_.code.back();
        ir.op = op;
        ir.width = width;
        ir.position = position_;
        function_.blocks[current_].last = static_cast<std::uint32_t>(function_.code.size());
        if (op == IrOp::call || op == IrOp::runtime || op == IrOp::runtimeText || op == IrOp::runtimeBranch ||
            op == IrOp::runtimeCompare || op == IrOp::inlineCode || op == IrOp::blockMove ||
            op == IrOp::pushString || op == IrOp::externalCall) {
            for (std::uint16_t loop = loop_; loop != 0; loop = function_.loops[loop].parent) {
                function_.loops[loop].hasCall = true;
            }
        }
        return ir;
    }

    void jump(BlockId target) {
        emit(IrOp::jump).target = target;
        open_ = false;
    }
    void branch(Width width, Relation relation, bool isSigned, Operand a, Operand b, BlockId target,
                BlockId other) {
        Ir& ir = emit(IrOp::branch, width);
        ir.relation = relation;
        ir.isSigned = isSigned;
        ir.a = a;
        ir.b = b;
        ir.target = target;
        ir.other = other;
        open_ = false;
    }
    /// The instruction just emitted ended its block.
    void closeBlock() { open_ = false; }

    /// dst := a op b in a new temporary.
    Operand operation(IrOp op, Width width, Operand a, Operand b = {}) {
        const ValueId result = temporary(width);
        Ir& ir = emit(op, width);
        ir.dst = Operand::value(result);
        ir.a = a;
        ir.b = b;
        return Operand::value(result);
    }
    void copy(Operand dst, Operand a, Width width) {
        Ir& ir = emit(dst.isMemory() ? IrOp::store : IrOp::copy, width);
        ir.dst = dst;
        ir.a = a;
    }

  private:
    ValueId makeValue(Width width, bool crossing) {
        ValueInfo info;
        info.width = width;
        info.crossesBlocks = crossing;
        function_.values.push_back(info);
        return static_cast<ValueId>(function_.values.size() - 1);
    }

    Function& function_;
    Position position_;
    BlockId current_ = noBlock;
    std::uint16_t loop_ = 0;
    bool open_ = false;
};

} // namespace tp3
