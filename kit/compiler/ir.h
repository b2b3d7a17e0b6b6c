#pragma once

#include "symbols.h"
#include "z80.h"

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

namespace tp3 {

/// A virtual register of 8 or 16 bits. 0 is none.
using ValueId = std::uint16_t;
using BlockId = std::uint16_t;
constexpr BlockId noBlock = 0xFFFF;

enum class Width : std::uint8_t { byte = 1, word = 2 };

/// Where an operand comes from or a result goes.
struct Operand {
    enum class Kind : std::uint8_t {
        none,
        constant, ///< n
        value,    ///< id
        address,  ///< the 16-bit address target/index + n (of a typed constant, a literal or a routine)
        memory,   ///< what lies at target/index + n; target absolute: at n
        indirect, ///< what lies n bytes behind the address held in id
    };
    Kind kind = Kind::none;
    z80::Target target = z80::Target::absolute;
    bool dies = false; ///< value, indirect: `id` is not needed after this use (set by the liveness pass)
    ValueId id = 0;
    std::uint16_t index = 0;
    std::int32_t n = 0;

    [[nodiscard]] bool isValue() const { return kind == Kind::value; }
    [[nodiscard]] bool isConstant() const { return kind == Kind::constant; }
    [[nodiscard]] bool usesValue() const { return kind == Kind::value || kind == Kind::indirect; }
    [[nodiscard]] bool isMemory() const { return kind == Kind::memory || kind == Kind::indirect; }

