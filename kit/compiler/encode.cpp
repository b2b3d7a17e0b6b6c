#include "z80.h"

#include <cstddef>

namespace tp3::z80 {

namespace {

/// Decides which jumps are short and where everything lies, then writes the bytes.
class Encoder {
  public:
    Encoder(const std::vector<Instruction>& code, const std::vector<std::uint8_t>& pool,
            const std::vector<Fixup>& poolFixups, bool preferSize)
        : code_(code), pool_(pool), poolFixups_(poolFixups), preferSize_(preferSize), isShort_(code.size()),
          lengths_(code.size()), offsets_(code.size() + 1) {}

    Encoded run() {
        for (std::size_t i = 0; i < code_.size(); ++i) {
            if (code_[i].op == Op::label && code_[i].index >= labels_.size()) {
                labels_.resize(code_[i].index + 1U);
            }
            isShort_[i] = mayBeShort(code_[i]) ? 1 : 0;
            lengths_[i] = static_cast<std::uint8_t>(length(code_[i], isShort_[i] != 0));
        }
        // Start with every candidate short and lengthen what does not reach: lengths only grow, so this ends.
        do {
            place();
        } while (lengthen());
        result_.bytes.reserve(offsets_.back());
        for (std::size_t i = 0; i < code_.size(); ++i) {
            write(i);
        }
        return static_cast<Encoded&&>(result_);
    }

  private:
    static bool mayBeShort(const Instruction& i) {
        return i.op == Op::jump && i.target == Target::local && i.x != 4 && i.x != 5 && i.x != 6 && i.x != 7;
    }

    void place() {
        std::uint32_t offset = 0;
        for (std::size_t i = 0; i < code_.size(); ++i) {
            offsets_[i] = offset;
            if (code_[i].op == Op::label) {
                labels_[code_[i].index] = offset;
            }
            offset += lengths_[i];
        }
        offsets_[code_.size()] = offset;
    }

    [[nodiscard]] std::int32_t distance(std::size_t i) const {
        return static_cast<std::int32_t>(labels_[code_[i].index]) - static_cast<std::int32_t>(offsets_[i]) -
               2;
    }

    bool lengthen() {
        bool changed = false;
        for (std::size_t i = 0; i < code_.size(); ++i) {
            if (isShort_[i] == 0) {
                continue;
            }
            const std::int32_t d = distance(i);
            // A jump that is taken costs 12 T-states short and 10 long; jumps back and unconditional ones
            // mostly are.
            const bool mostlyTaken = d < 0 || static_cast<Condition>(code_[i].x) == Condition::always;
            if (d < -128 || d > 127 || (mostlyTaken && !preferSize_)) {
                isShort_[i] = 0;
                lengths_[i] = static_cast<std::uint8_t>(length(code_[i], false));
                changed = true;
            }
        }
        return changed;
    }

    void byte(unsigned value) { result_.bytes.push_back(static_cast<std::uint8_t>(value)); }

    void poolBytes(const Instruction& i) {
        const auto here = static_cast<std::uint32_t>(result_.bytes.size());
        for (unsigned k = 0; k < i.x; ++k) {
            byte(pool_[i.n + k]);
        }
        for (const Fixup& fixup : poolFixups_) {
            if (fixup.offset < i.n || fixup.offset >= i.n + i.x) {
                continue;
            }
            const auto offset = static_cast<std::uint16_t>(here + fixup.offset - i.n);
            if (fixup.target != Target::local) {
                result_.fixups.push_back({offset, fixup.target, fixup.index});
                continue;
            }
            // A location counter: relative to where the inline code begins.
            const unsigned value =
                (result_.bytes[offset] | unsigned{result_.bytes[offset + 1U]} << 8U) + here;
            result_.bytes[offset] = static_cast<std::uint8_t>(value & 0xFFU);
            result_.bytes[offset + 1U] = static_cast<std::uint8_t>(value >> 8U & 0xFFU);
            result_.ownAddresses.push_back({offset, fixup.target, fixup.index});
        }
    }

    void word(const Instruction& i) {
        const auto here = static_cast<std::uint16_t>(result_.bytes.size());
        std::uint32_t value = i.n;
        if (i.target == Target::local) {
            value += labels_[i.index];
            result_.ownAddresses.push_back({here, i.target, i.index});
        } else if (i.target != Target::absolute) {
            result_.fixups.push_back({here, i.target, i.index});
        }
        byte(value & 0xFFU);
        byte(value >> 8U & 0xFFU);
    }

    void jumpBytes(std::size_t index) {
        const Instruction& i = code_[index];
        const bool always = static_cast<Condition>(i.x) == Condition::always;
        if (isShort_[index] != 0) {
            byte(always ? 0x18U : 0x20U + i.x * 8U);
            byte(static_cast<unsigned>(distance(index)) & 0xFFU);
        } else {
            byte(always ? 0xC3U : 0xC2U + i.x * 8U);
            word(i);
        }
    }

