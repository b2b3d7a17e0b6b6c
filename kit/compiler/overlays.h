#pragma once

#include "symbols.h"

#include <cstdint>
#include <vector>

namespace tp3 {

/// A routine declared with the word overlay and the routines inside it: what is loaded as one piece. One that
/// is declared inside another belongs to it.
struct OverlayUnit {
    std::uint16_t root = 0;  ///< ordinal of the routine
    std::uint16_t group = 0; ///< units of a group share a file and the memory that they are loaded to
};

/// The most groups that the file names NAME.000 to NAME.999 have room for.
constexpr std::size_t mostOverlayGroups = 1000;

/// The program's overlays. Units that are declared one after another make up a group, unless one of them can
/// come to call another, however indirectly: the caller would find other code in its place when it goes on.
class Overlays {
  public:
    /// A routine's block begins; in the order of the source.
    void enter(const Routine& routine);
    /// Divides the units into groups when the calls are known.
    /// @param callees callees[r] = routines that r calls
    /// @param handedOut routines that the library may call at any time
    void divide(const std::vector<std::vector<std::uint16_t>>& callees,
                const std::vector<std::uint16_t>& handedOut);

    static constexpr std::uint16_t resident = 0xFFFF;
    /// The unit that holds the routine, or `resident`.
    [[nodiscard]] std::uint16_t unitOf(std::uint16_t routine) const {
        return routine < unitOf_.size() ? unitOf_[routine] : resident;
    }
    [[nodiscard]] const std::vector<OverlayUnit>& units() const { return units_; }
    [[nodiscard]] std::size_t groups() const {
        return units_.empty() ? 0 : units_.back().group + std::size_t{1};
    }

  private:
    /// Flags, by unit: which ones running the routines may come to call.
    [[nodiscard]] std::vector<bool> reached(const std::vector<std::vector<std::uint16_t>>& callees,
                                            std::vector<std::uint16_t> work) const;

    std::vector<OverlayUnit> units_;
    std::vector<std::uint16_t> unitOf_; ///< by routine ordinal
    bool open_ = false;                 ///< the next unit belongs to the last group
};

} // namespace tp3
