#include "overlays.h"

namespace tp3 {

namespace {

/// The outermost overlay that the routine is or lies in.
const Routine* rootOf(const Routine& routine) {
    const Routine* root = nullptr;
    for (const Routine* r = &routine; r != nullptr; r = r->parent) {
        if (r->isOverlay) {
            root = r;
        }
    }
    return root;
}

} // namespace

void Overlays::enter(const Routine& routine) {
    if (routine.level == 0) {
        return;
    }
    const Routine* root = rootOf(routine);
    if (root == nullptr) {
        open_ = false;
        return;
    }
    if (root == &routine) {
        const std::size_t last = groups();
        units_.push_back({routine.ordinal, static_cast<std::uint16_t>(open_ ? last - 1 : last)});
        open_ = true;
    }
    if (unitOf_.size() <= routine.ordinal) {
        unitOf_.resize(routine.ordinal + std::size_t{1}, resident);
    }
    unitOf_[routine.ordinal] = static_cast<std::uint16_t>(units_.size() - 1);
}

std::vector<bool> Overlays::reached(const std::vector<std::vector<std::uint16_t>>& callees,
                                    std::vector<std::uint16_t> work) const {
    std::vector<bool> seen(callees.size());
    std::vector<bool> result(units_.size());
    for (const std::uint16_t routine : work) {
        seen[routine] = true;
    }
    while (!work.empty()) {
        const std::uint16_t routine = work.back();
        work.pop_back();
        if (unitOf(routine) != resident) {
            result[unitOf(routine)] = true;
        }
        for (const std::uint16_t callee : callees[routine]) {
            if (callee < seen.size() && !seen[callee]) {
                seen[callee] = true;
                work.push_back(callee);
            }
        }
    }
    return result;
}

void Overlays::divide(const std::vector<std::vector<std::uint16_t>>& callees,
                      const std::vector<std::uint16_t>& handedOut) {
    std::vector<std::vector<bool>> reach;
    for (const OverlayUnit& unit : units_) {
        reach.push_back(reached(callees, {unit.root}));
    }
    const std::vector<bool> drivers = reached(callees, handedOut);
    std::size_t first = 0; // of the group that is being filled
    std::uint16_t group = 0;
    std::uint16_t declaredBefore = 0;
    for (std::size_t unit = 0; unit < units_.size(); ++unit) {
        const std::uint16_t declared = units_[unit].group;
        bool apart = unit > 0 && (declared != declaredBefore || drivers[unit]);
        declaredBefore = declared;
        for (std::size_t other = first; other < unit && !apart; ++other) {
            apart = reach[unit][other] || reach[other][unit] || drivers[other];
        }
        if (apart) {
            ++group;
            first = unit;
        }
        units_[unit].group = group;
    }
}

} // namespace tp3
