#include "z80.h"

#include <cstddef>

namespace tp3::z80 {

namespace {

constexpr Mask aBit = bit(Reg::a);
constexpr Mask hlBits = bits(Pair::hl);

Mask pairBits(std::uint8_t x) {
    return x == 3 ? stackBit : bits(static_cast<Pair>(x));
}
Mask pushBits(std::uint8_t x) {
    return x == 3 ? static_cast<Mask>(aBit | flagsBit) : bits(static_cast<Pair>(x));
}

/// A register as a source: M reads memory through HL.
Mask source(std::uint8_t r) {
    return static_cast<Reg>(r) == Reg::m ? static_cast<Mask>(memoryBit | hlBits) : bit(static_cast<Reg>(r));
}
Mask destination(std::uint8_t r) {
    return static_cast<Reg>(r) == Reg::m ? memoryBit : bit(static_cast<Reg>(r));
}
/// What naming a register as a destination reads: M needs HL for its address.
Mask addressing(std::uint8_t r) {
    return static_cast<Reg>(r) == Reg::m ? hlBits : Mask{0};
}

bool aluUsesCarry(std::uint8_t x) {
    return static_cast<Alu>(x) == Alu::adc || static_cast<Alu>(x) == Alu::sbc;
}
bool shiftUsesCarry(std::uint8_t x) {
    return static_cast<Shift>(x) == Shift::rl || static_cast<Shift>(x) == Shift::rr;
}
Mask either(unsigned mask) {
    return static_cast<Mask>(mask);
}

} // namespace

Mask reads(const Instruction& i) {
    switch (i.op) {
    case Op::label:
    case Op::bytes:
    case Op::ldRegN:
        return i.op == Op::ldRegN ? addressing(i.x) : Mask{0};
    case Op::ldPairN:
        return 0;
    case Op::ldRegReg:
        return either(source(i.y) | addressing(i.x));
    case Op::ldPairMem:
    case Op::ldAMem:
        return memoryBit;
    case Op::ldMemPair:
        return pairBits(i.x);
    case Op::ldMemA:
        return aBit;
    case Op::ldAPair:
        return either(memoryBit | pairBits(i.x));
    case Op::ldPairA:
        return either(aBit | pairBits(i.x));
    case Op::ldSpHl:
        return hlBits;
    case Op::alu:
        // SUB A and XOR A give the same whatever A is; SBC A,A depends on the carry only.
        if (static_cast<Reg>(i.y) == Reg::a &&
            (static_cast<Alu>(i.x) == Alu::sub || static_cast<Alu>(i.x) == Alu::bitXor)) {
            return 0;
        }
        if (static_cast<Reg>(i.y) == Reg::a && static_cast<Alu>(i.x) == Alu::sbc) {
            return flagsBit;
        }
        return either(aBit | source(i.y) | (aluUsesCarry(i.x) ? flagsBit : 0U));
    case Op::aluN:
        return either(aBit | (aluUsesCarry(i.x) ? flagsBit : 0U));
    case Op::inc8:
    case Op::dec8:
        return source(i.x);
    case Op::inc16:
    case Op::dec16:
        return pairBits(i.x);
    case Op::addHl:
        return either(hlBits | pairBits(i.x));
    case Op::sbcHl:
        return either(hlBits | pairBits(i.x) | flagsBit);
    case Op::exDeHl:
        return either(hlBits | bits(Pair::de));
    case Op::exAf:
        return either(aBit | flagsBit);
    case Op::push:
        return either(pushBits(i.x) | stackBit);
    case Op::pop:
        return stackBit;
    case Op::shift:
        return either(source(i.y) | (shiftUsesCarry(i.x) ? flagsBit : 0U));
    case Op::bitTest:
        return source(i.y);
    case Op::neg:
    case Op::cpl:
    case Op::rlca:
    case Op::rrca:
        return aBit;
    case Op::ccf:
        return flagsBit;
    case Op::rla:
    case Op::rra:
        return either(aBit | flagsBit);
    case Op::ldir:
        return either(hlBits | bits(Pair::de) | bits(Pair::bc) | memoryBit);
    case Op::jump:
        return static_cast<Condition>(i.x) == Condition::always ? Mask{0} : flagsBit;
    case Op::inC:
        return either(bits(Pair::bc) | memoryBit);
    case Op::outC:
        return either(bits(Pair::bc) | bit(static_cast<Reg>(i.x)));
    case Op::inN:
        return either(aBit | memoryBit);
    case Op::outN:
        return aBit;
    case Op::call:
    case Op::ret:
        return everything;
    }
    return everything;
}

Mask writes(const Instruction& i) {
    switch (i.op) {
    case Op::label:
    case Op::bytes:
    case Op::jump:
        return 0;
    case Op::ldRegReg:
    case Op::ldRegN:
        return destination(i.x);
    case Op::ldPairN:
    case Op::ldPairMem:
    case Op::inc16:
    case Op::dec16:
        return pairBits(i.x);
    case Op::ldMemPair:
    case Op::ldMemA:
    case Op::ldPairA:
        return memoryBit;
    case Op::ldAMem:
    case Op::ldAPair:
        return aBit;
    case Op::ldSpHl:
        return stackBit;
    case Op::alu:
    case Op::aluN:
        return static_cast<Alu>(i.x) == Alu::compare ? flagsBit : either(aBit | flagsBit);
    case Op::inc8:
    case Op::dec8:
        return either(destination(i.x) | flagsBit);
    case Op::addHl:
    case Op::sbcHl:
        return either(hlBits | flagsBit);
    case Op::exDeHl:
        return either(hlBits | bits(Pair::de));
    case Op::exAf:
    case Op::neg:
    case Op::cpl:
    case Op::rla:
    case Op::rra:
    case Op::rlca:
    case Op::rrca:
        return either(aBit | flagsBit);
    case Op::push:
        return either(stackBit | memoryBit);
    case Op::pop:
        return either(pushBits(i.x) | stackBit);
    case Op::shift:
        return either(destination(i.y) | flagsBit);
    case Op::bitTest:
    case Op::ccf:
        return flagsBit;
    case Op::ldir:
        return either(hlBits | bits(Pair::de) | bits(Pair::bc) | memoryBit | flagsBit);
    case Op::inC:
        return either(bit(static_cast<Reg>(i.x)) | flagsBit);
    case Op::inN:
        return aBit;
    case Op::outC:
    case Op::outN:
        return memoryBit;
    case Op::ret:
        return 0;
    case Op::call:
        return everything;
    }
    return everything;
}

unsigned length(const Instruction& i, bool shortJump) {
    switch (i.op) {
    case Op::label:
        return 0;
    case Op::bytes:
        return i.x;
    case Op::ldRegN:
    case Op::aluN:
    case Op::inC:
    case Op::outC:
    case Op::inN:
    case Op::outN:
    case Op::sbcHl:
    case Op::neg:
    case Op::ldir:
    case Op::shift:
    case Op::bitTest:
        return 2;
    case Op::ldPairN:
    case Op::ldAMem:
    case Op::ldMemA:
    case Op::call:
        return 3;
    case Op::ldPairMem:
    case Op::ldMemPair:
        return static_cast<Pair>(i.x) == Pair::hl ? 3 : 4;
    case Op::jump:
        return shortJump ? 2 : 3;
    default:
        return 1;
    }
}

} // namespace tp3::z80
