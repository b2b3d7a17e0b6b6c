#pragma once

#include "symbols.h"

#include <cstdint>
#include <vector>

namespace tp3 {

/// What the survey pass found out about the whole program, by ordinal.
struct Survey {
    struct RoutineFacts {
        bool used = false;           ///< the main program reaches it
        bool recursive = false;      ///< it can run while an activation of it is still alive
        std::uint16_t component = 0; ///< routines that can call each other share a number
        /// It makes sure of the stack at its beginning, recursive or not: the calls below it are many, or the
        /// library calls it.
        bool checksStack = false;
    };
    std::vector<RoutineFacts> routines;
    std::vector<VariableFacts> variables;
    bool chains = false;           ///< another program may take over the global variables
    bool handsOutRoutines = false; ///< a routine's address is taken: the library may call it as a driver
};

/// Levels of calls without a look at the stack. Each takes a return address of the margin that the library
/// keeps between stack and heap.
constexpr std::uint16_t uncheckedLevels = 16;

/// Fills in who is used, who is recursive and who looks at the stack from the calls (callees[r] = routines
/// that r calls; 0 = main program).
void analyseCalls(const std::vector<std::vector<std::uint16_t>>& callees,
                  std::vector<Survey::RoutineFacts>& routines);

/// How the value or address that a variable's symbol stands for is kept.
enum class SlotKind : std::uint8_t {
    value,    ///< a virtual register with a home in static memory: scalars whose address nobody takes
    memory,   ///< static memory at `address`
    frame,    ///< `address` bytes behind the frame of the routine that owns it
    constant, ///< typed constant
};

struct Slot {
    SlotKind kind = SlotKind::memory;
    std::uint16_t address = 0;
    /// What is kept is the address of the variable (VAR parameters, results of structured type).
    bool pointer = false;
    bool callsMayUse = false;
    bool liveAtExit = false;
};

/// Where a routine's parameter is handed over.
struct ParameterPlace {
    enum class Kind : std::uint8_t { pair, reg, home };
    Kind kind = Kind::home;
    std::uint8_t code = 0;     ///< z80::Pair or z80::Reg
    std::uint16_t address = 0; ///< home
    bool isByte = false;
};

/// Gives every variable its place. Data grows down from the program's end address; nothing overlaps.
class Storage {
  public:
    Storage(const Survey& survey, std::uint16_t endAddress);

    /// Gives a global variable its place now. Programs that chain to each other share what they declare
    /// alike, so the places follow the declarations.
    void reserve(const Symbol& global);
    /// The slot of a variable as seen from code of `user`.
    Slot slotOf(const Symbol& variable, const Routine& user);
    /// Static memory of `size` bytes.
    std::uint16_t allocate(std::uint32_t size);
    /// Address of the word that holds the frame's address of a recursive routine.
    std::uint16_t frameHome(const Routine& routine);
    /// Bytes of the routine's frame that have been given out so far.
    [[nodiscard]] std::uint16_t frameSize(const Routine& routine) const;
    /// How the parameters arrive; first a place for the result's address when the result is structured.
    std::vector<ParameterPlace> parameterPlaces(const Routine& routine);
    /// The lowest address given out.
    [[nodiscard]] std::uint16_t bottom() const { return static_cast<std::uint16_t>(next_); }
    /// More was asked for than there is memory.
    [[nodiscard]] bool exhausted() const { return exhausted_; }
    [[nodiscard]] const Survey& survey() const { return survey_; }

    /// Static home of a variable that is not in a frame, given out when first asked for.
    std::uint16_t homeOf(const Symbol& variable);

  private:
    struct FrameState {
        std::uint16_t home = 0;
        std::uint16_t size = 0;
    };
    std::uint16_t frameOffset(const Symbol& variable, std::uint16_t size);

    const Survey& survey_;
    std::uint32_t next_;
    bool exhausted_ = false;
    std::vector<std::uint16_t> homes_;     ///< by variable ordinal: address, 0 none yet
    std::vector<std::uint16_t> offsets_;   ///< by variable ordinal: frame offset + 1, 0 none yet
    std::vector<std::uint16_t> passHomes_; ///< by variable ordinal: where a frame parameter is handed over
    std::vector<FrameState> frames_;       ///< by routine ordinal
};

/// A variable of this type can live in a register.
inline bool isScalar(const Type* type) {
    return type != nullptr && type->isSimple();
}

} // namespace tp3
