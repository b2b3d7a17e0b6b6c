#include "lower.h"

namespace tp3 {

Lowering::Lowering(Storage& storage, const Routine& routine)
    : storage_(storage), routine_(routine), b_(function_) {
    function_.isMain = routine.level == 0;
    function_.libraryCallsBack = storage.survey().handsOutRoutines;
    function_.recursive = storage.survey().routines[routine.ordinal].recursive;
    function_.checksStackAtOnce = !function_.isMain && storage.survey().routines[routine.ordinal].checksStack;
}

Function Lowering::run(const Stmt* body) {
    exit_ = b_.newBlock();
    b_.startBlock(b_.newBlock());
    if (!function_.isMain) {
        b_.setPosition(routine_.symbol->position); // a stack that is too small is reported at the heading
    }
    enterRoutine();
    statements(body);
    b_.startBlock(exit_);
    leaveRoutine();
    return static_cast<Function&&>(function_);
}

void Lowering::cannot(Position position) {
    if (untranslatable_.line == 0) {
        untranslatable_ = position;
    }
}

/// Register arguments become values; what the routine keeps elsewhere is moved there.
void Lowering::enterRoutine() {
    if (function_.isMain) {
        return;
    }
    const std::vector<ParameterPlace> places = storage_.parameterPlaces(routine_);
    std::vector<const Symbol*> symbols;
    if (routine_.result != nullptr && !isScalar(routine_.result->type)) {
        symbols.push_back(routine_.result);
    }
    for (const Symbol* p = routine_.parameters; p != nullptr; p = p->next) {
        symbols.push_back(p);
    }
    std::vector<Operand> arrived;
    Ir& ir = b_.emit(IrOp::parameters);
    ir.firstArgument = static_cast<std::uint16_t>(function_.arguments.size());
    for (std::size_t i = 0; i < symbols.size(); ++i) {
        const ParameterPlace& place = places[i];
        if (place.kind == ParameterPlace::Kind::home) {
            arrived.push_back(Operand::memory(place.address));
            continue;
        }
        const Slot slot = storage_.slotOf(*symbols[i], routine_);
        const bool inPlace = slot.kind == SlotKind::value && (slot.pointer || isScalar(symbols[i]->type));
        const Width width = place.isByte ? Width::byte : Width::word;
        Argument argument;
        argument.operand = Operand::value(inPlace ? valueOf(*symbols[i], slot) : b_.temporary(width));
        argument.width = width;
        argument.pair = static_cast<z80::Pair>(place.code);
        argument.reg = static_cast<z80::Reg>(place.code);
        function_.arguments.push_back(argument);
        arrived.push_back(argument.operand);
    }
    ir.argumentCount = static_cast<std::uint8_t>(function_.arguments.size() - ir.firstArgument);
    if (function_.recursive || function_.checksStackAtOnce) {
        b_.emit(IrOp::stackCheck);
    }
    if (function_.recursive) {
        frameEnterAt_ = static_cast<std::uint32_t>(function_.code.size());
        b_.emit(IrOp::frameEnter).dst = Operand::value(frameOf(routine_));
    }
    for (std::size_t i = 0; i < symbols.size(); ++i) {
        const Symbol& symbol = *symbols[i];
        const Slot slot = storage_.slotOf(symbol, routine_);
        if (slot.pointer || isScalar(symbol.type)) {
            const Operand own = slotOperand(symbol, slot);
            const Operand& from = arrived[i];
            const bool same = (own.isValue() && from.isValue() && own.id == from.id) ||
                              (own.isValue() && !from.isValue() && from.n == slot.address);
            if (!same) {
                const Width width = slot.pointer ? Width::word : widthOfType(symbol.type);
                b_.copy(own, from.isMemory() && own.isMemory() ? load(from, width) : from, width);
            }
            continue;
        }
        const Operand source = load(arrived[i], Width::word);
        const Operand target = addressOf(slotOperand(symbol, slot));
        if (symbol.type->kind == TypeKind::string) {
            library(RuntimeEntry::stringCopy, {word(z80::Pair::hl, source), word(z80::Pair::de, target),
                                               byte(z80::Reg::a, Operand::constant(symbol.type->high))});
        } else {
            moveBlock(source, target, symbol.type->size);
        }
    }
}

void Lowering::leaveRoutine() {
    Operand result;
    Width width = Width::word;
    if (routine_.result != nullptr && isScalar(routine_.result->type)) {
        width = widthOfType(routine_.result->type);
        const Operand own = slotOperand(*routine_.result, storage_.slotOf(*routine_.result, routine_));
        result = load(own, width);
    }
    if (function_.recursive) {
        const std::uint16_t size = storage_.frameSize(routine_);
        Ir& enter = function_.code[frameEnterAt_];
        enter.n = size;
        enter.dead = size == 0;
        function_.code[frameEnterAt_ - 1U].n = size;
        if (size != 0) {
            Ir& leave = b_.emit(IrOp::frameLeave);
            leave.n = size;
            leave.a = Operand::memory(storage_.frameHome(routine_));
        }
    }
    Ir& ir = b_.emit(IrOp::leave, width);
    ir.a = result;
    b_.closeBlock();
}

ValueId Lowering::valueOf(const Symbol& variable, const Slot& slot) {
    for (const auto& [ordinal, id] : variableValues_) {
        if (ordinal == variable.ordinal) {
            return id;
        }
    }
    const ValueId id = b_.crossing(slot.pointer ? Width::word : widthOfType(variable.type));
    ValueInfo& info = function_.values[id];
    info.callsMayUse = slot.callsMayUse;
    info.liveAtExit = slot.liveAtExit;
    info.hasHome = true;
    info.home = slot.address;
    variableValues_.emplace_back(variable.ordinal, id);
    return id;
}

ValueId Lowering::frameOf(const Routine& owner) {
    for (const auto& [ordinal, id] : frameValues_) {
        if (ordinal == owner.ordinal) {
            return id;
        }
    }
    const ValueId id = b_.crossing(Width::word);
    ValueInfo& info = function_.values[id];
    info.keptByCalls = true;
    info.hasHome = true;
    info.home = storage_.frameHome(owner);
    frameValues_.emplace_back(owner.ordinal, id);
    return id;
}

} // namespace tp3
