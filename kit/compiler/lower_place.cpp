#include "lower.h"

namespace tp3 {

/// The slot itself: a value, or the memory that holds the variable or the address in it.
Operand Lowering::slotOperand(const Symbol& variable, const Slot& slot) {
    Operand operand;
    switch (slot.kind) {
    case SlotKind::value:
        return Operand::value(valueOf(variable, slot));
    case SlotKind::frame:
        return Operand::indirect(frameOf(*variable.owner), slot.address);
    case SlotKind::constant:
        operand.kind = Operand::Kind::memory;
        operand.target = z80::Target::constant;
        operand.index = variable.ordinal;
        return operand;
    case SlotKind::memory:
        break;
    }
    return Operand::memory(slot.address);
}

/// The variable that a symbol stands for, addresses in slots followed.
Operand Lowering::variablePlace(const Symbol& variable, Width width) {
    if (variable.storage == StorageKind::absoluteVariable && variable.alias != nullptr) {
        Operand base = variablePlace(*variable.alias, width);
        if (base.isValue()) {
            return base;
        }
        return offsetPlace(base, variable.value);
    }
    const Slot slot = storage_.slotOf(variable, routine_);
    const Operand own = slotOperand(variable, slot);
    if (!slot.pointer) {
        return own;
    }
    return Operand::indirect(load(own, Width::word).id, 0);
}

Operand Lowering::offsetPlace(Operand base, std::int32_t offset) {
    base.n += offset;
    if (base.kind == Operand::Kind::memory && base.target == z80::Target::absolute) {
        base.n &= 0xFFFF;
    }
    return base;
}

/// The operand as a value, constant or address: memory is read into a temporary.
Operand Lowering::load(Operand operand, Width width) {
    return operand.isMemory() ? b_.operation(IrOp::copy, width, operand) : operand;
}

/// A copy that later changes of a variable do not reach.
Operand Lowering::freeze(Operand operand, Width width) {
    if (operand.isMemory() || (operand.isValue() && function_.values[operand.id].crossesBlocks)) {
        return b_.operation(IrOp::copy, width, operand);
    }
    return operand;
}

/// What lies at a constant address.
Operand Lowering::memoryAt(Operand address) {
    if (address.isConstant()) {
        return Operand::memory(static_cast<std::uint16_t>(address.n));
    }
    address.kind = Operand::Kind::memory;
    return address;
}

/// The address of a place as a word operand.
Operand Lowering::addressOf(Operand place) {
    if (place.kind == Operand::Kind::indirect) {
        if (place.n == 0) {
            return Operand::value(place.id);
        }
        return b_.operation(IrOp::add, Width::word, Operand::value(place.id), Operand::constant(place.n));
    }
    if (place.kind == Operand::Kind::memory && place.target == z80::Target::absolute) {
        return Operand::constant(place.n);
    }
    if (place.kind == Operand::Kind::memory) {
        place.kind = Operand::Kind::address;
        return place;
    }
    cannot(b_.position()); // a value has no address: the parser marks every variable whose address is wanted
    return Operand::constant(0);
}

/// The address of a place, safe from what the arguments from `later` on do when they are evaluated.
Operand Lowering::steadyAddress(const Expr* designator, const Expr* later) {
    const Operand address = addressOfDesignator(designator);
    return anyCall(later) ? freeze(address, Width::word) : address;
}

Operand Lowering::place(const Expr* e) {
    switch (e->kind) {
    case ExprKind::variable:
        return variablePlace(*e->symbol, widthOfType(e->type));
    case ExprKind::index:
        return indexPlace(e);
    case ExprKind::character:
        return elementPlace(place(e->left), e->right, 0, 1, e->checked, e->left->type->high);
    case ExprKind::field:
        return offsetPlace(place(e->left), e->value);
    case ExprKind::retypeVariable:
        return place(e->left);
    case ExprKind::dereference: {
        const Operand pointer = load(evaluate(e->left, Width::word), Width::word);
        return pointer.isValue() ? Operand::indirect(pointer.id, 0) : memoryAt(pointer);
    }
    case ExprKind::memory: {
        const Operand address = evaluate(e->left, Width::word);
        return address.isValue() ? Operand::indirect(address.id, 0) : memoryAt(address);
    }
    case ExprKind::string:
        break;
    case ExprKind::call:
    case ExprKind::standardCall:
    case ExprKind::convert:
    case ExprKind::binary:
        if (e->type->kind == TypeKind::string) {
            const Operand address = stringAddress(e);
            return address.isValue() ? Operand::indirect(address.id, 0) : memoryAt(address);
        }
        break;
    default:
        break;
    }
    if (e->kind == ExprKind::string) {
        Operand text = literal(e->text, e->textLength, e->type->kind == TypeKind::string);
        text.kind = Operand::Kind::memory;
        return text;
    }
    cannot(e->position);
    return Operand::memory(0);
}

Operand Lowering::indexPlace(const Expr* e) {
    const Type* array = e->left->type;
    const Operand base = place(e->left);
    return elementPlace(base, e->right, array->low, array->base->size, e->checked, array->high);
}

/// The place of an element: base + (index - low) * size.
Operand Lowering::elementPlace(Operand base, const Expr* index, std::int32_t low, std::uint32_t elementSize,
                               bool checked, std::int32_t high) {
    if (base.isValue()) {
        cannot(index->position);
        return Operand::memory(0);
    }
    if (index->kind == ExprKind::ordinal) {
        return offsetPlace(base, (index->value - low) * static_cast<std::int32_t>(elementSize));
    }
    if (base.kind == Operand::Kind::indirect && hasCall(index)) {
        base.id = freeze(Operand::value(base.id), Width::word).id;
    }
    const Width natural = naturalWidth(index);
    Operand position = evaluate(index, natural);
    if (checked) {
        position = freeze(position, natural);
        checkRange(position, natural, low, high, RuntimeEntry::indexError);
    }
    Operand scaled = multiplied(resize(position, natural, Width::word), elementSize);
    const std::int32_t bias = -low * static_cast<std::int32_t>(elementSize);
    if (base.kind == Operand::Kind::indirect) {
        scaled = b_.operation(IrOp::add, Width::word, scaled, Operand::value(base.id));
        return Operand::indirect(scaled.id, base.n + bias);
    }
    base.n += bias;
    const Operand start = addressOf(base);
    if (scaled.isConstant()) {
        return offsetPlace(base, scaled.n);
    }
    if (start.isConstant() && (start.n & 0xFFFF) == 0) {
        return Operand::indirect(scaled.id, 0);
    }
    return Operand::indirect(b_.operation(IrOp::add, Width::word, scaled, start).id, 0);
}

/// index * factor as a word.
Operand Lowering::multiplied(Operand index, std::uint32_t factor) {
    if (index.isConstant()) {
        return Operand::constant(static_cast<std::int16_t>(index.n * static_cast<std::int32_t>(factor)));
    }
    if (factor == 1) {
        return index;
    }
    if ((factor & (factor - 1)) == 0) {
        std::int32_t power = 0;
        while ((1U << power) < factor) {
            ++power;
        }
        return b_.operation(IrOp::shiftLeft, Width::word, index, Operand::constant(power));
    }
    return b_.operation(IrOp::multiplyConstant, Width::word, index,
                        Operand::constant(static_cast<std::int32_t>(factor)));
}

} // namespace tp3
