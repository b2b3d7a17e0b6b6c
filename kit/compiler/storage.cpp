#include "storage.h"

#include "z80.h"

#include <algorithm>

namespace tp3 {

namespace {

/// The symbol stands for an address that the caller gave: a VAR parameter, or a result too large for
/// registers.
bool holdsAddress(const Symbol& variable) {
    return variable.storage == StorageKind::varParameter ||
           (variable.storage == StorageKind::result && !isScalar(variable.type));
}

template <typename T> T& at(std::vector<T>& list, std::size_t index) {
    if (index >= list.size()) {
        list.resize(index + 1);
    }
    return list[index];
}

} // namespace

Storage::Storage(const Survey& survey, std::uint16_t endAddress) : survey_(survey), next_(endAddress) {}

std::uint16_t Storage::allocate(std::uint32_t size) {
    // Something must be left for library, code and stack; the image check tells the exact story later.
    constexpr std::uint32_t leastAddress = 0x1000;
    if (size > next_ || next_ - size < leastAddress) {
        exhausted_ = true;
        return leastAddress;
    }
    next_ -= size;
    return static_cast<std::uint16_t>(next_);
}

std::uint16_t Storage::homeOf(const Symbol& variable) {
    std::uint16_t& home = at(homes_, variable.ordinal);
    if (home == 0) {
        home = allocate(holdsAddress(variable) ? 2U : variable.type->size);
    }
    return home;
}

void Storage::reserve(const Symbol& global) {
    homeOf(global);
}

std::uint16_t Storage::frameOffset(const Symbol& variable, std::uint16_t size) {
    std::uint16_t& offset = at(offsets_, variable.ordinal);
    if (offset == 0) {
        FrameState& frame = at(frames_, variable.owner->ordinal);
        offset = static_cast<std::uint16_t>(frame.size + 1U);
        frame.size = static_cast<std::uint16_t>(frame.size + size);
    }
    return static_cast<std::uint16_t>(offset - 1U);
}

std::uint16_t Storage::frameHome(const Routine& routine) {
    if (at(frames_, routine.ordinal).home == 0) {
        const std::uint16_t home = allocate(2);
        frames_[routine.ordinal].home = home;
    }
    return frames_[routine.ordinal].home;
}

std::uint16_t Storage::frameSize(const Routine& routine) const {
    return routine.ordinal < frames_.size() ? frames_[routine.ordinal].size : std::uint16_t{0};
}

Slot Storage::slotOf(const Symbol& variable, const Routine& user) {
    Slot slot;
    if (variable.storage == StorageKind::typedConstant) {
        slot.kind = SlotKind::constant;
        return slot;
    }
    if (variable.storage == StorageKind::absoluteAddress) {
        slot.address = static_cast<std::uint16_t>(variable.value);
        return slot;
    }
    const VariableFacts facts =
        variable.ordinal < survey_.variables.size() ? survey_.variables[variable.ordinal] : VariableFacts{};
    slot.pointer = holdsAddress(variable);
    const bool scalar = slot.pointer || (isScalar(variable.type) && !facts.addressTaken);
    const bool global = variable.owner == nullptr;
    const bool outer = !global && variable.owner != &user;
    if (!global && survey_.routines[variable.owner->ordinal].recursive && (!scalar || facts.usedByNested)) {
        slot.kind = SlotKind::frame;
        slot.address = frameOffset(variable, slot.pointer ? std::uint16_t{2} : variable.type->size);
        return slot;
    }
    slot.address = homeOf(variable);
    slot.kind = scalar ? SlotKind::value : SlotKind::memory;
    slot.callsMayUse = facts.usedByNested || (global && survey_.chains);
    slot.liveAtExit = outer || (global && user.level > 0);
    return slot;
}

std::vector<ParameterPlace> Storage::parameterPlaces(const Routine& routine) {
    std::vector<ParameterPlace> places;
    constexpr z80::Pair order[] = {z80::Pair::hl, z80::Pair::de, z80::Pair::bc};
    unsigned pairs = 0;
    bool accumulator = false;
    const bool recursive = survey_.routines[routine.ordinal].recursive;
    const auto place = [&](const Symbol& parameter) {
        ParameterPlace result;
        result.isByte = parameter.storage == StorageKind::valueParameter && isScalar(parameter.type) &&
                        parameter.type->size == 1;
        if (result.isByte && !accumulator) {
            accumulator = true;
            result.kind = ParameterPlace::Kind::reg;
            result.code = static_cast<std::uint8_t>(z80::Reg::a);
        } else if (pairs < 3) {
            const z80::Pair pair = order[pairs++];
            result.kind = result.isByte ? ParameterPlace::Kind::reg : ParameterPlace::Kind::pair;
            result.code =
                result.isByte ? static_cast<std::uint8_t>(z80::low(pair)) : static_cast<std::uint8_t>(pair);
        } else if (recursive || !isScalar(parameter.type)) {
            // What the callee keeps elsewhere, or must copy first, is handed over in a place of its own.
            std::uint16_t& home = at(passHomes_, parameter.ordinal);
            if (home == 0) {
                home = allocate(result.isByte ? 1 : 2);
            }
            result.address = passHomes_[parameter.ordinal];
        } else {
            result.address = homeOf(parameter);
        }
        places.push_back(result);
    };
    if (routine.result != nullptr && !isScalar(routine.result->type)) {
        place(*routine.result);
    }
    for (const Symbol* p = routine.parameters; p != nullptr; p = p->next) {
        place(*p);
    }
    return places;
}

void analyseCalls(const std::vector<std::vector<std::uint16_t>>& callees,
                  std::vector<Survey::RoutineFacts>& routines) {
    const std::size_t count = callees.size();
    if (routines.size() < count) {
        routines.resize(count);
    }
    // Tarjan's strongly connected components with a stack of our own: call chains may be long, machine stacks
    // short.
    struct Visit {
        std::uint16_t routine;
        std::uint16_t next;
    };
    std::vector<std::uint16_t> number(count), lowest(count), open;
    std::vector<std::uint16_t> levels(count); // of calls below the routine, as far as nothing is checked
    std::vector<bool> isOpen(count);
    std::vector<Visit> visits;
    std::uint16_t counter = 0;
    std::uint16_t components = 0;
    // Only what the main program reaches is looked at: the rest is not compiled.
    if (count > 0) {
        visits.push_back({0, 0});
    }
    while (!visits.empty()) {
        const std::uint16_t r = visits.back().routine;
        if (visits.back().next == 0) {
            number[r] = lowest[r] = ++counter;
            open.push_back(r);
            isOpen[r] = true;
            routines[r].used = true;
        }
        if (visits.back().next < callees[r].size()) {
            const std::uint16_t callee = callees[r][visits.back().next++];
            if (callee == r) {
                routines[r].recursive = true;
            }
            if (callee < count && number[callee] == 0) {
                visits.push_back({callee, 0});
            } else if (callee < count && isOpen[callee] && number[callee] < lowest[r]) {
                lowest[r] = number[callee];
            }
            continue;
        }
        if (lowest[r] == number[r]) {
            ++components;
            const bool alone = open.back() == r;
            const auto members = std::find(open.begin(), open.end(), r);
            std::uint16_t below = 0; // the members' own callees are done, so their levels are known
            for (auto member = members; member != open.end(); ++member) {
                for (const std::uint16_t callee : callees[*member]) {
                    if (callee < count && !isOpen[callee]) {
                        below = std::max(below, levels[callee]);
                    }
                }
            }
            const bool checks = below + 1 >= uncheckedLevels;
            for (auto member = members; member != open.end(); ++member) {
                routines[*member].component = components;
                routines[*member].recursive = routines[*member].recursive || !alone;
                routines[*member].checksStack = routines[*member].checksStack || checks;
                levels[*member] =
                    routines[*member].checksStack ? std::uint16_t{1} : static_cast<std::uint16_t>(below + 1);
            }
            for (auto member = members; member != open.end(); ++member) {
                isOpen[*member] = false;
            }
            open.erase(members, open.end());
        }
        visits.pop_back();
        if (!visits.empty() && lowest[r] < lowest[visits.back().routine]) {
            lowest[visits.back().routine] = lowest[r];
        }
    }
}

} // namespace tp3
