#include "peephole.h"

#include <algorithm>
#include <cstddef>

namespace tp3 {

namespace {

using z80::Condition;
using z80::Instruction;
using z80::Mask;
using z80::Op;

bool isLabel(const Instruction& i, std::uint16_t index) {
    return i.op == Op::label && i.index == index;
}

bool isLocalJump(const Instruction& i) {
    return i.op == Op::jump && i.target == z80::Target::local;
}

bool endsFlow(const Instruction& i) {
    return (i.op == Op::jump || i.op == Op::ret) && static_cast<Condition>(i.x) == Condition::always;
}

bool hasEffect(const Instruction& i) {
    switch (i.op) {
    case Op::ldRegReg:
    case Op::ldRegN:
    case Op::ldPairN:
    case Op::ldPairMem:
    case Op::ldAMem:
    case Op::ldAPair:
    case Op::inc16:
    case Op::dec16:
    case Op::inc8:
    case Op::dec8:
    case Op::alu:
    case Op::aluN:
    case Op::addHl:
    case Op::sbcHl:
    case Op::exDeHl:
    case Op::shift:
    case Op::bitTest:
    case Op::neg:
    case Op::cpl:
    case Op::ccf:
    case Op::rla:
    case Op::rra:
    case Op::rlca:
    case Op::rrca:
        return false;
    default:
        return true;
    }
}

class Peephole {
  public:
    explicit Peephole(std::vector<Instruction>& code) : code_(code), removed_(code.size()) {}

    bool run() {
        for (std::size_t i = 0; i < code_.size(); ++i) {
            if (removed_[i] == 0) {
                changed_ = rule(i) || changed_;
            }
        }
        deadWrites();
        std::size_t kept = 0;
        for (std::size_t i = 0; i < code_.size(); ++i) {
            if (removed_[i] == 0) {
                code_[kept++] = code_[i];
            }
        }
        code_.resize(kept);
        return changed_;
    }

  private:
    /// The next instruction that is still there, or the end.
    std::size_t after(std::size_t i) const {
        do {
            ++i;
        } while (i < code_.size() && removed_[i] != 0);
        return i;
    }
    void remove(std::size_t i) {
        removed_[i] = 1;
        changed_ = true;
    }
    bool at(std::size_t i) const { return i < code_.size(); }

    bool rule(std::size_t i) {
        switch (code_[i].op) {
        case Op::jump:
            return unreachable(i) || jumpToNext(i) || jumpOverJump(i) || jumpOverReturn(i);
        case Op::ret:
            return unreachable(i);
        case Op::ldRegReg:
        case Op::exDeHl:
            return moveBack(i);
        case Op::call:
            return tailCall(i);
        case Op::ldRegN:
            return zeroAccumulator(i);
        default:
            return false;
        }
    }

    bool unreachable(std::size_t i) {
        if (!endsFlow(code_[i])) {
            return false;
        }
        const std::size_t next = after(i);
        if (!at(next) || code_[next].op == Op::label || code_[next].op == Op::bytes) {
            return false;
        }
        remove(next);
        return true;
    }

    bool jumpToNext(std::size_t i) {
        if (!isLocalJump(code_[i])) {
            return false;
        }
        for (std::size_t next = after(i); at(next) && code_[next].op == Op::label; next = after(next)) {
            if (isLabel(code_[next], code_[i].index)) {
                remove(i);
                return true;
            }
        }
        return false;
    }

    /// JP cc,a / JP b / a: becomes JP not cc,b.
    bool jumpOverJump(std::size_t i) {
        const std::size_t second = after(i);
        if (!isLocalJump(code_[i]) || static_cast<Condition>(code_[i].x) == Condition::always ||
            !at(second) || !isLocalJump(code_[second]) ||
            static_cast<Condition>(code_[second].x) != Condition::always) {
            return false;
        }
        for (std::size_t next = after(second); at(next) && code_[next].op == Op::label; next = after(next)) {
            if (isLabel(code_[next], code_[i].index)) {
                code_[i].x = static_cast<std::uint8_t>(z80::inverse(static_cast<Condition>(code_[i].x)));
                code_[i].index = code_[second].index;
                remove(second);
                return true;
            }
        }
        return false;
    }