    void writeLoad(const Instruction& i) {
        switch (i.op) {
        case Op::ldRegReg:
            byte(0x40U + i.x * 8U + i.y);
            break;
        case Op::ldRegN:
            byte(0x06U + i.x * 8U);
            byte(i.n & 0xFFU);
            break;
        case Op::ldPairN:
            byte(0x01U + i.x * 16U);
            word(i);
            break;
        case Op::ldPairMem:
        case Op::ldMemPair: {
            const unsigned load = i.op == Op::ldPairMem ? 8U : 0U;
            if (static_cast<Pair>(i.x) == Pair::hl) {
                byte(0x22U + load);
            } else {
                byte(0xEDU);
                byte(0x43U + i.x * 16U + load);
            }
            word(i);
            break;
        }
        case Op::ldAMem:
            byte(0x3AU);
            word(i);
            break;
        case Op::ldMemA:
            byte(0x32U);
            word(i);
            break;
        case Op::ldAPair:
            byte(0x0AU + i.x * 16U);
            break;
        case Op::ldPairA:
            byte(0x02U + i.x * 16U);
            break;
        default:
            break;
        }
    }

    /// Instructions of one or two fixed bytes.
    static unsigned fixedCode(Op op) {
        switch (op) {
        case Op::ldSpHl:
            return 0xF9;
        case Op::exDeHl:
            return 0xEB;
        case Op::exAf:
            return 0x08;
        case Op::neg:
            return 0xED44;
        case Op::cpl:
            return 0x2F;
        case Op::ccf:
            return 0x3F;
        case Op::rla:
            return 0x17;
        case Op::rra:
            return 0x1F;
        case Op::rlca:
            return 0x07;
        case Op::rrca:
            return 0x0F;
        case Op::ldir:
            return 0xEDB0;
        default:
            return 0;
        }
    }

    void write(std::size_t index) {
        const Instruction& i = code_[index];
        if (i.op != Op::label && i.position.line != 0) {
            result_.lines.push_back({static_cast<std::uint16_t>(result_.bytes.size()), i.position});
        }
        switch (i.op) {
        case Op::label:
            break;
        case Op::bytes:
            poolBytes(i);
            break;
        case Op::alu:
            byte(0x80U + i.x * 8U + i.y);
            break;
        case Op::aluN:
            byte(0xC6U + i.x * 8U);
            byte(i.n & 0xFFU);
            break;
        case Op::inc8:
            byte(0x04U + i.x * 8U);
            break;
        case Op::dec8:
            byte(0x05U + i.x * 8U);
            break;
        case Op::inc16:
            byte(0x03U + i.x * 16U);
            break;
        case Op::dec16:
            byte(0x0BU + i.x * 16U);
            break;
        case Op::addHl:
            byte(0x09U + i.x * 16U);
            break;
        case Op::sbcHl:
            byte(0xEDU);
            byte(0x42U + i.x * 16U);
            break;
        case Op::push:
            byte(0xC5U + i.x * 16U);
            break;
        case Op::pop:
            byte(0xC1U + i.x * 16U);
            break;
        case Op::shift:
            byte(0xCBU);
            byte(i.x * 8U + i.y);
            break;
        case Op::bitTest:
            byte(0xCBU);
            byte(0x40U + i.x * 8U + i.y);
            break;
        case Op::jump:
            jumpBytes(index);
            break;
        case Op::call:
            byte(0xCDU);
            word(i);
            break;
        case Op::ret:
            byte(static_cast<Condition>(i.x) == Condition::always ? 0xC9U : 0xC0U + i.x * 8U);
            break;
        case Op::inC:
            byte(0xEDU);
            byte(0x40U + i.x * 8U);
            break;
        case Op::outC:
            byte(0xEDU);
            byte(0x41U + i.x * 8U);
            break;
        case Op::inN:
            byte(0xDBU);
            byte(i.n & 0xFFU);
            break;
        case Op::outN:
            byte(0xD3U);
            byte(i.n & 0xFFU);
            break;
        default:
            if (const unsigned fixed = fixedCode(i.op); fixed != 0) {
                if (fixed > 0xFFU) {
                    byte(fixed >> 8U);
                }
                byte(fixed & 0xFFU);
            } else {
                writeLoad(i);
            }
            break;
        }
    }

    const std::vector<Instruction>& code_;
    const std::vector<std::uint8_t>& pool_;
    const std::vector<Fixup>& poolFixups_;
    bool preferSize_;
    std::vector<std::uint8_t> isShort_; // 1: the jump is
    std::vector<std::uint8_t> lengths_; // in bytes
    std::vector<std::uint32_t> offsets_;
    std::vector<std::uint32_t> labels_;
    Encoded result_;
};

} // namespace

Encoded encode(const std::vector<Instruction>& code, const std::vector<std::uint8_t>& pool,
               const std::vector<Fixup>& poolFixups, bool preferSize) {
    return Encoder(code, pool, poolFixups, preferSize).run();
}

} // namespace tp3::z80
