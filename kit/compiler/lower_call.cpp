#include "lower.h"

namespace tp3 {

namespace {

/// Bytes that the arguments of an external routine take on the stack, at most.
std::uint16_t externalSize(const Routine& callee) {
    unsigned bytes = 0;
    for (const Symbol* p = callee.parameters; p != nullptr; p = p->next) {
        const TypeKind kind = p->storage == StorageKind::varParameter ? TypeKind::integer : p->type->kind;
        switch (kind) {
        case TypeKind::string:
            bytes += p->type->size;
            break;
        case TypeKind::set:
            bytes += 32;
            break;
        case TypeKind::real:
            bytes += 6;
            break;
        default:
            bytes += 2;
            break;
        }
    }
    return static_cast<std::uint16_t>(bytes);
}

} // namespace

/// Calls a routine of the program. A structured result goes to `resultAddress`, or to the stack when that is
/// none; then its address is what comes back.
Operand Lowering::call(const Expr* e, Operand resultAddress) {
    const Routine& callee = *e->symbol->routine;
    if (callee.isExternal) {
        return externalCall(e, callee);
    }
    std::vector<Operand> values;
    const bool structured = callee.result != nullptr && !isScalar(callee.result->type);
    if (structured) {
        if (resultAddress.kind == Operand::Kind::none) {
            resultAddress = callee.result->type->kind == TypeKind::string
                                ? stackTemporary(callee.result->type->size)
                                : temporary(callee.result->type->size);
        }
        values.push_back(resultAddress);
    }
    const Expr* argument = e->left;
    for (const Symbol* p = callee.parameters; p != nullptr && argument != nullptr; p = p->next) {
        Operand value;
        Width width = Width::word;
        if (p->storage == StorageKind::varParameter) {
            value = addressOfDesignator(argument);
        } else if (isScalar(p->type)) {
            width = widthOfType(p->type);
            value = evaluate(argument, width);
        } else if (p->type->kind == TypeKind::string) {
            value = steadyString(argument, argument->next);
        } else if (p->type->kind == TypeKind::real) {
            value = steadyReal(argument, argument->next);
        } else if (p->type->kind == TypeKind::set) {
            value = trimmedSet(argument, p->type, argument->next);
        } else {
            value = steadyPlace(argument, argument->next);
        }
        argument = argument->next;
        if (anyCall(argument)) {
            value = freeze(value, width);
        }
        values.push_back(value);
    }
    Operand result;
    if (callee.result != nullptr && !structured) {
        result = Operand::value(b_.temporary(widthOfType(callee.result->type)));
    }
    const std::vector<ParameterPlace> places = storage_.parameterPlaces(callee);
    for (std::size_t i = 0; i < places.size() && i < values.size(); ++i) {
        if (places[i].kind == ParameterPlace::Kind::home) {
            b_.copy(Operand::memory(places[i].address), values[i],
                    places[i].isByte ? Width::byte : Width::word);
        }
    }
    Ir& ir = b_.emit(IrOp::call, callee.result != nullptr && !structured ? widthOfType(callee.result->type)
                                                                         : Width::word);
    ir.index = callee.ordinal;
    const auto& facts = storage_.survey().routines;
    ir.reenters = function_.recursive && facts[callee.ordinal].component == facts[routine_.ordinal].component;
    ir.dst = result;
    ir.firstArgument = static_cast<std::uint16_t>(function_.arguments.size());
    for (std::size_t i = 0; i < places.size() && i < values.size(); ++i) {
        const ParameterPlace& place = places[i];
        if (place.kind == ParameterPlace::Kind::home) {
            continue;
        }
        Argument a;
        a.operand = values[i];
        a.width = place.isByte ? Width::byte : Width::word;
        a.pair = static_cast<z80::Pair>(place.code);
        a.reg = static_cast<z80::Reg>(place.code);
        function_.arguments.push_back(a);
    }
    ir.argumentCount = static_cast<std::uint8_t>(function_.arguments.size() - ir.firstArgument);
    return structured ? resultAddress : result;
}

/// Calls machine code at a fixed address: arguments from left to right on the stack, taken off by the
/// routine. Arrays and records go by address, reals, sets and strings as they are; a real comes back in BC,
/// DE and HL.
Operand Lowering::externalCall(const Expr* e, const Routine& callee) {
    constexpr std::uint16_t realSize = 6;
    std::vector<Operand> values;
    const Expr* argument = e->left;
    for (const Symbol* p = callee.parameters; p != nullptr && argument != nullptr;
         p = p->next, argument = argument->next) {
        Operand value;
        if (p->storage == StorageKind::varParameter) {
            value = addressOfDesignator(argument);
        } else if (isScalar(p->type)) {
            value = evaluate(argument, Width::word);
        } else if (p->type->kind == TypeKind::string) {
            value = steadyString(argument, argument->next);
        } else if (p->type->kind == TypeKind::real) {
            value = steadyReal(argument, argument->next);
        } else if (p->type->kind == TypeKind::set) {
            value = anyCall(argument->next) ? setTemporary(argument) : setAddress(argument);
        } else {
            value = steadyPlace(argument, argument->next);
        }
        values.push_back(freeze(value, Width::word));
    }
    if (const std::uint16_t pushed = externalSize(callee); pushed > sizeof(std::uint16_t)) {
        b_.emit(IrOp::stackProbe).n = pushed;
    }
    std::size_t index = 0;
    for (const Symbol* p = callee.parameters; p != nullptr && index < values.size(); p = p->next, ++index) {
        const TypeKind kind = p->storage == StorageKind::varParameter ? TypeKind::integer : p->type->kind;
        const Operand value = values[index];
        if (kind == TypeKind::string) {
            b_.emit(IrOp::pushString).a = value;
        } else if (kind == TypeKind::real || kind == TypeKind::set) {
            const Operand from = value.isValue() ? Operand::indirect(value.id, 0) : memoryAt(value);
            for (std::int32_t offset = kind == TypeKind::real ? realSize : 32; offset > 0;) {
                offset -= 2;
                const Operand part = load(offsetPlace(from, offset), Width::word);
                b_.emit(IrOp::push).a = part;
            }
        } else {
            b_.emit(IrOp::push).a = value;
        }
    }
    const Type* type = callee.result != nullptr ? callee.result->type : nullptr;
    if (type != nullptr && !isScalar(type) && type->kind != TypeKind::real) {
        cannot(e->position);
    }
    const Operand result = isScalar(type) ? Operand::value(b_.temporary(Width::word)) : Operand{};
    Ir& ir = b_.emit(IrOp::externalCall);
    ir.n = callee.externalAddress;
    ir.dst = result;
    if (type != nullptr && type->kind == TypeKind::real) {
        const Operand address = Operand::value(b_.temporary(Width::word));
        b_.emit(IrOp::pushResult).dst = address;
        stackTaken_ = static_cast<std::uint16_t>(stackTaken_ + realSize);
        return address;
    }
    return isScalar(type) ? resize(result, Width::word, widthOfType(type)) : Operand{};
}

Ir& Lowering::library(RuntimeEntry entry, std::initializer_list<LibraryArgument> arguments, IrOp op) {
    const auto first = static_cast<std::uint16_t>(function_.arguments.size());
    for (const LibraryArgument& argument : arguments) {
        Argument a;
        a.operand = argument.operand;
        a.width = argument.isByte ? Width::byte : Width::word;
        a.pair = argument.pair;
        a.reg = argument.reg;
        function_.arguments.push_back(a);
    }
    Ir& ir = b_.emit(op);
    ir.index = static_cast<std::uint16_t>(entry);
    ir.firstArgument = first;
    ir.argumentCount = static_cast<std::uint8_t>(arguments.size());
    return ir;
}

Operand Lowering::libraryWord(RuntimeEntry entry, std::initializer_list<LibraryArgument> arguments,
                              z80::Pair result) {
    const Operand dst = Operand::value(b_.temporary(Width::word));
    Ir& ir = library(entry, arguments);
    ir.width = Width::word;
    ir.dst = dst;
    ir.resultPair = result;
    return dst;
}

Operand Lowering::libraryByte(RuntimeEntry entry, std::initializer_list<LibraryArgument> arguments) {
    const Operand dst = Operand::value(b_.temporary(Width::byte));
    Ir& ir = library(entry, arguments);
    ir.width = Width::byte;
    ir.dst = dst;
    ir.resultReg = z80::Reg::a;
    return dst;
}

/// Calls an entry that finds a string behind its call.
void Lowering::libraryText(RuntimeEntry entry, const char* text, std::uint16_t length) {
    const auto first = static_cast<std::uint16_t>(function_.bytes.size());
    function_.bytes.push_back(static_cast<std::uint8_t>(length));
    for (std::uint16_t i = 0; i < length; ++i) {
        function_.bytes.push_back(static_cast<std::uint8_t>(text[i]));
    }
    Ir& ir = b_.emit(IrOp::runtimeText);
    ir.index = static_cast<std::uint16_t>(entry);
    ir.firstArgument = first;
    ir.n = static_cast<std::uint16_t>(length + 1U);
}

} // namespace tp3
