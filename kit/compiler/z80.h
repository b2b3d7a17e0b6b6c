#pragma once

#include "errors.h"

#include <cstdint>
#include <vector>

namespace tp3::z80 {

/// 8-bit registers by their code in instructions; M is the byte at HL.
enum class Reg : std::uint8_t { b, c, d, e, h, l, m, a };
/// Register pairs by their code; the fourth is SP in most instructions and AF in PUSH and POP.
enum class Pair : std::uint8_t { bc, de, hl, sp };
/// Conditions by their code.
enum class Condition : std::uint8_t { nz, z, nc, c, po, pe, p, m, always };
/// Arithmetic on A by code.
enum class Alu : std::uint8_t { add, adc, sub, sbc, bitAnd, bitXor, bitOr, compare };
/// CB-prefixed rotations and shifts by code.
enum class Shift : std::uint8_t { rlc, rrc, rl, rr, sla, sra, sll, srl };

constexpr Reg low(Pair pair) {
    return static_cast<Reg>(static_cast<unsigned>(pair) * 2 + 1);
}
constexpr Reg high(Pair pair) {
    return static_cast<Reg>(static_cast<unsigned>(pair) * 2);
}
constexpr Condition inverse(Condition c) {
    return static_cast<Condition>(static_cast<unsigned>(c) ^ 1);
}

/// One bit per register, for sets of what an instruction reads and writes.
using Mask = std::uint16_t;
constexpr Mask bit(Reg r) {
    return static_cast<Mask>(1U << static_cast<unsigned>(r));
}
constexpr Mask bits(Pair p) {
    return static_cast<Mask>(bit(low(p)) | bit(high(p)));
}
constexpr Mask flagsBit = 1U << 8;
constexpr Mask memoryBit = 1U << 9; ///< some byte of memory
constexpr Mask stackBit = 1U << 10; ///< SP and what lies there
constexpr Mask everything = 0x7FF & ~static_cast<unsigned>(1U << static_cast<unsigned>(Reg::m));

enum class Op : std::uint8_t {
    label,     ///< reference: the place itself; no code
    bytes,     ///< n: index into the routine's byte pool; x = count
    ldRegReg,  ///< x, y; one of them may be M
    ldRegN,    ///< x, n
    ldPairN,   ///< x, n with reference
    ldPairMem, ///< x, (n)
    ldMemPair, ///< (n), x
    ldAMem,
    ldMemA,
    ldAPair, ///< A, (x): BC or DE
    ldPairA,
    ldSpHl,
    alu,  ///< x = Alu, y = register
    aluN, ///< x = Alu, n
    inc8,
    dec8,
    inc16,
    dec16,
    addHl,
    sbcHl,
    exDeHl,
    exAf,
    push, ///< x; 3 = AF
    pop,
    shift,   ///< x = Shift, y = register
    bitTest, ///< x = bit number, y = register
    neg,
    cpl,
    ccf,
    rla,
    rra,
    rlca,
    rrca,
    ldir,
    jump, ///< x = Condition, reference and n
    call, ///< reference and n; y = 1 when bytes follow that the callee skips
    ret,  ///< x = Condition
    inC,  ///< register x from port C
    outC, ///< register x to port C
    inN,  ///< A from port n
    outN,
};

/// What an address in an instruction is relative to.
enum class Target : std::uint8_t {
    absolute, ///< n itself
    local,    ///< label `index` of the same routine
    routine,  ///< entry of the routine with ordinal `index`
    constant, ///< typed constant with ordinal `index`, plus n
    literal,  ///< text `index` of the routine's literals, plus n; becomes local when code is made
};

struct Instruction {
    Op op = Op::label;
    std::uint8_t x = 0;
    std::uint8_t y = 0;
    Target target = Target::absolute;
    std::uint16_t index = 0;
    std::uint16_t n = 0;
    Position position; ///< of the statement that it belongs to
};

/// Registers, flags and memory that an instruction reads; `clobbered` by calls is everything.
Mask reads(const Instruction& instruction);
Mask writes(const Instruction& instruction);

/// Bytes of the instruction, jumps taken as short (2) when `shortJump`.
unsigned length(const Instruction& instruction, bool shortJump);

/// A 16-bit address inside encoded bytes that is still to be filled in.
struct Fixup {
    std::uint16_t offset;
    Target target;
    std::uint16_t index;
};

/// Where the code of a place in the source begins, in bytes from the routine's start.
struct LineMark {
    std::uint16_t offset;
    Position position;
};

/// Machine code of one routine.
struct Encoded {
    std::vector<std::uint8_t> bytes;
    std::vector<Fixup> fixups;       ///< routines and constants; the addend already stands in the bytes
    std::vector<Fixup> ownAddresses; ///< offsets of words that hold an offset into this code
    std::vector<LineMark> lines;
};

/// Encodes a routine: resolves its labels and uses short jumps where they reach and pay.
/// @param pool bytes that Op::bytes instructions refer to
/// @param poolFixups words in the pool's machine code that hold addresses
/// @param preferSize short jumps wherever they reach, even where the long one is faster
Encoded encode(const std::vector<Instruction>& code, const std::vector<std::uint8_t>& pool,
               const std::vector<Fixup>& poolFixups, bool preferSize);

} // namespace tp3::z80
