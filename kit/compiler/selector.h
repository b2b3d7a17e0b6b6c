#pragma once

#include "analysis.h"
#include "ir.h"
#include "storage.h"
#include "z80.h"
#include <runtime_entries.h>

#include <optional>
#include <vector>

namespace tp3 {

/// Turns intermediate code into Z80 instructions, block by block, choosing registers on the way: it knows at
/// every point which value each register holds, which values have an up-to-date copy in memory and which are
/// still needed. Values that a loop keeps in registers are where the loop says at every block boundary; all
/// others are in their homes there, except that a block with one predecessor starts with the registers as
/// that one left them.
class Selector {
  public:
    struct Result {
        std::vector<z80::Instruction> code;
        std::vector<std::uint8_t> pool;
        /// Words inside the pool's inline code to which an address is added: offset in `pool`.
        std::vector<z80::Fixup> poolFixups;
    };

    Selector(Function& function, const Liveness& liveness, Storage& storage);
    Result run();

  private:
    using Reg = z80::Reg;
    using Pair = z80::Pair;
    using Mask = z80::Mask;
    using Op = z80::Op;
    using Condition = z80::Condition;

    enum class Part : std::uint8_t { none, byte, low, high };
    struct Content {
        ValueId value = 0;
        Part part = Part::none;
        friend bool operator==(const Content&, const Content&) = default;
    };
    struct Registers {
        Content content[8];
    };
    /// How a block begins that goes on where its only predecessor ended.
    struct State {
        Registers registers;
        std::vector<std::uint32_t> inHome; ///< flags as in Liveness; none while the state is not known
    };
    /// What an operation on words or bytes left in the flags.
    struct Flags {
        Condition condition = Condition::always;
        bool always = false; ///< the relation always holds (or never, with `never`)
        bool never = false;
    };

    // selector.cpp: blocks
    void block(std::size_t layoutIndex);
    void startState(BlockId id);
    void instruction(Ir& ir);
    void branch(Ir& ir);
    void jumpTo(BlockId target, BlockId next);
    void emitJumps(Condition condition, BlockId target, BlockId other);
    void settleFor(BlockId target);
    void syncFor(BlockId target);
    [[nodiscard]] bool takesState(BlockId target) const;
    bool samePins(BlockId target) const;
    void keepStateFor(BlockId target);
    [[nodiscard]] BlockId nextBlock() const;

    // selector_emit.cpp: instructions
    z80::Instruction& emit(Op op, unsigned x = 0, unsigned y = 0, unsigned n = 0);
    void emitTo(Op op, unsigned x, const Operand& address);
    void move(Reg to, Reg from);
    void alu(z80::Alu op, Reg r) { emit(Op::alu, static_cast<unsigned>(op), static_cast<unsigned>(r)); }
    void aluN(z80::Alu op, std::int32_t n) {
        emit(Op::aluN, static_cast<unsigned>(op), 0, static_cast<unsigned>(n) & 0xFFU);
    }
    void loadN(Reg r, std::int32_t n) {
        emit(Op::ldRegN, static_cast<unsigned>(r), 0, static_cast<unsigned>(n) & 0xFFU);
    }
    void shift(z80::Shift op, Reg r) { emit(Op::shift, static_cast<unsigned>(op), static_cast<unsigned>(r)); }
    void jump(Condition condition, std::uint16_t label);
    void label(std::uint16_t label);
    std::uint16_t newLabel() { return nextLabel_++; }
    static unsigned code(Pair p) { return static_cast<unsigned>(p); }
    static unsigned code(Reg r) { return static_cast<unsigned>(r); }
    void libraryCall(RuntimeEntry entry);

    // selector_state.cpp: what registers hold
    [[nodiscard]] bool isWord(ValueId id) const { return function_.values[id].width == Width::word; }
    [[nodiscard]] bool pairHolds(Pair p, ValueId id) const;
    [[nodiscard]] bool findPair(ValueId id, Pair& p) const;
    [[nodiscard]] bool findReg(ValueId id, Reg& r) const;
    [[nodiscard]] bool inRegister(ValueId id) const;
    [[nodiscard]] bool isPinned(Reg r) const { return (pinned_ & z80::bit(r)) != 0; }
    [[nodiscard]] bool isLocked(Reg r) const { return (locked_ & z80::bit(r)) != 0; }
    void lock(Pair p) { locked_ = static_cast<Mask>(locked_ | z80::bits(p)); }
    void lock(Reg r) { locked_ = static_cast<Mask>(locked_ | z80::bit(r)); }
    void unlock(Mask mask) { locked_ = static_cast<Mask>(locked_ & ~mask); }
    /// A word that loses one half is not there any more.
    void forget(Reg r);
    void forget(Pair p) {
        forget(z80::low(p));
        forget(z80::high(p));
    }
    void forgetValue(ValueId id);
    void hold(Pair p, ValueId id);
    void hold(Reg r, ValueId id);
    /// The register's content is lost when overwritten: a live value with no other copy.
    [[nodiscard]] bool isPrecious(Reg r) const;
    [[nodiscard]] bool isFree(Reg r) const { return !isPrecious(r) && !isPinned(r) && !isLocked(r); }
    [[nodiscard]] bool isFree(Pair p) const { return isFree(z80::low(p)) && isFree(z80::high(p)); }
    [[nodiscard]] unsigned evictionCost(Reg r) const;
    [[nodiscard]] unsigned evictionCost(Pair p) const;
    void makeFree(Pair p);
    void makeFree(Reg r);
    void preserve(ValueId id, Mask leaving);
    void borrow(Pair p);
    void returnBorrowed();
    Pair takePair(Mask allowed);
    Reg takeReg(Mask allowed);
    std::uint16_t homeOf(ValueId id);
    void storeHome(ValueId id);
    void storePair(Pair p, const Operand& memory);
    void storeReg(Reg r, const Operand& memory);
    void spillAll(Mask clobbered);

