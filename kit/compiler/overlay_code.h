#pragma once

#include "overlays.h"
#include "z80.h"

#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

namespace tp3 {

/// The code of a program's overlay routines and what calls them. Each group has memory of its own, an area,
/// above the program's image, as large as its largest unit. Callers go to a stub in the image, which has the
/// library load the unit unless it is there already.
class OverlayCode {
  public:
    void begin(const Overlays& overlays, std::string_view fileName);
    /// The routine's code belongs into an overlay.
    [[nodiscard]] bool holds(std::uint16_t routine) const {
        return overlays_ != nullptr && overlays_->unitOf(routine) != Overlays::resident;
    }
    /// Takes the code of a routine that belongs into an overlay; false when it does not.
    bool add(std::uint16_t routine, const z80::Encoded& code);
    /// Lays the groups' records and the stubs down after the image, whose first byte has the address
    /// `start`, and gives the areas their addresses after that. `place` learns the offset of each stub.
    void addStubs(std::vector<std::uint8_t>& image, std::uint16_t start,
                  const std::function<void(std::uint16_t routine, std::uint16_t offset)>& place);
    /// Fills in the addresses in the overlays' code. `addressOf` gives those of resident routines and
    /// constants.
    void resolve(const std::function<std::uint16_t(const z80::Fixup&)>& addressOf);

    [[nodiscard]] std::size_t areaBytes() const { return areaBytes_; }
    [[nodiscard]] bool tooLarge() const { return tooLarge_; }
    std::vector<std::vector<std::uint8_t>> takeFiles();

  private:
    struct Unit {
        std::vector<std::uint8_t> bytes;
        std::vector<z80::Fixup> fixups;          ///< routines and constants
        std::vector<std::uint16_t> ownAddresses; ///< offsets of words that hold an offset into the bytes
        std::uint16_t rootOffset = 0;
    };
    struct Group {
        std::uint16_t area = 0; ///< address
        std::size_t size = 0;   ///< of the largest unit
        std::size_t fileSize = 0;
        std::size_t record = 0; ///< offset in the image
    };
    /// Offset of a routine inside the unit; none: it lies elsewhere, or the stub leads to it.
    [[nodiscard]] bool isInside(const z80::Fixup& fixup, std::size_t unit) const;

    const Overlays* overlays_ = nullptr;
    std::string_view fileName_;
    std::vector<Unit> units_;
    std::vector<Group> groups_;
    std::vector<std::uint16_t> offsets_; ///< by routine ordinal: in its unit
    std::size_t areaBytes_ = 0;
    bool tooLarge_ = false;
};

} // namespace tp3