    static Operand constant(std::int32_t n) {
        Operand o;
        o.kind = Kind::constant;
        o.n = n;
        return o;
    }
    static Operand value(ValueId id) {
        Operand o;
        o.kind = Kind::value;
        o.id = id;
        return o;
    }
    static Operand memory(std::uint16_t address) {
        Operand o;
        o.kind = Kind::memory;
        o.n = address;
        return o;
    }
    static Operand indirect(ValueId id, std::int32_t offset) {
        Operand o;
        o.kind = Kind::indirect;
        o.id = id;
        o.n = offset;
        return o;
    }
};

enum class Relation : std::uint8_t { equal, notEqual, less, greaterEqual, greater, lessEqual };
constexpr Relation opposite(Relation r) {
    return static_cast<Relation>(static_cast<unsigned>(r) ^ 1U);
}
/// The relation that holds of (b, a) when `r` holds of (a, b).
constexpr Relation mirrored(Relation r) {
    switch (r) {
    case Relation::less:
        return Relation::greater;
    case Relation::greater:
        return Relation::less;
    case Relation::lessEqual:
        return Relation::greaterEqual;
    case Relation::greaterEqual:
        return Relation::lessEqual;
    default:
        return r;
    }
}

enum class IrOp : std::uint8_t {
    copy,  ///< dst := a (any operand)
    store, ///< dst (memory) := a (value, constant or address)
    add,
    subtract,
    bitAnd,
    bitOr,
    bitXor, ///< dst := a op b
    negate,
    bitNot,
    shiftLeft,
    shiftRight,       ///< by the constant b; logical
    multiplyConstant, ///< word dst := a * constant b
    absolute,         ///< word dst := the amount of a
    dividePower,      ///< word dst := a div 2^b, signed and truncated to zero
    widen,            ///< word dst := byte a
    narrow,           ///< byte dst := low byte of word a
    highByte,         ///< byte dst := high byte of word a
    joinBytes,        ///< word dst := byte a * 256 + byte b
    compare,          ///< byte dst := 1 if a relation b, else 0
    branch,           ///< to block `target` if a relation b, else to block `other`
    jump,             ///< to block `target`
    call,             ///< routine `index` with arguments in registers; dst its result
    runtime, ///< library entry `index` with arguments in registers; dst its result, from `resultRegister`
    runtimeBranch,  ///< the same, then a branch on the flags as after a comparison (carry less, Z equal)
    runtimeCompare, ///< the same, giving 1 or 0 in the byte dst
    runtimeText,    ///< library entry that is followed by n bytes of text from `firstArgument` in
                    ///< Function::bytes
    parameters,     ///< start of a routine: its register arguments become values (the arguments' operands)
    stackCheck,     ///< run-time error FF when stack and heap would meet by what this activation takes: n
                    ///< bytes of frame and what it saves around calls
    stackProbe,     ///< run-time error FF when the stack has no room for n more bytes
    frameEnter, ///< makes a frame of n bytes and points dst (a variable) to it, the old content being kept
    frameLeave,
    stackAllocate, ///< dst := address of n fresh bytes on the stack
    stackFree,     ///< gives n bytes back
    push,          ///< the word a onto the stack, for an external routine to take off
    pushString,    ///< the string at address a, length byte and characters, likewise
    pushResult, ///< word dst := address of the real that an external function left in BC, DE, HL, now on the
                ///< stack
    externalCall, ///< code outside the program at address n; word dst := HL
    check, ///< library entry `index` unless constant b <= a <= constant dst (unsigned for bytes, signed for
           ///< words)
    blockMove,  ///< n bytes from the address in HL to the address in DE, both arguments
    portIn,     ///< byte dst := port a (word value or constant)
    portOut,    ///< port a := byte b
    inlineCode, ///< machine code of the program's own; everything is clobbered
    leave,      ///< return from the routine with a (or none)
};

/// An argument that a call wants in a certain register.
struct Argument {
    Operand operand;
    Width width = Width::word;
    z80::Pair pair = z80::Pair::hl; ///< word arguments
    z80::Reg reg = z80::Reg::a;     ///< byte arguments
};

struct Ir {
    IrOp op = IrOp::copy;
    Width width = Width::word; ///< of the operation: of dst, of the compared operands, of the stored thing
    Relation relation = Relation::equal;
    bool isSigned = false;  ///< relation on words
    bool reenters = false;  ///< call: may run this routine again
    bool dead = false;      ///< the result is never used and nothing else happens
    bool resultUsed = true; ///< dst is live afterwards
    z80::Reg resultReg = z80::Reg::a;
    z80::Pair resultPair = z80::Pair::hl;
    std::uint8_t argumentCount = 0;
    std::uint16_t firstArgument = 0;
    std::uint16_t index = 0; ///< routine ordinal, library entry, first byte of a literal or inline text
    std::uint16_t n = 0;     ///< sizes, counts
    BlockId target = noBlock;
    BlockId other = noBlock;
    Operand dst, a, b;
    Position position;
};

/// What is known of a virtual register.
struct ValueInfo {
    Width width = Width::word;
    bool crossesBlocks = false; ///< variables and other values that live from block to block
    bool callsMayUse = false;   ///< calls of routines read and change its home
    bool liveAtExit = false;    ///< its home is looked at after the routine has ended
    bool keptByCalls = false;   ///< its home holds the same after every call (frame addresses)
    bool hasHome = false;
    std::uint16_t home = 0;   ///< address in static memory; spilled values get theirs when needed
    std::uint32_t weight = 0; ///< uses, weighted by loop depth
};

struct Loop {
    std::uint16_t parent = 0; ///< index into Function::loops, 0 none
    std::uint8_t depth = 1;
    bool hasCall = false;
    bool hasInner = false;
    /// Values that keep a register throughout the loop.
    struct Pin {
        ValueId value = 0;
        z80::Mask registers = 0;
        bool changed = false; ///< assigned in the loop, so its home is stale
    };
    std::vector<Pin> pins;
};

struct Block {
    std::uint32_t first = 0, last = 0; ///< instructions [first, last)
    BlockId successors[2] = {noBlock, noBlock};
    std::uint16_t predecessors = 0;
    std::uint16_t loop = 0;
    bool started = false;
    bool checksStack = false; ///< begins with the look whether stack and heap meet
};

/// The code of one routine between the tree and the machine.
struct Function {
    std::deque<Ir>
        code; ///< in pieces, so that a long routine need not find room for twice its code while it grows
    std::vector<Argument> arguments;
    std::vector<Block> blocks;
    std::vector<BlockId> layout; ///< blocks in the order of their code
    std::vector<ValueInfo> values{1};
    std::vector<Loop> loops{1};
    std::vector<std::uint8_t> bytes; ///< texts of literals and inline code
    /// Literals: where each begins in `bytes` and its count.
    struct Literal {
        std::uint32_t first;
        std::uint16_t count;
    };
    std::vector<Literal> literals;
    /// Relocations inside inline code: offset in `bytes` of a word to which an address is added.
    std::vector<z80::Fixup> byteFixups;
    bool recursive = false;
    bool checksStackAtOnce = false; ///< looks at the stack at its beginning, wherever it calls on
    bool isMain = false;
    bool libraryCallsBack = false; ///< a routine of the program may be a driver that the library calls
};

/// A readable listing, one line an instruction, for tests and for finding faults.
std::string dump(const Function& function);

} // namespace tp3