    /// JP cc,a / RET / a: becomes RET not cc.
    bool jumpOverReturn(std::size_t i) {
        const std::size_t second = after(i);
        if (!isLocalJump(code_[i]) || static_cast<Condition>(code_[i].x) == Condition::always ||
            !at(second) || code_[second].op != Op::ret ||
            static_cast<Condition>(code_[second].x) != Condition::always) {
            return false;
        }
        const std::size_t next = after(second);
        if (!at(next) || !isLabel(code_[next], code_[i].index)) {
            return false;
        }
        code_[second].x = static_cast<std::uint8_t>(z80::inverse(static_cast<Condition>(code_[i].x)));
        remove(i);
        return true;
    }

    /// LD x,y / LD y,x: the second changes nothing. So does EX DE,HL after EX DE,HL.
    bool moveBack(std::size_t i) {
        const std::size_t next = after(i);
        if (!at(next)) {
            return false;
        }
        const Instruction& a = code_[i];
        const Instruction& b = code_[next];
        if (a.op == Op::ldRegReg && b.op == Op::ldRegReg && a.x == b.y && a.y == b.x) {
            remove(next);
            return true;
        }
        if (a.op == Op::exDeHl && b.op == Op::exDeHl) {
            remove(i);
            remove(next);
            return true;
        }
        return false;
    }

    /// CALL routine / RET becomes JP routine. Library entries are left alone: they tell where they were
    /// called from.
    bool tailCall(std::size_t i) {
        const std::size_t next = after(i);
        if (code_[i].target != z80::Target::routine || !at(next) || code_[next].op != Op::ret ||
            static_cast<Condition>(code_[next].x) != Condition::always) {
            return false;
        }
        code_[i].op = Op::jump;
        code_[i].x = static_cast<std::uint8_t>(Condition::always);
        remove(next);
        return true;
    }

    /// LD A,0 becomes XOR A where nobody looks at the flags any more.
    bool zeroAccumulator(std::size_t i) {
        Instruction& a = code_[i];
        if (static_cast<z80::Reg>(a.x) != z80::Reg::a || a.n != 0 || flagsUsedAfter(i)) {
            return false;
        }
        a.op = Op::alu;
        a.x = static_cast<std::uint8_t>(z80::Alu::bitXor);
        a.y = static_cast<std::uint8_t>(z80::Reg::a);
        return true;
    }

    bool flagsUsedAfter(std::size_t i) const {
        for (std::size_t next = after(i); at(next); next = after(next)) {
            const Instruction& n = code_[next];
            if (n.op == Op::call || (n.op == Op::ret && static_cast<Condition>(n.x) == Condition::always)) {
                return false; // nothing is handed over in the flags
            }
            if ((z80::reads(n) & z80::flagsBit) != 0 || n.op == Op::label || n.op == Op::jump ||
                n.op == Op::bytes) {
                return true;
            }
            if ((z80::writes(n) & z80::flagsBit) != 0) {
                return false;
            }
        }
        return true;
    }

    /// Drops loads and arithmetic whose results are overwritten unread within a straight piece of code.
    void deadWrites() {
        Mask live = z80::everything;
        for (std::size_t i = code_.size(); i-- > 0;) {
            if (removed_[i] != 0) {
                continue;
            }
            const Instruction& instruction = code_[i];
            const bool flow =
                instruction.op == Op::label || instruction.op == Op::jump || instruction.op == Op::bytes;
            if (flow || instruction.op == Op::call || instruction.op == Op::ret) {
                live = z80::everything;
                continue;
            }
            const Mask written = z80::writes(instruction);
            const bool touchesMemory = (written & z80::memoryBit) != 0 || (written & z80::stackBit) != 0;
            if (!hasEffect(instruction) && !touchesMemory && (written & live) == 0) {
                remove(i);
                continue;
            }
            live = static_cast<Mask>((live & ~written) | z80::reads(instruction) | z80::memoryBit |
                                     z80::stackBit);
        }
    }

    std::vector<Instruction>& code_;
    std::vector<std::uint8_t> removed_; // 1: it is
    bool changed_ = false;
};

} // namespace

void peephole(std::vector<z80::Instruction>& code) {
    constexpr int mostRounds = 6; // each round opens chances for the next; few programs need three
    for (int round = 0; round < mostRounds && Peephole(code).run(); ++round) {
    }
}

} // namespace tp3
