#include "selector.h"

namespace tp3 {

z80::Instruction& Selector::emit(Op op, unsigned x, unsigned y, unsigned n) {
    z80::Instruction instruction;
    instruction.op = op;
    instruction.x = static_cast<std::uint8_t>(x);
    instruction.y = static_cast<std::uint8_t>(y);
    instruction.n = static_cast<std::uint16_t>(n);
    instruction.position = position_;
    result_.code.push_back(instruction);
    return result_.code.back();
}

/// An instruction with the address that a memory or address operand names.
void Selector::emitTo(Op op, unsigned x, const Operand& address) {
    z80::Instruction& instruction = emit(op, x, 0, static_cast<unsigned>(address.n) & 0xFFFFU);
    instruction.target = address.target;
    instruction.index = address.index;
    if (address.target == z80::Target::literal) {
        instruction.target = z80::Target::local;
        instruction.index = static_cast<std::uint16_t>(literalBase_ + address.index);
    }
}

void Selector::move(Reg to, Reg from) {
    if (to != from) {
        emit(Op::ldRegReg, code(to), code(from));
    }
}

void Selector::jump(Condition condition, std::uint16_t label) {
    z80::Instruction& instruction = emit(Op::jump, static_cast<unsigned>(condition));
    instruction.target = z80::Target::local;
    instruction.index = label;
}

void Selector::label(std::uint16_t label) {
    emit(Op::label).index = label;
}

void Selector::libraryCall(RuntimeEntry entry) {
    emit(Op::call, 0, 0, runtimeAddresses[static_cast<std::size_t>(entry)]);
}

} // namespace tp3
