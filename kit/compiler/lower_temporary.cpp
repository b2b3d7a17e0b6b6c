#include "lower.h"

namespace tp3 {

/// Room on the stack until the end of the statement; gives its address.
Operand Lowering::stackTemporary(std::uint16_t size) {
    const Operand address = Operand::value(b_.temporary(Width::word));
    Ir& ir = b_.emit(IrOp::stackAllocate);
    ir.dst = address;
    ir.n = size;
    stackTaken_ = static_cast<std::uint16_t>(stackTaken_ + size);
    return address;
}

/// Room for a real or a set until it is given back or the statement ends. A routine that runs but once at a
/// time has it in static memory, where its address costs nothing; another one on the stack.
Operand Lowering::temporary(std::uint16_t size) {
    for (Temporary& known : temporaries_) {
        if (!known.taken && known.size == size) {
            known.taken = true;
            return known.address;
        }
    }
    const Operand address =
        function_.recursive ? stackTemporary(size) : Operand::constant(storage_.allocate(size));
    temporaries_.push_back({address, size, true});
    return address;
}

/// The operand is not needed any more; if it is a temporary the next one may lie there.
void Lowering::giveBack(const Operand& address) {
    for (Temporary& known : temporaries_) {
        if (known.address.kind == address.kind && known.address.id == address.id &&
            known.address.n == address.n) {
            known.taken = false;
        }
    }
}

/// Everything that the expressions of a statement took is free again at its end.
void Lowering::releaseStack() {
    if (stackTaken_ != 0) {
        b_.emit(IrOp::stackFree).n = stackTaken_;
        stackTaken_ = 0;
    }
    if (function_.recursive) {
        temporaries_.clear();
    }
    for (Temporary& known : temporaries_) {
        known.taken = false;
    }
}

/// The address of an array's or record's value, safe from what the arguments from `later` on do when they are
/// evaluated.
Operand Lowering::steadyPlace(const Expr* e, const Expr* later) {
    const Operand address = addressOfDesignator(e);
    if (!anyCall(later)) {
        return address;
    }
    const Operand copy = stackTemporary(e->type->size);
    moveBlock(address, copy, e->type->size);
    return copy;
}

/// Copies `size` bytes from one address to another. A few words between known addresses go through a
/// register.
void Lowering::moveBlock(Operand from, Operand to, std::uint16_t size) {
    constexpr std::uint16_t fewBytes = 6;
    const auto isKnown = [](const Operand& address) {
        return address.isConstant() || address.kind == Operand::Kind::address;
    };
    const bool known = isKnown(from) && isKnown(to);
    if (size <= 2 || (known && size <= fewBytes)) {
        const Operand source = from.isValue() ? Operand::indirect(from.id, 0) : memoryAt(from);
        const Operand target = to.isValue() ? Operand::indirect(to.id, 0) : memoryAt(to);
        for (std::uint16_t done = 0; done < size;) {
            const Width width = size - done >= 2 ? Width::word : Width::byte;
            b_.copy(offsetPlace(target, done), load(offsetPlace(source, done), width), width);
            done = static_cast<std::uint16_t>(done + static_cast<unsigned>(width));
        }
        return;
    }
    library(RuntimeEntry::moveBytes, {word(z80::Pair::hl, from), word(z80::Pair::de, to)}, IrOp::blockMove)
        .n = size;
}

} // namespace tp3