    // selector_fetch.cpp: operands into registers
    void loadPair(Pair p, const Operand& operand);
    void loadReg(Reg r, const Operand& operand);
    Pair fetchPair(const Operand& operand, Mask allowed);
    Reg fetchReg(const Operand& operand, Mask allowed);
    /// The operand in a pair that may be changed: a copy when the value is needed afterwards.
    Pair fetchOwn(const Operand& operand, Mask allowed);
    void fetchAccumulator(const Operand& operand);
    Pair fetchAddress(const Operand& indirect, Mask allowed);
    void define(const Operand& dst, Pair p);
    void define(const Operand& dst, Reg r);
    void consume(const Operand& operand);
    [[nodiscard]] Mask pinOf(ValueId id) const;
    [[nodiscard]] bool isBorrowed(Pair p) const;
    [[nodiscard]] bool hasCopyOutside(ValueId id, Mask mask) const;
    [[nodiscard]] bool isWanted(ValueId id) const { return live_[id] || needed_[id] != 0; }

    // select_word.cpp
    void wordOperation(Ir& ir);
    void addWord(Ir& ir);
    void subtractWord(Ir& ir);
    void logicWord(Ir& ir);
    void negateWord(Ir& ir);
    void shiftWord(Ir& ir);
    void multiplyConstant(Ir& ir);
    void dividePower(Ir& ir);
    void widen(Ir& ir);
    void joinBytes(Ir& ir);
    // select_byte.cpp
    void byteOperation(Ir& ir);
    void byteAlu(Ir& ir, z80::Alu op);
    void shiftByte(Ir& ir);
    void narrow(Ir& ir, bool high);
    // select_memory.cpp
    void copy(Ir& ir);
    void loadMemory(Ir& ir);
    void store(Ir& ir);
    void storeWord(Ir& ir);
    void storeByte(Ir& ir);
    // select_compare.cpp
    Flags compareFlags(Ir& ir);
    void stayInLoopEarly(Ir& ir);
    Flags compareBytes(Ir& ir);
    Flags compareWords(Ir& ir);
    Flags equalWords(Ir& ir);
    Flags lessWords(Ir& ir);
    Flags lessThanConstant(Pair p, std::int32_t n, bool wantLess);
    void compare(Ir& ir);
    void check(Ir& ir);
    // select_call.cpp
    void call(Ir& ir);
    void placeArguments(Ir& ir);
    void clobberAll(Mask mask);
    struct Saved {
        Pair pair;
        Content low, high;
    };
    std::vector<Saved> pushLive();
    void popLive(std::vector<Saved>& saved, Mask result);
    void parameters(Ir& ir);
    void special(Ir& ir);
    void inlineCode(Ir& ir);
    void leave(Ir& ir);
    void portAccess(Ir& ir);
    void stackOperation(Ir& ir);
    void finishStackCheck();
    void externalOperation(Ir& ir);

    Function& function_;
    const Liveness& liveness_;
    Storage& storage_;
    Result result_;
    Registers registers_;
    std::vector<std::uint8_t> inHome_; ///< 1: the home holds the value
    std::vector<std::uint8_t> live_;   ///< 1: it is
    std::vector<std::uint8_t> needed_; ///< operands of the current instruction that are still to be fetched
    std::vector<State> entryState_;    ///< by block, for those that take it
    std::vector<std::size_t> layoutPosition_; ///< by block
    std::vector<Saved> borrowed_;
    std::optional<std::size_t> stackCheckAt_; ///< its first instruction
    std::size_t savedMost_ = 0;               ///< bytes saved around the call that saves most
    Mask pinned_ = 0;
    Mask locked_ = 0;
    BlockId current_ = noBlock;
    std::size_t layoutIndex_ = 0;
    std::uint16_t nextLabel_ = 0;
    std::uint16_t literalBase_ = 0;
    Position position_;
    bool resultUsed_ = true; ///< of the current instruction
};

} // namespace tp3
