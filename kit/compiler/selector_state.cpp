#include "selector.h"

namespace tp3 {

using z80::bit;
using z80::bits;
using z80::high;
using z80::low;

bool Selector::pairHolds(Pair p, ValueId id) const {
    return registers_.content[code(low(p))] == Content{id, Part::low} &&
           registers_.content[code(high(p))] == Content{id, Part::high};
}

bool Selector::findPair(ValueId id, Pair& p) const {
    for (const Pair candidate : {Pair::hl, Pair::de, Pair::bc}) {
        if (pairHolds(candidate, id)) {
            p = candidate;
            return true;
        }
    }
    return false;
}

bool Selector::findReg(ValueId id, Reg& r) const {
    for (const Reg candidate : {Reg::a, Reg::l, Reg::e, Reg::c, Reg::b, Reg::d, Reg::h}) {
        if (registers_.content[code(candidate)] == Content{id, Part::byte}) {
            r = candidate;
            return true;
        }
    }
    return false;
}

bool Selector::inRegister(ValueId id) const {
    Pair p = Pair::hl;
    Reg r = Reg::a;
    return isWord(id) ? findPair(id, p) : findReg(id, r);
}

void Selector::forget(Reg r) {
    Content& content = registers_.content[code(r)];
    if (content.part == Part::low || content.part == Part::high) {
        Content& twin = registers_.content[code(r) ^ 1U];
        if (twin.value == content.value && twin.part != content.part) {
            twin = {};
        }
    }
    content = {};
}

/// The value is also held by registers that are not in `mask`.
bool Selector::hasCopyOutside(ValueId id, Mask mask) const {
    if (isWord(id)) {
        for (const Pair p : {Pair::hl, Pair::de, Pair::bc}) {
            if ((bits(p) & mask) == 0 && pairHolds(p, id)) {
                return true;
            }
        }
        return false;
    }
    for (unsigned i = 0; i < 8; ++i) {
        if ((bit(static_cast<Reg>(i)) & mask) == 0 && registers_.content[i] == Content{id, Part::byte}) {
            return true;
        }
    }
    return false;
}

void Selector::forgetValue(ValueId id) {
    for (Content& content : registers_.content) {
        if (content.value == id) {
            content = {};
        }
    }
}

void Selector::hold(Pair p, ValueId id) {
    forget(p);
    registers_.content[code(low(p))] = {id, Part::low};
    registers_.content[code(high(p))] = {id, Part::high};
}

void Selector::hold(Reg r, ValueId id) {
    forget(r);
    registers_.content[code(r)] = {id, Part::byte};
}

bool Selector::isPrecious(Reg r) const {
    const Content& content = registers_.content[code(r)];
    const Mask own = content.part == Part::byte ? bit(r) : bits(static_cast<Pair>(code(r) / 2));
    return content.part != Part::none && isWanted(content.value) && !inHome_[content.value] &&
           !hasCopyOutside(content.value, own);
}

/// Roughly the T-states that overwriting the register costs.
unsigned Selector::evictionCost(Reg r) const {
    constexpr unsigned impossible = 100000;
    constexpr unsigned pushAndPop = 1000;
    if (isLocked(r)) {
        return impossible;
    }
    if (isPinned(r)) {
        return pushAndPop;
    }
    const Content& content = registers_.content[code(r)];
    if (content.part == Part::none || !isWanted(content.value)) {
        return 0;
    }
    return inHome_[content.value] ? 8 : 20;
}

unsigned Selector::evictionCost(Pair p) const {
    return evictionCost(low(p)) + evictionCost(high(p));
}

/// Saves a value that is about to lose the registers in `leaving`, in another register or in its home.
void Selector::preserve(ValueId id, Mask leaving) {
    if (!isWanted(id) || inHome_[id] || hasCopyOutside(id, leaving)) {
        return;
    }
    const Mask lockedBefore = locked_;
    locked_ = static_cast<Mask>(locked_ | leaving);
    if (isWord(id)) {
        Pair p = Pair::hl;
        if (findPair(id, p)) {
            for (const Pair other : {Pair::de, Pair::bc, Pair::hl}) {
                if (isFree(other)) {
                    move(low(other), low(p));
                    move(high(other), high(p));
                    hold(other, id);
                    locked_ = lockedBefore;
                    return;
                }
            }
        }
    } else {
        Reg r = Reg::a;
        if (findReg(id, r)) {
            for (const Reg other : {Reg::e, Reg::c, Reg::b, Reg::d, Reg::a}) {
                if (isFree(other)) {
                    move(other, r);
                    hold(other, id);
                    locked_ = lockedBefore;
                    return;
                }
            }
        }
    }
    storeHome(id);
    locked_ = lockedBefore;
}

void Selector::makeFree(Reg r) {
    if (isPinned(r)) {
        borrow(static_cast<Pair>(code(r) / 2));
        return;
    }
    if (isPrecious(r)) {
        const Content content = registers_.content[code(r)];
        // A word loses both halves with one: none of them may be taken for a copy of it.
        Mask leaving = bit(r);
        Pair p = Pair::hl;
        if (content.part != Part::byte && findPair(content.value, p)) {
            leaving = bits(p);
        }
        preserve(content.value, leaving);
    }
    forget(r);
}

void Selector::makeFree(Pair p) {
    if (isPinned(low(p)) || isPinned(high(p))) {
        borrow(p);
        return;
    }
    const Mask lockedBefore = locked_;
    for (const Reg r : {low(p), high(p)}) {
        if (isPrecious(r)) {
            const ValueId id = registers_.content[code(r)].value;
            preserve(id, bits(p));
            forget(r); // or the copy just made would pass for a spare one when the other half looks for room
        }
    }
    locked_ = lockedBefore;
    forget(p);
}

/// Takes a pair that the loop keeps a value in; it is put back when the instruction is done.
void Selector::borrow(Pair p) {
    emit(Op::push, code(p));
    borrowed_.push_back({p, registers_.content[code(low(p))], registers_.content[code(high(p))]});
    pinned_ = static_cast<Mask>(pinned_ & ~bits(p));
    forget(p);
}

void Selector::returnBorrowed() {
    while (!borrowed_.empty()) {
        const Saved saved = borrowed_.back();
        borrowed_.pop_back();
        makeFree(saved.pair);
        emit(Op::pop, code(saved.pair));
        registers_.content[code(low(saved.pair))] = saved.low;
        registers_.content[code(high(saved.pair))] = saved.high;
        pinned_ = static_cast<Mask>(pinned_ | bits(saved.pair));
    }
}

/// The cheapest pair of those allowed, made free.
Selector::Pair Selector::takePair(Mask allowed) {
    Pair best = Pair::hl;
    unsigned bestCost = 1000000;
    for (const Pair p : {Pair::hl, Pair::de, Pair::bc}) {
        if ((allowed & bits(p)) == bits(p) && evictionCost(p) < bestCost) {
            best = p;
            bestCost = evictionCost(p);
        }
    }
    makeFree(best);
    return best;
}

Selector::Reg Selector::takeReg(Mask allowed) {
    Reg best = Reg::a;
    unsigned bestCost = 1000000;
    for (const Reg r : {Reg::a, Reg::e, Reg::l, Reg::c, Reg::b, Reg::d, Reg::h}) {
        if ((allowed & bit(r)) != 0 && evictionCost(r) < bestCost) {
            best = r;
            bestCost = evictionCost(r);
        }
    }
    makeFree(best);
    return best;
}

std::uint16_t Selector::homeOf(ValueId id) {
    ValueInfo& info = function_.values[id];
    if (!info.hasHome) {
        info.hasHome = true;
        info.home = storage_.allocate(static_cast<unsigned>(info.width));
    }
    return info.home;
}

void Selector::storePair(Pair p, const Operand& memory) {
    emitTo(Op::ldMemPair, code(p), memory);
}

/// Stores a byte register; A is used on the way when it can be spared, else its twin.
void Selector::storeReg(Reg r, const Operand& memory) {
    if (r == Reg::a) {
        emitTo(Op::ldMemA, 0, memory);
    } else if (isFree(Reg::a)) {
        move(Reg::a, r);
        forget(Reg::a);
        emitTo(Op::ldMemA, 0, memory);
    } else {
        emit(Op::exAf);
        move(Reg::a, r);
        emitTo(Op::ldMemA, 0, memory);
        emit(Op::exAf);
    }
}

void Selector::storeHome(ValueId id) {
    if (inHome_[id]) {
        return;
    }
    const Operand memory = Operand::memory(homeOf(id));
    Pair p = Pair::hl;
    Reg r = Reg::a;
    if (isWord(id) && findPair(id, p)) {
        storePair(p, memory);
    } else if (!isWord(id) && findReg(id, r)) {
        storeReg(r, memory);
    }
    inHome_[id] = 1;
}

/// Saves every live value that has its only copy in one of these registers, and forgets the registers.
void Selector::spillAll(Mask clobbered) {
    for (unsigned i = 0; i < 8; ++i) {
        const Content content = registers_.content[i];
        // Two copies that are both lost are none.
        if ((clobbered & bit(static_cast<Reg>(i))) != 0 && content.part != Part::none &&
            isWanted(content.value) && !hasCopyOutside(content.value, clobbered)) {
            storeHome(content.value);
        }
    }
    for (unsigned i = 0; i < 8; ++i) {
        if ((clobbered & bit(static_cast<Reg>(i))) != 0) {
            registers_.content[i] = {};
        }
    }
}

} // namespace tp3
